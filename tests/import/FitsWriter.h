// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// Writes a light-curve FITS file laid out as TESS's: an empty primary array whose header names
// the object and the telescope, and a binary table "LIGHTCURVE" with TIME, SAP_FLUX,
// PDCSAP_FLUX and QUALITY and the keywords that make TIME a Julian date.

#include <fitsio.h>

#include <QString>

#include <optional>
#include <vector>

namespace dip::test {

struct FitsRow {
    double time;
    float sap;
    float pdcsap;
    int quality;
};

struct FitsLayout {
    bool withPdcsap = true;
    bool withQuality = true;
    std::optional<int> bjdRefI = 2457000;
    double bjdRefF = 0.0;
    QString timeSys = QStringLiteral("TDB");
    QString object = QStringLiteral("TIC 199574208");
    QString telescope = QStringLiteral("TESS");
    QString timeColumn = QStringLiteral("TIME");
};

inline bool writeLightCurveFits(const QString& path, const std::vector<FitsRow>& rows, const FitsLayout& layout = {})
{
    fitsfile* f = nullptr;
    int status = 0;
    const QByteArray name = path.toLocal8Bit();
    fits_create_diskfile(&f, const_cast<char*>(name.constData()), &status);
    fits_create_img(f, BYTE_IMG, 0, nullptr, &status);
    const QByteArray object = layout.object.toLatin1(), telescope = layout.telescope.toLatin1();
    fits_write_key(f, TSTRING, "OBJECT", const_cast<char*>(object.constData()), "object name", &status);
    fits_write_key(f, TSTRING, "TELESCOP", const_cast<char*>(telescope.constData()), "telescope", &status);

    const QByteArray timeName = layout.timeColumn.toLatin1();
    std::vector<char*> types = {const_cast<char*>(timeName.constData()), const_cast<char*>("SAP_FLUX")};
    std::vector<char*> forms = {const_cast<char*>("D"), const_cast<char*>("E")};
    std::vector<char*> units = {const_cast<char*>("BJD - 2457000, days"), const_cast<char*>("e-/s")};
    if (layout.withPdcsap) {
        types.push_back(const_cast<char*>("PDCSAP_FLUX"));
        forms.push_back(const_cast<char*>("E"));
        units.push_back(const_cast<char*>("e-/s"));
    }
    if (layout.withQuality) {
        types.push_back(const_cast<char*>("QUALITY"));
        forms.push_back(const_cast<char*>("J"));
        units.push_back(const_cast<char*>(""));
    }
    fits_create_tbl(f, BINARY_TBL, 0, static_cast<int>(types.size()), types.data(), forms.data(), units.data(),
                    "LIGHTCURVE", &status);
    if (layout.bjdRefI) {
        int refI = *layout.bjdRefI;
        fits_write_key(f, TINT, "BJDREFI", &refI, "integer part of BTJD reference date", &status);
    }
    double refF = layout.bjdRefF;
    fits_write_key(f, TDOUBLE, "BJDREFF", &refF, "fraction of the day in BTJD reference date", &status);
    const QByteArray timeSys = layout.timeSys.toLatin1();
    fits_write_key(f, TSTRING, "TIMESYS", const_cast<char*>(timeSys.constData()), "time system", &status);
    fits_write_key(f, TSTRING, "TIMEREF", const_cast<char*>("SOLARSYSTEM"), "barycentric correction applied", &status);
    fits_write_key(f, TSTRING, "TIMEUNIT", const_cast<char*>("d"), "time unit", &status);
    fits_write_key(f, TSTRING, "TELESCOP", const_cast<char*>(telescope.constData()), "telescope", &status);

    const long n = static_cast<long>(rows.size());
    std::vector<double> time;
    std::vector<float> sap, pdcsap;
    std::vector<int> quality;
    for (const FitsRow& r : rows) {
        time.push_back(r.time);
        sap.push_back(r.sap);
        pdcsap.push_back(r.pdcsap);
        quality.push_back(r.quality);
    }
    if (n > 0) {
        int col = 1;
        fits_write_col(f, TDOUBLE, col++, 1, 1, n, time.data(), &status);
        fits_write_col(f, TFLOAT, col++, 1, 1, n, sap.data(), &status);
        if (layout.withPdcsap)
            fits_write_col(f, TFLOAT, col++, 1, 1, n, pdcsap.data(), &status);
        if (layout.withQuality)
            fits_write_col(f, TINT, col++, 1, 1, n, quality.data(), &status);
    }
    fits_close_file(f, &status);
    return status == 0;
}

} // namespace dip::test
