// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "import/Import.h"

#include "import/AavsoReader.h"
#include "import/AstroImageJReader.h"
#include "import/FitsReader.h"
#include "import/ImportError.h"
#include "import/TextFile.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

namespace dip::import {

namespace {

// How much of a file is looked at to tell its kind.
constexpr qint64 sniffBytes = 64 * 1024;

bool namesTimeColumn(const QString& line)
{
    const QChar delimiter = line.contains(QLatin1Char('\t')) ? QLatin1Char('\t') : QLatin1Char(',');
    const QStringList names = line.split(delimiter);
    for (const QString& name : names)
        for (const QString& time : astroImageJTimeColumns())
            if (name.trimmed().compare(time, Qt::CaseInsensitive) == 0)
                return true;
    return false;
}

} // namespace

FileFormat detectFormat(const QString& path)
{
    if (QFileInfo(path).isDir())
        throw ImportError(fileLabel(path), 0, QStringLiteral("is a folder, not a file"));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw ImportError(fileLabel(path), 0, QStringLiteral("cannot be read (%1)").arg(file.errorString()));
    QByteArray head = file.read(sniffBytes);
    if (head.startsWith("SIMPLE  ="))
        return FileFormat::Fits;
    if (head.startsWith("\xEF\xBB\xBF"))
        head.remove(0, 3);
    const QString text = QString::fromUtf8(head);
    const QStringList lines = text.split(QRegularExpression(QStringLiteral("\r\n|\r|\n")));
    for (const QString& raw : lines) {
        const QString line = raw.trimmed();
        if (line.isEmpty())
            continue;
        if (line.startsWith(QLatin1Char('#'))) {
            const QString key = line.mid(1).section(QLatin1Char('='), 0, 0).trimmed();
            if (line.contains(QLatin1Char('=')) && key.compare(QLatin1String("TYPE"), Qt::CaseInsensitive) == 0)
                return FileFormat::AavsoExtended;
            continue;
        }
        return namesTimeColumn(line) ? FileFormat::AstroImageJ : FileFormat::Csv;
    }
    return FileFormat::Csv;
}

ImportedRows readRows(const QString& path, FileFormat format, const QString& column)
{
    switch (format) {
    case FileFormat::AavsoExtended:
        if (!column.isEmpty())
            throw ImportError(fileLabel(path), 0, QStringLiteral("an AAVSO file has no column to choose"));
        return readAavsoExtended(path);
    case FileFormat::AstroImageJ: return readAstroImageJ(path, column);
    case FileFormat::Fits: return readFitsLightCurve(path, column);
    case FileFormat::Csv: break;
    }
    throw ImportError(fileLabel(path), 0,
                      QStringLiteral("is a comma-separated file: it is read as the program's own format"));
}

LightCurve selectRows(const ImportedRows& rows, const ImportOptions& options)
{
    LightCurve curve;
    if (!rows.rowFilters.empty()) {
        const QString filter = options.filter.isEmpty() ? defaultFilter(rows) : options.filter;
        curve = withFilter(rows, filter).curve;
    } else {
        if (!options.filter.isEmpty() && options.filter.compare(rows.curve.filter, Qt::CaseInsensitive) != 0)
            throw ImportError(
                rows.curve.source, 0,
                rows.curve.filter.isEmpty()
                    ? QStringLiteral("the file names no filter, so \"%1\" cannot be chosen").arg(options.filter)
                    : QStringLiteral("the file's only filter is %1, not \"%2\"")
                          .arg(rows.curve.filter, options.filter));
        curve = rows.curve;
    }
    if (options.window) {
        const TimeWindow w = *options.window;
        if (w.first > w.last)
            throw ImportError(rows.curve.source, 0,
                              QStringLiteral("the time window %1,%2 ends before it begins")
                                  .arg(w.first, 0, 'f', 5)
                                  .arg(w.last, 0, 'f', 5));
        const std::size_t before = curve.times.size();
        const double firstTime = curve.times.front(), lastTime = curve.times.back();
        curve = cutToWindow(curve, w);
        if (curve.times.empty())
            throw ImportError(rows.curve.source, 0,
                              QStringLiteral("no observation between %1 and %2; the %3 observations run from %4 to %5")
                                  .arg(w.first, 0, 'f', 5)
                                  .arg(w.last, 0, 'f', 5)
                                  .arg(before)
                                  .arg(firstTime, 0, 'f', 5)
                                  .arg(lastTime, 0, 'f', 5));
    }
    checkObservationLimit(curve);
    curve.rowCount = static_cast<int>(curve.times.size());
    return curve;
}

LightCurve importLightCurve(const QString& path, const ImportOptions& options)
{
    return selectRows(readRows(path, detectFormat(path), options.column), options);
}

} // namespace dip::import
