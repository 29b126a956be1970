// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/Replay.h"

#include "methods/MethodReplay.h"
#include "methods/chords/ChordsCommands.h"

namespace dip {

ReplayResult ReplayChords(const std::vector<double>& clicks)
{
    FormMemory form;
    ReplayOpeningAndClicks(form, {ChordsFormLoad, ChordsRedrawOverlays, ChordsMouseDown}, clicks);
    const std::optional<ChordsResult> result = ChordsBisectClick(form);
    return result ? PublishedResult(result->time, result->error) : ReplayResult{};
}

} // namespace dip
