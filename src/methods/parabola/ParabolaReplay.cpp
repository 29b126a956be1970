// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/Replay.h"

#include "methods/MethodReplay.h"
#include "methods/parabola/ParabolaCommands.h"

namespace dip {

ReplayResult ReplayParabola(const std::vector<double>& clicks)
{
    FormMemory form;
    ReplayOpeningAndClicks(form, {ParabolaFormLoad, ParabolaRedrawOverlays, ParabolaMouseDown}, clicks);
    const std::optional<ParabolaFitResult> fit = ParabolaFitClick(form);
    return fit ? PublishedResult(fit->time, ParabolaError(*fit)) : ReplayResult{};
}

} // namespace dip
