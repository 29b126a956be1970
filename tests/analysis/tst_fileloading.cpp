// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/FileLoading.h"
#include "analysis/Toolkit.h"
#include "import/FitsWriter.h"
#include "session/LoadDataFile.h"
#include "session/MainForm.h"
#include "session/Results.h"
#include "session/Session.h"
#include "session/WholeDays.h"
#include "support/TestSupport.h"

#include <QFileInfo>
#include <QTest>

#include <cmath>

using namespace dip;
using import::ImportError;

namespace {

QString importData(const QString& name)
{
    return qEnvironmentVariable("DIPSCOPE_SOURCE_DIR") + QStringLiteral("/tests/import/data/") + name;
}

// A comma-separated file of n rows, one every two minutes from 0.3 d, a dip at 0.5 d.
QByteArray longCsv(int n)
{
    QByteArray text = "HJD,Mag\n";
    for (int i = 0; i < n; ++i) {
        const double t = 0.3 + i / 720.0;
        text += QByteArray::number(t, 'f', 6) + "," +
                QByteArray::number(11 + 0.5 * std::exp(-std::pow((t - 0.5) / 0.03, 2)), 'f', 4) + "\n";
    }
    return text;
}

// Loads the file as "Import…" does with the given choices.
void importFile(const QString& path, const import::ImportOptions& options = {})
{
    const PreparedFile file = PrepareLightCurveFile(path);
    InstallFileCurve(file, ChooseLightCurveRows(file, options));
}

// The message of what loading the file with these choices throws; empty when nothing is.
QString problemOf(const QString& path, const import::ImportOptions& options = {})
{
    try {
        importFile(path, options);
    } catch (const ImportError& e) {
        return e.text();
    }
    return QString();
}

} // namespace

class FileLoadingTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void commaSeparatedLoadsAsTheOpenDialogDoes();
    void commaSeparatedProblems_data();
    void commaSeparatedProblems();
    void failureLeavesTheSessionAlone();
    void moreThanThousandRowsNeedAWindow();
    void filtersOfAnAavsoFile();
    void importBringsTheFilesNames();
    void nextLoadDropsTheNames();
    void fitsTimesKeepTheirDigits();
    void rowsTheSessionCannotHold();
};

void FileLoadingTest::init()
{
    test::freshSession();
    resetToolkit();
}

void FileLoadingTest::commaSeparatedLoadsAsTheOpenDialogDoes()
{
    test::DataFolder folder;
    const QByteArray text = "HJD,Mag,Err\n0.41,11.2,0.01\n0.45,11.9,0.01\n0.50,12.3,0.01\n0.55,11.8,0.01\n";
    const QString path = folder.write(QStringLiteral("own.csv"), text);
    QVERIFY(OpenDataFile(folder.path(), QStringLiteral("own.csv")));
    const Session opened = S();
    const QString title = mainForm().title();

    test::freshSession();
    const PreparedFile file = PrepareLightCurveFile(path);
    QCOMPARE(file.format, import::FileFormat::Csv);
    QVERIFY(file.rows.rowFilters.empty());
    importFile(path);
    const Session& s = S();
    QCOMPARE(mainForm().title(), title);
    QCOMPARE(s.DataPath, opened.DataPath);
    QCOMPARE(s.NumOrig, opened.NumOrig);
    for (int k = 1; k <= s.NumOrig; ++k) {
        QCOMPARE(s.ReadHJD(k), opened.ReadHJD(k));
        QCOMPARE(s.Mag(k), opened.Mag(k));
    }
    QCOMPARE(s.FoldHJD, opened.FoldHJD);
    QCOMPARE(s.TimesSystem, TimeSystem::Unstated);
}

void FileLoadingTest::commaSeparatedProblems_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("message");
    QTest::newRow("no comma in line 2") << QByteArray("HJD Mag\n0.5 12\n0.6 13\n")
                                        << ", line 2: has no comma: it is neither a comma-separated light curve "
                                           "nor an AAVSO, AstroImageJ or FITS file";
    QTest::newRow("seven columns") << QByteArray("a,b,c,d,e,f,g\n1,2,3,4,5,6,7\n")
                                   << ", line 2: has 6 commas; a light curve has at most 6 columns";
    QTest::newRow("a word for a magnitude, after a header")
        << QByteArray("HJD,Mag\n0.5,12\n\n0.6,twelve\n0.7,12\n") << ", line 4: a time or magnitude is not a number";
    QTest::newRow("two points in a time, no header")
        << QByteArray("0.4,12\n0.5,12\n0.6.1,12\n") << ", line 3: a time or magnitude is not a number";
    QTest::newRow("one line") << QByteArray("0.4,12\n")
                              << ": ends inside a row, or has fewer than two lines: every row needs as many commas "
                                 "as line 2";
    QTest::newRow("a row cut short at the end")
        << QByteArray("t,m,e\n0.4,12,1\n0.5,12\n")
        << ": ends inside a row, or has fewer than two lines: every row needs as many commas as line 2";
}

void FileLoadingTest::commaSeparatedProblems()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, message);
    test::DataFolder folder;
    const QString path = folder.write(QStringLiteral("bad.csv"), text);
    QCOMPARE(problemOf(path), path + message);
}

void FileLoadingTest::failureLeavesTheSessionAlone()
{
    test::DataFolder folder;
    const QString good = folder.write(QStringLiteral("good.csv"), "t,m\n0.4,11\n0.5,12\n0.6,11\n");
    importFile(good);
    PublishResult(1, 0.5, 0.001);
    const Session before = S();
    const QString title = mainForm().title();
    const QString missing = folder.path() + QStringLiteral("/none.csv");
    QVERIFY(problemOf(missing).startsWith(missing + QStringLiteral(": cannot be read")));
    QVERIFY(!problemOf(folder.write(QStringLiteral("bad.csv"), "t,m\n0.4,x\n0.5,1\n")).isEmpty());
    QVERIFY(!problemOf(importData(QStringLiteral("aavso-bad-mag.txt"))).isEmpty());
    QVERIFY(!problemOf(folder.path()).isEmpty()); // a folder
    QCOMPARE(S().DataPath, before.DataPath);
    QCOMPARE(S().NumOrig, before.NumOrig);
    QCOMPARE(S().ReadHJD(2), before.ReadHJD(2));
    QCOMPARE(mainForm().title(), title);
    QCOMPARE(mainForm().text(1), QStringLiteral("0.50000"));
}

void FileLoadingTest::moreThanThousandRowsNeedAWindow()
{
    test::DataFolder folder;
    const QString path = folder.write(QStringLiteral("long.csv"), longCsv(1500));
    const PreparedFile file = PrepareLightCurveFile(path);
    QCOMPARE(int(file.rows.curve.times.size()), 1500);
    QCOMPARE(int(FilterTimes(file, QString()).size()), 1500);
    const QString tooMany = problemOf(path);
    QVERIFY2(tooMany.contains(QStringLiteral("1500 observations from 0.30000 to 2.38194; at most 1000 can be "
                                             "loaded: choose a time window")),
             qPrintable(tooMany));
    import::ImportOptions options;
    options.window = import::TimeWindow{0.4, 0.6};
    importFile(path, options);
    // Both ends included: 0.4 is row 72 (0.3 + 72 / 720), 0.6 row 216.
    QCOMPARE(int(S().NumOrig), 216 - 72 + 1);
    QCOMPARE(S().ReadHJD(1), 0.4);
    QCOMPARE(S().ReadHJD(145), 0.6);
    options.window = import::TimeWindow{5, 6};
    QVERIFY(problemOf(path, options).contains(QStringLiteral("no observation between 5.00000 and 6.00000")));
}

void FileLoadingTest::filtersOfAnAavsoFile()
{
    const QString path = importData(QStringLiteral("aavso-two-filters.txt"));
    const PreparedFile file = PrepareLightCurveFile(path);
    QCOMPARE(file.format, import::FileFormat::AavsoExtended);
    const std::vector<import::FilterCount> filters = import::filtersIn(file.rows);
    QCOMPARE(int(filters.size()), 2);
    const int v = filters[0].filter == QLatin1String("V") ? filters[0].count : filters[1].count;
    const int b = filters[0].filter == QLatin1String("B") ? filters[0].count : filters[1].count;
    QVERIFY(v > b);
    QCOMPARE(int(FilterTimes(file, QString()).size()), v);
    QCOMPARE(int(FilterTimes(file, QStringLiteral("b")).size()), b);
    importFile(path);
    QCOMPARE(int(S().NumOrig), v);
    import::ImportOptions options;
    options.filter = QStringLiteral("B");
    importFile(path, options);
    QCOMPARE(int(S().NumOrig), b);
    QCOMPARE(Toolkit().filter, QStringLiteral("B"));
    options.filter = QStringLiteral("R");
    QVERIFY(problemOf(path, options).contains(QStringLiteral("no observation in filter \"R\"")));
}

void FileLoadingTest::importBringsTheFilesNames()
{
    Toolkit().observerCode = QStringLiteral("ME");
    importFile(importData(QStringLiteral("aavso-two-filters.txt")));
    const ToolkitState& t = Toolkit();
    QCOMPARE(t.fileSystem, TimeSystem::HJD_UTC);
    QCOMPARE(S().TimesSystem, TimeSystem::HJD_UTC);
    QCOMPARE(t.starName, QStringLiteral("V0404 LYR"));
    QCOMPARE(t.filter, QStringLiteral("V"));
    QCOMPARE(t.observerCode, QStringLiteral("DIPX"));
    QCOMPARE(S().DataName, QStringLiteral("aavso-two-filters.txt"));
    QCOMPARE(mainForm().title(), QStringLiteral("Dipscope - aavso-two-filters.txt"));
}

void FileLoadingTest::nextLoadDropsTheNames()
{
    importFile(importData(QStringLiteral("aavso-tab-bjd.txt")));
    QCOMPARE(Toolkit().fileSystem, TimeSystem::BJD_TDB);
    QVERIFY(!Toolkit().starName.isEmpty());
    // A file of the program's own says nothing: what the last file said goes, what the user
    // typed stays.
    Toolkit().observerCode = QStringLiteral("ME");
    test::DataFolder folder;
    folder.write(QStringLiteral("own.csv"), "t,m\n0.4,11\n0.5,12\n");
    QVERIFY(OpenDataFile(folder.path(), QStringLiteral("own.csv")));
    QCOMPARE(Toolkit().fileSystem, TimeSystem::Unstated);
    QCOMPARE(S().TimesSystem, TimeSystem::Unstated);
    QCOMPARE(Toolkit().starName, QString());
    QCOMPARE(Toolkit().filter, QString());
    QCOMPARE(Toolkit().observerCode, QStringLiteral("ME"));
}

void FileLoadingTest::fitsTimesKeepTheirDigits()
{
    test::DataFolder folder;
    const QString path = folder.path() + QStringLiteral("/tess.fits");
    std::vector<test::FitsRow> rows;
    for (int i = 0; i < 300; ++i)
        rows.push_back({1739.4 + i / 720.0, 1000.0f, 1000.0f - (i == 150 ? 200.0f : 0.0f), i == 10 ? 512 : 0});
    QVERIFY(test::writeLightCurveFits(path, rows));
    S().SubtractWholeDays = true;
    importFile(path);
    const Session& s = S();
    QCOMPARE(int(s.NumOrig), 299); // the row flagged by QUALITY is left out
    QCOMPARE(s.HJDOffset, 2458739.0);
    QCOMPARE(s.TimesSystem, TimeSystem::BJD_TDB);
    QCOMPARE(TimeAxisName(), QStringLiteral("BJD \u2212 2458739"));
    // TIME's own digits: 1739.4 + i / 720 less its whole day, without passing through a full
    // Julian date in one double.
    for (int k : {1, 100, 299}) {
        const int i = k <= 10 ? k - 1 : k;
        const double days = 1739.4 + i / 720.0;
        QCOMPARE(s.ReadHJD(k), days - std::floor(days) + (std::floor(days) - 1739));
    }
    QCOMPARE(Toolkit().fileSystem, TimeSystem::BJD_TDB);
    QCOMPARE(Toolkit().starName, QStringLiteral("TIC 199574208"));
}

void FileLoadingTest::rowsTheSessionCannotHold()
{
    test::DataFolder folder;
    // A flux of 1e-40 is a magnitude of 100, beyond the extents' bounds.
    const QString path = folder.write(QStringLiteral("faint.csv"),
                                      "HJD_UTC,rel_flux_T1\n2459123.40,1.0\n2459123.41,1e-40\n2459123.42,1.0\n");
    QCOMPARE(import::detectFormat(path), import::FileFormat::AstroImageJ);
    QVERIFY(problemOf(path).contains(QStringLiteral("the magnitude 100 at time 2459123.41000 is beyond what a light "
                                                    "curve can hold")));
    QCOMPARE(S().NumOrig, 0);
    QVERIFY(S().DataName.isEmpty());
}

QTEST_GUILESS_MAIN(FileLoadingTest)
#include "tst_fileloading.moc"
