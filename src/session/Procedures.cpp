// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "session/Procedures.h"

#include "runtime/Numeric.h"
#include "runtime/Text.h"
#include "session/MainForm.h"
#include "session/Session.h"

#include <cmath>
#include <cstdio>

namespace dip {

using rt::i16;

void CompactPoints()
{
    Session& s = S();
    s.NumPts = 0;
    for (int i = 1; i <= s.NumOrig; ++i) {
        if (s.Deleted(i) == 0) {
            s.NumPts = i16(s.NumPts + 1);
            s.HJD(s.NumPts) = s.OrigHJD(i);
            s.Mag(s.NumPts) = s.OrigMag(i);
        }
    }
    mainForm().setEditedCountLabel(QString::number(s.NumPts));
}

void UpdateExtents()
{
    Session& s = S();
    s.HJDMin = 99999999;
    s.HJDMax = -99999999;
    s.MagMin = 99;
    s.MagMax = -99;
    for (int i = 1; i <= s.NumPts; ++i) {
        if (s.HJD(i) < s.HJDMin)
            s.HJDMin = s.HJD(i);
        if (s.HJD(i) > s.HJDMax)
            s.HJDMax = s.HJD(i);
        if (s.Mag(i) > s.MagMax) {
            s.IdxMagMax = i16(i);
            s.MagMax = s.Mag(i);
        }
        if (s.Mag(i) < s.MagMin) {
            s.IdxMagMin = i16(i);
            s.MagMin = s.Mag(i);
        }
    }
    s.HJDMin = s.HJDMin - 0.002;
    s.HJDMax = s.HJDMax + 0.002;
    s.HJDRange = s.HJDMax - s.HJDMin;
    s.MagRange = s.MagMax - s.MagMin;
}

void SnapshotExtents()
{
    Session& s = S();
    s.FullHJDMin = s.HJDMin;
    s.FullHJDMax = s.HJDMax;
    s.FullHJDRange = s.HJDRange;
    s.FullIdxMagMin = s.IdxMagMin;
    s.FullIdxMagMax = s.IdxMagMax;
    s.FullMagMin = s.MagMin;
    s.FullMagMax = s.MagMax;
    s.FullMagRange = s.MagRange;
    s.FoldHJD = RoundTo(s.HJD(s.IdxMagMax), 4);
}

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

void ApplyMagSense(rt::Integer index)
{
    Session& s = S();
    s.MagSign = i16(1 - 2 * index);
    for (int i = 1; i <= s.NumOrig; ++i)
        s.OrigMag(i) = rt::fin(s.ReadMag(i) * s.MagSign);
    CompactPoints();
    UpdateExtents();
    SnapshotExtents();
}

void PublishResult(int method, double time, double error)
{
    MainForm& form = mainForm();
    form.setText(method, FormatResult(S().HJDOffset + time));
    form.setText(method + 6, FormatResult(error));
    form.setChecked(method, true);
}

} // namespace dip

namespace dip {

void SetPickedDeleted(bool deleted)
{
    Session& s = S();
    s.Deleted(s.PickIdx) = deleted ? rt::True : rt::False;
    CompactPoints();
    UpdateExtents();
}

} // namespace dip
