// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "FitsWriter.h"
#include "ImportErrorOf.h"

#include "import/AavsoReader.h"
#include "import/FitsReader.h"
#include "import/Import.h"
#include "import/ImportError.h"
#include "support/TestSupport.h"

#include <QTest>

#include <cmath>
#include <limits>
#include <thread>

using namespace dip;
using namespace dip::import;
using dip::test::FitsLayout;
using dip::test::FitsRow;

namespace {

const float nanf = std::numeric_limits<float>::quiet_NaN();

// A TESS-like stretch of 2-minute cadences over an eclipse at BTJD 1739.9291, with the rows a
// real file has: flagged cadences, NaN fluxes and times, a negative flux.
std::vector<FitsRow> tessRows()
{
    std::vector<FitsRow> rows;
    for (int k = 0; k < 40; ++k) {
        const double t = 1739.90 + k * (2.0 / 1440.0);
        const double x = (t - 1739.9291) / 0.01;
        const float flux = float(52000.0 * (1.0 - 0.45 / (1.0 + x * x)));
        rows.push_back({t, flux * 1.02f, flux, 0});
    }
    rows[3].quality = 128;        // flagged
    rows[4].quality = 1;          // flagged
    rows[10].pdcsap = nanf;       // no flux
    rows[11].pdcsap = nanf;       // no flux
    rows[12].time = std::nan(""); // no time
    rows[20].pdcsap = -5.0f;      // not positive
    return rows;
}

} // namespace

class ImportFitsTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void tessLightCurve();
    void detectedByContent();
    void sapWhenNoPdcsap();
    void chosenColumn();
    void keplerReference();
    void fractionOfTheReferenceDay();
    void errors();
    void notFits();
    void threadsTakeTurns();

private:
    test::DataFolder m_folder;
};

void ImportFitsTest::tessLightCurve()
{
    const QString path = m_folder.path() + QStringLiteral("/tess.fits");
    const std::vector<FitsRow> written = tessRows();
    QVERIFY(test::writeLightCurveFits(path, written));
    const ImportedRows rows = readFitsLightCurve(path);
    QCOMPARE(rows.format, FileFormat::Fits);
    QCOMPARE(rows.curve.timeSystem, TimeSystem::BJD_TDB);
    QCOMPARE(rows.curve.starName, QStringLiteral("TIC 199574208")); // from the primary header
    QCOMPARE(rows.curve.filter, QStringLiteral("TESS"));
    QCOMPARE(rows.droppedRows, 6);
    QCOMPARE(int(rows.curve.times.size()), 34);
    QCOMPARE(rows.curve.rowCount, 34);
    QVERIFY(rows.notes.contains(QStringLiteral("2 rows flagged by QUALITY left out")));
    QVERIFY(rows.notes.contains(QStringLiteral("3 rows with NaN left out")));
    QVERIFY(rows.notes.contains(QStringLiteral("1 rows with a flux not above 0 left out")));
    QVERIFY(rows.notes.contains(QStringLiteral("magnitudes: -2.5 log10 of PDCSAP_FLUX")));
    // Every kept row is a written one: BJDREFI + TIME, -2.5 log10 PDCSAP_FLUX.
    std::size_t j = 0;
    for (const FitsRow& r : written) {
        if (r.quality != 0 || std::isnan(r.time) || std::isnan(r.pdcsap) || r.pdcsap <= 0)
            continue;
        QCOMPARE(rows.curve.times[j], 2457000.0 + r.time);
        QCOMPARE(rows.curve.mags[j], -2.5 * std::log10(double(r.pdcsap)));
        ++j;
    }
    QCOMPARE(j, rows.curve.times.size());
    // The eclipse is where it was put.
    const auto deepest = std::max_element(rows.curve.mags.begin(), rows.curve.mags.end()) - rows.curve.mags.begin();
    QVERIFY(std::fabs(rows.curve.times[std::size_t(deepest)] - 2458739.9291) < 0.0015);
}

void ImportFitsTest::detectedByContent()
{
    const QString path = m_folder.path() + QStringLiteral("/curve.txt");
    QVERIFY(test::writeLightCurveFits(path, tessRows()));
    QCOMPARE(detectFormat(path), FileFormat::Fits);
    const LightCurve c = importLightCurve(path);
    QCOMPARE(int(c.times.size()), 34);
    QVERIFY(std::is_sorted(c.times.begin(), c.times.end()));
}

void ImportFitsTest::sapWhenNoPdcsap()
{
    const QString path = m_folder.path() + QStringLiteral("/sap.fits");
    FitsLayout layout;
    layout.withPdcsap = false;
    layout.withQuality = false;
    std::vector<FitsRow> written = tessRows();
    QVERIFY(test::writeLightCurveFits(path, written, layout));
    const ImportedRows rows = readFitsLightCurve(path);
    QVERIFY(rows.notes.contains(QStringLiteral("magnitudes: -2.5 log10 of SAP_FLUX")));
    // No QUALITY column: only the NaN time is left out (SAP has no NaN here).
    QCOMPARE(int(rows.curve.times.size()), 39);
    QCOMPARE(rows.curve.mags.front(), -2.5 * std::log10(double(written.front().sap)));
}

void ImportFitsTest::chosenColumn()
{
    const QString path = m_folder.path() + QStringLiteral("/both.fits");
    QVERIFY(test::writeLightCurveFits(path, tessRows()));
    const ImportedRows rows = readFitsLightCurve(path, QStringLiteral("SAP_FLUX"));
    QCOMPARE(int(rows.curve.times.size()), 37); // flagged and the NaN time out; SAP has no NaN
    const ImportError e = test::importErrorOf([&] { readFitsLightCurve(path, QStringLiteral("KSPSAP_FLUX")); });
    QCOMPARE(e.message(), QStringLiteral("table 2 has no column KSPSAP_FLUX"));
}

void ImportFitsTest::keplerReference()
{
    const QString path = m_folder.path() + QStringLiteral("/kepler.fits");
    FitsLayout layout;
    layout.bjdRefI = 2454833;
    layout.telescope = QStringLiteral("Kepler");
    layout.object = QStringLiteral("KIC 5095269");
    QVERIFY(test::writeLightCurveFits(path, {{131.5123, 1000.f, 1001.f, 0}, {131.5, 1000.f, 1002.f, 0}}, layout));
    const LightCurve c = importLightCurve(path);
    QCOMPARE(c.filter, QStringLiteral("Kepler"));
    QCOMPARE(c.starName, QStringLiteral("KIC 5095269"));
    // Sorted by time.
    QCOMPARE(c.times, (std::vector<double>{2454833.0 + 131.5, 2454833.0 + 131.5123}));
}

void ImportFitsTest::fractionOfTheReferenceDay()
{
    const QString path = m_folder.path() + QStringLiteral("/reff.fits");
    FitsLayout layout;
    layout.bjdRefI = 2400000;
    layout.bjdRefF = 0.5;
    QVERIFY(test::writeLightCurveFits(path, {{59123.01234, 1.f, 1.f, 0}}, layout));
    const LightCurve c = importLightCurve(path);
    QCOMPARE(c.times.front(), 2400000.0 + (0.5 + 59123.01234));
    QCOMPARE(c.mags.front(), 0.0);
}

void ImportFitsTest::errors()
{
    struct Case {
        const char* name;
        FitsLayout layout;
        QString message;
    };
    FitsLayout utc;
    utc.timeSys = QStringLiteral("UTC");
    FitsLayout noRef;
    noRef.bjdRefI.reset();
    FitsLayout noTime;
    noTime.timeColumn = QStringLiteral("CADENCENO");
    const Case cases[] = {
        {"utc", utc, QStringLiteral("table 2: TIMESYS is UTC; only TDB times (BJD_TDB) are read")},
        {"noref", noRef, QStringLiteral("table 2 has no BJDREFI: its times cannot be made Julian dates")},
        {"notime", noTime, QStringLiteral("no binary table with a TIME column: not a light-curve file")},
    };
    for (const Case& k : cases) {
        const QString path = m_folder.path() + QStringLiteral("/%1.fits").arg(QLatin1String(k.name));
        QVERIFY(test::writeLightCurveFits(path, tessRows(), k.layout));
        const ImportError e = test::importErrorOf([&] { importLightCurve(path); });
        QCOMPARE(e.message(), k.message);
        QCOMPARE(e.file(), path);
        QCOMPARE(e.line(), 0);
    }
    // Every row flagged.
    std::vector<FitsRow> flagged = tessRows();
    for (FitsRow& r : flagged)
        r.quality = 4;
    const QString path = m_folder.path() + QStringLiteral("/flagged.fits");
    QVERIFY(test::writeLightCurveFits(path, flagged));
    QCOMPARE(test::importErrorOf([&] { importLightCurve(path); }).message(),
             QStringLiteral("table 2 holds no usable row: 40 rows flagged by QUALITY left out"));
}

void ImportFitsTest::notFits()
{
    const QString path =
        m_folder.write(QStringLiteral("fake.fits"), QByteArray("SIMPLE  = garbage that is no FITS header"));
    QCOMPARE(detectFormat(path), FileFormat::Fits);
    const ImportError e = test::importErrorOf([&] { importLightCurve(path); });
    QVERIFY2(e.message().startsWith(QLatin1String("cannot be read as FITS")), qPrintable(e.message()));
}

void ImportFitsTest::threadsTakeTurns()
{
    // Values in, values out: readers on several threads give what one thread gives.
    const QString fits = m_folder.path() + QStringLiteral("/threads.fits");
    QVERIFY(test::writeLightCurveFits(fits, tessRows()));
    const QString aavso =
        qEnvironmentVariable("DIPSCOPE_SOURCE_DIR") + QStringLiteral("/tests/import/data/aavso-two-filters.txt");
    const LightCurve fitsAlone = importLightCurve(fits);
    const LightCurve aavsoAlone = importLightCurve(aavso);
    std::vector<int> same(8, 0);
    std::vector<std::thread> threads;
    for (int k = 0; k < 8; ++k) {
        threads.emplace_back([&, k] {
            bool ok = true;
            for (int round = 0; round < 10; ++round) {
                const LightCurve c = importLightCurve(k % 2 ? fits : aavso);
                ok = ok && c.times == (k % 2 ? fitsAlone : aavsoAlone).times;
            }
            same[std::size_t(k)] = ok ? 1 : 0;
        });
    }
    for (std::thread& t : threads)
        t.join();
    QCOMPARE(std::count(same.begin(), same.end(), 1), 8L);
}

QTEST_APPLESS_MAIN(ImportFitsTest)
#include "tst_import_fits.moc"
