// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/MethodRegistry.h"
#include "methods/tracing/TracingPaperMemory.h"

namespace dip {

void ReplayTracingPaper(const ReplayRequest& request)
{
    // The first opening of the window: a freshly loaded one.
    TracingPaperMemory window;
    OpenTracingPaper(window.view());
    window.setControlText(QStringLiteral("Text1"), request.text);
    UpdateFold(window.view());
}

// The fold is the time of minimum; its error is one scroll step, whatever the data.
MethodResult ComputeTracingPaper(const Curve&, const MethodRequest& request)
{
    return RunCompute([&](MethodResult& r) {
        r.time = request.fold;
        r.error = FoldStep;
    });
}

} // namespace dip
