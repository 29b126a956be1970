// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "ImportErrorOf.h"

#include "import/AavsoReader.h"
#include "import/AstroImageJReader.h"
#include "import/Import.h"
#include "import/ImportError.h"
#include "import/TextFile.h"
#include "support/TestSupport.h"

#include <QFile>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>

using namespace dip;
using namespace dip::import;

Q_DECLARE_METATYPE(dip::import::FileFormat)

namespace {

QString data(const QString& name)
{
    return qEnvironmentVariable("DIPSCOPE_SOURCE_DIR") + QStringLiteral("/tests/import/data/") + name;
}

QStringList fileLines(const QString& path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly | QIODevice::Text))
        qFatal("cannot read %s", qPrintable(path));
    return QString::fromUtf8(f.readAll()).split(QLatin1Char('\n'));
}

bool sortedByTime(const LightCurve& c) { return std::is_sorted(c.times.begin(), c.times.end()); }

} // namespace

class ImportTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void numberFields_data();
    void numberFields();
    void errorText();
    void linesKeepTheirNumbers();
    void detection_data();
    void detection();
    void detectionOfUnreadable();
    void aavsoTwoFilters();
    void aavsoRowsAreTheFileRowsSorted();
    void aavsoFilterChoice();
    void aavsoTabBjdCrlf();
    void aavsoErrors_data();
    void aavsoErrors();
    void aavsoDelimiters_data();
    void aavsoDelimiters();
    void aijFlux();
    void aijMagnitudes();
    void aijCommaSeparated();
    void aijChosenColumn();
    void aijErrors_data();
    void aijErrors();
    void ownFormatIsNotAnImportersToRead();
    void limitAndWindow();
    void windowErrors();
    void filterOfAFileWithoutFilters();
    void stableSort();
};

void ImportTest::numberFields_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<double>("value");
    QTest::newRow("plain") << "12.345" << true << 12.345;
    QTest::newRow("blanks") << "  12.345 " << true << 12.345;
    QTest::newRow("negative") << "-0.25" << true << -0.25;
    QTest::newRow("exponent") << "1.5e-3" << true << 0.0015;
    QTest::newRow("leading point") << ".5" << true << 0.5;
    QTest::newRow("full JD") << "2459123.51234" << true << 2459123.51234;
    QTest::newRow("two points") << "12.3.4" << false << 0.0;
    QTest::newRow("comma decimal") << "12,3" << false << 0.0;
    QTest::newRow("infinity") << "inf" << false << 0.0;
    QTest::newRow("hex") << "0x10" << false << 0.0;
    QTest::newRow("empty") << "" << false << 0.0;
    QTest::newRow("na") << "na" << false << 0.0;
    QTest::newRow("exponent without digits") << "1e" << false << 0.0;
    QTest::newRow("overflow") << "1e999" << false << 0.0;
}

void ImportTest::numberFields()
{
    QFETCH(QString, text);
    QFETCH(bool, ok);
    QFETCH(double, value);
    const std::optional<double> v = numberField(text);
    QCOMPARE(v.has_value(), ok);
    if (ok)
        QCOMPARE(*v, value);
    // NaN in any case is a missing measurement.
    QVERIFY(std::isnan(*numberField(QStringLiteral("NaN"))));
    QVERIFY(std::isnan(*numberField(QStringLiteral(" nan "))));
}

void ImportTest::errorText()
{
    const ImportError withLine(QStringLiteral("a.txt"), 12, QStringLiteral("MAG \"x\" is not a number"));
    QCOMPARE(withLine.text(), QStringLiteral("a.txt, line 12: MAG \"x\" is not a number"));
    QCOMPARE(QString::fromStdString(withLine.what()), withLine.text());
    const ImportError noLine(QStringLiteral("b.fits"), 0, QStringLiteral("no TIME"));
    QCOMPARE(noLine.text(), QStringLiteral("b.fits: no TIME"));
}

void ImportTest::linesKeepTheirNumbers()
{
    test::DataFolder folder;
    const QString path = folder.write(QStringLiteral("l.txt"), "\xEF\xBB\xBFone\r\ntwo\n\nfour\rfive");
    const std::vector<QString> lines = readTextLines(path);
    QCOMPARE(int(lines.size()), 5);
    QCOMPARE(lines[0], QStringLiteral("one"));
    QCOMPARE(lines[2], QString());
    QCOMPARE(lines[3], QStringLiteral("four"));
    QCOMPARE(lines[4], QStringLiteral("five"));
}

void ImportTest::detection_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<FileFormat>("format");
    QTest::newRow("AAVSO, two filters") << "aavso-two-filters.txt" << FileFormat::AavsoExtended;
    QTest::newRow("AAVSO, tab, CRLF") << "aavso-tab-bjd.txt" << FileFormat::AavsoExtended;
    QTest::newRow("AAVSO visual still AAVSO") << "aavso-visual.txt" << FileFormat::AavsoExtended;
    QTest::newRow("AstroImageJ flux") << "aij-flux.xls" << FileFormat::AstroImageJ;
    QTest::newRow("AstroImageJ magnitudes") << "aij-mag.xls" << FileFormat::AstroImageJ;
    QTest::newRow("AstroImageJ comma-separated, .csv") << "aij-comma.csv" << FileFormat::AstroImageJ;
    QTest::newRow("own format with header") << "own-format.csv" << FileFormat::Csv;
    QTest::newRow("own format without header") << "own-format-no-header.csv" << FileFormat::Csv;
}

void ImportTest::detection()
{
    QFETCH(QString, file);
    QFETCH(FileFormat, format);
    QCOMPARE(detectFormat(data(file)), format);
    // By content, not by name.
    test::DataFolder folder;
    QFile source(data(file));
    QVERIFY(source.open(QIODevice::ReadOnly));
    QCOMPARE(detectFormat(folder.write(QStringLiteral("renamed.dat"), source.readAll())), format);
}

void ImportTest::detectionOfUnreadable()
{
    test::DataFolder folder;
    QCOMPARE(detectFormat(folder.write(QStringLiteral("empty.txt"), QByteArray())), FileFormat::Csv);
    const QString missing = folder.path() + QStringLiteral("/missing.txt");
    const ImportError e = test::importErrorOf([&] { detectFormat(missing); });
    QCOMPARE(e.file(), missing);
    QVERIFY(e.message().startsWith(QLatin1String("cannot be read")));
    QVERIFY(test::importErrorOf([&] { detectFormat(folder.path()); }).message().contains(QLatin1String("folder")));
}

void ImportTest::aavsoTwoFilters()
{
    const ImportedRows rows = readAavsoExtended(data(QStringLiteral("aavso-two-filters.txt")));
    QCOMPARE(rows.format, FileFormat::AavsoExtended);
    QCOMPARE(rows.curve.timeSystem, TimeSystem::HJD_UTC);
    QCOMPARE(rows.curve.starName, QStringLiteral("V0404 LYR"));
    QCOMPARE(rows.curve.observerCode, QStringLiteral("DIPX"));
    QVERIFY(rows.curve.filter.isEmpty()); // two filters: none chosen yet
    QCOMPARE(int(rows.curve.times.size()), 72);
    QCOMPARE(rows.curve.rowCount, 72);
    QCOMPARE(rows.rowFilters.size(), rows.curve.times.size());
    QVERIFY(sortedByTime(rows.curve));
    const std::vector<FilterCount> filters = filtersIn(rows);
    QCOMPARE(int(filters.size()), 2);
    QCOMPARE(filters[0].filter, QStringLiteral("V"));
    QCOMPARE(filters[0].count, 48);
    QCOMPARE(filters[1].filter, QStringLiteral("B"));
    QCOMPARE(filters[1].count, 24);
    QCOMPARE(defaultFilter(rows), QStringLiteral("V"));
    QCOMPARE(rows.droppedRows, 1);
    QVERIFY(rows.notes.join(' ').contains(QLatin1String("1 fainter-than")));
}

void ImportTest::aavsoRowsAreTheFileRowsSorted()
{
    // Read the file a second way: every line not starting with "#", split at commas.
    std::vector<std::pair<double, double>> expected;
    for (const QString& line : fileLines(data(QStringLiteral("aavso-two-filters.txt")))) {
        const QStringList f = line.split(QLatin1Char(','));
        if (line.startsWith(QLatin1Char('#')) || f.size() < 5 || f[4] != QLatin1String("V") || f[2].startsWith('<'))
            continue;
        expected.emplace_back(f[1].toDouble(), f[2].toDouble());
    }
    QVERIFY(!std::is_sorted(expected.begin(), expected.end())); // the file has rows out of order
    std::stable_sort(expected.begin(), expected.end(), [](auto& a, auto& b) { return a.first < b.first; });
    const LightCurve v = selectRows(readAavsoExtended(data(QStringLiteral("aavso-two-filters.txt"))), {});
    QCOMPARE(v.filter, QStringLiteral("V"));
    QCOMPARE(v.times.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        QCOMPARE(v.times[i], expected[i].first);
        QCOMPARE(v.mags[i], expected[i].second);
    }
}

void ImportTest::aavsoFilterChoice()
{
    const ImportedRows rows = readAavsoExtended(data(QStringLiteral("aavso-two-filters.txt")));
    ImportOptions b;
    b.filter = QStringLiteral("b"); // case ignored
    const LightCurve curve = selectRows(rows, b);
    QCOMPARE(curve.filter, QStringLiteral("B"));
    QCOMPARE(int(curve.times.size()), 24);
    QCOMPARE(curve.rowCount, 24);
    QVERIFY(sortedByTime(curve));
    ImportOptions r;
    r.filter = QStringLiteral("R");
    const ImportError e = test::importErrorOf([&] { selectRows(rows, r); });
    QCOMPARE(e.line(), 0);
    QCOMPARE(e.message(), QStringLiteral("no observation in filter \"R\"; the file has V (48), B (24)"));
}

void ImportTest::aavsoTabBjdCrlf()
{
    const LightCurve c = importLightCurve(data(QStringLiteral("aavso-tab-bjd.txt")));
    QCOMPARE(c.timeSystem, TimeSystem::BJD_TDB);
    QCOMPARE(c.filter, QStringLiteral("TG"));
    QCOMPARE(c.starName, QStringLiteral("CM DRA"));
    QCOMPARE(int(c.times.size()), 30);
    QVERIFY(sortedByTime(c));
    QVERIFY(c.times.front() > 2459123.4 && c.times.back() < 2459123.6);
}

void ImportTest::aavsoErrors_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("line");
    QTest::addColumn<QString>("message");
    QTest::newRow("magnitude") << "aavso-bad-mag.txt" << 12 << "MAG \"12.3.4\" is not a number";
    QTest::newRow("Excel dates") << "aavso-excel.txt" << 5
                                 << "#DATE=EXCEL: Excel dates are not read; export the times as JD";
    QTest::newRow("visual") << "aavso-visual.txt" << 1
                            << "#TYPE=VISUAL: only the AAVSO extended format (#TYPE=EXTENDED) is read";
    QTest::newRow("two stars") << "aavso-two-stars.txt" << 10
                               << "NAME \"TX UMA\" differs from \"RZ CAS\" of line 8: one star a file";
    QTest::newRow("short row")
        << "aavso-short-row.txt" << 9
        << "3 fields; an observation has at least 5 (NAME, DATE, MAG, MERR, FILT) separated by \",\"";
    QTest::newRow("date after the data") << "aavso-date-after-data.txt" << 7
                                         << "an observation before the #DATE= line (JD, HJD or BJD)";
}

void ImportTest::aavsoErrors()
{
    QFETCH(QString, file);
    QFETCH(int, line);
    QFETCH(QString, message);
    const ImportError e = test::importErrorOf([&] { importLightCurve(data(file)); });
    QCOMPARE(e.file(), data(file));
    QCOMPARE(e.message(), message);
    QCOMPARE(e.line(), line);
}

void ImportTest::aavsoDelimiters_data()
{
    QTest::addColumn<QByteArray>("delim");
    QTest::addColumn<QByteArray>("separator");
    QTest::newRow("semicolon") << QByteArray(";") << QByteArray(";");
    QTest::newRow("pipe") << QByteArray("|") << QByteArray("|");
    QTest::newRow("the word comma") << QByteArray("comma") << QByteArray(",");
    QTest::newRow("a tab character") << QByteArray("\t") << QByteArray("\t");
}

void ImportTest::aavsoDelimiters()
{
    QFETCH(QByteArray, delim);
    QFETCH(QByteArray, separator);
    QByteArray text = "#TYPE=EXTENDED\n#OBSCODE=ABC\n#DELIM=" + delim + "\n#DATE=JD\n";
    for (const char* row : {"SW LAC|2459123.41|13.02|0.01|V|NO", "SW LAC|2459123.40|13.10|0.01|V|NO"})
        text += QByteArray(row).replace("|", separator) + "\n";
    test::DataFolder folder;
    const QString path = folder.write(QStringLiteral("d.txt"), text);
    const LightCurve c = importLightCurve(path);
    QCOMPARE(c.times, (std::vector<double>{2459123.40, 2459123.41}));
    QCOMPARE(c.mags, (std::vector<double>{13.10, 13.02}));
    QCOMPARE(c.timeSystem, TimeSystem::JD_UTC);
    QCOMPARE(c.observerCode, QStringLiteral("ABC"));
    // A delimiter of two characters is refused at its line.
    const QString bad = folder.write(QStringLiteral("bad.txt"), "#TYPE=EXTENDED\n#DELIM=;;\n#DATE=JD\n");
    const ImportError e = test::importErrorOf([&] { importLightCurve(bad); });
    QCOMPARE(e.line(), 2);
    QVERIFY(e.message().startsWith(QLatin1String("#DELIM=;;")));
}

void ImportTest::aijFlux()
{
    const QString path = data(QStringLiteral("aij-flux.xls"));
    const ImportedRows rows = readAstroImageJ(path);
    QCOMPARE(rows.format, FileFormat::AstroImageJ);
    QCOMPARE(rows.curve.timeSystem, TimeSystem::BJD_TDB); // BJD_TDB preferred to HJD_UTC and JD_UTC
    QCOMPARE(int(rows.curve.times.size()), 59);           // the NaN row left out
    QCOMPARE(rows.droppedRows, 1);
    QVERIFY(rows.rowFilters.empty());
    QVERIFY(rows.notes.contains(QStringLiteral("magnitudes: -2.5 log10 of rel_flux_T1")));
    // The magnitudes from the file's own numbers: BJD_TDB is column 8, rel_flux_T1 column 10.
    std::map<double, double> expected;
    const QStringList lines = fileLines(path);
    for (int i = 1; i < lines.size(); ++i) {
        const QStringList f = lines[i].split(QLatin1Char('\t'));
        if (f.size() > 9 && f[9] != QLatin1String("NaN"))
            expected[f[7].toDouble()] = -2.5 * std::log10(f[9].toDouble());
    }
    QCOMPARE(expected.size(), rows.curve.times.size());
    std::size_t i = 0;
    for (const auto& [t, m] : expected) {
        QCOMPARE(rows.curve.times[i], t);
        QCOMPARE(rows.curve.mags[i], m);
        ++i;
    }
    // The dip: the faintest point lies near the stated minimum (in the BJD_TDB column).
    const auto faintest = std::max_element(rows.curve.mags.begin(), rows.curve.mags.end()) - rows.curve.mags.begin();
    QVERIFY(std::fabs(rows.curve.times[std::size_t(faintest)] - 2459123.51234) < 0.005);
}

void ImportTest::aijMagnitudes()
{
    const LightCurve c = importLightCurve(data(QStringLiteral("aij-mag.xls")));
    QCOMPARE(c.timeSystem, TimeSystem::JD_UTC);
    QCOMPARE(int(c.times.size()), 40);
    // Source_AMag_T1 as it stands: the base magnitude of the made-up star is 12.3.
    QVERIFY(c.mags.front() > 12.2 && c.mags.front() < 12.5);
}

void ImportTest::aijCommaSeparated()
{
    const LightCurve c = importLightCurve(data(QStringLiteral("aij-comma.csv")));
    QCOMPARE(c.timeSystem, TimeSystem::HJD_UTC);
    QCOMPARE(int(c.times.size()), 25);
    QCOMPARE(c.rowCount, 25);
    const QStringList first = fileLines(data(QStringLiteral("aij-comma.csv")))[1].split(QLatin1Char(','));
    QCOMPARE(c.times.front(), first[0].toDouble());
    QCOMPARE(c.mags.front(), -2.5 * std::log10(first[1].toDouble()));
}

void ImportTest::aijChosenColumn()
{
    ImportOptions o;
    o.column = QStringLiteral("rel_flux_C2");
    const LightCurve c = importLightCurve(data(QStringLiteral("aij-flux.xls")), o);
    QCOMPARE(int(c.times.size()), 60);         // the NaN of rel_flux_T1 does not matter now
    QVERIFY(std::fabs(c.mags.front()) < 0.02); // a comparison star near 1.0
    o.column = QStringLiteral("nope");
    const ImportError e = test::importErrorOf([&] { importLightCurve(data(QStringLiteral("aij-flux.xls")), o); });
    QCOMPARE(e.line(), 1);
    QCOMPARE(e.message(), QStringLiteral("no column \"nope\" in the header"));
}

void ImportTest::aijErrors_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("line");
    QTest::addColumn<QString>("message");
    QTest::newRow("time") << "aij-bad-time.xls" << 7 << "BJD_TDB \"2459123.51x\" is not a number";
    QTest::newRow("negative flux") << "aij-negative-flux.xls" << 5
                                   << "rel_flux_T1 -0.0213 is not positive: it has no magnitude";
    QTest::newRow("short row") << "aij-short-row.xls" << 4 << "5 fields, the header has 14 columns";
}

void ImportTest::aijErrors()
{
    QFETCH(QString, file);
    QFETCH(int, line);
    QFETCH(QString, message);
    const ImportError e = test::importErrorOf([&] { importLightCurve(data(file)); });
    QCOMPARE(e.message(), message);
    QCOMPARE(e.line(), line);
    QCOMPARE(e.text(), QStringLiteral("%1, line %2: %3").arg(data(file)).arg(line).arg(message));
}

void ImportTest::ownFormatIsNotAnImportersToRead()
{
    const ImportError e = test::importErrorOf([&] { importLightCurve(data(QStringLiteral("own-format.csv"))); });
    QVERIFY2(e.message().contains(QLatin1String("program's own format")), qPrintable(e.message()));
}

void ImportTest::limitAndWindow()
{
    const QString path = data(QStringLiteral("aij-1500.xls"));
    const ImportedRows rows = readRows(path, detectFormat(path));
    QCOMPARE(int(rows.curve.times.size()), 1500);
    // Without a window: refused, with the count and the span.
    const ImportError e = test::importErrorOf([&] { selectRows(rows, {}); });
    QCOMPARE(e.line(), 0);
    QVERIFY2(e.message().startsWith(QLatin1String("1500 observations from 2459123.")), qPrintable(e.message()));
    QVERIFY(e.message().endsWith(QLatin1String("at most 1000 can be loaded: choose a time window")));
    // The second night.
    const TimeWindow night{2459124.0, 2459125.0};
    QCOMPARE(countInWindow(rows.curve, night), 500);
    ImportOptions o;
    o.window = night;
    const LightCurve c = selectRows(rows, o);
    QCOMPARE(int(c.times.size()), 500);
    QCOMPARE(c.rowCount, 500);
    QVERIFY(c.times.front() >= night.first && c.times.back() <= night.last);
    QCOMPARE(c.timeSystem, TimeSystem::BJD_TDB);
    // Two nights are exactly the limit, and load; the ends of a window are included.
    o.window = TimeWindow{2459123.0, 2459125.0};
    QCOMPARE(int(selectRows(rows, o).times.size()), 1000);
    const double t0 = rows.curve.times[100], t1 = rows.curve.times[1099];
    o.window = TimeWindow{t0, t1};
    QCOMPARE(int(selectRows(rows, o).times.size()), 1000); // exactly the limit loads
    o.window = TimeWindow{t0, rows.curve.times[1100]};
    QVERIFY(test::importErrorOf([&] { selectRows(rows, o); }).message().startsWith(QLatin1String("1001 observations")));
}

void ImportTest::windowErrors()
{
    const QString path = data(QStringLiteral("aij-mag.xls"));
    const ImportedRows rows = readRows(path, detectFormat(path));
    ImportOptions o;
    o.window = TimeWindow{2459200.0, 2459201.0};
    const ImportError empty = test::importErrorOf([&] { selectRows(rows, o); });
    QVERIFY2(empty.message().startsWith(QLatin1String("no observation between 2459200.00000 and 2459201.00000; the 40 "
                                                      "observations run from 2459123.")),
             qPrintable(empty.message()));
    o.window = TimeWindow{2459124.0, 2459123.0};
    QVERIFY(
        test::importErrorOf([&] { selectRows(rows, o); }).message().contains(QLatin1String("ends before it begins")));
}

void ImportTest::filterOfAFileWithoutFilters()
{
    const QString path = data(QStringLiteral("aij-mag.xls"));
    ImportOptions o;
    o.filter = QStringLiteral("V");
    QVERIFY(
        test::importErrorOf([&] { importLightCurve(path, o); }).message().contains(QLatin1String("names no filter")));
    const ImportedRows tg = readRows(data(QStringLiteral("aavso-tab-bjd.txt")), FileFormat::AavsoExtended);
    o.filter = QStringLiteral("tg");
    QCOMPARE(int(selectRows(tg, o).times.size()), 30);
}

void ImportTest::stableSort()
{
    ImportedRows rows;
    rows.curve.times = {3, 1, 2, 1, 3};
    rows.curve.mags = {10, 11, 12, 13, 14};
    rows.rowFilters = {"a", "b", "c", "d", "e"};
    sortByTime(rows);
    QCOMPARE(rows.curve.times, (std::vector<double>{1, 1, 2, 3, 3}));
    QCOMPARE(rows.curve.mags, (std::vector<double>{11, 13, 12, 10, 14})); // equal times keep the file's order
    QCOMPARE(rows.rowFilters, (std::vector<QString>{"b", "d", "c", "a", "e"}));
    LightCurve c;
    c.times = {1, 2, 3, 4};
    c.mags = {5, 6, 7, 8};
    c.starName = QStringLiteral("X");
    const LightCurve cut = cutToWindow(c, TimeWindow{2, 3});
    QCOMPARE(cut.times, (std::vector<double>{2, 3}));
    QCOMPARE(cut.mags, (std::vector<double>{6, 7}));
    QCOMPARE(cut.starName, QStringLiteral("X"));
    QCOMPARE(cut.rowCount, 2);
}

QTEST_APPLESS_MAIN(ImportTest)
#include "tst_import.moc"
