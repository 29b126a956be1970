// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "MeasureRun.h"

#include "analysis/Toolkit.h"
#include "import/FitsWriter.h"
#include "support/TestSupport.h"
#include "times/JulianDate.h"
#include "times/TimeConversion.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTest>

#include <cmath>

using namespace dip;
using dip::test::json;
using dip::test::measure;
using dip::test::Run;

namespace {

QString source(const QString& relative)
{
    return qEnvironmentVariable("DIPSCOPE_SOURCE_DIR") + QLatin1Char('/') + relative;
}

// The sample light curve (times as fractions of a day, "0.38000") with its times written after
// a prefix of whole days ("59123" gives "59123.38000").
QByteArray sampleWithDays(const QByteArray& days)
{
    QFile f(source(QStringLiteral("examples/single-minimum.csv")));
    if (!f.open(QIODevice::ReadOnly))
        qFatal("no sample light curve");
    QByteArray out;
    bool header = true;
    for (const QByteArray& line : f.readAll().split('\n')) {
        if (line.isEmpty())
            continue;
        if (header || days.isEmpty())
            out += line + "\n";
        else
            out += days + line.mid(1) + "\n"; // "0.38000,..." becomes "59123.38000,..."
        header = false;
    }
    return out;
}

// Every method, driven as in the README's pictures; the times are those of the plots.
const QStringList everyMethod = {
    "--parabola", "0.49,0.535", "--fold",    "0.5123",    "--chords",        "0.46,0.49,0.53,0.56",
    "--kwee",     "0.47,0.55",  "--fourier", "0.46,0.56", "--fourier-start", "0.512,2.03,25,0.4,0.2,0.1,0.05,0.025",
    "--sliding"};

const QString cmDraRa = QStringLiteral("16:34:20.33");
const QString cmDraDec = QStringLiteral("+57:09:44.3");

QJsonObject resultOf(const QJsonObject& run, int method)
{
    for (const QJsonValue& v : run.value(QStringLiteral("results")).toArray())
        if (v.toObject().value(QStringLiteral("method")).toInt() == method)
            return v.toObject();
    return QJsonObject();
}

int warningLines(const QString& err)
{
    int n = 0;
    for (const QString& line : err.split(QLatin1Char('\n')))
        if (line.contains(QLatin1String("--reduce")))
            ++n;
    return n;
}

} // namespace

class MeasureTimesTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void sameMinimumWhateverTheDaysWritten();
    void withoutReductionFullDatesLoseDigits();
    void largeTimesWarning_data();
    void largeTimesWarning();
    void withoutOptionsNothingNew();
    void timeSystemAndOffset();
    void resultsInAnotherSystem();
    void siteAndFileSystemCount();
    void fiveDigitTimesAreNotConverted();
    void tableListsTheConversions();
    void badCommandLines_data();
    void badCommandLines();
    void aavsoFileByContent();
    void manyRowsNeedAWindow();
    void windowAndFilterOnOwnFiles();
    void fitsLightCurve();
    void unreadableFile();
};

void MeasureTimesTest::sameMinimumWhateverTheDaysWritten()
{
    // The same curve as day fractions, five-digit and full Julian dates, with --reduce: the
    // same time of minimum (to 1e-9 d) and the same error from every method and the means.
    test::DataFolder folder;
    const QByteArray prefixes[] = {"", "59123", "2459123"};
    QJsonObject runs[3];
    for (int i = 0; i < 3; ++i) {
        const QString file = folder.write(QStringLiteral("curve%1.csv").arg(i), sampleWithDays(prefixes[i]));
        const Run r = measure(QStringList{file, QStringLiteral("--json"), QStringLiteral("--reduce")} + everyMethod);
        QCOMPARE(r.code, 0);
        QCOMPARE(warningLines(r.err), 0);
        runs[i] = json(r);
    }
    const double offsets[] = {0, 59123, 2459123};
    for (int i = 0; i < 3; ++i)
        QCOMPARE(runs[i].value(QStringLiteral("offset")).toDouble(), offsets[i]);
    for (int method = 1; method <= 6; ++method) {
        const QJsonObject base = resultOf(runs[0], method);
        QVERIFY2(base.contains(QStringLiteral("time")), qPrintable(QString::number(method)));
        const double t0 = base.value(QStringLiteral("time")).toDouble();
        const double e0 = base.value(QStringLiteral("error")).toDouble();
        QVERIFY(t0 > 0.51 && t0 < 0.515);
        for (int i = 1; i < 3; ++i) {
            const QJsonObject r = resultOf(runs[i], method);
            const double t = r.value(QStringLiteral("time")).toDouble() - offsets[i];
            QVERIFY2(
                std::abs(t - t0) <= 1e-9,
                qPrintable(
                    QStringLiteral("method %1: %2 against %3").arg(method).arg(t, 0, 'g', 17).arg(t0, 0, 'g', 17)));
            // The methods saw the very same numbers, so their errors are the same to the last digit.
            QCOMPARE(r.value(QStringLiteral("error")).toDouble(), e0);
            QCOMPARE(r.value(QStringLiteral("time_text")).toString(),
                     QString::fromLatin1(prefixes[i]) +
                         base.value(QStringLiteral("time_text")).toString().mid(prefixes[i].isEmpty() ? 0 : 1));
        }
    }
    const QJsonObject means0 = runs[0].value(QStringLiteral("means")).toObject();
    QVERIFY(!means0.value(QStringLiteral("simple")).toString().isEmpty());
    for (int i = 1; i < 3; ++i) {
        const QJsonObject means = runs[i].value(QStringLiteral("means")).toObject();
        for (const char* key : {"simple", "weighted"}) {
            const double m = means.value(QLatin1String(key)).toString().toDouble() - offsets[i];
            QVERIFY(std::abs(m - means0.value(QLatin1String(key)).toString().toDouble()) <= 1e-9);
        }
        for (const char* key : {"std_error", "std_dev"})
            QCOMPARE(means.value(QLatin1String(key)).toString(), means0.value(QLatin1String(key)).toString());
    }
}

void MeasureTimesTest::withoutReductionFullDatesLoseDigits()
{
    // Why the switch is there: without it the full dates leave the methods few digits.
    test::DataFolder folder;
    const QString file = folder.write(QStringLiteral("full.csv"), sampleWithDays("2459123"));
    const QStringList kwee = {"--kwee", "2459123.47,2459123.55"};
    const Run plain = measure(QStringList{file, QStringLiteral("--json")} + kwee);
    const Run reduced =
        measure(QStringList{file, QStringLiteral("--json"), QStringLiteral("--reduce"), "--kwee", "0.47,0.55"});
    QCOMPARE(plain.code, 0);
    QCOMPARE(reduced.code, 0);
    QVERIFY(resultOf(json(plain), 4).value(QStringLiteral("time")).isDouble());
    const double tPlain = resultOf(json(plain), 4).value(QStringLiteral("time")).toDouble();
    const double tReduced = resultOf(json(reduced), 4).value(QStringLiteral("time")).toDouble();
    QVERIFY(std::abs(tReduced - 2459123.51235) < 0.0001);
    QVERIFY(std::abs(tPlain - tReduced) > 0.001);
}

void MeasureTimesTest::largeTimesWarning_data()
{
    QTest::addColumn<QByteArray>("days");
    QTest::addColumn<bool>("reduce");
    QTest::addColumn<int>("warnings");
    QTest::newRow("day fractions") << QByteArray() << false << 0;
    QTest::newRow("five digits") << QByteArray("59123") << false << 1;
    QTest::newRow("full JD") << QByteArray("2459123") << false << 1;
    QTest::newRow("full JD, --reduce") << QByteArray("2459123") << true << 0;
}

void MeasureTimesTest::largeTimesWarning()
{
    QFETCH(QByteArray, days);
    QFETCH(bool, reduce);
    QFETCH(int, warnings);
    test::DataFolder folder;
    const QString file = folder.write(QStringLiteral("c.csv"), sampleWithDays(days));
    QStringList args{file, QStringLiteral("--json")};
    if (reduce)
        args << QStringLiteral("--reduce");
    const Run r = measure(args);
    QCOMPARE(r.code, 0);
    QCOMPARE(warningLines(r.err), warnings);
    if (warnings)
        QVERIFY(r.err.contains(QStringLiteral("dipscope-measure: warning: the times exceed 10 days (%1.38000)")
                                   .arg(QString::fromLatin1(days))));
    // The load itself is untouched.
    QCOMPARE(json(r).value(QStringLiteral("NumOrig")).toInt(), 171);
}

void MeasureTimesTest::withoutOptionsNothingNew()
{
    test::DataFolder folder;
    const QString file = folder.write(QStringLiteral("c.csv"), sampleWithDays(""));
    const Run r = measure(QStringList{file, QStringLiteral("--json")} + everyMethod);
    QCOMPARE(r.code, 0);
    QVERIFY(!r.out.contains(QStringLiteral("time_system")));
    QVERIFY(!r.out.contains(QStringLiteral("offset")));
    QVERIFY(!r.out.contains(QStringLiteral("converted")));
    QVERIFY(!r.err.contains(QStringLiteral("dipscope-measure")));
    const Run table = measure(QStringList{file} + everyMethod);
    QVERIFY(!table.out.contains(QStringLiteral("Time system")));
}

void MeasureTimesTest::timeSystemAndOffset()
{
    test::DataFolder folder;
    const QString file = folder.write(QStringLiteral("c.csv"), sampleWithDays("2459123"));
    const QJsonObject unstated = json(measure({file, QStringLiteral("--json"), QStringLiteral("--reduce")}));
    QCOMPARE(unstated.value(QStringLiteral("time_system")).toString(), QStringLiteral("unstated"));
    QCOMPARE(unstated.value(QStringLiteral("offset")).toDouble(), 2459123.0);
    QVERIFY(!unstated.contains(QStringLiteral("report_system")));
    const Run r = measure({file, QStringLiteral("--json"), QStringLiteral("--time-system=BJD")});
    const QJsonObject bjd = json(r);
    QCOMPARE(bjd.value(QStringLiteral("time_system")).toString(), QStringLiteral("BJD_TDB"));
    QCOMPARE(bjd.value(QStringLiteral("offset")).toDouble(), 0.0);
    QVERIFY(r.out.contains(QStringLiteral("\"offset\": 0}")));
}

void MeasureTimesTest::resultsInAnotherSystem()
{
    test::DataFolder folder;
    const QString file = folder.write(QStringLiteral("c.csv"), sampleWithDays("2458739"));
    const Run r =
        measure(QStringList{file, QStringLiteral("--json"), QStringLiteral("--reduce"), QStringLiteral("--report-in"),
                            QStringLiteral("bjd"), QStringLiteral("--ra"), cmDraRa, QStringLiteral("--dec"), cmDraDec} +
                everyMethod);
    QCOMPARE(r.code, 0);
    QCOMPARE(r.err, QString()); // every time converted, nothing to say
    const QJsonObject run = json(r);
    QCOMPARE(run.value(QStringLiteral("report_system")).toString(), QStringLiteral("BJD_TDB"));
    // Ten decimals, as a number.
    const QRegularExpression tenDecimals(QStringLiteral("\"time_converted\": 2458739\\.\\d{10}[,}]"));
    QCOMPARE(int(r.out.count(tenDecimals)), 6);
    const times::TimeConverter converter(times::Star{248.58470833, 57.16230556});
    for (int method = 1; method <= 6; ++method) {
        const QJsonObject row = resultOf(run, method);
        const double time = row.value(QStringLiteral("time")).toDouble();
        const double converted = row.value(QStringLiteral("time_converted")).toDouble();
        // The converter on the published time, given here as one double (to 0.2 us).
        const times::Converted expected =
            converter.convert(times::JulianDate::fromDouble(time), TimeSystem::HJD_UTC, TimeSystem::BJD_TDB);
        QVERIFY(expected.ok);
        QVERIFY(std::abs(converted - expected.time.value()) < 2e-9);
        // BJD_TDB - HJD(UTC): TDB - UTC (69.184 s in 2019) and a few seconds of the Sun's
        // distance from the barycentre.
        QVERIFY(std::abs((converted - time) * 86400 - 69.184) < 5);
    }
    const QJsonObject means = run.value(QStringLiteral("means")).toObject();
    const double simple = means.value(QStringLiteral("simple")).toString().toDouble();
    const double simpleConverted = means.value(QStringLiteral("simple_converted")).toDouble();
    QVERIFY(std::abs((simpleConverted - simple) * 86400 - 69.184) < 5);
    QVERIFY(means.value(QStringLiteral("weighted_converted")).isDouble());
}

void MeasureTimesTest::siteAndFileSystemCount()
{
    test::DataFolder folder;
    const QString file = folder.write(QStringLiteral("c.csv"), sampleWithDays("2458739"));
    auto converted = [&](const QStringList& more) {
        const Run r =
            measure(QStringList{file, QStringLiteral("--json"), QStringLiteral("--reduce"), QStringLiteral("--kwee"),
                                QStringLiteral("0.47,0.55"), QStringLiteral("--report-in"), QStringLiteral("bjd"),
                                QStringLiteral("--ra"), cmDraRa, QStringLiteral("--dec"), cmDraDec} +
                    more);
        return resultOf(json(r), 4).value(QStringLiteral("time_converted")).toDouble();
    };
    const QStringList fromJd = {QStringLiteral("--time-system"), QStringLiteral("jd")};
    const double centre = converted(fromJd);
    const double site = converted(fromJd + QStringList{QStringLiteral("--site"), QStringLiteral("49.398,8.720,570")});
    const double fromHjd = converted({});
    // From JD(UTC) a site moves the light time by up to 21 ms (from HJD to BJD it adds the
    // same to both light times); JD(UTC) is not HJD(UTC), by about 85 s that night.
    QVERIFY(site != centre);
    QVERIFY(std::abs(site - centre) * 86400 < 0.021);
    QVERIFY(std::abs(std::abs(fromHjd - centre) * 86400 - 85) < 10);
}

void MeasureTimesTest::fiveDigitTimesAreNotConverted()
{
    test::DataFolder folder;
    const QString file = folder.write(QStringLiteral("c.csv"), sampleWithDays("59123"));
    const Run r = measure({file, QStringLiteral("--json"), QStringLiteral("--reduce"), QStringLiteral("--kwee"),
                           QStringLiteral("0.47,0.55"), QStringLiteral("--parabola"), QStringLiteral("0.49,0.535"),
                           QStringLiteral("--report-in"), QStringLiteral("hjd"), QStringLiteral("--ra"), cmDraRa,
                           QStringLiteral("--dec"), cmDraDec});
    QCOMPARE(r.code, 0);
    const QJsonObject run = json(r);
    QVERIFY(resultOf(run, 4).value(QStringLiteral("time_converted")).isNull());
    QVERIFY(resultOf(run, 1).value(QStringLiteral("time_converted")).isNull());
    // One line says why, with the hint; the other rows are named, not repeated.
    QVERIFY(r.err.contains(QStringLiteral("1. Parabolic Fit cannot be converted: 59123.51258 is not a full Julian "
                                          "date; a five-digit or reduced time needs its days added back")));
    QCOMPARE(int(r.err.count(QStringLiteral("is not a full Julian date"))), 1);
    QVERIFY(r.err.contains(QStringLiteral("4. Kwee and van Woerden")));
}

void MeasureTimesTest::tableListsTheConversions()
{
    test::DataFolder folder;
    const QString file = folder.write(QStringLiteral("c.csv"), sampleWithDays("2458739"));
    const Run r = measure({file, QStringLiteral("--reduce"), QStringLiteral("--kwee"), QStringLiteral("0.47,0.55"),
                           QStringLiteral("--report-in"), QStringLiteral("bjd"), QStringLiteral("--ra"), cmDraRa,
                           QStringLiteral("--dec"), cmDraDec});
    QCOMPARE(r.code, 0);
    QVERIFY(r.out.contains(QStringLiteral("Time system                   HJD(UTC) (not stated)\n")));
    QVERIFY(r.out.contains(QStringLiteral("Whole days subtracted         2458739\n")));
    QVERIFY(r.out.contains(QStringLiteral("\nIn BJD_TDB\n")));
    QVERIFY(r.out.contains(QRegularExpression(QStringLiteral("4. Kwee and van Woerden +2458739\\.\\d{10}\n"))));
}

void MeasureTimesTest::badCommandLines_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("message");
    QTest::newRow("report without star") << QStringList{"--report-in", "bjd"}
                                         << "--report-in needs the star's --ra and --dec";
    QTest::newRow("RA without Dec") << QStringList{"--report-in", "bjd", "--ra", "10"} << "--ra and --dec go together";
    QTest::newRow("Dec without RA") << QStringList{"--dec", "10"} << "--ra and --dec go together";
    QTest::newRow("star without report") << QStringList{"--ra", "10", "--dec", "20"}
                                         << "--ra, --dec and --site go with --report-in";
    QTest::newRow("site without report") << QStringList{"--site", "49,8,500"}
                                         << "--ra, --dec and --site go with --report-in";
    QTest::newRow("unknown system") << QStringList{"--time-system", "tt"}
                                    << "--time-system takes jd, hjd or bjd, not 'tt'";
    QTest::newRow("unknown report system")
        << QStringList{"--report-in=utc"} << "--report-in takes jd, hjd or bjd, not 'utc'";
    QTest::newRow("bad RA") << QStringList{"--report-in", "bjd", "--ra", "25:00:00", "--dec", "10"}
                            << "RA \"25:00:00\": ";
    QTest::newRow("bad Dec") << QStringList{"--report-in", "bjd", "--ra", "10", "--dec", "91"} << "Dec \"91\": ";
    QTest::newRow("bad site") << QStringList{"--report-in", "bjd", "--ra", "10", "--dec", "10", "--site", "49,8"}
                              << "site \"49,8\": ";
    QTest::newRow("reduce with a value") << QStringList{"--reduce=1"} << "--reduce takes no value";
    QTest::newRow("window of one time") << QStringList{"--window", "0.4"} << "--window takes 2 comma-separated times";
    QTest::newRow("window backwards") << QStringList{"--window", "0.6,0.4"}
                                      << "--window: the window 0.60000,0.40000 ends before it begins";
    QTest::newRow("window not numbers") << QStringList{"--window", "a,b"} << "--window: 'a' is not a number";
    QTest::newRow("empty filter") << QStringList{"--filter="} << "--filter needs the name of a band";
    QTest::newRow("filter without value") << QStringList{"--filter"} << "--filter needs a value";
}

void MeasureTimesTest::badCommandLines()
{
    QFETCH(QStringList, options);
    QFETCH(QString, message);
    test::DataFolder folder;
    const QString file = folder.write(QStringLiteral("c.csv"), sampleWithDays(""));
    const Run r = measure(QStringList{file} + options);
    QCOMPARE(r.code, 64);
    QVERIFY2(r.err.startsWith(QStringLiteral("dipscope-measure: ") + message), qPrintable(r.err));
    QVERIFY(r.err.contains(QStringLiteral("--report-in jd|hjd|bjd --ra RA --dec DEC")));
    QCOMPARE(r.out, QString());
}

void MeasureTimesTest::aavsoFileByContent()
{
    const QString file = source(QStringLiteral("tests/import/data/aavso-two-filters.txt"));
    const Run r = measure({file, QStringLiteral("--json"), QStringLiteral("--reduce")});
    QCOMPARE(r.code, 0);
    QVERIFY2(r.err.contains(QStringLiteral("holds the filters V (")), qPrintable(r.err));
    QVERIFY(r.err.contains(QStringLiteral("; V is taken (--filter chooses)")));
    const QJsonObject run = json(r);
    QCOMPARE(run.value(QStringLiteral("time_system")).toString(), QStringLiteral("HJD_UTC"));
    QCOMPARE(run.value(QStringLiteral("offset")).toDouble(), 2459123.0);
    const int v = run.value(QStringLiteral("NumOrig")).toInt();
    const QJsonObject b =
        json(measure({file, QStringLiteral("--json"), QStringLiteral("--filter"), QStringLiteral("b")}));
    QVERIFY(b.value(QStringLiteral("NumOrig")).toInt() < v);
    QVERIFY(b.value(QStringLiteral("NumOrig")).toInt() > 0);
    // Without --reduce the imported full dates bring the warning.
    QCOMPARE(warningLines(measure({file, QStringLiteral("--json")}).err), 1);
    // A band the file does not have.
    const Run r2 = measure({file, QStringLiteral("--json"), QStringLiteral("--filter=R")});
    QCOMPARE(r2.code, 1);
    QVERIFY(r2.err.startsWith(QStringLiteral("dipscope-measure: %1: no observation in filter \"R\"").arg(file)));
    QCOMPARE(r2.out, QString());
    // A stated system against the file's own: the user's word, with a warning.
    const Run r3 = measure({file, QStringLiteral("--json"), QStringLiteral("--time-system"), QStringLiteral("bjd")});
    QCOMPARE(json(r3).value(QStringLiteral("time_system")).toString(), QStringLiteral("BJD_TDB"));
    QVERIFY(
        r3.err.contains(QStringLiteral("warning: the file says its times are HJD(UTC); they are taken as BJD_TDB")));
    // A bad line: the file and the line.
    const QString bad = source(QStringLiteral("tests/import/data/aavso-bad-mag.txt"));
    const Run r4 = measure({bad, QStringLiteral("--json")});
    QCOMPARE(r4.code, 1);
    QVERIFY(r4.err.contains(QStringLiteral("%1, line ").arg(bad)));
}

void MeasureTimesTest::manyRowsNeedAWindow()
{
    const QString file = source(QStringLiteral("tests/import/data/aij-1500.xls"));
    const Run r = measure({file, QStringLiteral("--json")});
    QCOMPARE(r.code, 1);
    QVERIFY2(r.err.contains(QStringLiteral("1500 observations from ")), qPrintable(r.err));
    QVERIFY(r.err.contains(QStringLiteral("choose a time window (--window T1,T2)")));
    const Run w = measure({file, QStringLiteral("--json"), QStringLiteral("--reduce"), QStringLiteral("--window"),
                           QStringLiteral("2459123.40,2459123.60")});
    QCOMPARE(w.code, 0);
    const int n = json(w).value(QStringLiteral("NumOrig")).toInt();
    QVERIFY(n > 0 && n <= 1000);
    QCOMPARE(json(w).value(QStringLiteral("time_system")).toString(), QStringLiteral("BJD_TDB"));
}

void MeasureTimesTest::windowAndFilterOnOwnFiles()
{
    test::DataFolder folder;
    const QString file = folder.write(QStringLiteral("c.csv"), sampleWithDays(""));
    const Run r = measure({file, QStringLiteral("--json"), QStringLiteral("--window"), QStringLiteral("0.45,0.58")});
    QCOMPARE(r.code, 0);
    const int n = json(r).value(QStringLiteral("NumOrig")).toInt();
    QVERIFY(n > 50 && n < 171);
    // A file without bands: --filter names the one it was observed in, for the reports.
    const Run f = measure({file, QStringLiteral("--json"), QStringLiteral("--filter"), QStringLiteral("V")});
    QCOMPARE(f.code, 0);
    QCOMPARE(json(f).value(QStringLiteral("NumOrig")).toInt(), 171);
    QCOMPARE(Toolkit().filter, QStringLiteral("V"));
    QCOMPARE(f.err, QString());
    // An unreadable line of the program's own file, with a choice to make: a message, not an end.
    const QString bad = folder.write(QStringLiteral("bad.csv"), "t,m\n0.4,11\n0.5,x\n");
    const Run b = measure({bad, QStringLiteral("--json"), QStringLiteral("--window"), QStringLiteral("0,1")});
    QCOMPARE(b.code, 1);
    QVERIFY(b.err.contains(QStringLiteral("%1, line 3: a time or magnitude is not a number").arg(bad)));
}

void MeasureTimesTest::fitsLightCurve()
{
    test::DataFolder folder;
    const QString file = folder.path() + QStringLiteral("/tess.fits");
    std::vector<test::FitsRow> rows;
    // A dip centred on BTJD 1739.5 (BJD_TDB 2458739.5).
    for (int i = 0; i < 200; ++i) {
        const double t = 1739.43 + i / 1440.0;
        const float flux = float(1000.0 * (1.0 - 0.3 * std::exp(-std::pow((t - 1739.5) / 0.02, 2))));
        rows.push_back({t, flux, flux, 0});
    }
    QVERIFY(test::writeLightCurveFits(file, rows));
    const Run r = measure({file, QStringLiteral("--json"), QStringLiteral("--reduce"), QStringLiteral("--kwee"),
                           QStringLiteral("0.45,0.55")});
    QCOMPARE(r.code, 0);
    const QJsonObject run = json(r);
    QCOMPARE(run.value(QStringLiteral("time_system")).toString(), QStringLiteral("BJD_TDB"));
    QCOMPARE(run.value(QStringLiteral("offset")).toDouble(), 2458739.0);
    const double t = resultOf(run, 4).value(QStringLiteral("time")).toDouble();
    QVERIFY2(std::abs(t - 2458739.5) < 0.0005, qPrintable(QString::number(t, 'f', 6)));
    QCOMPARE(Toolkit().filter, QStringLiteral("TESS"));
    QCOMPARE(Toolkit().starName, QStringLiteral("TIC 199574208"));
    // The band the user names wins over the file's, with a word.
    const Run named = measure({file, QStringLiteral("--json"), QStringLiteral("--filter"), QStringLiteral("Ic")});
    QCOMPARE(named.code, 0);
    QCOMPARE(Toolkit().filter, QStringLiteral("Ic"));
    QVERIFY(named.err.contains(QStringLiteral("warning: the file says its filter is TESS; it is taken as Ic")));
}

void MeasureTimesTest::unreadableFile()
{
    // Without a choice to make, a missing file is the program's reader's, as it always was.
    const Run r = measure({QStringLiteral("/no/such/file.csv"), QStringLiteral("--json")});
    QCOMPARE(r.code, 2);
    const Run w = measure({QStringLiteral("/no/such/file.csv"), QStringLiteral("--json"), QStringLiteral("--window"),
                           QStringLiteral("0,1")});
    QCOMPARE(w.code, 1);
    QVERIFY(w.err.contains(QStringLiteral("/no/such/file.csv: cannot be read")));
}

QTEST_GUILESS_MAIN(MeasureTimesTest)
#include "tst_measure_times.moc"
