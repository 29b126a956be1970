// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "support/TestSupport.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <cmath>

using namespace dip;
using dip::test::Points;

namespace {

// The installed console tool, run as a user runs it.
struct ToolRun {
    int exitCode = -1;
    QByteArray standardOutput;
    QByteArray standardError;
    QJsonObject object() const { return QJsonDocument::fromJson(standardOutput).object(); }
    QJsonArray results() const { return object().value(QStringLiteral("results")).toArray(); }
};

ToolRun runTool(const QStringList& arguments)
{
    QProcess tool;
    tool.start(QStringLiteral(DIPSCOPE_MEASURE), arguments);
    ToolRun r;
    if (!tool.waitForFinished(60000))
        return r;
    r.exitCode = tool.exitCode();
    r.standardOutput = tool.readAllStandardOutput();
    r.standardError = tool.readAllStandardError();
    return r;
}

// Forty-one points every 0.005 day, symmetric about the deepest one at 0.4.
QByteArray symmetricDip()
{
    Points points;
    for (int i = -20; i <= 20; ++i) {
        const double t = 0.4 + 0.005 * i;
        points.emplace_back(t, test::gaussianMag(t, 0.4, 0.03));
    }
    return "HJD,Mag\n" + test::csv(points);
}

QByteArray thousandPoints()
{
    Points points;
    for (int i = 1; i <= 1000; ++i) {
        const double t = 0.001 * i;
        points.emplace_back(t, test::gaussianMag(t, 0.5, 0.05, 0.5));
    }
    return test::csv(points);
}

} // namespace

class MeasureFoldSlidingTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void foldTyped_data();
    void foldTyped();
    void sliding();
    void slidingTrapped();
    void bothAndMeans();
    void table();
};

void MeasureFoldSlidingTest::foldTyped_data()
{
    QTest::addColumn<QStringList>("option");
    QTest::addColumn<double>("time");
    QTest::addColumn<QString>("timeText");
    QTest::newRow("value as next argument") << QStringList{"--fold", "0.4213"} << 0.4213 << "0.42130";
    QTest::newRow("value after =") << QStringList{"--fold=0.39876"} << 0.39876 << "0.39876";
    QTest::newRow("numeric prefix") << QStringList{"--fold", "0.41x"} << 0.41 << "0.41000";
    QTest::newRow("no number: 0") << QStringList{"--fold", "fold"} << 0.0
                                  << "00.00000"; // 0 has no point: "0.", padded, then the "0" of values below 1
}

void MeasureFoldSlidingTest::foldTyped()
{
    QFETCH(QStringList, option);
    QFETCH(double, time);
    QFETCH(QString, timeText);
    test::DataFolder folder;
    const QString file = folder.write(QStringLiteral("dip.csv"), symmetricDip());
    const ToolRun r = runTool(QStringList{file, QStringLiteral("--json")} + option);
    QCOMPARE(r.exitCode, 0);
    const QJsonArray results = r.results();
    QCOMPARE(results.size(), 1);
    const QJsonObject row = results[0].toObject();
    QCOMPARE(row.value(QStringLiteral("method")).toInt(), 2);
    QCOMPARE(row.value(QStringLiteral("time")).toDouble(), time);
    QCOMPARE(row.value(QStringLiteral("error")).toDouble(), 0.0001);
    QCOMPARE(row.value(QStringLiteral("time_text")).toString(), timeText);
    QCOMPARE(row.value(QStringLiteral("error_text")).toString(), QStringLiteral("0.0001"));
}

void MeasureFoldSlidingTest::sliding()
{
    test::DataFolder folder;
    const QString file = folder.write(QStringLiteral("dip.csv"), symmetricDip());
    const ToolRun r = runTool({file, QStringLiteral("--sliding"), QStringLiteral("--json")});
    QCOMPARE(r.exitCode, 0);
    QVERIFY(r.standardError.isEmpty());
    const QJsonArray results = r.results();
    QCOMPARE(results.size(), 1);
    const QJsonObject row = results[0].toObject();
    QCOMPARE(row.value(QStringLiteral("method")).toInt(), 6);
    // The minimum of the symmetric dip, found to rounding.
    QVERIFY(std::abs(row.value(QStringLiteral("time")).toDouble() - 0.4) < 1e-12);
    QCOMPARE(row.value(QStringLiteral("time_text")).toString(), QStringLiteral("0.40000"));
    const double error = row.value(QStringLiteral("error")).toDouble();
    QVERIFY(error > 0 && error < 0.005);
    QVERIFY(!row.contains(QStringLiteral("trapped_error")));
}

void MeasureFoldSlidingTest::slidingTrapped()
{
    test::DataFolder folder;
    const QString file = folder.write(QStringLiteral("long.csv"), thousandPoints());
    const ToolRun r = runTool({file, QStringLiteral("--sliding"), QStringLiteral("--json")});
    QCOMPARE(r.exitCode, 0);
    QCOMPARE(r.standardError, QByteArray("Error 9: Subscript out of range.\n"));
    QCOMPARE(r.object().value(QStringLiteral("NumPts")).toInt(), 1000);
    const QJsonArray results = r.results();
    QCOMPARE(results.size(), 1);
    const QJsonObject row = results[0].toObject();
    QCOMPARE(row.value(QStringLiteral("method")).toInt(), 6);
    QCOMPARE(row.value(QStringLiteral("trapped_error")).toInt(), 9);
    QVERIFY(!row.contains(QStringLiteral("time")));
    QVERIFY(!row.contains(QStringLiteral("error")));
    QCOMPARE(row.value(QStringLiteral("time_text")).toString(), QString());
    QCOMPARE(row.value(QStringLiteral("error_text")).toString(), QString());
}

void MeasureFoldSlidingTest::bothAndMeans()
{
    test::DataFolder folder;
    const QString file = folder.write(QStringLiteral("dip.csv"), symmetricDip());
    const ToolRun r = runTool({file, QStringLiteral("--sliding"), QStringLiteral("--fold"), QStringLiteral("0.4002"),
                               QStringLiteral("--json")});
    QCOMPARE(r.exitCode, 0);
    const QJsonArray results = r.results();
    QCOMPARE(results.size(), 2);
    QCOMPARE(results[0].toObject().value(QStringLiteral("method")).toInt(), 2);
    QCOMPARE(results[1].toObject().value(QStringLiteral("method")).toInt(), 6);
    // Both rows ticked: the simple mean of 0.4002 and 0.40000.
    const QJsonObject means = r.object().value(QStringLiteral("means")).toObject();
    QCOMPARE(means.value(QStringLiteral("simple")).toString(), QStringLiteral("0.40010"));
}

void MeasureFoldSlidingTest::table()
{
    test::DataFolder folder;
    const QString file = folder.write(QStringLiteral("long.csv"), thousandPoints());
    const ToolRun r = runTool({file, QStringLiteral("--fold"), QStringLiteral("0.5"), QStringLiteral("--sliding")});
    QCOMPARE(r.exitCode, 0);
    const QString out = QString::fromUtf8(r.standardOutput);
    QVERIFY(out.contains(QRegularExpression(QStringLiteral("2\\. Tracing Paper +0\\.50000 +0\\.0001 +\\[x\\]"))));
    QVERIFY(out.contains(QRegularExpression(QStringLiteral("6\\. Sliding Integrations +\\(trapped error 9\\)"))));
}

QTEST_GUILESS_MAIN(MeasureFoldSlidingTest)
#include "tst_measure_fold_sliding.moc"
