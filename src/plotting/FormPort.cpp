// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "plotting/FormPort.h"

namespace dip {

Canvas::~Canvas() = default;

} // namespace dip
