// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/Replay.h"
#include "methods/sliding/SlidingIntegrations.h"

namespace dip {

ReplayResult ReplaySliding()
{
    const SlidingOutcome outcome = RunSlidingIntegrations();
    ReplayResult result;
    result.published = outcome.published;
    result.time = outcome.time;
    result.error = outcome.error;
    result.trappedError = outcome.trappedError;
    return result;
}

} // namespace dip
