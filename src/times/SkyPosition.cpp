// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "times/SkyPosition.h"

#include <QByteArray>
#include <QStringList>

#include <cmath>

namespace dip::times {

namespace {

// A decimal number without sign or exponent ("12", "12.5", ".5").
bool unsignedDecimal(const QString& s, double* value)
{
    if (s.isEmpty())
        return false;
    int points = 0, digits = 0;
    for (const QChar c : s) {
        if (c == QLatin1Char('.'))
            ++points;
        else if (c >= QLatin1Char('0') && c <= QLatin1Char('9'))
            ++digits;
        else
            return false;
    }
    if (points > 1 || digits == 0)
        return false;
    bool ok = false;
    *value = s.toLatin1().toDouble(&ok);
    return ok;
}

bool wholeNumber(const QString& s, double* value) { return !s.contains(QLatin1Char('.')) && unsignedDecimal(s, value); }

Angle fail(const QString& what, const QString& text, const QString& why)
{
    Angle a;
    a.error = QStringLiteral("%1 \"%2\": %3").arg(what, text, why);
    return a;
}

Angle success(double degrees)
{
    Angle a;
    a.ok = true;
    a.degrees = degrees;
    return a;
}

// Splits "16:34:20.3", "16 34 20.3" or "16h34m20.3s" into its fields. The unit letters end a
// field; a text that ends with a unit letter loses it.
QStringList sexagesimalFields(QString s, const QString& unitLetters)
{
    for (const QChar u : unitLetters)
        s.replace(u, QLatin1Char(' '));
    s.replace(QLatin1Char(':'), QLatin1Char(' '));
    return s.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

bool isSexagesimal(const QString& s, const QString& unitLetters)
{
    if (s.contains(QLatin1Char(':')) || s.contains(QLatin1Char(' ')) || s.contains(QLatin1Char('\t')))
        return true;
    // Unit letters inside the text ("16h34m"), not a single one at its end ("248.5d").
    for (const QChar u : unitLetters) {
        const int at = s.indexOf(u);
        if (at >= 0 && at < s.size() - 1)
            return true;
    }
    return false;
}

// Whole units, whole minutes (or decimal ones when last) and seconds below 60: the value in
// units. maxUnits bounds the first field (exclusive when unitsExclusive).
bool readSexagesimal(const QStringList& fields, double maxUnits, bool unitsExclusive, double* value, QString* why)
{
    if (fields.size() < 2 || fields.size() > 3) {
        *why = QStringLiteral("give two or three fields (units, minutes[, seconds])");
        return false;
    }
    double units = 0, minutes = 0, seconds = 0;
    if (!wholeNumber(fields[0], &units)) {
        *why = QStringLiteral("\"%1\" is not a whole number").arg(fields[0]);
        return false;
    }
    const bool minutesLast = fields.size() == 2;
    if (!(minutesLast ? unsignedDecimal(fields[1], &minutes) : wholeNumber(fields[1], &minutes))) {
        *why = QStringLiteral("\"%1\" is not %2")
                   .arg(fields[1], minutesLast ? QStringLiteral("a number of minutes")
                                               : QStringLiteral("a whole number of minutes"));
        return false;
    }
    if (!minutesLast && !unsignedDecimal(fields[2], &seconds)) {
        *why = QStringLiteral("\"%1\" is not a number of seconds").arg(fields[2]);
        return false;
    }
    if (minutes >= 60) {
        *why = QStringLiteral("minutes must be below 60");
        return false;
    }
    if (seconds >= 60) {
        *why = QStringLiteral("seconds must be below 60");
        return false;
    }
    const double total = units + minutes / 60.0 + seconds / 3600.0;
    if (unitsExclusive ? total >= maxUnits : total > maxUnits) {
        *why = QStringLiteral("must be below %1").arg(maxUnits);
        if (!unitsExclusive)
            *why = QStringLiteral("must not exceed %1").arg(maxUnits);
        return false;
    }
    *value = total;
    return true;
}

// A signed angle in degrees, plain or sexagesimal, bounded by +-limit.
Angle signedDegrees(const QString& what, const QString& text, double low, double high)
{
    static const QString units = QStringLiteral("dm's\"\u00B0");
    QString s = text.trimmed();
    if (s.isEmpty())
        return fail(what, text, QStringLiteral("empty"));
    double sign = 1;
    if (s.startsWith(QLatin1Char('-')) || s.startsWith(QLatin1Char('+')) || s.startsWith(QChar(0x2212))) {
        sign = s.startsWith(QLatin1Char('+')) ? 1 : -1;
        s = s.mid(1).trimmed();
    }
    double magnitude = 0;
    if (isSexagesimal(s, units)) {
        QString why;
        const double limit = std::max(std::fabs(low), std::fabs(high));
        if (!readSexagesimal(sexagesimalFields(s, units), limit, false, &magnitude, &why))
            return fail(what, text, why);
    } else {
        if (s.endsWith(QLatin1Char('d')) || s.endsWith(QChar(0x00B0)))
            s.chop(1);
        if (!unsignedDecimal(s, &magnitude))
            return fail(what, text, QStringLiteral("not a number of degrees"));
    }
    const double degrees = sign * magnitude;
    if (degrees < low || degrees > high)
        return fail(what, text, QStringLiteral("must lie between %1 and %2 degrees").arg(low).arg(high));
    return success(degrees);
}

} // namespace

Angle parseRightAscension(const QString& text)
{
    const QString what = QStringLiteral("RA");
    QString s = text.trimmed();
    if (s.isEmpty())
        return fail(what, text, QStringLiteral("empty"));
    if (s.startsWith(QLatin1Char('-')) || s.startsWith(QLatin1Char('+')))
        return fail(what, text, QStringLiteral("a right ascension has no sign"));
    static const QString units = QStringLiteral("hms");
    if (isSexagesimal(s, units)) {
        double hours = 0;
        QString why;
        if (!readSexagesimal(sexagesimalFields(s, units), 24, true, &hours, &why))
            return fail(what, text, why);
        return success(hours * 15.0);
    }
    if (s.endsWith(QLatin1Char('h'))) {
        s.chop(1);
        double hours = 0;
        if (!unsignedDecimal(s, &hours))
            return fail(what, text, QStringLiteral("not a number of hours"));
        if (hours >= 24)
            return fail(what, text, QStringLiteral("must be below 24 hours"));
        return success(hours * 15.0);
    }
    if (s.endsWith(QLatin1Char('d')) || s.endsWith(QChar(0x00B0)))
        s.chop(1);
    double degrees = 0;
    if (!unsignedDecimal(s, &degrees))
        return fail(what, text, QStringLiteral("not a number of degrees, nor hours:minutes:seconds"));
    if (degrees >= 360)
        return fail(what, text, QStringLiteral("must be below 360 degrees"));
    return success(degrees);
}

Angle parseDeclination(const QString& text) { return signedDegrees(QStringLiteral("Dec"), text, -90, 90); }

ParsedSite parseSite(const QString& text)
{
    ParsedSite result;
    const QStringList parts = text.split(QLatin1Char(','));
    if (parts.size() != 3) {
        result.error = QStringLiteral("site \"%1\": give LAT,LON,HEIGHT (degrees, degrees east, metres)").arg(text);
        return result;
    }
    const Angle lat = signedDegrees(QStringLiteral("site latitude"), parts[0], -90, 90);
    if (!lat.ok) {
        result.error = lat.error;
        return result;
    }
    const Angle lon = signedDegrees(QStringLiteral("site longitude"), parts[1], -180, 360);
    if (!lon.ok) {
        result.error = lon.error;
        return result;
    }
    QString h = parts[2].trimmed();
    if (h.endsWith(QLatin1Char('m')))
        h.chop(1);
    h = h.trimmed();
    double sign = 1;
    if (h.startsWith(QLatin1Char('-')) || h.startsWith(QLatin1Char('+'))) {
        sign = h.startsWith(QLatin1Char('-')) ? -1 : 1;
        h = h.mid(1);
    }
    double height = 0;
    if (!unsignedDecimal(h, &height)) {
        result.error = QStringLiteral("site height \"%1\": not a number of metres").arg(parts[2]);
        return result;
    }
    height *= sign;
    if (height < -500 || height > 10000) {
        result.error = QStringLiteral("site height \"%1\": must lie between -500 and 10000 metres").arg(parts[2]);
        return result;
    }
    result.ok = true;
    result.site = Site{lat.degrees, lon.degrees, height};
    return result;
}

} // namespace dip::times
