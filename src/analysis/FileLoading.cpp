// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/FileLoading.h"

#include "import/TextFile.h"
#include "runtime/RuntimeError.h"
#include "runtime/Text.h"
#include "session/LoadDataFile.h"
#include "session/Results.h"
#include "session/Session.h"

#include <QFileInfo>

#include <cmath>

namespace dip {

using import::ImportError;

namespace {

// The first data line whose time or magnitude the reader cannot take as a number, for the
// message of a comma-separated file that failed (0 when none is found). Line 1 is passed over
// when the reader skips it: a header (any character but blanks, signs, points, commas and
// digits), or a line with another number of commas than line 2.
int firstLineNotNumeric(const QString& path)
{
    std::vector<QString> lines;
    try {
        lines = import::readTextLines(path);
    } catch (const ImportError&) {
        return 0;
    }
    std::vector<std::size_t> data;
    for (std::size_t i = 0; i < lines.size(); ++i)
        if (!lines[i].trimmed().isEmpty())
            data.push_back(i);
    if (data.size() >= 2) {
        static const QString allowed = QStringLiteral(" +-.,0123456789");
        const QString& line1 = lines[data[0]];
        bool header = line1.count(QLatin1Char(',')) != lines[data[1]].count(QLatin1Char(','));
        for (const QChar c : line1)
            header = header || !allowed.contains(c);
        if (header)
            data.erase(data.begin());
    }
    for (const std::size_t i : data) {
        const QStringList fields = lines[i].split(QLatin1Char(','));
        for (int f = 0; f < 2 && f < fields.size(); ++f) {
            const QString text = fields[f].trimmed();
            double value = 0;
            if (!text.isEmpty() && !rt::parseNumber(text, &value))
                return static_cast<int>(i) + 1;
        }
    }
    return 0;
}

// The program's own reader, without its row limit, its runtime errors turned into messages.
import::ImportedRows readCommaSeparated(const QString& path){const QString file = import::fileLabel(path);
import::ImportedRows rows;
rows.format = import::FileFormat::Csv;
try {
    rows.curve = readCsv(path, -1);
} catch (const rt::RuntimeError& e) {
    switch (e.number()) {
    case 53:
    case 76: throw ImportError(file, 0, QStringLiteral("cannot be opened (%1)").arg(e.text()));
    case 62:
        throw ImportError(file, 0,
                          QStringLiteral("ends inside a row, or has fewer than two lines: every row needs as "
                                         "many commas as line 2"));
    case 13: throw ImportError(file, firstLineNotNumeric(path), QStringLiteral("a time or magnitude is not a number"));
    default: throw ImportError(file, 0, QStringLiteral("cannot be read: %1").arg(e.text()));
    }
}
const LightCurve& curve = rows.curve;
if (curve.commas == 0)
    throw ImportError(file, 2,
                      QStringLiteral("has no comma: it is neither a comma-separated light curve nor an AAVSO, "
                                     "AstroImageJ or FITS file"));
if (curve.rowCount < 0)
    throw ImportError(file, 2, QStringLiteral("has %1 commas; a light curve has at most 6 columns").arg(curve.commas));
return rows;
} // namespace

// The bounds the session's extents assume: times below 99999999, magnitudes between -99 and 99.
void checkRowsFit(const LightCurve& curve, const QString& file)
{
    for (std::size_t i = 0; i < curve.times.size(); ++i) {
        const double t = curve.times[i], m = curve.mags[i];
        if (!std::isfinite(t) || std::abs(t) >= 99999999)
            throw ImportError(file, 0, QStringLiteral("the time %1 is beyond what a light curve can hold").arg(t));
        if (!std::isfinite(m) || std::abs(m) >= 99)
            throw ImportError(file, 0,
                              QStringLiteral("the magnitude %1 at time %2 is beyond what a light curve can hold")
                                  .arg(m)
                                  .arg(t, 0, 'f', 5));
    }
}

} // namespace dip

PreparedFile PrepareLightCurveFile(const QString& path)
{
    PreparedFile prepared;
    prepared.path = path;
    prepared.format = import::detectFormat(path);
    if (prepared.format == import::FileFormat::Csv)
        prepared.rows = readCommaSeparated(path);
    else
        prepared.rows = import::readRows(path, prepared.format);
    if (prepared.rows.curve.times.empty())
        throw ImportError(import::fileLabel(path), 0, QStringLiteral("holds no observation"));
    return prepared;
}

LightCurve ChooseLightCurveRows(const PreparedFile& file, const import::ImportOptions& options)
{
    LightCurve curve = import::selectRows(file.rows, options);
    checkRowsFit(curve, import::fileLabel(file.path));
    return curve;
}

std::vector<double> FilterTimes(const PreparedFile& file, const QString& filter)
{
    if (file.rows.rowFilters.empty())
        return file.rows.curve.times;
    const QString chosen = filter.isEmpty() ? import::defaultFilter(file.rows) : filter;
    return import::withFilter(file.rows, chosen).curve.times;
}

void InstallFileCurve(const PreparedFile& file, const LightCurve& curve)
{
    checkRowsFit(curve, import::fileLabel(file.path));
    if (curve.rowCount < 1 || curve.rowCount > import::maxObservations)
        throw ImportError(import::fileLabel(file.path), 0,
                          QStringLiteral("%1 observations cannot be loaded").arg(curve.rowCount));
    // As the Open dialog's load: the names, the install step, the result boxes emptied.
    const QFileInfo info(file.path);
    Session& s = S();
    s.DataDir = info.absolutePath();
    s.DataName = info.fileName();
    s.DataPath = DataPathOf(s.DataDir, s.DataName);
    InstallLightCurve(curve);
    ClearResultTexts();
}

} // namespace dip
