// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "app/Replay.h"

namespace dip {

ReplayResult ReplayTracingPaper(const QString&)
{
    return {};
}

} // namespace dip
