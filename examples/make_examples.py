#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) the Dipscope developers
"""Writes the sample light curves of this folder. Fixed seeds: the files come out the same on
every run. Most times are reduced to the fraction of the day (HJD 2459123.51234 is written
0.51234): without "Subtract whole days" the methods fit the times as stored, so small numbers keep
their precision. full-jd-minimum.csv writes them in full, for that switch."""

import math
import os
import random

HERE = os.path.dirname(os.path.abspath(__file__))


def eclipse(t, t0, depth, half_width, base):
    """A symmetric, flat-bottomed-free primary eclipse: base + depth * (1 - x^2)^1.5 inside."""
    x = (t - t0) / half_width
    if abs(x) >= 1.0:
        return base
    return base + depth * (1.0 - x * x) ** 1.5


def write(name, rows, header):
    with open(os.path.join(HERE, name), "w", newline="\n") as f:
        if header:
            f.write(header + "\n")
        for row in rows:
            f.write(",".join(row) + "\n")


def single_minimum():
    rng = random.Random(20090212)
    t0 = 0.51234
    rows = []
    t = 0.3800
    while t < 0.6450:
        if not 0.4400 < t < 0.4460:  # a short gap: a passing cloud
            m = eclipse(t, t0, 0.82, 0.085, 1.214) + rng.gauss(0.0, 0.006)
            rows.append((f"{t:.5f}", f"{m:.3f}", "0.006"))
        t += 0.0015 + rng.uniform(-0.0003, 0.0003)
    write("single-minimum.csv", rows, "HJD,Mag,Err")
    return t0, len(rows)


def full_jd_minimum():
    """The single minimum again, its times written as full Julian dates (HJD 2459123.38000 ...),
    as most observers' files have them: the example of subtracting whole days."""
    src = os.path.join(HERE, "single-minimum.csv")
    rows = []
    with open(src) as f:
        lines = f.read().splitlines()
    for line in lines[1:]:
        t, m, e = line.split(",")
        rows.append(("2459123" + t[1:], m, e))
    write("full-jd-minimum.csv", rows, lines[0])
    return 2459123.51234, len(rows)


def inverted_minimum():
    rng = random.Random(1953)
    t0 = 0.73410
    rows = []
    t = 0.6200
    while t < 0.8500:
        m = eclipse(t, t0, 0.45, 0.060, 0.350) + rng.gauss(0.0, 0.005)
        rows.append((f"{t:.5f}", f"{-m:.3f}"))
        t += 0.0020 + rng.uniform(-0.0004, 0.0004)
    write("inverted-minimum.csv", rows, None)
    return t0, len(rows)


# The long light curve: a detached binary watched for a TESS-like sector at a 2-minute cadence.
LONG_T0 = 2459500.31250  # BJD_TDB of a primary minimum
LONG_PERIOD = 0.547231  # days
LONG_ETV_AMPLITUDE = 0.0020  # days (2.88 minutes)
LONG_ETV_PERIOD = 11.3  # days
LONG_START = 2459500.0
LONG_END = 2459528.0
LONG_GAP = (2459513.70, 2459514.75)  # the mid-sector pause for the data downlink
LONG_CADENCE = 2.0 / 1440.0


def timing_variation(t):
    """The injected eclipse-timing variation: both minima of a cycle are shifted by it."""
    return LONG_ETV_AMPLITUDE * math.sin(2.0 * math.pi * (t - LONG_T0) / LONG_ETV_PERIOD)


def long_light_curve():
    rng = random.Random(7024)
    half_width = 0.055
    rows = []
    i = 0
    while True:
        t = LONG_START + i * LONG_CADENCE
        i += 1
        if t > LONG_END:
            break
        if LONG_GAP[0] < t < LONG_GAP[1]:
            continue
        m = 10.000 + rng.gauss(0.0, 0.004)
        # The nearest primary and secondary, each moved by the timing variation at its time.
        for phase, depth in ((0.0, 0.60), (0.5, 0.22)):
            cycle = round((t - LONG_T0) / LONG_PERIOD - phase) + phase
            centre = LONG_T0 + cycle * LONG_PERIOD
            centre += timing_variation(centre)
            m = eclipse(t, centre, depth, half_width, m)
        rows.append((f"{t:.6f}", f"{m:.4f}"))
    write("long-light-curve.csv", rows, "BJD_TDB,Mag")
    # The eclipses whose minimum falls into the pause.
    hidden = []
    k = math.ceil(2 * (LONG_START - LONG_T0) / LONG_PERIOD) / 2
    while LONG_T0 + k * LONG_PERIOD <= LONG_END:
        if LONG_GAP[0] < LONG_T0 + k * LONG_PERIOD < LONG_GAP[1]:
            hidden.append(k)
        k += 0.5
    return len(rows), hidden


if __name__ == "__main__":
    print("single-minimum.csv", *single_minimum())
    print("full-jd-minimum.csv", *full_jd_minimum())
    print("inverted-minimum.csv", *inverted_minimum())
    print("long-light-curve.csv", *long_light_curve())
