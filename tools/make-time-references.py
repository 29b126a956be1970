#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) the Dipscope developers
"""Writes tests/times/time-references.csv: times of several stars in JD(UTC), HJD(UTC) and
BJD_TDB, the table the time-system tests check Dipscope's conversions against.

Python's standard library only; ERFA (Debian's liberfa) is called through ctypes. The chain is
written here independently of the C++ code, by a different route through ERFA:

  UTC -> TAI  from eraDat (TAI-UTC at the start of the day and of the next one, so a day with
              a leap second has 86401 s), not eraUtctai;
  TT  = TAI + 32.184 s;  TDB = TT + eraDtdb, the site's distances from the axis and the
              equator computed here from the WGS84 ellipse, not by eraGd2gc;
  the observer's barycentric position and its heliocentric direction and distance from
              ERFA's astrometry set-up (eraApcg13 at the Earth's centre, eraApco13 for a site:
              eraPvtob and the CIO-based rotation), not eraEpv00 + eraC2t06a;
  BJD_TDB = TDB + eb.n / c;  HJD(UTC) = UTC of (TAI + em eh.n / c).

Run it once from the repository's root when the table has to change:

    python3 tools/make-time-references.py > tests/times/time-references.csv
"""

import ctypes
import ctypes.util
import math
import sys

AULT = 149597870.7e3 / 299792458.0  # seconds of light time per au
DAYSEC = 86400.0

_name = ctypes.util.find_library("erfa")
if _name is None:
    sys.exit("liberfa not found (apt-get install liberfa1)")
erfa = ctypes.CDLL(_name)
D = ctypes.c_double
PD = ctypes.POINTER(D)
I = ctypes.c_int
PI = ctypes.POINTER(I)


class Astrom(ctypes.Structure):
    _fields_ = [("pmt", D), ("eb", D * 3), ("eh", D * 3), ("em", D), ("v", D * 3), ("bm1", D),
                ("bpn", (D * 3) * 3), ("along", D), ("phi", D), ("xpl", D), ("ypl", D), ("sphi", D),
                ("cphi", D), ("diurab", D), ("eral", D), ("refa", D), ("refb", D)]


erfa.eraDat.argtypes = [I, I, I, D, PD]
erfa.eraDat.restype = I
erfa.eraCal2jd.argtypes = [I, I, I, PD, PD]
erfa.eraCal2jd.restype = I
erfa.eraJd2cal.argtypes = [D, D, PI, PI, PI, PD]
erfa.eraJd2cal.restype = I
erfa.eraDtdb.argtypes = [D, D, D, D, D, D]
erfa.eraDtdb.restype = D
erfa.eraApcg13.argtypes = [D, D, ctypes.POINTER(Astrom)]
erfa.eraApcg13.restype = None
erfa.eraApco13.argtypes = [D, D, D, D, D, D, D, D, D, D, D, ctypes.POINTER(Astrom), PD]
erfa.eraApco13.restype = I


def dat(y, m, d):
    out = D()
    status = erfa.eraDat(y, m, d, 0.0, ctypes.byref(out))
    if status < 0:
        raise ValueError("eraDat %d" % status)
    return out.value


def midnight(y, m, d):
    """The JD of 0h of a civil date, as (whole day, 0.5): ERFA's calendar to JD."""
    djm0, djm = D(), D()
    if erfa.eraCal2jd(y, m, d, ctypes.byref(djm0), ctypes.byref(djm)) != 0:
        raise ValueError("bad date")
    jd = djm0.value + djm.value  # a .5 value, exact
    return math.floor(jd), jd - math.floor(jd)


def civil(day, frac):
    y, m, d, fd = I(), I(), I(), D()
    erfa.eraJd2cal(day, frac, ctypes.byref(y), ctypes.byref(m), ctypes.byref(d), ctypes.byref(fd))
    return y.value, m.value, d.value, fd.value


def next_day(y, m, d):
    day, frac = midnight(y, m, d)
    return civil(day + 1, frac)[:3]


def day_length(y, m, d):
    return DAYSEC + dat(*next_day(y, m, d)) - dat(y, m, d)


class Exact:
    """A JD as a whole day and a fraction, both floats; the fraction may stray outside [0, 1)."""

    def __init__(self, day, frac):
        whole = math.floor(frac)
        self.day = float(day + whole)
        self.frac = frac - whole

    def plus_seconds(self, s):
        return Exact(self.day, self.frac + s / DAYSEC)

    def minus(self, other):
        return (self.day - other.day) + (self.frac - other.frac)

    def text(self, decimals=12):
        units = math.floor(self.frac * 10 ** decimals + 0.5)
        day = int(self.day)
        if units >= 10 ** decimals:
            units -= 10 ** decimals
            day += 1
        return "%d.%0*d" % (day, decimals, units)


def utc_from_civil(y, m, d, h, mi, s):
    """The UTC quasi-JD of a civil time: on a day with a leap second the day's fraction runs
    over its 86401 seconds, as ERFA counts it."""
    day, frac = midnight(y, m, d)
    return Exact(day, frac + (h * 3600.0 + mi * 60.0 + s) / day_length(y, m, d))


def tai_of(utc):
    y, m, d, fd = civil(utc.day, utc.frac)
    day, frac = midnight(y, m, d)
    seconds = fd * day_length(y, m, d)
    return Exact(day, frac + (seconds + dat(y, m, d)) / DAYSEC)


def utc_of(tai):
    """The UTC quasi-JD of a TAI moment: find the civil day whose TAI span holds it."""
    y, m, d, _ = civil(tai.day, tai.frac - 40.0 / DAYSEC)
    for _ in range(4):
        day, frac = midnight(y, m, d)
        start = Exact(day, frac + dat(y, m, d) / DAYSEC)
        offset = tai.minus(start) * DAYSEC
        length = day_length(y, m, d)
        if offset < 0:
            y, m, d = civil(day - 1, frac)[:3]
        elif offset >= length:
            y, m, d = next_day(y, m, d)
        else:
            return Exact(day, frac + offset / length)
    raise ValueError("no UTC day found")


WGS84_A = 6378137.0
WGS84_F = 1.0 / 298.257223563


def site_axes(lat, height):
    """Distances (km) of a site from the Earth's axis and from the equator's plane."""
    phi = math.radians(lat)
    e2 = WGS84_F * (2.0 - WGS84_F)
    n = WGS84_A / math.sqrt(1.0 - e2 * math.sin(phi) ** 2)
    return (n + height) * math.cos(phi) / 1000.0, (n * (1.0 - e2) + height) * math.sin(phi) / 1000.0


def convert(utc, ra, dec, site):
    tai = tai_of(utc)
    tt = tai.plus_seconds(32.184)
    ut = (utc.frac + 0.5) % 1.0
    if site:
        lat, lon, height = site
        u, v = site_axes(lat, height)
        elong = math.radians(lon)
    else:
        u = v = elong = 0.0
    tdb = tt.plus_seconds(erfa.eraDtdb(tt.day, tt.frac, ut, elong, u, v))
    astrom = Astrom()
    if site:
        eo = D()
        status = erfa.eraApco13(utc.day, utc.frac, 0.0, math.radians(lon), math.radians(lat), height, 0.0, 0.0, 0.0,
                                0.0, 0.0, ctypes.byref(astrom), ctypes.byref(eo))
        if status < 0:
            raise ValueError("eraApco13 %d" % status)
    else:
        erfa.eraApcg13(tdb.day, tdb.frac, ctypes.byref(astrom))
    n = (math.cos(math.radians(dec)) * math.cos(math.radians(ra)),
         math.cos(math.radians(dec)) * math.sin(math.radians(ra)), math.sin(math.radians(dec)))
    bary = sum(astrom.eb[k] * n[k] for k in range(3)) * AULT
    helio = astrom.em * sum(astrom.eh[k] * n[k] for k in range(3)) * AULT
    bjd = tdb.plus_seconds(bary)
    hjd = utc_of(tai.plus_seconds(helio))
    return hjd, bjd, tdb.minus(utc) * DAYSEC, helio, bary


OBLIQUITY = 23.4392911
STARS = [
    ("north ecliptic pole", 270.0, 90.0 - OBLIQUITY),
    ("south ecliptic pole", 90.0, -(90.0 - OBLIQUITY)),
    ("ecliptic 0h", 0.0, 0.0),
    ("ecliptic 6h", 90.0, OBLIQUITY),
    ("ecliptic 12h", 180.0, 0.0),
    ("ecliptic 18h", 270.0, -OBLIQUITY),
    ("CM Dra", 248.584583, 57.162306),
    ("LMC field", 80.893750, -69.756111),
    ("near the celestial pole", 37.954542, 89.264111),
]

# Civil UTC times; leap seconds were inserted at the end of 1997-06-30, 1998-12-31,
# 2005-12-31, 2012-06-30 and 2016-12-31 (second 60 is the leap second itself).
EPOCHS = [
    (1995, 3, 21, 3, 17, 0.0),
    (1997, 6, 30, 23, 59, 60.5),
    (1999, 1, 1, 0, 0, 30.0),
    (2005, 12, 31, 12, 0, 0.0),
    (2008, 9, 15, 21, 43, 12.5),
    (2012, 6, 30, 23, 59, 60.5),
    (2015, 7, 1, 0, 10, 0.0),
    (2016, 12, 31, 23, 59, 59.0),
    (2019, 9, 15, 3, 50, 0.0),
    (2021, 2, 28, 18, 0, 0.0),
    (2024, 1, 10, 4, 0, 0.0),
    (2026, 6, 21, 22, 0, 0.0),
]

SITES = [None, (49.398, 8.720, 570.0), (-29.257, -70.738, 2400.0), (19.826, -155.474, 4205.0)]


def main():
    out = sys.stdout
    out.write("# Reference times written by tools/make-time-references.py; do not edit by hand.\n")
    out.write("# star,ra_deg,dec_deg,site,utc_civil,jd_utc,hjd_utc,bjd_tdb,tdb_minus_utc_s,helio_delay_s,bary_delay_s\n")
    row = 0
    for name, ra_exact, dec_exact in STARS:
        # The star as the table gives it: the conversions use the same rounded numbers.
        ra, dec = float("%.6f" % ra_exact), float("%.6f" % dec_exact)
        for y, m, d, h, mi, s in EPOCHS:
            # Every epoch from the Earth's centre, and again from one of the sites in turn.
            for site in (None, SITES[1 + row % 3]):
                utc = utc_from_civil(y, m, d, h, mi, s)
                hjd, bjd, tdb_utc, helio, bary = convert(utc, ra, dec, site)
                site_text = "" if site is None else "%.3f %.3f %.1f" % site
                out.write("%s,%.6f,%.6f,%s,%04d-%02d-%02dT%02d:%02d:%06.3f,%s,%s,%s,%.9f,%.9f,%.9f\n" %
                          (name, ra, dec, site_text, y, m, d, h, mi, s, utc.text(), hjd.text(), bjd.text(), tdb_utc,
                           helio, bary))
            row += 1


if __name__ == "__main__":
    main()
