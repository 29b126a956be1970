// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers

#include "analysis/CurveCsv.h"
#include "analysis/InputError.h"
#include "support/TestSupport.h"

#include <QtTest>

using namespace dip;

class TestCurveCsv : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void reads_data();
    void reads();
    void sortsByTimeKeepingTheOrderOfEquals();
    void noLimitOfRows();
    void faults_data();
    void faults();
    void missingFile();
    void messageNamesFileAndLine();
};

void TestCurveCsv::reads_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("headerSkipped");
    QTest::addColumn<QVector<double>>("times");
    QTest::addColumn<QVector<double>>("mags");
    QTest::newRow("header and extra columns")
        << QByteArray("HJD,Mag,Err\n2458739.90842904,0.0588651,0.001\n2458739.90981790,0.0808532,0.001\n") << true
        << QVector<double>{2458739.90842904, 2458739.90981790} << QVector<double>{0.0588651, 0.0808532};
    QTest::newRow("no header") << QByteArray("0.5,12.1\n0.6,12.3\n") << false << QVector<double>{0.5, 0.6}
                               << QVector<double>{12.1, 12.3};
    QTest::newRow("exponent line is a header")
        << QByteArray("2.4512345678E+06,12.34\n0.5,12.1\n") << true << QVector<double>{0.5} << QVector<double>{12.1};
    QTest::newRow("CRLF, blanks, comments, blank lines")
        << QByteArray("# TESS sector 16\r\n\r\n 0.5 , 12.1 \r\n   \r\n# a note\r\n0.6,12.3") << false
        << QVector<double>{0.5, 0.6} << QVector<double>{12.1, 12.3};
    QTest::newRow("negative magnitudes") << QByteArray("0.5,-0.25\n0.6,-0.5\n") << false << QVector<double>{0.5, 0.6}
                                         << QVector<double>{-0.25, -0.5};
}

void TestCurveCsv::reads()
{
    QFETCH(QByteArray, text);
    QFETCH(bool, headerSkipped);
    QFETCH(QVector<double>, times);
    QFETCH(QVector<double>, mags);
    const LightCurve c = parseCurveCsv(text, QStringLiteral("curve.csv"));
    QCOMPARE(c.firstLineSkipped, headerSkipped);
    QCOMPARE(QVector<double>(c.times.begin(), c.times.end()), times);
    QCOMPARE(QVector<double>(c.mags.begin(), c.mags.end()), mags);
    QCOMPARE(c.rowCount, int(times.size()));
    QCOMPARE(c.source, QStringLiteral("curve.csv"));
    QCOMPARE(c.timeSystem, TimeSystem::Unstated);
}

void TestCurveCsv::sortsByTimeKeepingTheOrderOfEquals()
{
    const LightCurve c = parseCurveCsv("0.7,1\n0.5,2\n0.6,3\n0.5,4\n", QStringLiteral("x"));
    QCOMPARE(QVector<double>(c.times.begin(), c.times.end()), (QVector<double>{0.5, 0.5, 0.6, 0.7}));
    QCOMPARE(QVector<double>(c.mags.begin(), c.mags.end()), (QVector<double>{2, 4, 3, 1}));
}

void TestCurveCsv::noLimitOfRows()
{
    QByteArray text = "BJD_TDB,Mag\n";
    for (int i = 0; i < 25000; ++i)
        text += QByteArray::number(2459500 + i / 720.0, 'f', 6) + "," + QByteArray::number(10 + (i % 7) / 100.0) + "\n";
    const LightCurve c = parseCurveCsv(text, QStringLiteral("long.csv"));
    QCOMPARE(c.times.size(), std::size_t(25000));
    QVERIFY(std::abs(c.times.back() - (2459500 + 24999 / 720.0)) < 1e-6);
    QCOMPARE(c.mags[6], 10.06);
}

void TestCurveCsv::faults_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("line");
    QTest::addColumn<QString>("problem");
    QTest::newRow("bad magnitude") << QByteArray("HJD,Mag\n0.5,12.1\n0.6,abc\n") << 3
                                   << "the magnitude \"abc\" is not a number";
    QTest::newRow("bad time after blank lines")
        << QByteArray("0.5,12.1\n\n\n0.6x,12.3\n") << 4 << "the time \"0.6x\" is not a number";
    QTest::newRow("one field") << QByteArray("HJD,Mag\n0.5\n") << 2
                               << "a data line needs a time and a magnitude, separated by a comma";
    QTest::newRow("empty magnitude") << QByteArray("0.5,\n") << 1 << "the magnitude \"\" is not a number";
    QTest::newRow("not finite") << QByteArray("0.5,12\n0.6,inf\n") << 2 << "the magnitude \"inf\" is not a number";
    QTest::newRow("header only") << QByteArray("HJD,Mag\n") << 0 << "no data rows";
    QTest::newRow("empty file") << QByteArray() << 0 << "no data rows";
}

void TestCurveCsv::faults()
{
    QFETCH(QByteArray, text);
    QFETCH(int, line);
    QFETCH(QString, problem);
    try {
        parseCurveCsv(text, QStringLiteral("bad.csv"));
        QFAIL("no error");
    } catch (const InputError& e) {
        QCOMPARE(e.file, QStringLiteral("bad.csv"));
        QCOMPARE(e.line, line);
        QCOMPARE(e.problem, problem);
    }
}

void TestCurveCsv::missingFile()
{
    test::DataFolder folder;
    const QString path = folder.path() + QStringLiteral("/none.csv");
    try {
        readCurveCsv(path);
        QFAIL("no error");
    } catch (const InputError& e) {
        QCOMPARE(e.file, path);
        QCOMPARE(e.line, 0);
        QVERIFY(e.problem.startsWith(QStringLiteral("cannot be read")));
    }
    const QString good = folder.write(QStringLiteral("good.csv"), "0.5,12\n0.6,12.5\n");
    QCOMPARE(readCurveCsv(good).times.size(), std::size_t(2));
    QCOMPARE(readCurveCsv(good).source, good);
}

void TestCurveCsv::messageNamesFileAndLine()
{
    QCOMPARE(InputError(QStringLiteral("a.csv"), 12, QStringLiteral("what")).message(),
             QStringLiteral("a.csv:12: what"));
    QCOMPARE(InputError(QStringLiteral("a.csv"), 0, QStringLiteral("what")).message(), QStringLiteral("a.csv: what"));
    // A file name that looks like a placeholder stays as it is.
    QCOMPARE(InputError(QStringLiteral("%2.csv"), 3, QStringLiteral("x")).message(), QStringLiteral("%2.csv:3: x"));
}

QTEST_APPLESS_MAIN(TestCurveCsv)
#include "tst_curvecsv.moc"
