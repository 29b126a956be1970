// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/ReportLine.h"

#include "analysis/ResultExport.h"

#include <QStringList>

#include <cmath>

namespace dip {

QString reportSystem(TimeSystem system)
{
    switch (system) {
    case TimeSystem::BJD_TDB: return QStringLiteral("BJD");
    case TimeSystem::JD_UTC: return QStringLiteral("JD ");
    case TimeSystem::HJD_UTC:
    case TimeSystem::Unstated: break;
    }
    return QStringLiteral("HJD");
}

QString reportLine(const ExportRow& row, const ReportInfo& info)
{
    // A positive width pads on the left (right-aligned), a negative one on the right.
    auto field = [](const QString& text, int width) { return QStringLiteral("%1").arg(text, width); };
    QString oc;
    if (row.oc) {
        oc = fixedText(row.oc->days, 5);
        if (!oc.startsWith(QLatin1Char('-')))
            oc.prepend(QLatin1Char('+'));
    }
    const QStringList fields = {
        field(info.star, -20),
        field(fixedText(row.time, 5), 13),
        reportSystem(row.system),
        field(fixedText(row.error, 5), 7),
        field(row.oc ? cycleText(row.oc->cycle) : QString(), 9),
        field(oc, 8),
        field(info.filter, -6),
        field(info.observer, -6),
        field(methodName(row.method), -8),
        field(row.points > 0 ? QString::number(row.points) : QString(), 5),
    };
    return fields.join(QLatin1Char(' '));
}

QString reportLines(const std::vector<ExportRow>& rows, const ReportInfo& info)
{
    QString out;
    for (const ExportRow& row : rows)
        out += reportLine(row, info) + QLatin1Char('\n');
    return out;
}

} // namespace dip
