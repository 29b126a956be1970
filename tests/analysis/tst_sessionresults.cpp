// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
// The session's published results as the exports, the console tool and the O-C window take them.
#include "analysis/ReportLine.h"
#include "analysis/ResultExport.h"
#include "analysis/SessionResults.h"
#include "session/Session.h"
#include "support/TestSupport.h"

#include <QTest>

#include <cmath>

using namespace dip;

namespace {

BootstrapResult bootstrapOf(double error, int successes)
{
    BootstrapResult b;
    b.requested = 100;
    b.done = 100;
    b.successes = successes;
    b.error = error;
    return b;
}

} // namespace

class TestSessionResults : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { resetSession(); }

    void onlyPublishedRowsInOrder()
    {
        test::publishRow(5, 2459000.51251, 0.00015, true);
        test::publishRow(1, 2459000.51258, -0.00017, false);
        S().Results(6).published = true;
        S().Results(6).trappedError = 6; // a trapped error is no result
        const ToolkitState t;
        const std::vector<ExportRow> rows = sessionResults(t);
        QCOMPARE(rows.size(), std::size_t(2));
        QCOMPARE(rows[0].method, 1);
        QCOMPARE(rows[0].time, 2459000.51258);
        QCOMPARE(rows[0].error, 0.00017); // its size
        QVERIFY(!rows[0].ticked);
        QCOMPARE(rows[1].method, 5);
        QVERIFY(!rows[1].oc);
        QVERIFY(!rows[1].bootstrapError);
        QCOMPARE(sessionResults(t, true).size(), std::size_t(1));
        QCOMPARE(sessionResults(t, true)[0].method, 5);
    }

    void ocFromTheEphemeris_data()
    {
        QTest::addColumn<bool>("secondaries");
        QTest::addColumn<double>("time");
        QTest::addColumn<double>("cycle");
        QTest::newRow("primary") << false << 2459008.3012 << 10.0;
        QTest::newRow("secondary counted as primary") << false << 2459008.7012 << 11.0;
        QTest::newRow("secondary") << true << 2459008.7012 << 10.5;
    }
    void ocFromTheEphemeris()
    {
        QFETCH(bool, secondaries);
        QFETCH(double, time);
        QFETCH(double, cycle);
        test::publishRow(4, time, 0.0001, true);
        ToolkitState t;
        t.ephemeris = Ephemeris{2459000.3, 0.8, secondaries};
        const std::optional<ExportRow> row = sessionResult(4, t);
        QVERIFY(row && row->oc);
        QCOMPARE(row->oc->cycle, cycle);
        // A full Julian date keeps about 5e-10 d: the difference formed two ways agrees to that.
        QVERIFY(std::abs(row->oc->days - (time - (2459000.3 + cycle * 0.8))) < 1e-9);
    }

    void systemConvertedTimeAndBootstrap()
    {
        test::publishRow(4, 2459000.51235, 0.00016, true);
        test::publishRow(5, 2459000.51251, 0.00015, true);
        ToolkitState t;
        t.fileSystem = TimeSystem::HJD_UTC;
        // Without a conversion the rows are in the file's system.
        QCOMPARE(sessionResults(t)[0].system, TimeSystem::HJD_UTC);
        t.reportSystem = TimeSystem::BJD_TDB;
        t.rows[4].convertedTime = times::JulianDate{2459000, 0.5131};
        t.rows[4].bootstrap = bootstrapOf(0.00021, 100);
        t.rows[5].bootstrap = bootstrapOf(0.00030, 1); // too few to form an error
        const std::vector<ExportRow> rows = sessionResults(t);
        QCOMPARE(rows[0].system, TimeSystem::BJD_TDB);
        QCOMPARE(rows[0].time, 2459000.5131);
        QCOMPARE(*rows[0].bootstrapError, 0.00021);
        // Row 5 was not converted: its own time, in the file's system.
        QCOMPARE(rows[1].system, TimeSystem::HJD_UTC);
        QCOMPARE(rows[1].time, 2459000.51251);
        QVERIFY(!rows[1].bootstrapError);
        // As the CSV and the report line show them.
        const QStringList f = resultCsvLine(rows[0]).trimmed().split(QLatin1Char(','));
        QCOMPARE(f[5], QStringLiteral("BJD_TDB"));
        QCOMPARE(f[9], QStringLiteral("0.00021000"));
        const QString line = reportLine(rows[0], ReportInfo{"CM Dra", "TESS", "ABC"});
        QCOMPARE(line.mid(21, 13), QStringLiteral("2459000.51310"));
        QCOMPARE(line.mid(35, 3), QStringLiteral("BJD"));
    }

    void reportInfoFromTheToolkit()
    {
        ToolkitState t;
        t.starName = QStringLiteral("CM Dra");
        t.filter = QStringLiteral("TESS");
        t.observerCode = QStringLiteral("XYZ");
        const ReportInfo info = toolkitReportInfo(t);
        QCOMPARE(info.star, t.starName);
        QCOMPARE(info.filter, t.filter);
        QCOMPARE(info.observer, t.observerCode);
    }
};

QTEST_GUILESS_MAIN(TestSessionResults)
#include "tst_sessionresults.moc"
