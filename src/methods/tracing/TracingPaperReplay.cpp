// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/Replay.h"
#include "methods/tracing/TracingPaperMemory.h"
#include "session/Session.h"

namespace dip {

ReplayResult ReplayTracingPaper(const QString& foldText)
{
    ReplayResult result;
    const Session& s = S();
    if (s.DataName.isEmpty())
        return result;
    // The first opening of the window: a freshly loaded one.
    TracingPaperMemory window;
    struct Restore {
        FormPort* form = &tracingPaperForm();
        TracingPaperControls* controls = &tracingPaperControls();
        ~Restore() { setTracingPaperWindow(form, controls); }
    } restore;
    setTracingPaperWindow(&window, &window);

    OpenTracingPaper();
    window.setControlText(QStringLiteral("Text1"), foldText);
    UpdateFold();

    result.published = true;
    result.time = s.HJDOffset + s.FoldHJD;
    result.error = FoldStep;
    return result;
}

} // namespace dip
