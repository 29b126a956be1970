// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/BatchOutput.h"

#include "analysis/JsonText.h"
#include "analysis/ResultExport.h"

#include <QStringList>

#include <utility>

namespace dip {

QString csvField(const QString& text)
{
    if (!text.contains(QLatin1Char(',')) && !text.contains(QLatin1Char('"')) && !text.contains(QLatin1Char('\n')) &&
        !text.contains(QLatin1Char('\r')))
        return text;
    return QLatin1Char('"') + QString(text).replace(QLatin1String("\""), QLatin1String("\"\"")) + QLatin1Char('"');
}

QString batchCsvHeader()
{
    return QStringLiteral("file,E,type,method,time,error,bootstrap_error,o_c,o_c_min,points,status\n");
}

QString batchCsvLine(const BatchRow& row)
{
    QStringList f;
    f << csvField(row.file) << cycleText(row.cycle) << (row.secondary() ? QStringLiteral("s") : QStringLiteral("p"))
      << QString::number(row.method);
    if (row.timed) {
        f << fixedText(row.time, 8) << fixedText(row.error, 8)
          << (row.bootstrapError ? fixedText(*row.bootstrapError, 8) : QString()) << fixedText(row.oc.days, 8)
          << fixedText(row.oc.minutes(), 5) << (row.points > 0 ? QString::number(row.points) : QString());
    } else {
        f << QString() << QString() << QString() << QString() << QString() << QString();
    }
    f << csvField(row.status);
    return f.join(QLatin1Char(',')) + QLatin1Char('\n');
}

QString batchJsonLine(const BatchRow& row)
{
    // Joined piece by piece, never through arg(): a file name may hold "%1".
    const QString null = QStringLiteral("null");
    const bool t = row.timed;
    const std::pair<const char*, QString> fields[] = {
        {"file", jsonString(row.file)},
        {"cycle", jsonNumber(row.cycle)},
        {"type", jsonString(row.secondary() ? QStringLiteral("s") : QStringLiteral("p"))},
        {"method", QString::number(row.method)},
        {"time", t ? jsonNumber(row.time) : null},
        {"error", t ? jsonNumber(row.error) : null},
        {"bootstrap_error", t && row.bootstrapError ? jsonNumber(*row.bootstrapError) : null},
        {"o_c", t ? jsonNumber(row.oc.days) : null},
        {"o_c_min", t ? jsonNumber(row.oc.minutes()) : null},
        {"points", t && row.points > 0 ? QString::number(row.points) : null},
        {"status", jsonString(row.status)},
    };
    QString out = QStringLiteral("{");
    for (const auto& [key, value] : fields) {
        if (out.size() > 1)
            out += QLatin1String(", ");
        out += QLatin1Char('"') + QLatin1String(key) + QLatin1String("\": ") + value;
    }
    return out + QLatin1String("}\n");
}

} // namespace dip
