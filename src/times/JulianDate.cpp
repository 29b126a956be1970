// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "times/JulianDate.h"

#include <QByteArray>

#include <cmath>
#include <cstdio>

namespace dip::times {

JulianDate JulianDate::fromDouble(double jd)
{
    const double day = std::floor(jd);
    return {day, jd - day};
}

JulianDate JulianDate::normalized() const
{
    const double whole = std::floor(fraction);
    const double dayWhole = std::floor(day);
    JulianDate d{dayWhole + whole, (day - dayWhole) + (fraction - whole)};
    // The day's own fraction (a day that was not whole) may carry once more.
    const double carry = std::floor(d.fraction);
    d.day += carry;
    d.fraction -= carry;
    return d;
}

JulianDate JulianDate::plusDays(double days) const { return JulianDate{day, fraction + days}.normalized(); }

double daysBetween(const JulianDate& a, const JulianDate& b) { return (a.day - b.day) + (a.fraction - b.fraction); }

namespace {

bool allDigits(const QByteArray& s)
{
    for (const char c : s)
        if (c < '0' || c > '9')
            return false;
    return true;
}

} // namespace

bool parseJulianDate(const QString& text, JulianDate* date)
{
    const QByteArray s = text.trimmed().toLatin1();
    if (s.isEmpty())
        return false;
    if (s.contains('e') || s.contains('E')) {
        // Exponent form: no digit can be kept beyond a double's anyway.
        for (const char c : s)
            if (!((c >= '0' && c <= '9') || c == '.' || c == 'e' || c == 'E' || c == '+' || c == '-'))
                return false;
        if (s[0] == '+' || s[0] == '-')
            return false;
        bool ok = false;
        const double jd = s.toDouble(&ok);
        if (!ok || !std::isfinite(jd))
            return false;
        *date = JulianDate::fromDouble(jd);
        return true;
    }
    const int point = s.indexOf('.');
    const QByteArray whole = point < 0 ? s : s.left(point);
    const QByteArray decimals = point < 0 ? QByteArray() : s.mid(point + 1);
    if (!allDigits(whole) || !allDigits(decimals) || (whole.isEmpty() && decimals.isEmpty()) || whole.size() > 15)
        return false;
    bool ok = true;
    const double day = whole.isEmpty() ? 0.0 : whole.toDouble(&ok);
    if (!ok)
        return false;
    const double fraction = decimals.isEmpty() ? 0.0 : (QByteArray("0.") + decimals).toDouble(&ok);
    if (!ok)
        return false;
    *date = JulianDate{day, fraction}.normalized();
    return true;
}

QString formatJulianDate(const JulianDate& date, int decimals)
{
    if (decimals < 0)
        decimals = 0;
    if (decimals > 15)
        decimals = 15;
    const JulianDate d = date.normalized();
    const double scale = std::pow(10.0, decimals);
    // The fraction in units of the last decimal, rounded half away from zero; its carry goes
    // into the day.
    double units = std::floor(d.fraction * scale + 0.5);
    double day = d.day;
    if (units >= scale) {
        units -= scale;
        day += 1;
    }
    char buffer[64];
    if (decimals == 0)
        std::snprintf(buffer, sizeof buffer, "%.0f", day);
    else
        std::snprintf(buffer, sizeof buffer, "%.0f.%0*.0f", day, decimals, units);
    return QString::fromLatin1(buffer);
}

} // namespace dip::times
