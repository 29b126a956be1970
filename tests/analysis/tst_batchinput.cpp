// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers

#include "analysis/BatchInput.h"
#include "analysis/InputError.h"
#include "support/TestSupport.h"

#include <QtTest>

using namespace dip;

class TestBatchInput : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void readsAsTheProgramReads_data();
    void readsAsTheProgramReads();
    void sortsByTimeKeepingTheOrderOfEquals();
    void noLimitOfRows();
    void faults_data();
    void faults();
    void missingFileAndFolder();
    void importedByContent();
    void mostFrequentFilterOfSeveral();
    void messageNamesFileAndLine();

private:
    test::DataFolder m_folder;
};

void TestBatchInput::readsAsTheProgramReads_data()
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
    QTest::newRow("first line shaped unlike the second") << QByteArray("0.4,1,2\n0.5,12.1\n0.6,12.3\n") << true
                                                         << QVector<double>{0.5, 0.6} << QVector<double>{12.1, 12.3};
    QTest::newRow("CRLF, blanks, blank lines") << QByteArray("\r\n 0.5 , 12.1 \r\n   \r\n0.6,12.3") << false
                                               << QVector<double>{0.5, 0.6} << QVector<double>{12.1, 12.3};
    // The program's reader reads an empty field as 0.
    QTest::newRow("empty magnitude") << QByteArray("0.5,\n0.6,12.3\n") << false << QVector<double>{0.5, 0.6}
                                     << QVector<double>{0, 12.3};
    QTest::newRow("negative magnitudes") << QByteArray("0.5,-0.25\n0.6,-0.5\n") << false << QVector<double>{0.5, 0.6}
                                         << QVector<double>{-0.25, -0.5};
}

void TestBatchInput::readsAsTheProgramReads()
{
    QFETCH(QByteArray, text);
    QFETCH(bool, headerSkipped);
    QFETCH(QVector<double>, times);
    QFETCH(QVector<double>, mags);
    const QString path = m_folder.write(QStringLiteral("curve.csv"), text);
    const BatchCurve read = readBatchCurve(path);
    const LightCurve& c = read.curve;
    QCOMPARE(read.format, QStringLiteral("comma-separated (the program's own)"));
    QVERIFY(read.notes.isEmpty());
    QCOMPARE(c.firstLineSkipped, headerSkipped);
    QCOMPARE(QVector<double>(c.times.begin(), c.times.end()), times);
    QCOMPARE(QVector<double>(c.mags.begin(), c.mags.end()), mags);
    QCOMPARE(c.rowCount, int(times.size()));
    QCOMPARE(c.source, path);
    QCOMPARE(c.timeSystem, TimeSystem::Unstated);
}

void TestBatchInput::sortsByTimeKeepingTheOrderOfEquals()
{
    const QString path = m_folder.write(QStringLiteral("order.csv"), "0.7,1\n0.5,2\n0.6,3\n0.5,4\n");
    const LightCurve c = readBatchCurve(path).curve;
    QCOMPARE(QVector<double>(c.times.begin(), c.times.end()), (QVector<double>{0.5, 0.5, 0.6, 0.7}));
    QCOMPARE(QVector<double>(c.mags.begin(), c.mags.end()), (QVector<double>{2, 4, 3, 1}));
}

void TestBatchInput::noLimitOfRows()
{
    QByteArray text = "HJD,Mag\n";
    for (int i = 0; i < 25000; ++i)
        text += QByteArray::number(2459500 + i / 720.0, 'f', 6) + "," + QByteArray::number(10 + (i % 7) / 100.0) + "\n";
    const LightCurve c = readBatchCurve(m_folder.write(QStringLiteral("long.csv"), text)).curve;
    QCOMPARE(c.times.size(), std::size_t(25000));
    QVERIFY(std::abs(c.times.back() - (2459500 + 24999 / 720.0)) < 1e-6);
    QCOMPARE(c.mags[6], 10.06);
}

void TestBatchInput::faults_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("line");
    QTest::addColumn<QString>("problem");
    QTest::newRow("bad magnitude") << QByteArray("HJD,Mag\n0.5,12.1\n0.6,abc\n") << 3
                                   << "the magnitude \"abc\" is not a number";
    // Blank lines count as lines of the file.
    QTest::newRow("bad time after blank lines")
        << QByteArray("0.5,12.1\n0.55,12.2\n\n\n0.6x,12.3\n") << 5 << "the time \"0.6x\" is not a number";
    QTest::newRow("placeholder in the field")
        << QByteArray("0.5,12.1\n0.6,%1\n") << 2 << "the magnitude \"%1\" is not a number";
    QTest::newRow("no comma on line 2") << QByteArray("HJD,Mag\n0.5\n") << 0
                                        << "not comma-separated: its second line holds no comma";
    QTest::newRow("seven columns") << QByteArray("1,2,3,4,5,6,7\n1,2,3,4,5,6,7\n") << 0
                                   << "its second line has 6 commas: the reader takes at most six columns";
    QTest::newRow("row cut short") << QByteArray("HJD,Mag,Err\n0.5,12,0.01\n0.6,12\n") << 3
                                   << "the file ends before the row is complete";
    QTest::newRow("header only") << QByteArray("HJD,Mag\n") << 1 << "a light curve needs at least two lines";
    QTest::newRow("empty file") << QByteArray() << 0 << "a light curve needs at least two lines";
}

void TestBatchInput::faults()
{
    QFETCH(QByteArray, text);
    QFETCH(int, line);
    QFETCH(QString, problem);
    const QString path = m_folder.write(QStringLiteral("bad.csv"), text);
    try {
        readBatchCurve(path);
        QFAIL("no error");
    } catch (const InputError& e) {
        QCOMPARE(e.file, path);
        QCOMPARE(e.line, line);
        QCOMPARE(e.problem, problem);
    }
}

void TestBatchInput::missingFileAndFolder()
{
    for (const QString& path : {m_folder.path() + QStringLiteral("/none.csv"), m_folder.path()}) {
        try {
            readBatchCurve(path);
            QFAIL("no error");
        } catch (const InputError& e) {
            QCOMPARE(e.file, path);
            QCOMPARE(e.line, 0);
            QVERIFY2(e.problem.startsWith(QStringLiteral("cannot be read")) ||
                         e.problem == QStringLiteral("is a folder, not a file"),
                     qPrintable(e.problem));
        }
    }
}

void TestBatchInput::importedByContent()
{
    // A header naming BJD_TDB makes an AstroImageJ table of it: the time system comes with it.
    const QString path = m_folder.write(QStringLiteral("aij.csv"), "BJD_TDB,Mag\n2459500.6,10.2\n2459500.5,10.1\n");
    const BatchCurve read = readBatchCurve(path);
    QCOMPARE(read.format, QStringLiteral("AstroImageJ"));
    QCOMPARE(read.curve.timeSystem, TimeSystem::BJD_TDB);
    QCOMPARE(QVector<double>(read.curve.times.begin(), read.curve.times.end()),
             (QVector<double>{2459500.5, 2459500.6}));
    QCOMPARE(read.curve.rowCount, 2);
    QCOMPARE(read.curve.source, path);

    // An importer's refusal keeps its line.
    const QString bad =
        qEnvironmentVariable("DIPSCOPE_SOURCE_DIR") + QStringLiteral("/tests/import/data/aavso-bad-mag.txt");
    try {
        readBatchCurve(bad);
        QFAIL("no error");
    } catch (const InputError& e) {
        QCOMPARE(e.file, bad);
        QCOMPARE(e.line, 12);
        QVERIFY2(e.problem.contains(QStringLiteral("12.3.4")), qPrintable(e.problem));
    }
}

void TestBatchInput::mostFrequentFilterOfSeveral()
{
    const QString path =
        qEnvironmentVariable("DIPSCOPE_SOURCE_DIR") + QStringLiteral("/tests/import/data/aavso-two-filters.txt");
    const BatchCurve read = readBatchCurve(path);
    QCOMPARE(read.format, QStringLiteral("AAVSO extended"));
    // 49 rows in V, one of them a "fainter than" estimate, which the importer leaves out.
    QCOMPARE(read.curve.times.size(), std::size_t(48));
    QCOMPARE(read.curve.filter, QStringLiteral("V"));
    QVERIFY2(read.notes.contains(QStringLiteral("filter V, the most frequent of V (48), B (24)")),
             qPrintable(read.notes.join(QLatin1Char('|'))));
    QVERIFY(std::is_sorted(read.curve.times.begin(), read.curve.times.end()));
}

void TestBatchInput::messageNamesFileAndLine()
{
    QCOMPARE(InputError(QStringLiteral("a.csv"), 12, QStringLiteral("what")).message(),
             QStringLiteral("a.csv:12: what"));
    QCOMPARE(InputError(QStringLiteral("a.csv"), 0, QStringLiteral("what")).message(), QStringLiteral("a.csv: what"));
    // A file name that looks like a placeholder stays as it is.
    QCOMPARE(InputError(QStringLiteral("%2.csv"), 3, QStringLiteral("x")).message(), QStringLiteral("%2.csv:3: x"));
}

QTEST_APPLESS_MAIN(TestBatchInput)
#include "tst_batchinput.moc"
