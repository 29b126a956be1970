// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

namespace dip {

// Two neighbouring points further apart than this many median spacings of the curve bound a
// gap: a light curve read between them by a straight line cuts a curved branch, and misses it
// by an amount the sampling sets, the same whatever the noise. A random sampling leaves a
// spacing as wide about once in 250.
constexpr double gapInMedianSpacings = 8;

} // namespace dip
