// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "runtime/Numeric.h"

#include <cmath>

namespace rt {

double fin(double x)
{
    if (!std::isfinite(x))
        raise(6);
    return x;
}

double div(double a, double b)
{
    if (b == 0.0)
        raise(a == 0.0 || std::isnan(a) ? 6 : 11);
    return fin(a / b);
}

double sqrt(double x)
{
    if (x < 0.0 || std::isnan(x))
        raise(5);
    return fin(std::sqrt(x));
}

double Int(double x) { return std::floor(x); }

double Fix(double x) { return std::trunc(x); }

int Sgn(double x) { return x > 0.0 ? 1 : (x < 0.0 ? -1 : 0); }

Integer CInt(double x)
{
    if (!std::isfinite(x))
        raise(6);
    // nearbyint under the default rounding mode rounds halves to even.
    const double r = std::nearbyint(x);
    if (r < -32768.0 || r > 32767.0)
        raise(6);
    return static_cast<Integer>(r);
}

double Single(double x)
{
    volatile float single = static_cast<float>(x);
    return single;
}

double pow(double x, double y)
{
    if (x == 0.0 && y < 0.0)
        raise(5);
    return fin(std::pow(x, y));
}

} // namespace rt
