// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "app/Replay.h"

namespace dip {

ReplayResult ReplayChords(const std::vector<double>&)
{
    return {};
}

} // namespace dip
