// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "session/Formatting.h"

#include "runtime/Numeric.h"
#include "runtime/Text.h"

#include <cmath>
#include <cstdio>

namespace dip {

double RoundTo(double x, rt::Integer n)
{
    const double scale = rt::pow(10.0, n);
    return rt::div(rt::Sgn(x) * rt::Fix(rt::fin(std::abs(x) * scale) + 0.5), scale);
}

namespace {

// The exponent form for a number too wide for its field: C's %.*E of the absolute value with
// the sign in front and as many mantissa decimals as fit, padded on the left to the width.
QString exponentForm(double magnitude, bool negative, int width)
{
    QString text;
    for (int decimals = 17; decimals >= 0; --decimals) {
        char buffer[64];
        std::snprintf(buffer, sizeof buffer, "%.*E", decimals, magnitude);
        text = QString::fromLatin1(buffer);
        if (negative)
            text.prepend(QLatin1Char('-'));
        if (text.size() <= width)
            break;
    }
    return text.rightJustified(width, QLatin1Char(' '));
}

} // namespace

QString FormatFixed(double value, rt::Integer width, rt::Integer decimals)
{
    // 1. The sign, then the absolute value.
    const bool negative = value < 0;
    value = std::abs(value);

    // 2. The text of the number.
    QString s = rt::NumText(value);

    // 3. The decimals present.
    int present = 0;
    const int point = s.indexOf(QLatin1Char('.'));
    if (point < 0)
        s += QLatin1Char('.');
    else
        present = s.size() - point - 1;

    // 4. Pad with zeros, or round; trailing zeros the conversion drops are not put back
    // (2.30001 to 2 decimals gives "2.3").
    if (present < decimals) {
        s += QString(decimals - present, QLatin1Char('0'));
    } else {
        double f = rt::pow(10.0, decimals);
        if (f < 1)
            f = 1;
        s = rt::NumText(rt::div(rt::Int(rt::fin(value * f) + 0.5), f));
    }

    // 5. A "0" in front of values below 1, then the sign.
    if (value < 1)
        s.prepend(QLatin1Char('0'));
    if (negative)
        s.prepend(QLatin1Char('-'));

    // 6. Fit the width: pad, fall back to exponent form, or cut excess decimals unrounded.
    if (s.size() <= width)
        return s.rightJustified(width, QLatin1Char(' '));
    if (s.size() - width >= decimals + 1)
        return exponentForm(value, negative, width);
    return s.left(width);
}

QString FormatResult(double value) { return rt::LTrim(FormatFixed(value, 14, 5)); }

} // namespace dip
