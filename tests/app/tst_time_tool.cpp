// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "MeasureRun.h"

#include "app/TimeTool.h"

#include <QRegularExpression>
#include <QTest>

#include <cstdio>

using namespace dip;

namespace {

test::Run runTool(const QStringList& arguments) { return test::runTool(RunTimeTool, arguments); }

QStringList split(const QString& s) { return s.split(QLatin1Char(' '), Qt::SkipEmptyParts); }

} // namespace

class TimeToolTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void badCommandLines_data();
    void badCommandLines();
    void help();
    void tenDecimalsALine();
    void referenceValues_data();
    void referenceValues();
    void roundTripThroughTheTool();
    void siteAndInlineValues();
    void fiveDigitTimeRefused();
    void warningBeyondKnownLeapSeconds();
};

void TimeToolTest::badCommandLines_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("words");
    QTest::newRow("nothing") << ""
                             << "--from and --to are needed";
    QTest::newRow("no star") << "--from jd --to bjd 2458741.5"
                             << "--ra and --dec are needed";
    QTest::newRow("no time") << "--from jd --to bjd --ra 10 --dec 20"
                             << "no time given";
    QTest::newRow("unknown system") << "--from tdb --to bjd --ra 10 --dec 20 2458741.5"
                                    << "--from takes jd, hjd or bjd";
    QTest::newRow("bad RA") << "--from jd --to bjd --ra 25:00:00 --dec 20 2458741.5"
                            << "RA \"25:00:00\"";
    QTest::newRow("bad Dec") << "--from jd --to bjd --ra 10 --dec 95 2458741.5"
                             << "Dec \"95\"";
    QTest::newRow("bad site") << "--from jd --to bjd --ra 10 --dec 20 --site 49,8 2458741.5"
                              << "site \"49,8\"";
    QTest::newRow("unknown option") << "--from jd --to bjd --ra 10 --dec 20 --utc 2458741.5"
                                    << "unknown option --utc";
    QTest::newRow("time not a number") << "--from jd --to bjd --ra 10 --dec 20 2458741,5"
                                       << "'2458741,5' is not a Julian date";
    QTest::newRow("value missing") << "--from jd --to bjd --ra 10 --dec"
                                   << "--dec needs a value";
}

void TimeToolTest::badCommandLines()
{
    QFETCH(QString, arguments);
    QFETCH(QString, words);
    const test::Run r = runTool(split(arguments));
    QCOMPARE(r.code, 64);
    QVERIFY(r.out.isEmpty());
    QVERIFY2(r.err.startsWith(QStringLiteral("dipscope-time: ") + words), qPrintable(r.err));
    QVERIFY(r.err.contains(QLatin1String("usage: dipscope-time --from jd|hjd|bjd --to jd|hjd|bjd --ra RA --dec DEC")));
}

void TimeToolTest::help()
{
    const test::Run r = runTool({QStringLiteral("--help")});
    QCOMPARE(r.code, 0);
    QVERIFY(r.out.startsWith(QLatin1String("usage: dipscope-time")));
    QVERIFY(r.err.isEmpty());
}

void TimeToolTest::tenDecimalsALine()
{
    const test::Run r =
        runTool(split("--from jd --to bjd --ra 16:34:20.33 --dec +57:09:44.3 2458738.66 2459123.51234 2460000"));
    QCOMPARE(r.code, 0);
    QVERIFY(r.err.isEmpty());
    const QStringList lines = r.out.split(QLatin1Char('\n'));
    QCOMPARE(lines.size(), 4);
    QVERIFY(lines[3].isEmpty()); // the output ends with a line end
    const QRegularExpression shape(QStringLiteral("^24\\d{5}\\.\\d{10}$"));
    for (int i = 0; i < 3; ++i)
        QVERIFY2(shape.match(lines[i]).hasMatch(), qPrintable(lines[i]));
}

void TimeToolTest::referenceValues_data()
{
    // Rows of tests/times/time-references.csv (CM Dra, 2019-09-15 03:50 UTC, from the Earth's
    // centre and from a site), rounded to 10 decimals by hand.
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("line");
    const QString star = QStringLiteral("--ra 248.584583 --dec 57.162306 ");
    QTest::newRow("jd to bjd") << star + "--from jd --to bjd 2458741.659722222222"
                               << "2458741.6594896406";
    QTest::newRow("jd to hjd") << star + "--from jd --to hjd 2458741.659722222222"
                               << "2458741.6586912795";
    QTest::newRow("bjd to jd") << star + "--from bjd --to jd 2458741.659489640638"
                               << "2458741.6597222222";
    QTest::newRow("bjd to hjd, site") << star + "--site 19.826,-155.474,4205 --from bjd --to hjd 2458741.659489835254"
                                      << "2458741.6586914742";
}

void TimeToolTest::referenceValues()
{
    QFETCH(QString, arguments);
    QFETCH(QString, line);
    const test::Run r = runTool(split(arguments));
    QCOMPARE(r.code, 0);
    QCOMPARE(r.out, line + QLatin1Char('\n'));
}

void TimeToolTest::roundTripThroughTheTool()
{
    const QString star = QStringLiteral("--ra 05:23:34.5 --dec -69:45:22 ");
    const test::Run there = runTool(split(star + "--from hjd --to bjd 2451179.5003472222 2457754.4999942130"));
    QCOMPARE(there.code, 0);
    const test::Run back = runTool(split(star + "--from bjd --to hjd " + there.out.simplified()));
    QCOMPARE(back.code, 0);
    QCOMPARE(back.out, QStringLiteral("2451179.5003472222\n2457754.4999942130\n"));
}

void TimeToolTest::siteAndInlineValues()
{
    const test::Run spaced =
        runTool(split("--from jd --to bjd --ra 80.89375 --dec -69.756111 --site -29.257,-70.738,2400 "
                      "2453736.0"));
    const test::Run inlined = runTool(
        split("--from=jd --to=bjd --ra=80.89375 --dec=-69.756111 --site=-29:15:25.2,-70:44:16.8,2400m 2453736.0"));
    QCOMPARE(spaced.code, 0);
    QCOMPARE(inlined.code, 0);
    QCOMPARE(inlined.out, spaced.out);
    const test::Run centre = runTool(split("--from jd --to bjd --ra 80.89375 --dec -69.756111 2453736.0"));
    QVERIFY(centre.out != spaced.out);
}

void TimeToolTest::fiveDigitTimeRefused()
{
    const test::Run r = runTool(split("--from jd --to bjd --ra 10 --dec 20 2459123.5 59123.5"));
    QCOMPARE(r.code, 1);
    QVERIFY(r.out.isEmpty()); // all the lines or none
    QVERIFY2(r.err.contains(QLatin1String("59123.50000 is not a full Julian date")), qPrintable(r.err));
}

void TimeToolTest::warningBeyondKnownLeapSeconds()
{
    const test::Run r = runTool(split("--from jd --to bjd --ra 10 --dec 20 2470000.5"));
    QCOMPARE(r.code, 0);
    QVERIFY(!r.out.isEmpty());
    QVERIFY2(r.err.startsWith(QLatin1String("dipscope-time: warning: ")), qPrintable(r.err));
}

QTEST_APPLESS_MAIN(TimeToolTest)
#include "tst_time_tool.moc"
