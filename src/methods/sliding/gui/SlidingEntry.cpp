// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/gui/MethodStarts.h"
#include "methods/sliding/SlidingIntegrations.h"

namespace dip {

// No window: the button computes at once and publishes into the main window.
void StartSliding() { RunSlidingIntegrations(); }

} // namespace dip
