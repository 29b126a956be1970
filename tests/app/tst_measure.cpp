// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "MeasureRun.h"

#include "app/Measure.h"
#include "support/TestSupport.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>

using namespace dip;
using dip::test::json;
using dip::test::measure;
using dip::test::Run;

namespace {

const QByteArray curve = "HJD,Mag\n0.1,10\n0.2,10.5\n0.3,11.5\n0.4,12\n0.5,11.4\n0.6,10.6\n0.7,10\n";

} // namespace

class MeasureTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void plainLoad();
    void onlyOneObjectOnStandardOutput();
    void inverted();
    void deletions();
    void deletionBeyondTheArrays();
    void readerMessage();
    void runtimeError();
    void usage_data();
    void usage();
    void valueAfterEquals();
    void table();
};

void MeasureTest::plainLoad()
{
    test::DataFolder folder;
    const QString file = folder.write(QStringLiteral("c.csv"), curve);
    const Run r = measure({file, QStringLiteral("--json")});
    QCOMPARE(r.code, 0);
    const QJsonObject o = json(r);
    QCOMPARE(o.value(QStringLiteral("NumOrig")).toInt(), 7);
    QCOMPARE(o.value(QStringLiteral("NumPts")).toInt(), 7);
    QVERIFY(o.value(QStringLiteral("results")).toArray().isEmpty());
    const QJsonObject means = o.value(QStringLiteral("means")).toObject();
    QCOMPARE(means.value(QStringLiteral("simple")).toString(), QString());
    QCOMPARE(means.value(QStringLiteral("std_dev")).toString(), QString());
    QCOMPARE(means.keys().size(), 4);
}

void MeasureTest::onlyOneObjectOnStandardOutput()
{
    test::DataFolder folder;
    const QString file = folder.write(QStringLiteral("c.csv"), curve);
    const Run r = measure({file, QStringLiteral("--json")});
    QVERIFY(r.out.startsWith(QLatin1Char('{')));
    QVERIFY(r.out.endsWith(QStringLiteral("}\n")));
    QCOMPARE(r.out.count(QLatin1Char('\n')), 1);
}

void MeasureTest::inverted()
{
    test::DataFolder folder;
    const QString file = folder.write(QStringLiteral("c.csv"), curve);
    const Run r = measure({file, QStringLiteral("--inverted"), QStringLiteral("--json")});
    QCOMPARE(r.code, 0);
    QCOMPARE(json(r).value(QStringLiteral("NumPts")).toInt(), 7);
}

void MeasureTest::deletions()
{
    test::DataFolder folder;
    const QString file = folder.write(QStringLiteral("c.csv"), curve);
    const Run r = measure({file, QStringLiteral("--delete"), QStringLiteral("3,5"), QStringLiteral("--delete=3"),
                           QStringLiteral("--json")});
    QCOMPARE(r.code, 0);
    QCOMPARE(json(r).value(QStringLiteral("NumOrig")).toInt(), 7);
    QCOMPARE(json(r).value(QStringLiteral("NumPts")).toInt(), 5);
}

void MeasureTest::deletionBeyondTheArrays()
{
    test::DataFolder folder;
    const QString file = folder.write(QStringLiteral("c.csv"), curve);
    const Run r = measure({file, QStringLiteral("--delete"), QStringLiteral("1001"), QStringLiteral("--json")});
    QCOMPARE(r.code, 2);
    QCOMPARE(r.out, QStringLiteral("{\"runtime_error\": {\"number\": 9, \"text\": \"Subscript out of range\"}}\n"));
    const Run big = measure({file, QStringLiteral("--delete"), QStringLiteral("40000"), QStringLiteral("--json")});
    QCOMPARE(big.code, 2);
    QCOMPARE(json(big).value(QStringLiteral("runtime_error")).toObject().value(QStringLiteral("number")).toInt(), 6);
}

void MeasureTest::readerMessage()
{
    test::DataFolder folder;
    const QString file = folder.write(QStringLiteral("c.txt"), "0.1 10\n0.2 11\n");
    const Run r = measure({file, QStringLiteral("--json")});
    QCOMPARE(r.code, 1);
    QCOMPARE(json(r).value(QStringLiteral("message")).toString(),
             QStringLiteral("Sorry - your data file needs to be in the Comma Separated Variables format.  "
                            "See [menu] Help > Help - Data Files for details."));
}

void MeasureTest::runtimeError()
{
    test::DataFolder folder;
    const Run r = measure({folder.path() + QStringLiteral("/missing.csv"), QStringLiteral("--json")});
    QCOMPARE(r.code, 2);
    QCOMPARE(r.out, QStringLiteral("{\"runtime_error\": {\"number\": 53, \"text\": \"File not found\"}}\n"));
    const Run plain = measure({folder.path() + QStringLiteral("/missing.csv")});
    QCOMPARE(plain.code, 2);
    QVERIFY(plain.err.contains(QStringLiteral("Run-time error '53'")));
}

void MeasureTest::usage_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("no file") << QStringList{QStringLiteral("--json")};
    QTest::newRow("unknown option") << QStringList{QStringLiteral("f.csv"), QStringLiteral("--nope")};
    QTest::newRow("missing value") << QStringList{QStringLiteral("f.csv"), QStringLiteral("--parabola")};
    QTest::newRow("one time for two") << QStringList{QStringLiteral("f.csv"), QStringLiteral("--parabola=0.1")};
    QTest::newRow("not a number") << QStringList{QStringLiteral("f.csv"), QStringLiteral("--kwee"),
                                                 QStringLiteral("a,b")};
    QTest::newRow("three for four") << QStringList{QStringLiteral("f.csv"), QStringLiteral("--chords=1,2,3")};
    QTest::newRow("bad index") << QStringList{QStringLiteral("f.csv"), QStringLiteral("--delete=x")};
    QTest::newRow("flag with value") << QStringList{QStringLiteral("f.csv"), QStringLiteral("--json=1")};
    QTest::newRow("seven start values") << QStringList{QStringLiteral("f.csv"), QStringLiteral("--fourier=1,2"),
                                                       QStringLiteral("--fourier-start=1,2,3,4,5,6,7")};
    QTest::newRow("two files") << QStringList{QStringLiteral("f.csv"), QStringLiteral("g.csv")};
}

void MeasureTest::usage()
{
    QFETCH(QStringList, arguments);
    const Run r = measure(arguments);
    QCOMPARE(r.code, 64);
    QVERIFY(r.out.isEmpty());
    QVERIFY(r.err.contains(QStringLiteral("usage: dipscope-measure FILE")));
}

void MeasureTest::valueAfterEquals()
{
    test::DataFolder folder;
    const QString file = folder.write(QStringLiteral("c.csv"), curve);
    const Run r = measure({file, QStringLiteral("--parabola=0.15,0.65"), QStringLiteral("--stepp"), QStringLiteral("1"),
                           QStringLiteral("--kwee"), QStringLiteral("-0.1,0.9"), QStringLiteral("--json")});
    QCOMPARE(r.code, 0);
}

void MeasureTest::table()
{
    test::DataFolder folder;
    const QString file = folder.write(QStringLiteral("c.csv"), curve);
    const Run r = measure({file});
    QCOMPARE(r.code, 0);
    QVERIFY(r.out.startsWith(QStringLiteral("Dipscope - c.csv\n")));
    QVERIFY(r.out.contains(QStringLiteral("Original # data points        7")));
    QVERIFY(r.out.contains(QStringLiteral("1. Parabolic Fit")));
    QVERIFY(r.out.contains(QStringLiteral("Std. Error of  Weighted Mean")));
}

QTEST_GUILESS_MAIN(MeasureTest)
#include "tst_measure.moc"
