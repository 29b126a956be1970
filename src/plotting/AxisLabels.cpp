// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "plotting/AxisLabels.h"

#include "runtime/Numeric.h"
#include "session/WholeDays.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace dip {

namespace {

// Intervals already taken along an axis; a new text must keep MinSpace from each.
class Placed {
public:
    bool fits(double lo, double hi) const
    {
        for (const auto& [a, b] : m_taken)
            if (lo < b + axis::MinSpace && hi > a - axis::MinSpace)
                return false;
        return true;
    }
    void take(double lo, double hi) { m_taken.emplace_back(lo, hi); }

private:
    std::vector<std::pair<double, double>> m_taken;
};

// Shifts lo .. lo + length into [min, max] where it fits, so a number at the end of an axis is
// kept on the form.
double clampInto(double lo, double length, double min, double max)
{
    if (lo + length > max)
        lo = max - length;
    if (lo < min)
        lo = min;
    return lo;
}

bool isNumbered(double value, float step, long long stride)
{
    const long long j = std::llround(value / static_cast<double>(step));
    return j % stride == 0;
}

} // namespace

int GridDecimals(const GridStep& g)
{
    // step = P * k / 10 with P = 10^L: 10^L itself when k = 10, else k * 10^(L - 1).
    const int exponent = g.k == 10 ? g.L : g.L - 1;
    return std::max(0, -exponent);
}

int LabelDecimals(const std::vector<double>& values, const GridStep& g)
{
    const int least = GridDecimals(g);
    const double tolerance = 0.005 * static_cast<double>(g.step);
    for (int d = least; d < least + 4; ++d) {
        bool close = true;
        for (const double v : values)
            close = close && std::abs(AxisNumber(v, d).toDouble() - v) <= tolerance;
        if (close)
            return d;
    }
    return least + 4;
}

QString AxisNumber(double value, int decimals)
{
    QString s = QString::number(value, 'f', decimals);
    if (s.startsWith(QLatin1Char('-'))) {
        bool zero = true;
        for (int i = 1; i < s.size(); ++i)
            zero = zero && (s[i] == QLatin1Char('0') || s[i] == QLatin1Char('.'));
        if (zero)
            s.remove(0, 1);
    }
    return s;
}

std::vector<double> MagnitudeSteps(const PlotScale& scale, const GridStep& g)
{
    std::vector<double> steps;
    if (!(scale.mr > 0) || !(g.step > 0))
        return steps;
    const double m1 = scale.m0 + scale.mr;
    for (const double m : GridTimes(g.step, scale.m0, m1))
        if (m >= scale.m0 && m <= m1)
            steps.push_back(m);
    return steps;
}

long long LabelStride(double spacing, double widest, double gap)
{
    spacing = std::abs(spacing);
    const double need = widest + gap;
    // 1, 2, 5, 10, 20, 50 ...; a spacing of nothing ends with a stride larger than any axis.
    long long n = 1;
    for (int i = 0; static_cast<double>(n) * spacing < need && n < 1000000000000LL; ++i)
        n = (i % 3 == 1) ? n / 2 * 5 : n * 2;
    return n;
}

namespace {

// Numbers every stride-th of the values along one axis: each text centred on the value's
// position (at), shifted into min .. max along the axis and kept clear of the texts placed
// before; place(text, start, length) puts down each one kept.
template <typename At, typename Place>
void numberAxis(const Canvas& canvas, const std::vector<double>& values, const GridStep& g, double spacing,
                const At& at, double min, double max, Placed& placed, const Place& place)
{
    const int decimals = LabelDecimals(values, g);
    std::vector<QString> numbers;
    double widest = 0;
    for (const double v : values) {
        numbers.push_back(AxisNumber(v, decimals));
        widest = std::max(widest, canvas.textWidth(numbers.back()));
    }
    const long long stride = LabelStride(spacing, widest, axis::MinSpace);
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (!isNumbered(values[i], g.step, stride))
            continue;
        const double length = canvas.textWidth(numbers[i]);
        const double lo = clampInto(at(values[i]) - length / 2, length, min, max);
        if (!placed.fits(lo, lo + length))
            continue;
        placed.take(lo, lo + length);
        place(numbers[i], lo, length);
    }
}

} // namespace

std::vector<AxisText> TimeAxisTexts(const Canvas& canvas, const PlotScale& scale, const GridStep& g,
                                    const std::vector<double>& times)
{
    const PlotTransform& s = canvas.transform();
    std::vector<AxisText> texts;
    const double row = std::max(s.PlotTop, s.PlotBottom) + axis::TickLength + axis::TextGap;
    Placed placed;

    // The name heads the row, in the margin left of the box: "HJD", or with whole days set
    // apart "HJD − 2459123".
    const QString name = TimeAxisName();
    const double nameWidth = canvas.textWidth(name);
    const double nameX = std::max(0.0, std::min(s.PlotLeft, s.PlotRight) - axis::MinSpace - nameWidth);
    texts.push_back({name, nameX, row, false});
    placed.take(nameX, nameX + nameWidth);
    if (times.empty())
        return texts;

    const double spacing = rt::div(s.PlotWidth * static_cast<double>(g.step), scale.tr);
    numberAxis(
        canvas, times, g, spacing, [&](double t) { return PlotX(s, scale, t); }, 0, canvas.formWidth(), placed,
        [&](const QString& text, double x, double) {
            texts.push_back({text, x, row, false});
        });
    return texts;
}

std::vector<AxisText> MagnitudeAxisTexts(const Canvas& canvas, const PlotScale& scale, const GridStep& mg,
                                         const std::vector<double>& mags)
{
    const PlotTransform& s = canvas.transform();
    std::vector<AxisText> texts;
    const double height = canvas.textHeight();
    const double top = std::min(s.PlotTop, s.PlotBottom);
    const double bottom = std::max(s.PlotTop, s.PlotBottom);

    // The name sits in the top margin, above the axis and clear of the numbers' column.
    texts.push_back(
        {QStringLiteral("Magnitude"), std::min(s.PlotLeft, s.PlotRight), std::max(0.0, (top - height) / 2), false});
    if (mags.empty())
        return texts;

    const double spacing = rt::div(s.PlotHeight * static_cast<double>(mg.step), scale.mr);
    const double x = std::max(0.0, std::min(s.PlotLeft, s.PlotRight) - axis::TickLength - axis::TextGap - height);
    Placed placed;
    // Kept above the row of time numbers under the box.
    numberAxis(
        canvas, mags, mg, spacing, [&](double m) { return PlotY(s, scale, m); }, 0, bottom, placed,
        [&](const QString& text, double y, double length) {
            texts.push_back({text, x, y + length, true});
        });
    return texts;
}

} // namespace dip
