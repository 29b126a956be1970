// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/Replay.h"
#include "methods/fourier/FourierFit.h"
#include "session/Session.h"

namespace dip {

ReplayResult ReplayFourier(const std::vector<double>& clicks, const std::optional<QStringList>& start)
{
    Session& s = S();
    ReplayResult result;
    if (s.DataName.isEmpty())
        return result;

    // "5. Fourier Fit" opening the window for the first time. The tool draws nothing; its form
    // only gets the plot box.
    FormMemory form;
    FourierView view{form, [&form] { PlotFourierLightCurve(form); }};
    pressFourierButton(view);

    // A right-click at time t: exactly t, at (t - HJDMin) / HJDRange across the plot box.
    for (const double t : clicks)
        pickFourierEnd(view, Click::atTime(t));

    if (start) {
        for (int k = 1; k <= 8; ++k)
            form.setControlText(fourierText::boxName(k), start->value(k - 1));
        updateFourier(view);
    }

    const FourierFitOutcome outcome = fitFourier(view);
    if (outcome.fitted) {
        result.published = true;
        result.time = s.HJDOffset + outcome.time;
        result.error = outcome.error;
        for (int k = 1; k <= 8; ++k)
            result.boxes << form.controlText(fourierText::boxName(k));
    }
    return result;
}

} // namespace dip
