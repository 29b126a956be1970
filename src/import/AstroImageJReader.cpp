// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "import/AstroImageJReader.h"

#include "import/ImportError.h"
#include "import/TextFile.h"
#include "session/WholeDays.h"

#include <cmath>

namespace dip::import {

QStringList astroImageJTimeColumns()
{
    return {QStringLiteral("BJD_TDB"), QStringLiteral("HJD_UTC"), QStringLiteral("JD_UTC")};
}

namespace {

int findColumn(const QStringList& header, const QString& name)
{
    for (int k = 0; k < header.size(); ++k)
        if (header[k].compare(name, Qt::CaseInsensitive) == 0)
            return k;
    return -1;
}

TimeSystem systemOfColumn(const QString& name)
{
    if (name == QLatin1String("BJD_TDB"))
        return TimeSystem::BJD_TDB;
    if (name == QLatin1String("HJD_UTC"))
        return TimeSystem::HJD_UTC;
    return TimeSystem::JD_UTC;
}

} // namespace

ImportedRows readAstroImageJ(const QString& path, const QString& column)
{
    const QString file = fileLabel(path);
    const std::vector<QString> lines = readTextLines(path);
    ImportedRows rows;
    rows.format = FileFormat::AstroImageJ;
    rows.curve.source = file;

    std::size_t h = 0;
    while (h < lines.size() && lines[h].trimmed().isEmpty())
        ++h;
    if (h == lines.size())
        throw ImportError(file, 0, QStringLiteral("is empty"));
    const int headerLine = static_cast<int>(h) + 1;
    const QChar delimiter = lines[h].contains(QLatin1Char('\t')) ? QLatin1Char('\t') : QLatin1Char(',');
    QStringList header = lines[h].split(delimiter);
    for (QString& name : header)
        name = name.trimmed();

    int timeColumn = -1;
    QString timeName;
    for (const QString& name : astroImageJTimeColumns()) {
        timeColumn = findColumn(header, name);
        if (timeColumn >= 0) {
            timeName = name;
            break;
        }
    }
    if (timeColumn < 0)
        throw ImportError(file, headerLine,
                          QStringLiteral("no time column (BJD_TDB, HJD_UTC or JD_UTC) in the header"));

    int brightColumn = -1;
    if (!column.isEmpty()) {
        brightColumn = findColumn(header, column);
        if (brightColumn < 0)
            throw ImportError(file, headerLine, QStringLiteral("no column \"%1\" in the header").arg(column));
    } else {
        for (const QString& name : {QStringLiteral("Source_AMag_T1"), QStringLiteral("Mag"),
                                    QStringLiteral("Magnitude"), QStringLiteral("rel_flux_T1")}) {
            brightColumn = findColumn(header, name);
            if (brightColumn >= 0)
                break;
        }
        if (brightColumn < 0)
            throw ImportError(
                file, headerLine,
                QStringLiteral("no magnitude (Source_AMag_T1, Mag) nor relative flux (rel_flux_T1) column "
                               "in the header"));
    }
    const QString brightName = header[brightColumn];
    const bool isFlux = brightName.contains(QLatin1String("flux"), Qt::CaseInsensitive);
    rows.curve.timeSystem = systemOfColumn(timeName);
    rows.notes << QStringLiteral("times: %1").arg(timeName);
    rows.notes << (isFlux ? QStringLiteral("magnitudes: -2.5 log10 of %1").arg(brightName)
                          : QStringLiteral("magnitudes: %1").arg(brightName));

    int missing = 0;
    for (std::size_t i = h + 1; i < lines.size(); ++i) {
        const int lineNo = static_cast<int>(i) + 1;
        if (lines[i].trimmed().isEmpty())
            continue;
        const QStringList f = lines[i].split(delimiter);
        if (f.size() <= std::max(timeColumn, brightColumn))
            throw ImportError(file, lineNo,
                              QStringLiteral("%1 fields, the header has %2 columns").arg(f.size()).arg(header.size()));
        const std::optional<double> t = numberField(f[timeColumn]);
        if (!t)
            throw ImportError(file, lineNo,
                              QStringLiteral("%1 \"%2\" is not a number").arg(timeName, f[timeColumn].trimmed()));
        const std::optional<double> b = numberField(f[brightColumn]);
        if (!b)
            throw ImportError(file, lineNo,
                              QStringLiteral("%1 \"%2\" is not a number").arg(brightName, f[brightColumn].trimmed()));
        if (std::isnan(*t) || std::isnan(*b)) {
            ++missing;
            continue;
        }
        double mag = *b;
        if (isFlux) {
            if (*b <= 0)
                throw ImportError(file, lineNo,
                                  QStringLiteral("%1 %2 is not positive: it has no magnitude")
                                      .arg(brightName, f[brightColumn].trimmed()));
            mag = -2.5 * std::log10(*b);
        }
        const TimeParts parts = SplitTimeText(f[timeColumn], *t);
        rows.curve.addRow(parts.whole, parts.fraction, mag);
        rows.curve.times.back() = *t;
    }
    if (rows.curve.times.empty())
        throw ImportError(file, 0, QStringLiteral("holds no measurement with a time and a brightness"));
    sortByTime(rows);
    if (missing > 0) {
        rows.droppedRows = missing;
        rows.notes << QStringLiteral("%1 rows with NaN left out").arg(missing);
    }
    return rows;
}

} // namespace dip::import
