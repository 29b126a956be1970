// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
// dipscope-measure's --ephemeris, --secondary, --format, --star and --observer.
#include "MeasureRun.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QTest>

#include <algorithm>
#include <cmath>

using namespace dip;
using dip::test::example;
using dip::test::json;
using dip::test::measure;
using dip::test::Run;

namespace {

// Kwee and van Woerden and the Fourier fit on the example's minimum (near 0.51234).
QStringList twoMethods() { return QStringList{example()} + test::kweeAndFourier(); }

QJsonArray results(const Run& r) { return json(r).value(QStringLiteral("results")).toArray(); }

} // namespace

class MeasureReportsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void withoutOptionsNothingIsAdded()
    {
        const Run r = measure(twoMethods() << QStringLiteral("--json"));
        QVERIFY2(r.code == 0, qPrintable(r.err + r.out));
        QVERIFY(!r.out.contains(QLatin1String("cycle")));
        QVERIFY(!r.out.contains(QLatin1String("o_c")));
        QVERIFY(!r.out.contains(QLatin1String("ephemeris")));
        const Run table = measure(twoMethods());
        QVERIFY(!table.out.contains(QLatin1String("O - C")));
    }

    void cycleAndOcInJson_data()
    {
        QTest::addColumn<QStringList>("ephemeris");
        QTest::addColumn<double>("t0");
        QTest::addColumn<double>("period");
        QTest::addColumn<bool>("secondary");
        QTest::addColumn<double>("cycle");
        // 0.512 / 0.4 = 1.28: cycle 1 as a primary, the half cycle 1.5 when secondaries count.
        QTest::newRow("primary") << QStringList{"--ephemeris", "0,0.4"} << 0.0 << 0.4 << false << 1.0;
        QTest::newRow("nearest half cycle")
            << QStringList{"--ephemeris=0,0.4", "--secondary"} << 0.0 << 0.4 << true << 1.5;
        QTest::newRow("T0 after the result") << QStringList{"--ephemeris", "10.1,0.2"} << 10.1 << 0.2 << false << -48.0;
        QTest::newRow("secondary, negative")
            << QStringList{"--secondary", "--ephemeris", "10.2,0.2"} << 10.2 << 0.2 << true << -48.5;
    }
    void cycleAndOcInJson()
    {
        QFETCH(QStringList, ephemeris);
        QFETCH(double, t0);
        QFETCH(double, period);
        QFETCH(bool, secondary);
        QFETCH(double, cycle);
        const Run r = measure(twoMethods() << QStringLiteral("--json") << ephemeris);
        QCOMPARE(r.code, 0);
        const QJsonArray rows = results(r);
        QCOMPARE(rows.size(), 2);
        for (const QJsonValue& v : rows) {
            const QJsonObject row = v.toObject();
            const double time = row.value(QStringLiteral("time")).toDouble();
            QCOMPARE(row.value(QStringLiteral("cycle")).toDouble(), cycle);
            // Independently: the cycle is the nearest (half) cycle, and O - C what is left.
            const double steps = (time - t0) / period;
            const double nearest = secondary ? std::round(steps * 2) / 2 : std::round(steps);
            QCOMPARE(nearest, cycle);
            QCOMPARE(row.value(QStringLiteral("o_c")).toDouble(), time - (t0 + cycle * period));
        }
        const QJsonObject e = json(r).value(QStringLiteral("ephemeris")).toObject();
        QCOMPARE(e.value(QStringLiteral("t0")).toDouble(), t0);
        QCOMPARE(e.value(QStringLiteral("period")).toDouble(), period);
        QCOMPARE(e.value(QStringLiteral("secondary")).toBool(), secondary);
    }

    void formatJsonIsTheToolsJson()
    {
        const Run a = measure(twoMethods()
                              << QStringLiteral("--json") << QStringLiteral("--ephemeris") << QStringLiteral("0,0.4"));
        const Run b = measure(twoMethods() << QStringLiteral("--format") << QStringLiteral("json")
                                           << QStringLiteral("--ephemeris") << QStringLiteral("0,0.4"));
        const Run c = measure(twoMethods() << QStringLiteral("--format=json") << QStringLiteral("--json"));
        QCOMPARE(b.code, 0);
        QCOMPARE(c.code, 0);
        QCOMPARE(b.out, a.out);
        QVERIFY(json(c).contains(QStringLiteral("results")));
    }

    void formatCsv()
    {
        const Run j = measure(twoMethods() << QStringLiteral("--json") << QStringLiteral("--ephemeris=0,0.4"));
        const Run r = measure(twoMethods() << QStringLiteral("--format") << QStringLiteral("csv")
                                           << QStringLiteral("--ephemeris=0,0.4"));
        QCOMPARE(r.code, 0);
        const QStringList lines = r.out.split(QLatin1Char('\n'));
        QCOMPARE(lines.size(), 4); // header, two rows, the empty rest after the last line end
        QCOMPARE(lines[0], QStringLiteral("method,name,time,error,ticked,system,E,o_c,o_c_min,bootstrap_error,points"));
        QVERIFY(lines[3].isEmpty());
        const QJsonArray rows = results(j);
        const QStringList names = {"KvW", "Fourier"};
        for (int i = 0; i < 2; ++i) {
            const QStringList f = lines[i + 1].split(QLatin1Char(','));
            QCOMPARE(f.size(), 11);
            const QJsonObject row = rows[i].toObject();
            QCOMPARE(f[0].toInt(), row.value(QStringLiteral("method")).toInt());
            QCOMPARE(f[1], names[i]);
            QCOMPARE(f[2], QString::number(row.value(QStringLiteral("time")).toDouble(), 'f', 8));
            QCOMPARE(f[3], QString::number(row.value(QStringLiteral("error")).toDouble(), 'f', 8));
            QCOMPARE(f[4], QStringLiteral("1"));
            QCOMPARE(f[5], QStringLiteral("unstated"));
            QCOMPARE(f[6], QStringLiteral("1"));
            const double oc = row.value(QStringLiteral("o_c")).toDouble();
            QCOMPARE(f[7], QString::number(oc, 'f', 8));
            QCOMPARE(f[8], QString::number(oc * 1440, 'f', 5));
            QVERIFY(f[9].isEmpty()); // no bootstrap was run
        }
        // Without an ephemeris the E and O - C columns stay empty.
        const Run plain = measure(twoMethods() << QStringLiteral("--format=csv"));
        QCOMPARE(plain.code, 0);
        const QStringList f = plain.out.split(QLatin1Char('\n'))[1].split(QLatin1Char(','));
        QVERIFY(f[6].isEmpty() && f[7].isEmpty() && f[8].isEmpty());
    }

    void formatReport()
    {
        const Run j = measure(twoMethods() << QStringLiteral("--json") << QStringLiteral("--ephemeris=0,0.4"));
        const Run r = measure(twoMethods() << QStringLiteral("--format") << QStringLiteral("report")
                                           << QStringLiteral("--ephemeris=0,0.4") << QStringLiteral("--star")
                                           << QStringLiteral("CM Dra") << QStringLiteral("--observer=XYZ"));
        QCOMPARE(r.code, 0);
        const QStringList lines = r.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), 2);
        const QJsonArray rows = results(j);
        const QStringList names = {"KvW     ", "Fourier "};
        for (int i = 0; i < 2; ++i) {
            const QString& line = lines[i];
            const QJsonObject row = rows[i].toObject();
            QCOMPARE(line.size(), 94);
            QCOMPARE(line.mid(0, 20), QStringLiteral("CM Dra").leftJustified(20));
            QCOMPARE(line.mid(21, 13).trimmed(), QString::number(row.value(QStringLiteral("time")).toDouble(), 'f', 5));
            QCOMPARE(line.mid(35, 3), QStringLiteral("HJD"));
            QCOMPARE(line.mid(39, 7), QString::number(row.value(QStringLiteral("error")).toDouble(), 'f', 5));
            QCOMPARE(line.mid(47, 9).trimmed(), QStringLiteral("1"));
            QCOMPARE(line.mid(57, 8).trimmed(),
                     QStringLiteral("+") + QString::number(row.value(QStringLiteral("o_c")).toDouble(), 'f', 5));
            QCOMPARE(line.mid(73, 6), QStringLiteral("XYZ   "));
            QCOMPARE(line.mid(80, 8), names[i]);
        }
    }

    void reportWithoutEphemerisOrNames()
    {
        const Run r = measure(twoMethods() << QStringLiteral("--format=report"));
        QCOMPARE(r.code, 0);
        const QStringList lines = r.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), 2);
        QCOMPARE(lines[0].size(), 94);
        QVERIFY(lines[0].mid(0, 20).trimmed().isEmpty());
        QVERIFY(lines[0].mid(47, 18).trimmed().isEmpty());
    }

    void pointsOfEachMethod()
    {
        // The example's times, counted strictly between the clicks, as the windows pick ranges.
        QFile f(example());
        QVERIFY(f.open(QIODevice::ReadOnly));
        std::vector<double> t;
        for (const QByteArray& line : f.readAll().split('\n').mid(1))
            if (!line.trimmed().isEmpty())
                t.push_back(line.split(',')[0].toDouble());
        auto between = [&](double a, double b) {
            return int(std::count_if(t.begin(), t.end(), [&](double x) { return x > a && x < b; }));
        };
        const Run r = measure({example(), "--format=csv", "--parabola", "0.49,0.535", "--chords", "0.46,0.49,0.53,0.56",
                               "--kwee", "0.47,0.55", "--fourier", "0.46,0.56", "--fourier-start",
                               "0.512,2.03,25,0.4,0.2,0.1,0.05,0.025", "--sliding"});
        QCOMPARE(r.code, 0);
        const QStringList lines = r.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), 6);
        const QList<int> expected = {between(0.49, 0.535), between(0.46, 0.49) + between(0.53, 0.56),
                                     between(0.47, 0.55), between(0.46, 0.56)};
        for (int i = 0; i < 4; ++i)
            QCOMPARE(lines[i + 1].split(QLatin1Char(','))[10].toInt(), expected[i]);
        // The sliding integrations choose their own stretch: some points, never more than all.
        const int sliding = lines[5].split(QLatin1Char(','))[10].toInt();
        QVERIFY(sliding > 0 && sliding <= int(t.size()));
    }

    void tableWithOc()
    {
        const Run r = measure(twoMethods() << QStringLiteral("--ephemeris=0,0.4") << QStringLiteral("--secondary"));
        QCOMPARE(r.code, 0);
        QVERIFY2(r.out.contains(QLatin1String("O - C from T0 = 0.000000, P = 0.4000000, secondaries at phase 0.5\n")),
                 qPrintable(r.out));
        const Run j = measure(twoMethods() << QStringLiteral("--json") << QStringLiteral("--ephemeris=0,0.4")
                                           << QStringLiteral("--secondary"));
        const double oc = results(j)[0].toObject().value(QStringLiteral("o_c")).toDouble();
        const QString line = QStringLiteral("%1%2%3%4\n")
                                 .arg(QStringLiteral("4. Kwee and van Woerden"), -30)
                                 .arg(QStringLiteral("1.5"), -12)
                                 .arg(QString::number(oc, 'f', 6), -14)
                                 .arg(QString::number(oc * 1440, 'f', 3));
        QVERIFY2(r.out.contains(line), qPrintable(r.out + QStringLiteral("\nwanted:\n") + line));
    }

    void combinationErrors_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QString>("message");
        QTest::newRow("secondary alone") << QStringList{"--secondary"} << "--secondary goes with --ephemeris";
        QTest::newRow("secondary with a value")
            << QStringList{"--ephemeris=0,1", "--secondary=1"} << "--secondary takes no value";
        QTest::newRow("star without report")
            << QStringList{"--star", "X"} << "--star and --observer go with --format report";
        QTest::newRow("observer with csv")
            << QStringList{"--format", "csv", "--observer", "ABC"} << "--star and --observer go with --format report";
        QTest::newRow("star with json") << QStringList{"--format=json", "--star=X"}
                                        << "--star and --observer go with --format report";
        QTest::newRow("unknown format") << QStringList{"--format", "xml"}
                                        << "--format: 'xml' is none of json, csv, report";
        QTest::newRow("format without value") << QStringList{"--format"} << "--format needs a value";
        QTest::newRow("one number") << QStringList{"--ephemeris", "2459000.5"}
                                    << "--ephemeris takes 2 comma-separated times";
        QTest::newRow("not numbers") << QStringList{"--ephemeris", "a,b"} << "--ephemeris: 'a' is not a number";
        QTest::newRow("zero period") << QStringList{"--ephemeris", "2459000.5,0"}
                                     << "--ephemeris: the period must be above 0";
        QTest::newRow("negative period") << QStringList{"--ephemeris=1,-0.3"}
                                         << "--ephemeris: the period must be above 0";
        QTest::newRow("json and csv") << QStringList{"--json", "--format", "csv"}
                                      << "--json and --format csv cannot be combined";
        QTest::newRow("report and json") << QStringList{"--format=report", "--json"}
                                         << "--json and --format report cannot be combined";
    }
    void combinationErrors()
    {
        QFETCH(QStringList, options);
        QFETCH(QString, message);
        const Run r = measure(twoMethods() + options);
        QCOMPARE(r.code, 64);
        QVERIFY(r.out.isEmpty());
        QVERIFY2(r.err.startsWith(QStringLiteral("dipscope-measure: ") + message + QLatin1Char('\n')),
                 qPrintable(r.err));
        // The usage names the options.
        QVERIFY(r.err.contains(QLatin1String("--ephemeris T0,P")));
        QVERIFY(r.err.contains(QLatin1String("--format json|csv|report")));
    }
};

QTEST_GUILESS_MAIN(MeasureReportsTest)
#include "tst_measure_reports.moc"
