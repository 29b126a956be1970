// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The plot windows of the program by number, opened and clicked as a user does, for tests
// across windows (GUI only): 0 is "Plot/Edit Data" (frmPlotData), 1 to 5 the method windows
// frmPlott1 .. frmPlott5. A click is placed with the clicked window's own last drawing. A test
// of every pair of windows opens window j, then window k, and clicks on j.

#include "methods/chords/gui/frmPlott3.h"
#include "methods/fourier/gui/frmPlott5.h"
#include "methods/gui/MethodStarts.h"
#include "methods/kwee/gui/frmPlott4.h"
#include "methods/parabola/gui/frmPlott1.h"
#include "methods/tracing/gui/frmPlott2.h"
#include "plotting/PlotBox.h"
#include "plotting/gui/PlotDataEntry.h"
#include "plotting/gui/frmPlotData.h"
#include "runtime/Twips.h"
#include "session/Session.h"
#include "support/gui/PixelChecks.h"

#include <QApplication>
#include <QMenu>
#include <QTest>

#include <cmath>
#include <utility>
#include <vector>

namespace dip::test {

// Window k (0 the light-curve editor, 1..5 the method windows).
inline PlotWindow& plotWindow(int k)
{
    switch (k) {
    case 0: return PlotDataWindow();
    case 1: return frmPlott1::form();
    case 2: return frmPlott2::form();
    case 3: return frmPlott3::form();
    case 4: return frmPlott4::form();
    default: return frmPlott5::form();
    }
}

// Opens window k as the main window's buttons do ("Plot/Edit Data", or method button k) and
// returns it, drawn.
inline PlotWindow& openWindow(int k)
{
    if (k == 0)
        ShowPlotData();
    else
        PressMethodButton(k);
    return plotWindow(k);
}

// The pixel of data (t, m) on a window, by the box and scale of its own last drawing.
inline QPoint pixelOf(const PlotWindow& w, double t, double m)
{
    const PlotTransform& box = w.transform();
    const double x = PlotX(box, box.scale, t);
    const double y = PlotY(box, box.scale, m);
    return QPoint(int(std::lround(x / TwipsPerPixel)), int(std::lround(y / TwipsPerPixel)));
}

// A real mouse click on window w at data (t, m); m defaults to the middle of its box.
inline void clickAtData(PlotWindow& w, double t, Qt::MouseButton button)
{
    const PlotTransform& box = w.transform();
    const double middle = box.scale.m0 + box.scale.mr / 2;
    QTest::mouseClick(w.surface(), button, {}, pixelOf(w, t, middle));
}
inline void clickAtData(PlotWindow& w, double t, double m, Qt::MouseButton button)
{
    QTest::mouseClick(w.surface(), button, {}, pixelOf(w, t, m));
}

// The checks after a button opened window k: shown and modeless, its caption, the texts of the
// named controls, its File menu, and a used point drawn in red where the window's own transform
// puts it. Returns what was wrong, empty when nothing was.
inline QString checkOpenedWindow(int k, const QString& caption,
                                 const std::vector<std::pair<const char*, const char*>>& texts)
{
    PlotWindow& w = openWindow(k);
    if (!w.isVisible() || w.isModal())
        return QStringLiteral("not shown as a modeless window");
    if (w.caption() != caption)
        return QStringLiteral("caption \"%1\"").arg(w.caption());
    for (const auto& [name, text] : texts)
        if (w.controlText(QLatin1String(name)) != QLatin1String(text))
            return QStringLiteral("%1 shows \"%2\"").arg(QLatin1String(name), w.controlText(QLatin1String(name)));
    if (!w.findChild<QMenu*>(QStringLiteral("mFile")))
        return QStringLiteral("no File menu");
    const Session& s = S();
    const int i = (s.NumPts + 1) / 2;
    const PlotTransform& box = w.transform();
    const bool red = colourNear(w, PlotX(box, box.scale, s.HJD(i)), PlotY(box, box.scale, s.Mag(i)), colours::red);
    if (k != 2 && !red)
        return QStringLiteral("point %1 not drawn in red").arg(i);
    return QString();
}

} // namespace dip::test
