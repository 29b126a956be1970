// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/MethodRegistry.h"
#include "methods/sliding/SlidingIntegrations.h"

#include <memory>

namespace dip {

void ReplaySliding(const ReplayRequest&) { RunSlidingIntegrations(); }

MethodResult ComputeSliding(const Curve& curve, const MethodRequest&)
{
    return RunCompute([&](MethodResult& r) {
        // A workspace of its own: SlideDiff beyond k reads as 0.
        const auto w = std::make_unique<SlidingWorkspace>();
        ChooseSlidingStretch(*w, curve, DeepestPoint(curve));
        SlidingWindow window;
        SlidingIntegrations(*w, w->SlideHJD, w->SlideMag, w->SlideN, r.time, r.error, window);
        r.slideN = w->SlideN;
        r.slideFirst = window.first;
        r.slideLast = window.last;
    });
}

} // namespace dip
