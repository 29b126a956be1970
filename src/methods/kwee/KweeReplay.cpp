// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/Replay.h"

#include "methods/MethodReplay.h"
#include "methods/kwee/KweeCommands.h"

namespace dip {

ReplayResult ReplayKwee(const std::vector<double>& clicks, const QString& stepp, const QString& frac)
{
    FormMemory form;
    KweeDesignTexts(form);
    ReplayOpeningAndClicks(form, {KweeFormLoad, KweeRedrawOverlays, KweeMouseDown}, clicks);
    form.setControlText(QStringLiteral("Text1"), stepp);
    form.setControlText(QStringLiteral("Text2"), frac);
    const std::optional<KweeResult> result = KweeFitClick(form);
    return result ? PublishedResult(result->time, result->error) : ReplayResult{};
}

} // namespace dip
