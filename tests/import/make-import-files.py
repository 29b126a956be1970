#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
# Copyright (c) the Dipscope developers
"""Writes the light-curve files the importer tests read, into tests/import/data/.

Standard library only, fixed seeds: running it again writes the same bytes. Every file holds a
made-up eclipse (a dip of 0.7 mag, minimum at a stated time) sampled as an observer's camera
would, in the layouts AAVSO's extended format and AstroImageJ's measurement tables have; the
files with an error have it at a line stated here and in the tests. The FITS light curve is
written by the test itself with CFITSIO.

    python3 tests/import/make-import-files.py
"""

import math
import os
import random

HERE = os.path.dirname(os.path.abspath(__file__))
DATA = os.path.join(HERE, "data")

T0 = 2459123.51234  # the minimum of the made-up eclipse (in each file's own time system)


def dip(t, t0=T0, base=12.30, depth=0.70, width=0.018):
    x = (t - t0) / width
    return base + depth / (1.0 + x * x) ** 1.5


def write(name, text, newline="\n"):
    with open(os.path.join(DATA, name), "w", newline=newline) as f:
        f.write(text)


def aavso_header(date="HJD", delim=",", obstype="CCD", type_line="#TYPE=Extended"):
    return [type_line, "#OBSCODE=DIPX", "#SOFTWARE=Dipscope test files (tests/import/make-import-files.py)",
            "#DELIM=" + delim, "#DATE=" + date, "#OBSTYPE=" + obstype,
            "#NAME,DATE,MAG,MERR,FILT,TRANS,MTYPE,CNAME,CMAG,KNAME,KMAG,AMASS,GROUP,CHART,NOTES"]


def aavso_row(name, t, mag, filt, rng, sep=","):
    fields = [name, "%.5f" % t, mag if isinstance(mag, str) else "%.3f" % mag, "%.3f" % rng.uniform(0.005, 0.012),
              filt, "NO", "STD", "ENSEMBLE", "na", "000-BCD-123", "%.3f" % rng.uniform(11.2, 11.3),
              "%.3f" % rng.uniform(1.1, 1.6), "na", "X26532AB", "na"]
    return sep.join(fields)


def aavso_two_filters():
    """V (48 usable rows and one fainter-than) and B (24 rows), alternating V, V, B as a filter
    wheel would; two V rows out of time order (two nights' files merged), comments and a blank
    line among the rows."""
    rng = random.Random(1)
    lines = aavso_header()
    rows = []
    t = T0 - 0.06
    for k in range(72):
        filt = "B" if k % 3 == 2 else "V"
        offset = 0.45 if filt == "B" else 0.0
        rows.append(aavso_row("V0404 LYR", t, dip(t) + offset + rng.gauss(0, 0.006), filt, rng))
        t += 0.0017
    rows[10], rows[12] = rows[12], rows[10]  # V rows 10 and 12 swapped: out of order
    rows.insert(30, "# thin clouds from here on")
    rows.insert(45, "")
    rows.append(aavso_row("V0404 LYR", t, "<14.200", "V", rng))
    write("aavso-two-filters.txt", "\n".join(lines + rows) + "\n")


def aavso_tab_bjd():
    """One filter (TG), the delimiter given as the word "tab", BJD dates, CRLF line ends."""
    rng = random.Random(2)
    lines = aavso_header(date="BJD", delim="tab")
    for k in range(30):
        t = T0 - 0.04 + k * 0.0028
        lines.append(aavso_row("CM DRA", t, dip(t) + rng.gauss(0, 0.004), "TG", rng, sep="\t"))
    write("aavso-tab-bjd.txt", "\n".join(lines) + "\n", newline="\r\n")


def aavso_with_error(name, edit, date="JD", type_line="#TYPE=EXTENDED"):
    rng = random.Random(3)
    lines = aavso_header(date=date, type_line=type_line)
    for k in range(12):
        t = T0 - 0.02 + k * 0.003
        lines.append(aavso_row("RZ CAS", t, dip(t), "V", rng))
    edit(lines)
    write(name, "\n".join(lines) + "\n")


def set_field(lines, line_no, index, value):
    fields = lines[line_no - 1].split(",")
    fields[index] = value
    lines[line_no - 1] = ",".join(fields)


def aavso_errors():
    # Line 12 (the fifth observation): a magnitude with two points.
    aavso_with_error("aavso-bad-mag.txt", lambda l: set_field(l, 12, 2, "12.3.4"))
    # Line 5: Excel dates.
    aavso_with_error("aavso-excel.txt", lambda l: None, date="EXCEL")
    # Line 1: a visual report.
    aavso_with_error("aavso-visual.txt", lambda l: None, type_line="#TYPE=VISUAL")
    # Line 10: another star.
    aavso_with_error("aavso-two-stars.txt", lambda l: set_field(l, 10, 0, "TX UMA"))

    # Line 9: three fields only.
    def cut(lines):
        lines[8] = ",".join(lines[8].split(",")[:3])
    aavso_with_error("aavso-short-row.txt", cut)

    # Line 7 (the first observation) comes before #DATE, which follows two rows later.
    def late_date(lines):
        date = lines.pop(4)
        lines.insert(8, date)
    aavso_with_error("aavso-date-after-data.txt", late_date)


AIJ_FLUX_COLUMNS = [" ", "Label", "slice", "Saturated", "JD_UTC", "JD_SOBS", "HJD_UTC", "BJD_TDB", "AIRMASS",
                    "rel_flux_T1", "rel_flux_err_T1", "rel_flux_C2", "Source-Sky_T1", "Source-Sky_C2"]


def aij_flux_rows(count, t_start, step, rng, t0=T0):
    rows = []
    for k in range(count):
        jd = t_start + k * step
        bjd = jd + 0.000805  # as AstroImageJ would give for a star near the ecliptic in autumn
        hjd = jd + 0.000004
        mag = dip(bjd, t0=t0) + rng.gauss(0, 0.004)
        flux = 10 ** (-0.4 * (mag - 12.30)) * 0.8731
        rows.append([str(k + 1), "V0404Lyr_%04d.fits" % (k + 1), str(k + 1), "0", "%.7f" % jd,
                     "%.7f" % (jd - 0.000347), "%.7f" % hjd, "%.7f" % bjd, "%.4f" % rng.uniform(1.1, 1.7),
                     "%.7f" % flux, "%.7f" % (flux * 0.004), "%.7f" % rng.uniform(0.99, 1.01),
                     "%.2f" % (flux * 41234.0), "%.2f" % (47228.0 + rng.gauss(0, 60))])
    return rows


def tab_table(columns, rows):
    return "\n".join(["\t".join(columns)] + ["\t".join(r) for r in rows]) + "\n"


def aij_files():
    rng = random.Random(4)
    rows = aij_flux_rows(60, T0 - 0.000805 - 0.05, 0.0017, rng)
    rows[17][9] = "NaN"  # a failed measurement: line 19
    write("aij-flux.xls", tab_table(AIJ_FLUX_COLUMNS, rows))

    # Magnitudes of the target, UTC times only.
    rng = random.Random(5)
    columns = [" ", "Label", "JD_UTC", "Source_AMag_T1", "Source_AMag_Err_T1", "rel_flux_T1"]
    rows = []
    for k in range(40):
        jd = T0 - 0.04 + k * 0.002
        mag = dip(jd) + rng.gauss(0, 0.004)
        rows.append([str(k + 1), "frame_%03d.fit" % (k + 1), "%.7f" % jd, "%.5f" % mag, "0.00400",
                     "%.6f" % (10 ** (-0.4 * (mag - 12.3)))])
    write("aij-mag.xls", tab_table(columns, rows))

    # Comma-separated, HJD and a flux only.
    rng = random.Random(6)
    lines = ["HJD_UTC,rel_flux_T1,rel_flux_err_T1"]
    for k in range(25):
        t = T0 - 0.03 + k * 0.0025
        lines.append("%.6f,%.6f,0.004" % (t, 10 ** (-0.4 * (dip(t) - 12.3 + rng.gauss(0, 0.004)))))
    write("aij-comma.csv", "\n".join(lines) + "\n")

    def with_edit(name, edit):
        rng = random.Random(7)
        rows = aij_flux_rows(10, T0 - 0.01, 0.002, rng)
        edit(rows)
        write(name, tab_table(AIJ_FLUX_COLUMNS, rows))

    # Line 7 (row 6): a time that is not a number.
    with_edit("aij-bad-time.xls", lambda r: r[5].__setitem__(7, "2459123.51x"))
    # Line 5 (row 4): a negative flux.
    with_edit("aij-negative-flux.xls", lambda r: r[3].__setitem__(9, "-0.0213"))
    # Line 4 (row 3): cut after the fifth field.
    with_edit("aij-short-row.xls", lambda r: r.__setitem__(2, r[2][:5]))

    # 1500 measurements over three nights, 500 a night, minima at T0, T0 + 1 and T0 + 2.
    rng = random.Random(8)
    rows = []
    for night in range(3):
        part = aij_flux_rows(500, T0 + night - 0.000805 - 0.2, 0.0008, rng, t0=T0 + night)
        for r in part:
            r[0] = str(len(rows) + 1)
            rows.append(r)
    write("aij-1500.xls", tab_table(AIJ_FLUX_COLUMNS, rows))


def own_format():
    rng = random.Random(9)
    lines = ["HJD,Mag"]
    for k in range(20):
        t = 0.48 + k * 0.004
        lines.append("%.5f,%.3f" % (t, dip(t, t0=0.51234) + rng.gauss(0, 0.004)))
    write("own-format.csv", "\n".join(lines) + "\n")
    write("own-format-no-header.csv", "\n".join(lines[1:]) + "\n")


def main():
    os.makedirs(DATA, exist_ok=True)
    aavso_two_filters()
    aavso_tab_bjd()
    aavso_errors()
    aij_files()
    own_format()


if __name__ == "__main__":
    main()
