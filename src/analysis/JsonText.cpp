// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/JsonText.h"

#include <cmath>

namespace dip {

QString jsonString(const QString& s)
{
    QString out = QStringLiteral("\"");
    for (const QChar c : s) {
        switch (c.unicode()) {
        case '"': out += QLatin1String("\\\""); break;
        case '\\': out += QLatin1String("\\\\"); break;
        case '\n': out += QLatin1String("\\n"); break;
        case '\r': out += QLatin1String("\\r"); break;
        case '\t': out += QLatin1String("\\t"); break;
        default:
            if (c.unicode() < 0x20)
                out += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
            else
                out += c;
        }
    }
    return out + QLatin1Char('"');
}

QString jsonNumber(double x)
{
    if (!std::isfinite(x))
        return QStringLiteral("null");
    // QString::number ignores the process's locale: a point, never a comma.
    return QString::number(x, 'g', 17);
}

JsonObject& JsonObject::add(const QString& key, const QString& json)
{
    m_members << jsonString(key) + QStringLiteral(": ") + json;
    return *this;
}

QString JsonObject::text() const { return QLatin1Char('{') + m_members.join(QLatin1String(", ")) + QLatin1Char('}'); }

} // namespace dip
