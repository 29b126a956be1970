// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// Helpers of the method-window tests: right-clicks at the twip position of a time (the colours
// of drawn pixels are support/gui/PixelChecks.h).

#include "plotting/FormPort.h"
#include "plotting/gui/PlotWindow.h"
#include "session/Session.h"
#include "support/DipCurves.h"
#include "support/gui/PixelChecks.h"

#include <QColor>
#include <QLocale>
#include <QPushButton>
#include <QTest>

#include <cmath>
#include <utility>
#include <vector>

namespace dip::test {

// The pixel column of a time on the window's plot box, and its x in twips.
inline int pixelX(double t)
{
    const Session& s = S();
    return int(std::lround((s.PlotLeft + s.PlotWidth * (t - s.HJDMin) / s.HJDRange) / 15));
}
inline double twipsX(double t) { return pixelX(t) * 15.0; }
inline double midY() { return 15.0 * std::lround((S().PlotTop + S().PlotBottom) / 30); }

// A real mouse press with the given button at the pixel of time t, in the middle of the box.
inline void clickAt(PlotWindow& w, double t, Qt::MouseButton button = Qt::RightButton)
{
    QTest::mouseClick(w.surface(), button, {}, QPoint(pixelX(t), int(midY() / 15)));
}

// Presses a command button of the window.
inline void clickButton(PlotWindow& w, const char* name)
{
    QPushButton* b = w.control<QPushButton>(QLatin1String(name));
    QVERIFY(b);
    b->click();
}

// 61 points at 0.005-day steps from 0.30 with a dip at centre and, if asked, a little scatter.
inline Points dipCurve(double centre, double scatter) { return parabolicDip(61, 0.30, 0.005, centre, scatter); }

// The time a click at twips x stands for, as the parabola and Kwee windows compute it.
inline double timeAtTwips(double x)
{
    const Session& s = S();
    return s.HJDMin + s.HJDRange * ((x - s.PlotLeft) / s.PlotWidth);
}

} // namespace dip::test
