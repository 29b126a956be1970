// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/gui/MethodStarts.h"
#include "methods/tracing/TracingPaper.h"
#include "methods/tracing/gui/frmPlott2.h"

namespace dip {

void StartTracingPaper()
{
    frmPlott2& form = frmPlott2::form();
    OpenTracingPaper(form.view());
}

} // namespace dip
