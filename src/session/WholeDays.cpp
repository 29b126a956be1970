// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "session/WholeDays.h"

#include "runtime/Numeric.h"
#include "session/Session.h"

#include <cmath>

namespace dip {

TimeParts SplitTimeValue(double value)
{
    if (!std::isfinite(value))
        return {value, 0};
    const double whole = std::trunc(value);
    return {whole, value - whole}; // exact: the rest of a double below its whole part
}

TimeParts SplitTimeText(const QString& text, double value)
{
    const QString t = text.trimmed();
    int i = 0;
    const bool negative = t.startsWith(QLatin1Char('-'));
    if (negative || t.startsWith(QLatin1Char('+')))
        i = 1;
    const int digitsStart = i;
    while (i < t.size() && t[i].isDigit() && t[i].unicode() < 128)
        ++i;
    const int point = i;
    if (i < t.size() && t[i] == QLatin1Char('.')) {
        ++i;
        while (i < t.size() && t[i].isDigit() && t[i].unicode() < 128)
            ++i;
    }
    // Up to 15 digits before the point are a whole number a double holds exactly.
    const int wholeDigits = point - digitsStart;
    if (i != t.size() || t.size() == digitsStart || wholeDigits > 15 || (wholeDigits == 0 && point + 1 >= t.size()))
        return SplitTimeValue(value);
    double whole = wholeDigits == 0 ? 0.0 : t.mid(digitsStart, wholeDigits).toDouble();
    double fraction = point < t.size() ? (QStringLiteral("0") + t.mid(point)).toDouble() : 0.0;
    if (negative) {
        whole = -whole;
        fraction = -fraction;
    }
    return {whole, fraction};
}

double WholeDayOffset(const LightCurve& curve)
{
    if (curve.rowCount < 1 || curve.times.empty())
        return 0;
    if (curve.hasTimeParts()) {
        // Int of whole + fraction, without rounding the two into one double first.
        const double whole = curve.wholeDays.front(), fraction = curve.dayFractions.front();
        return whole + rt::Int(fraction);
    }
    return rt::Int(curve.times.front());
}

std::optional<double> FirstLargeTime(const std::vector<double>& times)
{
    for (const double t : times)
        if (std::abs(t) > LargeTimeDays)
            return t;
    return std::nullopt;
}

std::optional<double> LargeTimesWithoutOffset()
{
    const Session& s = S();
    if (s.DataName.isEmpty() || s.WholeDaysSubtracted)
        return std::nullopt;
    std::vector<double> times;
    for (int k = 1; k <= s.NumOrig; ++k)
        times.push_back(s.ReadHJD(k));
    return FirstLargeTime(times);
}

bool WholeDaysSwitchPending()
{
    const Session& s = S();
    return !s.DataName.isEmpty() && s.SubtractWholeDays != s.WholeDaysSubtracted;
}

QString TimeSystemShortName(TimeSystem system)
{
    switch (system) {
    case TimeSystem::JD_UTC: return QStringLiteral("JD");
    case TimeSystem::BJD_TDB: return QStringLiteral("BJD");
    case TimeSystem::HJD_UTC:
    case TimeSystem::Unstated: break;
    }
    return QStringLiteral("HJD");
}

QString TimeAxisName()
{
    const Session& s = S();
    QString name = TimeSystemShortName(s.TimesSystem);
    if (s.HJDOffset > 0)
        name += QStringLiteral(" \u2212 ") + QString::number(s.HJDOffset, 'f', 0);
    else if (s.HJDOffset < 0)
        name += QStringLiteral(" + ") + QString::number(-s.HJDOffset, 'f', 0);
    return name;
}

} // namespace dip
