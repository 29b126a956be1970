// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "times/JulianDate.h"
#include "times/SkyPosition.h"
#include "times/TimeConversion.h"

#include <QFile>
#include <QStringList>
#include <QTest>

#include <cmath>
#include <vector>

using namespace dip;
using namespace dip::times;

namespace {

// Ten microseconds: the accuracy the conversions are held to.
constexpr double toleranceSeconds = 10e-6;

struct Reference {
    QString name;
    Star star;
    std::optional<Site> site;
    QString civil;
    JulianDate jd, hjd, bjd;
};

std::vector<Reference> readReferences()
{
    const QString path =
        qEnvironmentVariable("DIPSCOPE_SOURCE_DIR") + QStringLiteral("/tests/times/time-references.csv");
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly | QIODevice::Text))
        qFatal("cannot read %s", qPrintable(path));
    std::vector<Reference> rows;
    while (!f.atEnd()) {
        const QString line = QString::fromUtf8(f.readLine()).trimmed();
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        const QStringList c = line.split(QLatin1Char(','));
        if (c.size() != 11)
            qFatal("bad reference line %s", qPrintable(line));
        Reference r;
        r.name = c[0];
        r.star = Star{c[1].toDouble(), c[2].toDouble()};
        if (!c[3].isEmpty()) {
            const QStringList s = c[3].split(QLatin1Char(' '));
            r.site = Site{s[0].toDouble(), s[1].toDouble(), s[2].toDouble()};
        }
        r.civil = c[4];
        if (!parseJulianDate(c[5], &r.jd) || !parseJulianDate(c[6], &r.hjd) || !parseJulianDate(c[7], &r.bjd))
            qFatal("bad reference times %s", qPrintable(line));
        rows.push_back(r);
    }
    return rows;
}

// Low-precision solar coordinates (the Astronomical Almanac's formulae, good to 0.01 degree
// and 1e-4 au in the years 1950-2050), with the equinox of date carried back to J2000 by the
// general precession in longitude: no ERFA at all. Returns the light time of the Earth's
// centre relative to the Sun along the star's direction, r_helio.n / c, in seconds.
double lowPrecisionHeliocentricDelay(double jdTT, const Star& star)
{
    const double pi = 3.14159265358979323846;
    const double rad = pi / 180.0;
    const double n = jdTT - 2451545.0;
    const double L = 280.460 + 0.9856474 * n;
    const double g = (357.528 + 0.9856003 * n) * rad;
    const double lambdaOfDate = L + 1.915 * std::sin(g) + 0.020 * std::sin(2 * g);
    const double lambda = (lambdaOfDate - 1.396971 * n / 36525.0) * rad;
    const double R = 1.00014 - 0.01671 * std::cos(g) - 0.00014 * std::cos(2 * g);
    const double eps = 23.4392911 * rad;
    // The Sun as seen from the Earth, equatorial J2000; the Earth from the Sun is its opposite.
    const double sun[3] = {R * std::cos(lambda), R * std::sin(lambda) * std::cos(eps),
                           R * std::sin(lambda) * std::sin(eps)};
    const double ra = star.ra * rad, dec = star.dec * rad;
    const double nvec[3] = {std::cos(dec) * std::cos(ra), std::cos(dec) * std::sin(ra), std::sin(dec)};
    const double lightSecondsPerAu = 149597870700.0 / 299792458.0;
    return -(sun[0] * nvec[0] + sun[1] * nvec[1] + sun[2] * nvec[2]) * lightSecondsPerAu;
}

// TAI - UTC from the IERS announcements of leap seconds since 1994 (dates of 0h UTC as JD).
double taiMinusUtc(double jdUtc)
{
    struct Step {
        double from;
        double seconds;
    };
    static const Step steps[] = {{2449534.5, 29}, {2450083.5, 30}, {2450630.5, 31}, {2451179.5, 32}, {2453736.5, 33},
                                 {2454832.5, 34}, {2456109.5, 35}, {2457204.5, 36}, {2457754.5, 37}};
    double s = 28;
    for (const Step& step : steps)
        if (jdUtc >= step.from)
            s = step.seconds;
    return s;
}

bool nearLeapSecond(double jdUtc)
{
    for (const double leap : {2450083.5, 2450630.5, 2451179.5, 2453736.5, 2454832.5, 2456109.5, 2457204.5, 2457754.5})
        if (std::fabs(jdUtc - leap) < 0.02)
            return true;
    return false;
}

} // namespace

class TimeReferencesTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void tableCoversWhatItMust();
    void everyConversionWithinTenMicroseconds_data();
    void everyConversionWithinTenMicroseconds();
    void heliocentricCorrectionAgainstLowPrecisionSun_data();
    void heliocentricCorrectionAgainstLowPrecisionSun();
    void cleanupTestCase();

private:
    std::vector<Reference> m_rows = readReferences();
    double m_worst = 0; // the largest difference to the table seen, seconds
};

void TimeReferencesTest::tableCoversWhatItMust()
{
    QVERIFY(m_rows.size() >= 100);
    int withSite = 0, southern = 0, leapDay = 0, inLeapSecond = 0;
    double first = 1e9, last = 0;
    for (const Reference& r : m_rows) {
        withSite += r.site ? 1 : 0;
        southern += r.star.dec < -30 ? 1 : 0;
        leapDay += r.civil.startsWith(QLatin1String("2016-12-31")) ? 1 : 0;
        inLeapSecond += r.civil.contains(QLatin1String("T23:59:60")) ? 1 : 0;
        first = std::min(first, r.jd.value());
        last = std::max(last, r.jd.value());
    }
    QVERIFY(withSite > 0 && withSite < int(m_rows.size()));
    QVERIFY(southern > 0);
    QVERIFY(leapDay > 0);
    QVERIFY(inLeapSecond > 0);
    QVERIFY(first < 2450000.0); // 1995
    QVERIFY(last > 2461000.0);  // 2026
}

void TimeReferencesTest::everyConversionWithinTenMicroseconds_data()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < int(m_rows.size()); ++i) {
        const Reference& r = m_rows[std::size_t(i)];
        QTest::addRow("%s %s%s", qPrintable(r.name), qPrintable(r.civil), r.site ? " site" : "") << i;
    }
}

void TimeReferencesTest::everyConversionWithinTenMicroseconds()
{
    QFETCH(int, index);
    const Reference& r = m_rows[std::size_t(index)];
    const TimeConverter c(r.star, r.site);
    struct Case {
        TimeSystem from;
        JulianDate given;
        TimeSystem to;
        JulianDate expected;
    };
    const Case cases[] = {
        {TimeSystem::JD_UTC, r.jd, TimeSystem::HJD_UTC, r.hjd},
        {TimeSystem::JD_UTC, r.jd, TimeSystem::BJD_TDB, r.bjd},
        {TimeSystem::HJD_UTC, r.hjd, TimeSystem::JD_UTC, r.jd},
        {TimeSystem::BJD_TDB, r.bjd, TimeSystem::JD_UTC, r.jd},
        {TimeSystem::HJD_UTC, r.hjd, TimeSystem::BJD_TDB, r.bjd},
        {TimeSystem::BJD_TDB, r.bjd, TimeSystem::HJD_UTC, r.hjd},
    };
    for (const Case& k : cases) {
        const Converted got = c.convert(k.given, k.from, k.to);
        QVERIFY2(got.ok, qPrintable(got.error));
        const double miss = daysBetween(got.time, k.expected) * 86400.0;
        m_worst = std::max(m_worst, std::fabs(miss));
        QVERIFY2(std::fabs(miss) <= toleranceSeconds,
                 qPrintable(QStringLiteral("%1 -> %2: %3 instead of %4, %5 us off")
                                .arg(timeSystemName(k.from), timeSystemName(k.to), formatJulianDate(got.time, 12),
                                     formatJulianDate(k.expected, 12))
                                .arg(miss * 1e6)));
    }
}

void TimeReferencesTest::heliocentricCorrectionAgainstLowPrecisionSun_data()
{
    QTest::addColumn<double>("ra");
    QTest::addColumn<double>("dec");
    QTest::newRow("ecliptic 0h") << 0.0 << 0.0;
    QTest::newRow("ecliptic 6h") << 90.0 << 23.44;
    QTest::newRow("ecliptic 12h") << 180.0 << 0.0;
    QTest::newRow("CM Dra") << 248.584583 << 57.162306;
    QTest::newRow("LMC field") << 80.89375 << -69.756111;
    QTest::newRow("north ecliptic pole") << 270.0 << 66.56;
}

void TimeReferencesTest::heliocentricCorrectionAgainstLowPrecisionSun()
{
    // A sign error, swapped axes or a wrong frame in the ERFA chain (and in the reference
    // script, which shares the library) would show here as tens or hundreds of seconds.
    QFETCH(double, ra);
    QFETCH(double, dec);
    const Star star{ra, dec};
    const TimeConverter c(star);
    int checked = 0;
    for (double jd = 2449718.5 + 0.3; jd < 2461406.5; jd += 37.3) { // 1995 to 2026
        if (nearLeapSecond(jd))
            continue;
        const JulianDate utc = JulianDate::fromDouble(jd);
        const double ttMinusUtc = taiMinusUtc(jd) + 32.184;
        const double expected = lowPrecisionHeliocentricDelay(jd + ttMinusUtc / 86400.0, star);
        const Converted hjd = c.convert(utc, TimeSystem::JD_UTC, TimeSystem::HJD_UTC);
        const Converted bjd = c.convert(utc, TimeSystem::JD_UTC, TimeSystem::BJD_TDB);
        QVERIFY(hjd.ok && bjd.ok);
        const double hjdShift = daysBetween(hjd.time, utc) * 86400.0;
        QVERIFY2(std::fabs(hjdShift - expected) < 1.0,
                 qPrintable(QStringLiteral("JD %1: HJD - JD = %2 s, low-precision Sun %3 s")
                                .arg(jd, 0, 'f', 2)
                                .arg(hjdShift)
                                .arg(expected)));
        // BJD_TDB - JD(UTC): TT - UTC, TDB - TT (< 2 ms), the delay to the barycentre, which
        // differs from the heliocentric one by the Sun's distance from the barycentre (< 0.0102
        // au, 5.1 s).
        const double bjdShift = daysBetween(bjd.time, utc) * 86400.0;
        QVERIFY2(std::fabs(bjdShift - ttMinusUtc - expected) < 6.1,
                 qPrintable(QStringLiteral("JD %1: BJD - JD = %2 s").arg(jd, 0, 'f', 2).arg(bjdShift)));
        ++checked;
    }
    QVERIFY(checked > 300);
}

void TimeReferencesTest::cleanupTestCase()
{
    qInfo("largest difference to the reference table: %.3f microseconds", m_worst * 1e6);
}

QTEST_APPLESS_MAIN(TimeReferencesTest)
#include "tst_time_references.moc"
