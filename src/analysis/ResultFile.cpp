// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/ResultFile.h"

#include "analysis/JsonText.h"
#include "analysis/ResultExport.h"

#include <QSaveFile>
#include <QStringList>

namespace dip {

QString resultsJson(const std::vector<ExportRow>& rows, const ReportInfo& info,
                    const std::optional<Ephemeris>& ephemeris)
{
    JsonObject doc;
    doc.add(QStringLiteral("star"), jsonString(info.star));
    doc.add(QStringLiteral("filter"), jsonString(info.filter));
    doc.add(QStringLiteral("observer"), jsonString(info.observer));
    if (ephemeris) {
        JsonObject e;
        e.add(QStringLiteral("t0"), jsonNumber(ephemeris->t0));
        e.add(QStringLiteral("period"), jsonNumber(ephemeris->period));
        e.add(QStringLiteral("secondary"),
              ephemeris->secondaryAtHalf ? QStringLiteral("true") : QStringLiteral("false"));
        doc.add(QStringLiteral("ephemeris"), e.text());
    }
    QStringList results;
    for (const ExportRow& row : rows) {
        JsonObject r;
        r.add(QStringLiteral("method"), QString::number(row.method));
        r.add(QStringLiteral("name"), jsonString(methodName(row.method)));
        r.add(QStringLiteral("time"), jsonNumber(row.time));
        r.add(QStringLiteral("error"), jsonNumber(row.error));
        r.add(QStringLiteral("ticked"), row.ticked ? QStringLiteral("true") : QStringLiteral("false"));
        r.add(QStringLiteral("system"), jsonString(timeSystemWord(row.system)));
        if (row.oc)
            addOcFields(r, *row.oc);
        if (row.bootstrapError)
            r.add(QStringLiteral("bootstrap_error"), jsonNumber(*row.bootstrapError));
        if (row.points > 0)
            r.add(QStringLiteral("points"), QString::number(row.points));
        results << r.text();
    }
    doc.add(QStringLiteral("results"), QLatin1Char('[') + results.join(QLatin1String(", ")) + QLatin1Char(']'));
    return doc.text() + QLatin1Char('\n');
}

QString exportText(ExportFormat format, const std::vector<ExportRow>& rows, const ReportInfo& info,
                   const std::optional<Ephemeris>& ephemeris)
{
    switch (format) {
    case ExportFormat::Csv: return resultsCsv(rows);
    case ExportFormat::Json: return resultsJson(rows, info, ephemeris);
    case ExportFormat::Report: break;
    }
    return reportLines(rows, info);
}

bool writeTextFile(const QString& path, const QString& text, QString* error)
{
    // Written aside and renamed at the end: a failure leaves the old file as it was.
    QSaveFile file(path);
    const QByteArray bytes = text.toUtf8();
    const bool ok = file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit();
    if (!ok && error)
        *error = QStringLiteral("Cannot write %1: %2").arg(path, file.errorString());
    return ok;
}

} // namespace dip
