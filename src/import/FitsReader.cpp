// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "import/FitsReader.h"

#include "import/ImportError.h"
#include "import/TextFile.h"

#include <fitsio.h>

#include <cmath>
#include <mutex>
#include <vector>

namespace dip::import {

namespace {

std::mutex& fitsLock()
{
    static std::mutex lock;
    return lock;
}

QString statusText(int status)
{
    char text[FLEN_STATUS] = {0};
    fits_get_errstatus(status, text);
    return QString::fromLatin1(text);
}

// The open file, closed on every way out.
class FitsFile {
public:
    FitsFile(const QString& path, const QString& label) : m_label(label)
    {
        int status = 0;
        // The disk-file form: a name is a name, never CFITSIO's filter or section syntax.
        fits_open_diskfile(&m_file, path.toLocal8Bit().constData(), READONLY, &status);
        if (status != 0)
            throw ImportError(label, 0, QStringLiteral("cannot be read as FITS (%1)").arg(statusText(status)));
    }
    ~FitsFile()
    {
        int status = 0;
        if (m_file)
            fits_close_file(m_file, &status);
    }
    FitsFile(const FitsFile&) = delete;
    FitsFile& operator=(const FitsFile&) = delete;

    fitsfile* get() const { return m_file; }

    void check(int status, const QString& what) const
    {
        if (status != 0)
            throw ImportError(m_label, 0, QStringLiteral("%1 (%2)").arg(what, statusText(status)));
    }

    // A text keyword of the current header; empty when it is not there.
    QString text(const char* key) const
    {
        char value[FLEN_VALUE] = {0};
        int status = 0;
        fits_read_key(m_file, TSTRING, key, value, nullptr, &status);
        return status == 0 ? QString::fromLatin1(value).trimmed() : QString();
    }

    bool number(const char* key, double* value) const
    {
        int status = 0;
        fits_read_key(m_file, TDOUBLE, key, value, nullptr, &status);
        return status == 0;
    }

    int column(const char* name) const
    {
        int col = 0;
        int status = 0;
        fits_get_colnum(m_file, CASEINSEN, const_cast<char*>(name), &col, &status);
        return status == 0 ? col : 0;
    }

    std::vector<double> readColumn(int col, long rows, const QString& name) const
    {
        std::vector<double> values(static_cast<std::size_t>(rows));
        int status = 0, anyNull = 0;
        double nullValue = std::nan("");
        if (rows > 0)
            fits_read_col(m_file, TDOUBLE, col, 1, 1, rows, &nullValue, values.data(), &anyNull, &status);
        check(status, QStringLiteral("column %1 cannot be read").arg(name));
        return values;
    }

private:
    fitsfile* m_file = nullptr;
    QString m_label;
};

} // namespace

ImportedRows readFitsLightCurve(const QString& path, const QString& column)
{
    const QString file = fileLabel(path);
    const std::lock_guard<std::mutex> guard(fitsLock());
    FitsFile fits(path, file);
    ImportedRows rows;
    rows.format = FileFormat::Fits;
    rows.curve.source = file;
    rows.curve.timeSystem = TimeSystem::BJD_TDB;

    const QString primaryObject = fits.text("OBJECT");
    const QString primaryTelescope = fits.text("TELESCOP");

    int hdus = 0, status = 0;
    fits_get_num_hdus(fits.get(), &hdus, &status);
    fits.check(status, QStringLiteral("its headers cannot be read"));
    int timeCol = 0;
    int tableHdu = 0;
    for (int hdu = 2; hdu <= hdus && timeCol == 0; ++hdu) {
        int type = 0;
        status = 0;
        fits_movabs_hdu(fits.get(), hdu, &type, &status);
        fits.check(status, QStringLiteral("header %1 cannot be read").arg(hdu));
        if (type == BINARY_TBL && (timeCol = fits.column("TIME")) != 0)
            tableHdu = hdu;
    }
    if (timeCol == 0)
        throw ImportError(file, 0, QStringLiteral("no binary table with a TIME column: not a light-curve file"));
    const QString where = QStringLiteral("table %1").arg(tableHdu);

    double refI = 0, refF = 0;
    if (!fits.number("BJDREFI", &refI))
        throw ImportError(file, 0,
                          QStringLiteral("%1 has no BJDREFI: its times cannot be made Julian dates").arg(where));
    if (!fits.number("BJDREFF", &refF))
        refF = 0;
    const QString timeSys = fits.text("TIMESYS");
    if (!timeSys.isEmpty() && timeSys.compare(QLatin1String("TDB"), Qt::CaseInsensitive) != 0)
        throw ImportError(file, 0,
                          QStringLiteral("%1: TIMESYS is %2; only TDB times (BJD_TDB) are read").arg(where, timeSys));
    const QString timeUnit = fits.text("TIMEUNIT");
    if (!timeUnit.isEmpty() && timeUnit.compare(QLatin1String("d"), Qt::CaseInsensitive) != 0)
        throw ImportError(file, 0, QStringLiteral("%1: TIMEUNIT is %2; times in days are read").arg(where, timeUnit));

    QString fluxName = column;
    int fluxCol = 0;
    if (!fluxName.isEmpty()) {
        fluxCol = fits.column(fluxName.toLatin1().constData());
        if (fluxCol == 0)
            throw ImportError(file, 0, QStringLiteral("%1 has no column %2").arg(where, fluxName));
    } else {
        for (const char* name : {"PDCSAP_FLUX", "SAP_FLUX"}) {
            fluxCol = fits.column(name);
            if (fluxCol != 0) {
                fluxName = QString::fromLatin1(name);
                break;
            }
        }
        if (fluxCol == 0)
            throw ImportError(file, 0, QStringLiteral("%1 has neither PDCSAP_FLUX nor SAP_FLUX").arg(where));
    }
    const int qualityCol = fits.column("QUALITY");

    long count = 0;
    status = 0;
    fits_get_num_rows(fits.get(), &count, &status);
    fits.check(status, QStringLiteral("%1: the number of rows cannot be read").arg(where));
    const std::vector<double> time = fits.readColumn(timeCol, count, QStringLiteral("TIME"));
    const std::vector<double> flux = fits.readColumn(fluxCol, count, fluxName);
    const std::vector<double> quality =
        qualityCol ? fits.readColumn(qualityCol, count, QStringLiteral("QUALITY")) : std::vector<double>();

    int flagged = 0, missing = 0, notPositive = 0;
    for (std::size_t i = 0; i < time.size(); ++i) {
        if (!quality.empty() && quality[i] != 0) {
            ++flagged;
            continue;
        }
        if (std::isnan(time[i]) || std::isnan(flux[i])) {
            ++missing;
            continue;
        }
        if (!(flux[i] > 0)) {
            ++notPositive;
            continue;
        }
        // BJDREFI + (BJDREFF + TIME): the whole days apart, so that no digit of TIME is lost.
        const double days = refF + time[i];
        const double whole = std::floor(days);
        rows.curve.addRow(refI + whole, days - whole, -2.5 * std::log10(flux[i]));
    }

    rows.curve.starName = fits.text("OBJECT");
    if (rows.curve.starName.isEmpty())
        rows.curve.starName = primaryObject;
    rows.curve.filter = fits.text("TELESCOP");
    if (rows.curve.filter.isEmpty())
        rows.curve.filter = primaryTelescope;

    rows.notes << QStringLiteral("times: TIME + BJDREFI + BJDREFF (%1)").arg(refI + refF, 0, 'f', 6);
    rows.notes << QStringLiteral("magnitudes: -2.5 log10 of %1").arg(fluxName);
    if (flagged)
        rows.notes << QStringLiteral("%1 rows flagged by QUALITY left out").arg(flagged);
    if (missing)
        rows.notes << QStringLiteral("%1 rows with NaN left out").arg(missing);
    if (notPositive)
        rows.notes << QStringLiteral("%1 rows with a flux not above 0 left out").arg(notPositive);
    rows.droppedRows = flagged + missing + notPositive;
    if (rows.curve.times.empty())
        throw ImportError(
            file, 0,
            rows.droppedRows == 0
                ? QStringLiteral("%1 holds no rows").arg(where)
                : QStringLiteral("%1 holds no usable row: %2").arg(where, rows.notes.mid(2).join(QLatin1String(", "))));
    sortByTime(rows);
    return rows;
}

} // namespace dip::import
