// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "times/JulianDate.h"
#include "times/SkyPosition.h"
#include "times/TimeConversion.h"

#include <QTest>

#include <cmath>

using namespace dip;
using namespace dip::times;

namespace {

// Two-part dates compared part by part, so that the check itself loses nothing.
double secondsBetween(const JulianDate& a, const JulianDate& b) { return daysBetween(a, b) * 86400.0; }

const Star cmDra{248.584583, 57.162306};

} // namespace

class TimesTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void parseDates_data();
    void parseDates();
    void refusedDates_data();
    void refusedDates();
    void formatRoundsWithCarry_data();
    void formatRoundsWithCarry();
    void everyTypedDigitCounts();
    void rightAscension_data();
    void rightAscension();
    void declination_data();
    void declination();
    void sites_data();
    void sites();
    void systemNamesAndKeys();
    void sameSystemIsIdentity();
    void roundTrips_data();
    void roundTrips();
    void leapSecondCountedInTai();
    void siteMovesTimesByMilliseconds();
    void datesOutsideTheRange_data();
    void datesOutsideTheRange();
    void beyondKnownLeapSecondsWarns();
};

void TimesTest::parseDates_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("day");
    QTest::addColumn<double>("fraction");
    QTest::newRow("full JD") << "2459123.51234" << 2459123.0 << 0.51234;
    QTest::newRow("blanks around") << "  2459123.25 " << 2459123.0 << 0.25;
    QTest::newRow("no decimals") << "2459123" << 2459123.0 << 0.0;
    QTest::newRow("point only before decimals") << ".5" << 0.0 << 0.5;
    QTest::newRow("trailing point") << "2459123." << 2459123.0 << 0.0;
    QTest::newRow("exponent") << "2.4591235E6" << 2459123.0 << 0.5;
    QTest::newRow("long fraction") << "2459123.123456789012345" << 2459123.0 << 0.123456789012345;
}

void TimesTest::parseDates()
{
    QFETCH(QString, text);
    QFETCH(double, day);
    QFETCH(double, fraction);
    JulianDate d;
    QVERIFY(parseJulianDate(text, &d));
    QCOMPARE(d.day, day);
    QCOMPARE(d.fraction, fraction);
}

void TimesTest::refusedDates_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << "";
    QTest::newRow("sign") << "-2459123.5";
    QTest::newRow("plus sign") << "+2459123.5";
    QTest::newRow("letters") << "2459123.5x";
    QTest::newRow("two points") << "2459123.5.1";
    QTest::newRow("comma") << "2459123,5";
    QTest::newRow("point alone") << ".";
    QTest::newRow("nan") << "nan";
    QTest::newRow("blank inside") << "2459123. 5";
}

void TimesTest::refusedDates()
{
    QFETCH(QString, text);
    JulianDate d{7, 0.25};
    QVERIFY(!parseJulianDate(text, &d));
    QCOMPARE(d.day, 7.0); // left alone
    QCOMPARE(d.fraction, 0.25);
}

void TimesTest::formatRoundsWithCarry_data()
{
    QTest::addColumn<double>("day");
    QTest::addColumn<double>("fraction");
    QTest::addColumn<int>("decimals");
    QTest::addColumn<QString>("text");
    QTest::newRow("plain") << 2459123.0 << 0.51234 << 10 << "2459123.5123400000";
    QTest::newRow("carry into the day") << 2459123.0 << 0.99999999999 << 10 << "2459124.0000000000";
    QTest::newRow("half rounds up") << 2459123.0 << 0.125 << 2 << "2459123.13";
    QTest::newRow("fraction above one normalised") << 2459123.0 << 1.25 << 3 << "2459124.250";
    QTest::newRow("negative fraction normalised") << 2459123.0 << -0.25 << 3 << "2459122.750";
    QTest::newRow("no decimals") << 2459123.0 << 0.4 << 0 << "2459123";
    QTest::newRow("small value") << 0.0 << 0.0001 << 5 << "0.00010";
}

void TimesTest::formatRoundsWithCarry()
{
    QFETCH(double, day);
    QFETCH(double, fraction);
    QFETCH(int, decimals);
    QFETCH(QString, text);
    QCOMPARE(formatJulianDate(JulianDate{day, fraction}, decimals), text);
}

void TimesTest::everyTypedDigitCounts()
{
    // A full JD in one double cannot hold 1e-10 d; the two parts can, from text to text.
    const QString typed = QStringLiteral("2459123.5123456789");
    JulianDate d;
    QVERIFY(parseJulianDate(typed, &d));
    QCOMPARE(formatJulianDate(d, 10), typed);
    const double single = typed.toDouble();
    QVERIFY(formatJulianDate(JulianDate::fromDouble(single), 10) != typed);
    // One tenth of a microsecond later is a different text.
    QCOMPARE(formatJulianDate(d.plusDays(1e-10), 10), QStringLiteral("2459123.5123456790"));
}

void TimesTest::rightAscension_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<double>("degrees");
    const double cm = (16 + 34 / 60.0 + 20.33 / 3600.0) * 15;
    QTest::newRow("degrees") << "248.5846" << true << 248.5846;
    QTest::newRow("degrees with d") << "248.5846d" << true << 248.5846;
    QTest::newRow("degrees with sign of degrees") << "248.5846\u00B0" << true << 248.5846;
    QTest::newRow("hours with h") << "16.5h" << true << 247.5;
    QTest::newRow("colons") << "16:34:20.33" << true << cm;
    QTest::newRow("blanks") << "16 34 20.33" << true << cm;
    QTest::newRow("letters") << "16h34m20.33s" << true << cm;
    QTest::newRow("decimal minutes") << "16:34.5" << true << (16 + 34.5 / 60) * 15;
    QTest::newRow("zero") << "0:00:00" << true << 0.0;
    QTest::newRow("24 hours") << "24:00:00" << false << 0.0;
    QTest::newRow("360 degrees") << "360" << false << 0.0;
    QTest::newRow("sign") << "-10" << false << 0.0;
    QTest::newRow("60 minutes") << "16:60:00" << false << 0.0;
    QTest::newRow("60 seconds") << "16:34:60" << false << 0.0;
    QTest::newRow("four fields") << "16:34:20:1" << false << 0.0;
    QTest::newRow("decimal hours with minutes") << "16.5:34:20" << false << 0.0;
    QTest::newRow("text") << "abc" << false << 0.0;
    QTest::newRow("empty") << "" << false << 0.0;
    QTest::newRow("24 hours with h") << "24h" << false << 0.0;
}

void TimesTest::rightAscension()
{
    QFETCH(QString, text);
    QFETCH(bool, ok);
    QFETCH(double, degrees);
    const Angle a = parseRightAscension(text);
    QCOMPARE(a.ok, ok);
    if (ok) {
        QVERIFY(std::fabs(a.degrees - degrees) < 1e-12);
        QVERIFY(a.error.isEmpty());
    } else {
        // The message names what was typed.
        QVERIFY2(a.error.startsWith(QStringLiteral("RA \"%1\": ").arg(text)), qPrintable(a.error));
    }
}

void TimesTest::declination_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<double>("degrees");
    const double cm = 57 + 9 / 60.0 + 44.3 / 3600.0;
    QTest::newRow("degrees") << "57.1623" << true << 57.1623;
    QTest::newRow("negative degrees with d") << "-5.25d" << true << -5.25;
    QTest::newRow("colons with sign") << "+57:09:44.3" << true << cm;
    QTest::newRow("blanks") << "57 09 44.3" << true << cm;
    QTest::newRow("letters") << "57d09m44.3s" << true << cm;
    QTest::newRow("degree, minute, second signs") << "57\u00B009'44.3\"" << true << cm;
    QTest::newRow("minus zero degrees") << "-00:30:00" << true << -0.5;
    QTest::newRow("minus zero with blanks") << "-0 30 0" << true << -0.5;
    QTest::newRow("typographic minus") << "\u221200:30:00" << true << -0.5;
    QTest::newRow("pole") << "-90:00:00" << true << -90.0;
    QTest::newRow("decimal minutes") << "-12:30.5" << true << -(12 + 30.5 / 60);
    QTest::newRow("beyond the pole") << "91" << false << 0.0;
    QTest::newRow("beyond the pole by a second") << "90:00:01" << false << 0.0;
    QTest::newRow("60 minutes") << "57:60:00" << false << 0.0;
    QTest::newRow("decimal minutes not last") << "5:3.5:2" << false << 0.0;
    QTest::newRow("two signs") << "--5" << false << 0.0;
    QTest::newRow("text") << "x" << false << 0.0;
}

void TimesTest::declination()
{
    QFETCH(QString, text);
    QFETCH(bool, ok);
    QFETCH(double, degrees);
    const Angle a = parseDeclination(text);
    QCOMPARE(a.ok, ok);
    if (ok)
        QVERIFY(std::fabs(a.degrees - degrees) < 1e-12);
    else
        QVERIFY2(a.error.startsWith(QStringLiteral("Dec \"%1\": ").arg(text)), qPrintable(a.error));
}

void TimesTest::sites_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<double>("lat");
    QTest::addColumn<double>("lon");
    QTest::addColumn<double>("height");
    QTest::newRow("decimal") << "49.398,8.720,570" << true << 49.398 << 8.72 << 570.0;
    QTest::newRow("sexagesimal, west negative, metres")
        << "-29:15:25,-70:44:17,2400m" << true << -(29 + 15 / 60.0 + 25 / 3600.0) << -(70 + 44 / 60.0 + 17 / 3600.0)
        << 2400.0;
    QTest::newRow("east longitude beyond 180") << "19.826, 204.526, 4205" << true << 19.826 << 204.526 << 4205.0;
    QTest::newRow("below the sea") << "31.5,35.5,-400" << true << 31.5 << 35.5 << -400.0;
    QTest::newRow("two fields") << "49,8" << false << 0.0 << 0.0 << 0.0;
    QTest::newRow("latitude beyond the pole") << "95,8,0" << false << 0.0 << 0.0 << 0.0;
    QTest::newRow("longitude beyond 360") << "49,400,0" << false << 0.0 << 0.0 << 0.0;
    QTest::newRow("height not a number") << "49,8,abc" << false << 0.0 << 0.0 << 0.0;
    QTest::newRow("height in space") << "49,8,20000" << false << 0.0 << 0.0 << 0.0;
}

void TimesTest::sites()
{
    QFETCH(QString, text);
    QFETCH(bool, ok);
    const ParsedSite s = parseSite(text);
    QCOMPARE(s.ok, ok);
    if (!ok) {
        QVERIFY(!s.error.isEmpty());
        QVERIFY2(s.error.contains(QLatin1String("site")), qPrintable(s.error));
        return;
    }
    QFETCH(double, lat);
    QFETCH(double, lon);
    QFETCH(double, height);
    QVERIFY(std::fabs(s.site.latitude - lat) < 1e-12);
    QVERIFY(std::fabs(s.site.longitude - lon) < 1e-12);
    QCOMPARE(s.site.height, height);
}

void TimesTest::systemNamesAndKeys()
{
    QCOMPARE(timeSystemName(TimeSystem::JD_UTC), QStringLiteral("JD(UTC)"));
    QCOMPARE(timeSystemName(TimeSystem::HJD_UTC), QStringLiteral("HJD(UTC)"));
    QCOMPARE(timeSystemName(TimeSystem::BJD_TDB), QStringLiteral("BJD_TDB"));
    QCOMPARE(timeSystemName(TimeSystem::Unstated), QStringLiteral("HJD(UTC)"));
    for (const TimeSystem s : {TimeSystem::JD_UTC, TimeSystem::HJD_UTC, TimeSystem::BJD_TDB}) {
        TimeSystem back = TimeSystem::Unstated;
        QVERIFY(parseTimeSystemKey(timeSystemKey(s).toUpper(), &back));
        QCOMPARE(back, s);
    }
    TimeSystem unchanged = TimeSystem::JD_UTC;
    QVERIFY(!parseTimeSystemKey(QStringLiteral("tdb"), &unchanged));
    QCOMPARE(unchanged, TimeSystem::JD_UTC);
    QCOMPARE(effectiveSystem(TimeSystem::Unstated), TimeSystem::HJD_UTC);
}

void TimesTest::sameSystemIsIdentity()
{
    const TimeConverter c(cmDra);
    const JulianDate t{2458739.0, 0.9291169};
    for (const TimeSystem s : {TimeSystem::JD_UTC, TimeSystem::HJD_UTC, TimeSystem::BJD_TDB}) {
        const Converted r = c.convert(t, s, s);
        QVERIFY(r.ok);
        QCOMPARE(r.time.day, t.day);
        QCOMPARE(r.time.fraction, t.fraction);
    }
    // Unstated is HJD(UTC).
    const Converted unstated = c.convert(t, TimeSystem::Unstated, TimeSystem::HJD_UTC);
    QCOMPARE(unstated.time.fraction, t.fraction);
}

void TimesTest::roundTrips_data()
{
    QTest::addColumn<double>("day");
    QTest::addColumn<double>("fraction");
    QTest::addColumn<bool>("withSite");
    QTest::newRow("1961, drifting UTC") << 2437400.0 << 0.3 << false;
    QTest::newRow("1995") << 2449797.0 << 0.1368 << false;
    QTest::newRow("leap-second day, in the leap second") << 2457754.0 << 0.49999421 << false;
    QTest::newRow("leap-second day, with a site") << 2457754.0 << 0.4999 << true;
    QTest::newRow("just after a leap second") << 2457754.0 << 0.50001 << true;
    QTest::newRow("2019, with a site") << 2458741.0 << 0.659722 << true;
    QTest::newRow("2026") << 2461213.0 << 0.41 << false;
}

void TimesTest::roundTrips()
{
    QFETCH(double, day);
    QFETCH(double, fraction);
    QFETCH(bool, withSite);
    std::optional<Site> site;
    if (withSite)
        site = Site{-29.257, -70.738, 2400};
    const TimeConverter c(cmDra, site);
    const JulianDate utc{day, fraction};
    const TimeSystem systems[] = {TimeSystem::JD_UTC, TimeSystem::HJD_UTC, TimeSystem::BJD_TDB};
    for (const TimeSystem from : systems) {
        for (const TimeSystem to : systems) {
            const Converted there = c.convert(utc, from, to);
            QVERIFY2(there.ok, qPrintable(there.error));
            const Converted back = c.convert(there.time, to, from);
            QVERIFY2(back.ok, qPrintable(back.error));
            // Back within a nanosecond: the iteration goes on until it has nothing left to add.
            QVERIFY2(std::fabs(secondsBetween(back.time, utc)) < 1e-9,
                     qPrintable(QStringLiteral("%1 -> %2 -> back: %3 s")
                                    .arg(timeSystemName(from), timeSystemName(to))
                                    .arg(secondsBetween(back.time, utc))));
        }
    }
}

void TimesTest::leapSecondCountedInTai()
{
    // 2016-12-31 had 86401 seconds, and its UTC quasi-JD runs over them. The star's delay of
    // about -44 s moves a time 5 s into 2017 back into the leap-second day; the delay is
    // counted in SI seconds through TAI, so the last |delay| - 5 seconds of the long day take
    // (|delay| - 5) / 86401 of its label, not / 86400.
    const TimeConverter c(cmDra);
    const JulianDate utc{2457754.0, 0.5 + 5.0 / 86400.0}; // 2017-01-01 00:00:05 UTC
    Corrections k;
    QString error;
    QVERIFY(c.corrections(utc, &k, &error));
    QVERIFY(k.heliocentricDelay < -30);
    const Converted hjd = c.convert(utc, TimeSystem::JD_UTC, TimeSystem::HJD_UTC);
    QVERIFY(hjd.ok);
    const double intoLeapDay = -k.heliocentricDelay - 5.0;
    const JulianDate expected{2457754.0, 0.5 - intoLeapDay / 86401.0};
    QVERIFY2(std::fabs(daysBetween(hjd.time, expected)) < 1e-12,
             qPrintable(formatJulianDate(hjd.time, 12) + QLatin1Char(' ') + formatJulianDate(expected, 12)));
    // Adding the delay to the label would be 0.46 ms off.
    const JulianDate naive = utc.plusDays(k.heliocentricDelay / 86400.0);
    QVERIFY(std::fabs(secondsBetween(naive, expected)) > 4e-4);
    // TAI - UTC is 37 s in 2017; TT - TAI is 32.184 s; TDB - TT below 2 ms.
    QVERIFY(std::fabs(secondsBetween(k.tai, utc) - 37.0) < 1e-6);
    QVERIFY(std::fabs(secondsBetween(k.tt, k.tai) - 32.184) < 1e-6);
    QVERIFY(std::fabs(secondsBetween(k.tdb, k.tt)) < 0.002);
}

void TimesTest::siteMovesTimesByMilliseconds()
{
    // The site is at most an Earth radius from the centre: 21 ms of light time.
    const JulianDate utc{2458741.0, 0.659722};
    const TimeConverter centre(cmDra);
    const TimeConverter mountain(cmDra, Site{19.826, -155.474, 4205});
    for (const TimeSystem to : {TimeSystem::HJD_UTC, TimeSystem::BJD_TDB}) {
        const double shift = secondsBetween(mountain.convert(utc, TimeSystem::JD_UTC, to).time,
                                            centre.convert(utc, TimeSystem::JD_UTC, to).time);
        QVERIFY2(std::fabs(shift) > 1e-5 && std::fabs(shift) < 0.0213, qPrintable(QString::number(shift)));
    }
}

void TimesTest::datesOutsideTheRange_data()
{
    QTest::addColumn<double>("day");
    QTest::addColumn<QString>("words");
    QTest::newRow("five-digit") << 59123.0 << "not a full Julian date";
    QTest::newRow("reduced by 2450000") << 9123.0 << "not a full Julian date";
    QTest::newRow("1950") << 2433283.0 << "outside 1960-2099";
    QTest::newRow("2150") << 2506332.0 << "outside 1960-2099";
}

void TimesTest::datesOutsideTheRange()
{
    QFETCH(double, day);
    QFETCH(QString, words);
    const TimeConverter c(cmDra);
    for (const TimeSystem from : {TimeSystem::JD_UTC, TimeSystem::HJD_UTC, TimeSystem::BJD_TDB}) {
        const Converted r = c.convert(JulianDate{day, 0.5}, from, TimeSystem::BJD_TDB);
        QVERIFY(!r.ok);
        QVERIFY2(r.error.contains(words), qPrintable(r.error));
    }
}

void TimesTest::beyondKnownLeapSecondsWarns()
{
    const TimeConverter c(cmDra);
    const Converted known = c.convert(JulianDate{2460000.0, 0.5}, TimeSystem::JD_UTC, TimeSystem::BJD_TDB);
    QVERIFY(known.ok);
    QVERIFY(known.warning.isEmpty());
    const Converted later = c.convert(JulianDate{2470000.0, 0.5}, TimeSystem::JD_UTC, TimeSystem::BJD_TDB);
    QVERIFY(later.ok);
    QVERIFY(later.warning.contains(QLatin1String("leap seconds")));
}

QTEST_APPLESS_MAIN(TimesTest)
#include "tst_times.moc"
