// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/Toolkit.h"

namespace dip {

namespace {
ToolkitState& instance()
{
    static ToolkitState state;
    return state;
}
} // namespace

ToolkitState& Toolkit() { return instance(); }

void resetToolkit() { instance() = ToolkitState(); }

} // namespace dip
