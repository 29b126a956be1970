// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/MethodEntries.h"

namespace dip {

void StartTracingPaper() {}

} // namespace dip
