// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/MethodRegistry.h"
#include "methods/fourier/FourierFit.h"
#include "runtime/Numeric.h"

#include <memory>

namespace dip {

void ReplayFourier(const ReplayRequest& request)
{
    // "5. Fourier Fit" opening the window for the first time. The tool draws nothing; its form
    // only gets the plot box.
    FormMemory form;
    FourierView view{form, [&form] { PlotFourierLightCurve(form); }};
    pressFourierButton(view);

    // A right-click at time t: exactly t, at (t - HJDMin) / HJDRange across the plot box.
    for (const double t : request.clicks)
        pickFourierEnd(view, Click::atTime(form.transform(), t));

    if (request.fourierStart) {
        for (int k = 1; k <= 8; ++k)
            form.setControlText(fourierText::boxName(k), request.fourierStart->value(k - 1));
        updateFourier(view);
    }
    fitFourier(view);
}

MethodResult ComputeFourier(const Curve& curve, const MethodRequest& request)
{
    return RunCompute([&](MethodResult& r) {
        // A fit state and a solver of its own: damping -1, every point's deviation 0.01.
        const auto state = std::make_unique<FourierFitState>(FourierFitState::fresh(curve.n));
        const auto solver = std::make_unique<FourierSolver>();
        rt::Array<double, 0, 8> par;
        for (int k = 1; k <= 8; ++k)
            par(k) = request.fourierStart[static_cast<std::size_t>(k)];
        fourierParToSolver(par, state->FitA);
        r.fourierLoopCalls = RunFourierFit(curve, request.first, request.last, *state, *solver);
        fourierParFromSolver(state->FitA, par);
        for (int k = 1; k <= 8; ++k)
            r.fourierParameters[static_cast<std::size_t>(k)] = par(k);
        // The formal error for 0.01-magnitude points, not scaled by the scatter.
        r.time = par(1);
        r.error = rt::sqrt(state->Covar(8, 8));
    });
}

} // namespace dip
