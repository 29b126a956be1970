// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "times/TimeConversion.h"

#include <erfa.h>
#include <erfam.h>

#include <cmath>

namespace dip::times {

namespace {

// 1960-01-02 and 2099-12-31, 0h: inside ERFA's UTC (from 1960) and eraEpv00 (1900-2100), with a
// day to spare for the corrections, which never exceed ten minutes.
constexpr double firstDate = 2436935.5;
constexpr double lastDate = 2488068.5;

double dot(const double a[3], const double b[3]) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

JulianDate two(double a, double b) { return JulianDate{a, b}.normalized(); }

// TAI from a UTC quasi-JD; false outside ERFA's UTC.
bool utcToTai(const JulianDate& utc, JulianDate* tai, bool* dubious)
{
    double t1 = 0, t2 = 0;
    const int status = eraUtctai(utc.day, utc.fraction, &t1, &t2);
    if (status < 0)
        return false;
    if (status > 0)
        *dubious = true;
    *tai = two(t1, t2);
    return true;
}

bool taiToUtc(const JulianDate& tai, JulianDate* utc, bool* dubious)
{
    double u1 = 0, u2 = 0;
    const int status = eraTaiutc(tai.day, tai.fraction, &u1, &u2);
    if (status < 0)
        return false;
    if (status > 0)
        *dubious = true;
    *utc = two(u1, u2);
    return true;
}

QString leapSecondWarning()
{
    return QStringLiteral("the date lies beyond the leap seconds known to ERFA; the last known one is used");
}

} // namespace

TimeSystem effectiveSystem(TimeSystem system) { return system == TimeSystem::Unstated ? TimeSystem::HJD_UTC : system; }

QString timeSystemName(TimeSystem system)
{
    switch (effectiveSystem(system)) {
    case TimeSystem::JD_UTC: return QStringLiteral("JD(UTC)");
    case TimeSystem::BJD_TDB: return QStringLiteral("BJD_TDB");
    default: return QStringLiteral("HJD(UTC)");
    }
}

QString timeSystemKey(TimeSystem system)
{
    switch (effectiveSystem(system)) {
    case TimeSystem::JD_UTC: return QStringLiteral("jd");
    case TimeSystem::BJD_TDB: return QStringLiteral("bjd");
    default: return QStringLiteral("hjd");
    }
}

bool parseTimeSystemKey(const QString& text, TimeSystem* system)
{
    const QString key = text.trimmed().toLower();
    if (key == QLatin1String("jd"))
        *system = TimeSystem::JD_UTC;
    else if (key == QLatin1String("hjd"))
        *system = TimeSystem::HJD_UTC;
    else if (key == QLatin1String("bjd"))
        *system = TimeSystem::BJD_TDB;
    else
        return false;
    return true;
}

bool checkConvertibleDate(const JulianDate& t, QString* error)
{
    const double jd = t.value();
    if (!std::isfinite(jd)) {
        *error = QStringLiteral("the time is not a number");
        return false;
    }
    if (jd < 2400000) {
        *error = QStringLiteral("%1 is not a full Julian date; a five-digit or reduced time needs its "
                                "days added back (59123.5 is 2459123.5)")
                     .arg(formatJulianDate(t, 5));
        return false;
    }
    if (jd < firstDate || jd > lastDate) {
        *error = QStringLiteral("%1 lies outside 1960-2099, the dates a time system can be converted for")
                     .arg(formatJulianDate(t, 5));
        return false;
    }
    return true;
}

TimeConverter::TimeConverter(const Star& star, std::optional<Site> site) : m_star(star), m_site(site) {}

bool TimeConverter::corrections(const JulianDate& utcIn, Corrections* out, QString* error) const
{
    const JulianDate utc = utcIn.normalized();
    if (!checkConvertibleDate(utc, error))
        return false;
    bool dubious = false;
    Corrections c;
    if (!utcToTai(utc, &c.tai, &dubious)) {
        *error = QStringLiteral("%1 is not a date ERFA can give in UTC").arg(formatJulianDate(utc, 5));
        return false;
    }
    double tt1 = 0, tt2 = 0;
    eraTaitt(c.tai.day, c.tai.fraction, &tt1, &tt2);
    c.tt = two(tt1, tt2);

    // The site: geocentric position in the terrestrial frame (metres), and the distances from
    // the Earth's axis and from the equator's plane (km) that the diurnal TDB terms take.
    double elong = 0, siteItrs[3] = {0, 0, 0}, u = 0, v = 0;
    if (m_site) {
        elong = m_site->longitude * ERFA_DD2R;
        if (eraGd2gc(ERFA_WGS84, elong, m_site->latitude * ERFA_DD2R, m_site->height, siteItrs) != 0) {
            *error = QStringLiteral("the site is not a place on the Earth");
            return false;
        }
        u = std::hypot(siteItrs[0], siteItrs[1]) / 1000.0;
        v = siteItrs[2] / 1000.0;
    }
    // UT1 from UTC with UT1 - UTC taken as 0 (it stays within 0.9 s: half a metre of the site's
    // turn); eraUtcut1 counts a leap second into it, so inside one the Earth does not turn back.
    double ut11 = 0, ut12 = 0;
    if (eraUtcut1(utc.day, utc.fraction, 0.0, &ut11, &ut12) < 0) {
        *error = QStringLiteral("%1 is not a date ERFA can give in UT1").arg(formatJulianDate(utc, 5));
        return false;
    }
    const JulianDate ut1 = two(ut11, ut12);
    // The fraction of the UT1 day from midnight.
    const double ut = std::fmod(ut1.fraction + 0.5, 1.0);
    const double dtdb = eraDtdb(c.tt.day, c.tt.fraction, ut, elong, u, v);
    c.tdb = c.tt.plusDays(dtdb / ERFA_DAYSEC);

    double pvh[2][3], pvb[2][3];
    eraEpv00(c.tdb.day, c.tdb.fraction, pvh, pvb); // status 1 only outside 1900-2100
    for (int k = 0; k < 3; ++k) {
        c.earthHelio[k] = pvh[0][k];
        c.earthBary[k] = pvb[0][k];
    }
    if (m_site) {
        double rc2t[3][3], siteGcrs[3];
        eraC2t06a(c.tt.day, c.tt.fraction, ut1.day, ut1.fraction, 0.0, 0.0, rc2t);
        eraTrxp(rc2t, siteItrs, siteGcrs);
        for (int k = 0; k < 3; ++k) {
            c.earthHelio[k] += siteGcrs[k] / ERFA_DAU;
            c.earthBary[k] += siteGcrs[k] / ERFA_DAU;
        }
    }
    double n[3];
    eraS2c(m_star.ra * ERFA_DD2R, m_star.dec * ERFA_DD2R, n);
    c.heliocentricDelay = dot(c.earthHelio, n) * ERFA_AULT;
    c.barycentricDelay = dot(c.earthBary, n) * ERFA_AULT;
    *out = c;
    return true;
}

Converted TimeConverter::fromUtc(const JulianDate& utc, TimeSystem to) const
{
    Converted r;
    Corrections c;
    if (!corrections(utc, &c, &r.error))
        return r;
    bool dubious = false;
    switch (effectiveSystem(to)) {
    case TimeSystem::JD_UTC: r.time = utc.normalized(); break;
    case TimeSystem::BJD_TDB: r.time = c.tdb.plusDays(c.barycentricDelay / ERFA_DAYSEC); break;
    default:
        // The delay in SI seconds, counted in TAI, then given back in UTC.
        if (!taiToUtc(c.tai.plusDays(c.heliocentricDelay / ERFA_DAYSEC), &r.time, &dubious)) {
            r.error = QStringLiteral("the heliocentric time is not a date ERFA can give in UTC");
            return r;
        }
    }
    bool dubiousUtc = false;
    JulianDate scratch;
    utcToTai(utc.normalized(), &scratch, &dubiousUtc);
    if (dubious || dubiousUtc)
        r.warning = leapSecondWarning();
    r.ok = true;
    return r;
}

Converted TimeConverter::toUtc(const JulianDate& target, TimeSystem from) const
{
    const TimeSystem system = effectiveSystem(from);
    Converted r;
    if (!checkConvertibleDate(target, &r.error))
        return r;
    if (system == TimeSystem::JD_UTC) {
        r.ok = true;
        r.time = target.normalized();
        return r;
    }
    // Start from the time itself read as UTC (at most ten minutes off) and correct the guess
    // by the difference its forward conversion leaves, counted in TAI seconds.
    JulianDate utc = target.normalized();
    for (int step = 0; step < 12; ++step) {
        const Converted forward = fromUtc(utc, system);
        if (!forward.ok)
            return forward;
        const double miss = daysBetween(target, forward.time);
        if (miss == 0.0)
            break;
        bool dubious = false;
        JulianDate tai;
        if (!utcToTai(utc, &tai, &dubious) || !taiToUtc(tai.plusDays(miss), &utc, &dubious)) {
            r.error = QStringLiteral("%1 cannot be given in UTC").arg(formatJulianDate(target, 5));
            return r;
        }
        if (std::fabs(miss) < 1e-14)
            break;
    }
    r = fromUtc(utc, TimeSystem::JD_UTC);
    return r;
}

Converted TimeConverter::convert(const JulianDate& t, TimeSystem from, TimeSystem to) const
{
    from = effectiveSystem(from);
    to = effectiveSystem(to);
    if (from == to) {
        Converted r;
        if (!checkConvertibleDate(t, &r.error))
            return r;
        r.ok = true;
        r.time = t.normalized();
        return r;
    }
    const Converted utc = toUtc(t, from);
    if (!utc.ok || to == TimeSystem::JD_UTC)
        return utc;
    Converted r = fromUtc(utc.time, to);
    if (r.ok && r.warning.isEmpty())
        r.warning = utc.warning;
    return r;
}

} // namespace dip::times
