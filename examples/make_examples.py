#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) the Dipscope developers
"""Writes the sample light curves of this folder. Fixed seeds: the files come out the same on
every run. Times are reduced to the fraction of the day (HJD 2459123.51234 is written 0.51234):
the methods fit the times as stored, so small numbers keep their precision."""

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


if __name__ == "__main__":
    print("single-minimum.csv", *single_minimum())
    print("inverted-minimum.csv", *inverted_minimum())
