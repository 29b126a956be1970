// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

#include "runtime/RuntimeError.h"

#include <cstdint>

namespace rt {

// Counts and indexes are 16-bit signed integers. Arithmetic is done in a wider type and the
// result brought back through i16, which raises "Overflow" (6) when it does not fit.
using Integer = std::int16_t;

// True as the runtime stores it in a 16-bit boolean.
constexpr Integer True = -1;
constexpr Integer False = 0;

inline Integer i16(long long value)
{
    if (value < -32768 || value > 32767)
        raise(6);
    return static_cast<Integer>(value);
}

} // namespace rt
