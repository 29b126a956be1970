// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/ConvertedResults.h"
#include "analysis/Toolkit.h"
#include "session/LoadDataFile.h"
#include "session/Results.h"
#include "session/Session.h"
#include "support/TestSupport.h"
#include "times/TimeConversion.h"

#include <QTest>

using namespace dip;
using times::JulianDate;

namespace {

// CM Dra, as the README's examples give it.
const times::Star cmDra{248.5847083, 57.1623056};

bool load(const QByteArray& text, bool subtract)
{
    static std::unique_ptr<test::DataFolder> folder;
    folder = std::make_unique<test::DataFolder>();
    test::freshSession();
    resetToolkit();
    S().SubtractWholeDays = subtract;
    folder->write(QStringLiteral("c.csv"), text);
    return OpenDataFile(folder->path(), QStringLiteral("c.csv"));
}

const QByteArray fullJd = "HJD,Mag\n2458739.90,11\n2458739.92,12\n2458739.94,11\n";

void setUpConversion(TimeSystem report, std::optional<times::Site> site = std::nullopt)
{
    Toolkit().star = cmDra;
    Toolkit().reportSystem = report;
    Toolkit().site = site;
}

double seconds(const JulianDate& a, const JulianDate& b) { return times::daysBetween(a, b) * 86400; }

} // namespace

class ConvertedResultsTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void publishedTimeKeepsEveryDigit();
    void publishedTimeWithoutOffset();
    void nothingWithoutStarOrSystem();
    void convertedAsTheConverterDoes();
    void fileSystemAsStated();
    void followsPublishingAndClearing();
    void loadDropsConvertedTimes();
    void reducedTimesAreRefused();
};

void ConvertedResultsTest::publishedTimeKeepsEveryDigit()
{
    QVERIFY(load(fullJd, true));
    PublishResult(1, 0.51234567890123, 0.0001);
    const JulianDate t = PublishedTime(1);
    QCOMPARE(t.day, 2458739.0);
    QCOMPARE(t.fraction, 0.51234567890123);
    // One double would have kept it only to 40 microseconds.
    QVERIFY(S().Results(1).time - 2458739 != 0.51234567890123);
}

void ConvertedResultsTest::publishedTimeWithoutOffset()
{
    QVERIFY(load(fullJd, false));
    PublishResult(2, 2458739.5123, 0.0001);
    const JulianDate t = PublishedTime(2);
    QCOMPARE(t.day, 2458739.0);
    QCOMPARE(t.day + t.fraction, 2458739.5123);
}

void ConvertedResultsTest::nothingWithoutStarOrSystem()
{
    QVERIFY(load(fullJd, true));
    PublishResult(1, 0.5, 0.0001);
    QVERIFY(!ConversionSetUp());
    QVERIFY(ConvertPublishedResults().empty());
    QVERIFY(!Toolkit().rows[1].convertedTime);
    Toolkit().star = cmDra;
    QVERIFY(!ConversionSetUp()); // no reporting system yet
    Toolkit().reportSystem = TimeSystem::BJD_TDB;
    QVERIFY(ConversionSetUp());
}

void ConvertedResultsTest::convertedAsTheConverterDoes()
{
    QVERIFY(load(fullJd, true));
    PublishResult(1, 0.92911, 0.0001);
    PublishResult(4, 0.92913, 0.0001);
    const times::Site site{49.398, 8.720, 570};
    setUpConversion(TimeSystem::BJD_TDB, site);
    const std::vector<RowConversion> rows = ConvertPublishedResults();
    QCOMPARE(int(rows.size()), 2);
    QCOMPARE(rows[0].method, 1);
    QCOMPARE(rows[1].method, 4);
    const times::TimeConverter converter(cmDra, site);
    for (const int k : {1, 4}) {
        const JulianDate expected = converter.convert(PublishedTime(k), TimeSystem::HJD_UTC, TimeSystem::BJD_TDB).time;
        const std::optional<JulianDate>& got = Toolkit().rows[std::size_t(k)].convertedTime;
        QVERIFY(got);
        QCOMPARE(got->day, expected.day);
        QCOMPARE(got->fraction, expected.fraction);
        // BJD_TDB runs ahead of HJD(UTC) by TDB - UTC (69.184 s in 2019) and the Sun's
        // distance from the barycentre (a few seconds).
        QVERIFY(std::abs(seconds(*got, PublishedTime(k)) - 69.184) < 5);
    }
    QVERIFY(!Toolkit().rows[2].convertedTime);
}

void ConvertedResultsTest::fileSystemAsStated()
{
    QVERIFY(load(fullJd, true));
    PublishResult(1, 0.92911, 0.0001);
    setUpConversion(TimeSystem::HJD_UTC);
    ConvertPublishedResults();
    // The file's times unstated are HJD(UTC): nothing to convert.
    QCOMPARE(times::daysBetween(*Toolkit().rows[1].convertedTime, PublishedTime(1)), 0.0);
    StateFileSystem(TimeSystem::JD_UTC);
    QCOMPARE(Toolkit().fileSystem, TimeSystem::JD_UTC);
    QCOMPARE(S().TimesSystem, TimeSystem::JD_UTC);
    ConvertPublishedResults();
    const times::TimeConverter converter(cmDra);
    const JulianDate expected = converter.convert(PublishedTime(1), TimeSystem::JD_UTC, TimeSystem::HJD_UTC).time;
    QCOMPARE(Toolkit().rows[1].convertedTime->fraction, expected.fraction);
    // That night the light time from the Earth to the Sun's centre along CM Dra's direction is
    // some -85 s (the README's example: BJD_TDB - JD(UTC) = -16.07 s, less TDB - UTC = 69.18 s).
    const double d = seconds(expected, PublishedTime(1));
    QVERIFY2(d > -95 && d < -75, qPrintable(QString::number(d)));
}

void ConvertedResultsTest::followsPublishingAndClearing()
{
    QVERIFY(load(fullJd, true));
    setUpConversion(TimeSystem::BJD_TDB);
    // Set up before the result: publishing converts it.
    PublishResult(3, 0.92911, 0.0001);
    QVERIFY(Toolkit().rows[3].convertedTime);
    const double first = Toolkit().rows[3].convertedTime->fraction;
    // Publishing again converts the new time, not the old (the light time changes by a tenth
    // of a second at most in a hundredth of a day).
    PublishResult(3, 0.93911, 0.0001);
    DIP_COMPARE_REL(Toolkit().rows[3].convertedTime->fraction - first, 0.01, 1e-4);
    ClearResult(3, true);
    QVERIFY(!Toolkit().rows[3].convertedTime);
}

void ConvertedResultsTest::loadDropsConvertedTimes()
{
    QVERIFY(load(fullJd, true));
    setUpConversion(TimeSystem::BJD_TDB);
    PublishResult(5, 0.92911, 0.0001);
    QVERIFY(Toolkit().rows[5].convertedTime);
    QVERIFY(OpenDataFile(S().DataDir, S().DataName));
    QVERIFY(!Toolkit().rows[5].convertedTime);
    // The star and the reporting system are the user's, and stay.
    QVERIFY(Toolkit().star);
    QCOMPARE(Toolkit().reportSystem, TimeSystem::BJD_TDB);
}

void ConvertedResultsTest::reducedTimesAreRefused()
{
    // Five-digit times without the switch: the converter wants full Julian dates.
    QVERIFY(load("t,m\n58739.90,11\n58739.92,12\n58739.94,11\n", false));
    PublishResult(1, 58739.92911, 0.0001);
    setUpConversion(TimeSystem::BJD_TDB);
    const std::vector<RowConversion> rows = ConvertPublishedResults();
    QCOMPARE(int(rows.size()), 1);
    QVERIFY(!rows[0].converted.ok);
    QVERIFY(rows[0].converted.error.contains(QStringLiteral("is not a full Julian date")));
    QVERIFY(!Toolkit().rows[1].convertedTime);
}

QTEST_GUILESS_MAIN(ConvertedResultsTest)
#include "tst_convertedresults.moc"
