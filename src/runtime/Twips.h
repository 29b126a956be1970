// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

namespace dip {

// Form coordinates, window placements and layout constants are in twips: 15 to a logical pixel.
constexpr int TwipsPerPixel = 15;

} // namespace dip
