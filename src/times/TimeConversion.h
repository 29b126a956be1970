// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// Conversion of a time between JD(UTC), HJD(UTC) and BJD_TDB for one star, seen from the
// Earth's centre or from a site on it, computed by ERFA (the IAU SOFA algorithms).
//
// Forward, from JD(UTC):
//   UTC -> TAI with ERFA's table of leap seconds (eraUtctai; the drifting UTC of 1960-1971
//   included) -> TT = TAI + 32.184 s (eraTaitt) -> TDB = TT + eraDtdb (the periodic terms,
//   with the site's diurnal terms when a site is given).
//   The Earth's position, heliocentric and barycentric, from eraEpv00 at TDB, in au on the
//   ICRS axes; with a site, its geocentric position (eraGd2gc on WGS84) rotated from the
//   terrestrial to the celestial frame (eraC2t06a, UT1 from eraUtcut1 with UT1 - UTC taken as
//   0, polar motion 0: both move the site by less than half a metre, 2 ns) is added.
//   The Roemer delay is r.n / c, n the star's unit vector from RA/Dec (J2000, the star at
//   infinity):
//     BJD_TDB  = TDB + r_barycentric.n / c
//     HJD(UTC) = the UTC of the moment TAI + r_heliocentric.n / c.
//   HJD uses the same observer as BJD: with a site, the site (it changes HJD by at most 21 ms);
//   without, the Earth's centre. Not included, as in the usual reference computations: the
//   Shapiro delay (below 20 us unless the star is close to the Sun), the Einstein delay of the
//   observer beyond TDB, and the parallax of a star at a finite distance.
// Backward, to JD(UTC): by iteration. A guess UTC is converted forward, the difference to
//   the wanted time is added to the guess (in TAI seconds, so a leap second inside is
//   counted), and again; each step shrinks the error by the Earth's speed over c (1e-4), so
//   four or five steps reach 1e-13 d. HJD <-> BJD goes through JD(UTC).
//
// Times are carried as two-part Julian dates (JulianDate) through every ERFA call; the results
// are good to well below a microsecond of the chain above. UTC dates are ERFA's quasi-JDs: on
// a day with a leap second the day's fraction runs over 86401 seconds.
//
// Dates accepted: 1960-01-02 to 2099-12-31 (the range of ERFA's UTC and of eraEpv00). After
// 2026 the leap seconds are those ERFA knows (none announced), with a warning.
//
// A converter is a value: it holds no state beyond the star and the site, and ERFA's routines
// keep none, so one may be used from several threads at once.

#include "session/LightCurveData.h"
#include "times/JulianDate.h"
#include "times/SkyPosition.h"

#include <QString>

#include <optional>

namespace dip::times {

// The system a file's times are in, as a converter takes it: Unstated means HJD(UTC), the
// program's own name for its times.
TimeSystem effectiveSystem(TimeSystem system);

// "JD(UTC)", "HJD(UTC)", "BJD_TDB" (Unstated: "HJD(UTC)").
QString timeSystemName(TimeSystem system);

// The console's words: "jd", "hjd", "bjd" (case ignored).
QString timeSystemKey(TimeSystem system);
bool parseTimeSystemKey(const QString& text, TimeSystem* system);

struct Converted {
    bool ok = false;
    JulianDate time;
    QString error;   // set when !ok
    QString warning; // set when the date is beyond the leap seconds ERFA knows
};

// The pieces of one forward conversion, for checks and reports.
struct Corrections {
    JulianDate tai;
    JulianDate tt;
    JulianDate tdb;
    double earthHelio[3] = {0, 0, 0}; // observer relative to the Sun's centre, au
    double earthBary[3] = {0, 0, 0};  // observer relative to the barycentre, au
    double heliocentricDelay = 0;     // seconds, r_helio.n / c
    double barycentricDelay = 0;      // seconds, r_bary.n / c
};

class TimeConverter {
public:
    explicit TimeConverter(const Star& star, std::optional<Site> site = std::nullopt);

    // The time t, given in system from, in system to.
    Converted convert(const JulianDate& t, TimeSystem from, TimeSystem to) const;

    // The forward chain at a JD(UTC); false (with *error) for a date outside the range.
    bool corrections(const JulianDate& utc, Corrections* out, QString* error) const;

    const Star& star() const { return m_star; }
    const std::optional<Site>& site() const { return m_site; }

private:
    Converted fromUtc(const JulianDate& utc, TimeSystem to) const;
    Converted toUtc(const JulianDate& t, TimeSystem from) const;

    Star m_star;
    std::optional<Site> m_site;
};

// Checks that a date is one a converter takes; the message says why not (a five-digit or
// reduced date is told to be given in full).
bool checkConvertibleDate(const JulianDate& t, QString* error);

} // namespace dip::times
