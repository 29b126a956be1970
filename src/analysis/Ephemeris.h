// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// A linear ephemeris and what a time of minimum is compared with: the cycle number E, the
// computed time C = T0 + E P and the difference O - C.

namespace dip {

struct Ephemeris {
    double t0 = 0;     // a primary minimum, in the time system of the results (days)
    double period = 0; // days
    // Secondary minima fall at phase 0.5: a result of unknown kind takes the nearest half cycle.
    bool secondaryAtHalf = false;
};

// True when the period is a positive finite number and T0 is finite.
bool isUsable(const Ephemeris& ephemeris);

// What a time of minimum is taken to be. Nearest is the nearest half cycle when the ephemeris
// has secondaries at phase 0.5, the nearest whole cycle otherwise.
enum class MinimumKind { Primary, Secondary, Nearest };

struct OcValue {
    double cycle = 0;    // E: whole for a primary, k + 0.5 for a secondary
    double computed = 0; // C = T0 + E P
    double days = 0;     // O - C
    double minutes() const { return days * 1440.0; }
    bool secondary() const;
};

// E for a time of minimum: round((T - T0) / P) for a primary, round((T - T0) / P - 0.5) + 0.5
// for a secondary. A time exactly half-way between two candidates takes the later one.
double cycleFor(const Ephemeris& ephemeris, double time, MinimumKind kind);

// E, C and O - C for a time of minimum.
OcValue ocFor(const Ephemeris& ephemeris, double time, MinimumKind kind);

// C and O - C for a time of minimum whose cycle is already known (a predicted eclipse).
OcValue ocAtCycle(const Ephemeris& ephemeris, double time, double cycle);

} // namespace dip
