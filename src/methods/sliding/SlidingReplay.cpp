// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "app/Replay.h"

namespace dip {

ReplayResult ReplaySliding()
{
    return {};
}

} // namespace dip
