// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/BatchInput.h"

#include "analysis/InputError.h"
#include "import/Import.h"
#include "import/ImportError.h"
#include "runtime/RuntimeError.h"
#include "session/LoadDataFile.h"

#include <algorithm>
#include <numeric>

namespace dip {

namespace {

// What the reader's runtime error means for a file, at the place it stood.
QString readerProblem(const rt::RuntimeError& e, const CsvPlace& at)
{
    switch (e.number()) {
    case 13: {
        const QString what = at.column == 1 ? QStringLiteral("time") : QStringLiteral("magnitude");
        // Joined, not arg()'d: the field may hold "%1".
        return QStringLiteral("the ") + what + QStringLiteral(" \"") + at.field + QStringLiteral("\" is not a number");
    }
    case 53:
    case 76: return QStringLiteral("cannot be read (%1)").arg(e.text());
    case 62:
        return at.column == 0 ? QStringLiteral("a light curve needs at least two lines")
                              : QStringLiteral("the file ends before the row is complete");
    default: break;
    }
    return QStringLiteral("%1 (run-time error %2)").arg(e.text(), QString::number(e.number()));
}

LightCurve readCommaSeparated(const QString& path)
{
    CsvPlace at;
    LightCurve curve;
    try {
        curve = readCsv(path, -1, &at);
    } catch (const rt::RuntimeError& e) {
        const bool onLine = e.number() != 53 && e.number() != 76;
        throw InputError(path, onLine ? at.line : 0, readerProblem(e, at));
    }
    if (curve.commas == 0)
        throw InputError(path, 0, QStringLiteral("not comma-separated: its second line holds no comma"));
    if (curve.rowCount < 0)
        throw InputError(
            path, 0,
            QStringLiteral("its second line has %1 commas: the reader takes at most six columns").arg(curve.commas));
    // The program's reader keeps the file's order; the eclipses are found in time order.
    std::vector<std::size_t> order(curve.times.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return curve.times[a] < curve.times[b]; });
    // Every column of a row moves with it, the parts of its time too.
    return curve.withRows(order);
}

} // namespace

BatchCurve readBatchCurve(const QString& path)
{
    BatchCurve out;
    try {
        const import::FileFormat format = import::detectFormat(path);
        out.format = import::formatName(format);
        if (format == import::FileFormat::Csv) {
            out.curve = readCommaSeparated(path);
        } else {
            import::ImportedRows rows = import::readRows(path, format);
            out.notes = rows.notes;
            if (!rows.rowFilters.empty()) {
                const QString filter = import::defaultFilter(rows);
                QStringList present;
                for (const import::FilterCount& f : import::filtersIn(rows))
                    present << QStringLiteral("%1 (%2)").arg(f.filter).arg(f.count);
                rows = import::withFilter(rows, filter);
                out.notes << QStringLiteral("filter %1, the most frequent of %2")
                                 .arg(filter, present.join(QLatin1String(", ")));
            }
            out.curve = rows.curve;
        }
    } catch (const import::ImportError& e) {
        throw InputError(path, e.line(), e.message());
    }
    out.curve.source = path;
    out.curve.rowCount = static_cast<int>(out.curve.times.size());
    return out;
}

} // namespace dip
