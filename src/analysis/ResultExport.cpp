// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/ResultExport.h"

#include "analysis/JsonText.h"

#include <QStringList>

#include <cmath>

namespace dip {

QString fixedText(double x, int decimals)
{
    if (!std::isfinite(x))
        return QString();
    // QString::number ignores the process's locale: a point, never a comma.
    return QString::number(x, 'f', decimals);
}

QString cycleText(double cycle) { return QString::number(cycle, 'f', cycle == std::floor(cycle) ? 0 : 1); }

QString resultsCsvHeader()
{
    return QStringLiteral("method,name,time,error,ticked,system,E,o_c,o_c_min,bootstrap_error,points\n");
}

QString resultCsvLine(const ExportRow& row)
{
    QStringList f;
    f << QString::number(row.method) << methodName(row.method) << fixedText(row.time, 8) << fixedText(row.error, 8)
      << (row.ticked ? QStringLiteral("1") : QStringLiteral("0")) << timeSystemWord(row.system);
    if (row.oc)
        f << cycleText(row.oc->cycle) << fixedText(row.oc->days, 8) << fixedText(row.oc->minutes(), 5);
    else
        f << QString() << QString() << QString();
    f << (row.bootstrapError ? fixedText(*row.bootstrapError, 8) : QString());
    f << (row.points > 0 ? QString::number(row.points) : QString());
    return f.join(QLatin1Char(',')) + QLatin1Char('\n');
}

QString resultsCsv(const std::vector<ExportRow>& rows)
{
    QString out = resultsCsvHeader();
    for (const ExportRow& row : rows)
        out += resultCsvLine(row);
    return out;
}

void addOcFields(JsonObject& object, const OcValue& oc)
{
    object.add(QStringLiteral("cycle"), jsonNumber(oc.cycle));
    object.add(QStringLiteral("o_c"), jsonNumber(oc.days));
}

} // namespace dip
