// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// A help paragraph's estimated height worked out in whole numbers, independently of the
// program's doubles and CInt: (15000 c + 400 w) / w for c characters and a width of w whole
// twips, rounded to the nearest, halves to even.

namespace dip::test {

inline long long exactEstimate(long long chars, long long width)
{
    const long long numerator = 15000 * chars + 400 * width;
    long long quotient = numerator / width;
    const long long remainder = numerator % width;
    if (2 * remainder > width || (2 * remainder == width && quotient % 2 != 0))
        ++quotient;
    return quotient;
}

} // namespace dip::test
