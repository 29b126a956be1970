// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/kwee/Persistence.h"

#include <algorithm>

namespace dip {

double unbiasedPersistence(double persistence, std::size_t n)
{
    // Negative persistence (noise that alternates) moves no time; it is left as fitted.
    if (!(persistence > 0) || n == 0)
        return persistence;
    return std::min(maximumPersistence, persistence + (1 + 3 * persistence) / double(n));
}

} // namespace dip
