// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/Ephemeris.h"

#include <cmath>

namespace dip {

bool isUsable(const Ephemeris& ephemeris)
{
    return std::isfinite(ephemeris.t0) && std::isfinite(ephemeris.period) && ephemeris.period > 0;
}

bool OcValue::secondary() const { return cycle != std::floor(cycle); }

double cycleFor(const Ephemeris& ephemeris, double time, MinimumKind kind)
{
    const double x = (time - ephemeris.t0) / ephemeris.period;
    // floor(u + 0.5): halves go up, whatever the sign.
    if (kind == MinimumKind::Nearest && ephemeris.secondaryAtHalf)
        return std::floor(2 * x + 0.5) / 2;
    if (kind == MinimumKind::Secondary)
        return std::floor(x) + 0.5; // round(x - 0.5) + 0.5
    return std::floor(x + 0.5);
}

OcValue ocAtCycle(const Ephemeris& ephemeris, double time, double cycle)
{
    OcValue v;
    v.cycle = cycle;
    v.computed = ephemeris.t0 + cycle * ephemeris.period;
    // (T - T0) first: two full Julian dates a few thousand days apart subtract without loss, and
    // E P is then taken from a small number rather than from C, which carries T0's rounding.
    v.days = (time - ephemeris.t0) - cycle * ephemeris.period;
    return v;
}

OcValue ocFor(const Ephemeris& ephemeris, double time, MinimumKind kind)
{
    return ocAtCycle(ephemeris, time, cycleFor(ephemeris, time, kind));
}

} // namespace dip
