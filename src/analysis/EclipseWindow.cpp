// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/EclipseWindow.h"

#include <QStringList>

#include <algorithm>
#include <cmath>

namespace dip {

namespace {

const double pi = 3.14159265358979323846;

double median(std::vector<double> v)
{
    const std::size_t mid = v.size() / 2;
    std::nth_element(v.begin(), v.begin() + static_cast<std::ptrdiff_t>(mid), v.end());
    const double upper = v[mid];
    if (v.size() % 2 == 1)
        return upper;
    return (*std::max_element(v.begin(), v.begin() + static_cast<std::ptrdiff_t>(mid)) + upper) / 2;
}

// Running mean over i - h .. i + h with h = n / divisor (at least 1, at most 100), narrowed near
// the ends so that it stays symmetric: a mean cut at one side would lean towards the inside,
// and near an end on the bottom of a dip would make the end look deepest.
std::vector<double> smooth(const double* m, std::size_t n, std::size_t divisor)
{
    const std::size_t h = std::clamp<std::size_t>(n / divisor, 1, 100);
    std::vector<double> out(n);
    for (std::size_t i = 0; i < n; ++i) {
        const std::size_t hi = std::min({h, i, n - 1 - i});
        double sum = 0;
        for (std::size_t k = i - hi; k <= i + hi; ++k)
            sum += m[k];
        out[i] = sum / static_cast<double>(2 * hi + 1);
    }
    return out;
}

// The u at which the halving series sum(2^(1-k) (1 - cos k u)) reaches half its value at pi
// (2.625 / 2), by bisection on (0, pi/2], where it rises from 0 to 2.3125.
double halfDepthPhase()
{
    auto f = [](double u) {
        double s = 0, a = 1;
        for (int k = 1; k <= 5; ++k, a /= 2)
            s += a * (1 - std::cos(k * u));
        return s;
    };
    double lo = 0, hi = pi / 2;
    for (int i = 0; i < 60; ++i) {
        const double mid = (lo + hi) / 2;
        (f(mid) < 1.3125 ? lo : hi) = mid;
    }
    return (lo + hi) / 2;
}

QString days(double x) { return QString::number(x, 'f', 5); }

} // namespace

EclipseSchedule::EclipseSchedule(const Ephemeris& ephemeris, bool secondaries, double first, double last)
    : m_ephemeris(ephemeris), m_step(secondaries ? 0.5 : 1.0)
{
    if (!isUsable(ephemeris) || !(first <= last))
        return;
    const double a = std::ceil((first - ephemeris.t0) / ephemeris.period / m_step);
    const double b = std::floor((last - ephemeris.t0) / ephemeris.period / m_step);
    if (b >= a) {
        m_firstStep = static_cast<long long>(a);
        m_count = static_cast<std::size_t>(b - a) + 1;
    }
}

double EclipseSchedule::cycle(std::size_t i) const
{
    return static_cast<double>(m_firstStep + static_cast<long long>(i)) * m_step;
}

double EclipseSchedule::predicted(std::size_t i) const { return m_ephemeris.t0 + cycle(i) * m_ephemeris.period; }

double medianCadence(const std::vector<double>& times)
{
    if (times.size() < 2)
        return 0;
    std::vector<double> steps;
    steps.reserve(times.size() - 1);
    for (std::size_t i = 1; i < times.size(); ++i)
        if (times[i] > times[i - 1])
            steps.push_back(times[i] - times[i - 1]);
    return steps.empty() ? 0 : median(steps);
}

double gapLimit(double cadence) { return 5 * cadence; }

WidthMeasure measureHalfWidth(const LightCurve& curve, const Ephemeris& ephemeris)
{
    WidthMeasure w;
    const std::size_t n = curve.times.size();
    const std::size_t bins = std::clamp<std::size_t>(n / 10, 40, 2000);
    if (!isUsable(ephemeris)) {
        w.problem = QStringLiteral("the ephemeris cannot fold the light curve (the period must be positive)");
        return w;
    }
    if (n < 100) {
        w.problem = QStringLiteral("too few points (%1) to measure the eclipse on the folded light curve").arg(n);
        return w;
    }
    std::vector<std::vector<double>> binned(bins);
    for (std::size_t i = 0; i < n; ++i) {
        const double x = (curve.times[i] - ephemeris.t0) / ephemeris.period;
        const double phase = x - std::floor(x + 0.5); // -0.5 .. 0.5, the primary at 0
        std::size_t b = static_cast<std::size_t>((phase + 0.5) * static_cast<double>(bins));
        binned[std::min(b, bins - 1)].push_back(curve.mags[i]);
    }
    // A bin with nothing in it has no value and is stepped over.
    std::vector<double> value(bins, std::nan(""));
    std::vector<double> filled;
    for (std::size_t b = 0; b < bins; ++b)
        if (!binned[b].empty()) {
            value[b] = median(binned[b]);
            filled.push_back(value[b]);
        }
    const double baseline = median(filled);
    std::vector<double> spread;
    for (const double v : filled)
        spread.push_back(std::abs(v - baseline));
    const double noise = 1.4826 * median(spread);

    const double binWidth = 1.0 / static_cast<double>(bins);
    auto phaseOf = [&](std::size_t b) { return (static_cast<double>(b) + 0.5) * binWidth - 0.5; };
    std::size_t deepest = bins;
    for (std::size_t b = 0; b < bins; ++b)
        if (std::abs(phaseOf(b)) <= 0.05 && !std::isnan(value[b]) && (deepest == bins || value[b] > value[deepest]))
            deepest = b;
    const double depth = deepest == bins ? 0 : value[deepest] - baseline;
    if (deepest == bins || !(depth > 5 * noise) || !(depth > 0)) {
        w.problem = QStringLiteral("no eclipse stands out near phase 0 of the folded light curve");
        return w;
    }
    const double level = baseline + 0.1 * depth;
    auto edge = [&](int direction) {
        long long b = static_cast<long long>(deepest);
        for (;;) {
            b += direction;
            if (b < 0 || b >= static_cast<long long>(bins))
                return 0.5; // never back to the baseline: half a cycle
            const double v = value[static_cast<std::size_t>(b)];
            if (!std::isnan(v) && v <= level)
                return std::abs(phaseOf(static_cast<std::size_t>(b)) - phaseOf(deepest));
        }
    };
    w.halfWidth = 1.3 * std::max(edge(-1), edge(+1)) * ephemeris.period;
    return w;
}

bool BatchWindow::secondary() const { return cycle != std::floor(cycle); }

BatchWindow BatchWindow::central(std::size_t maxPoints) const
{
    if (t.size() <= maxPoints || maxPoints == 0)
        return *this;
    const std::size_t keep = (maxPoints - 1) / 2;
    BatchWindow w = *this;
    const auto first = static_cast<std::ptrdiff_t>(centre - keep);
    const auto last = static_cast<std::ptrdiff_t>(centre + keep + 1);
    w.t.assign(t.begin() + first, t.begin() + last);
    w.m.assign(m.begin() + first, m.begin() + last);
    w.centre = keep;
    return w;
}

std::array<double, 8> fourierStartValues(const std::vector<double>& t, const std::vector<double>& sm,
                                         std::size_t centre)
{
    const std::size_t last = t.size() - 1;
    const double xo = t[centre];
    const double c = sm[centre];
    const double depth = c - (sm[0] + sm[last]) / 2;
    const double half = c - depth / 2;
    // Where the smoothed curve crosses half depth on each side, by linear interpolation; the
    // range's end when it never does.
    double left = t[0];
    for (std::size_t i = centre; i > 0; --i)
        if (sm[i - 1] <= half) {
            left = t[i - 1] + (t[i] - t[i - 1]) * (half - sm[i - 1]) / (sm[i] - sm[i - 1]);
            break;
        }
    double right = t[last];
    for (std::size_t i = centre; i < last; ++i)
        if (sm[i + 1] <= half) {
            right = t[i] + (t[i + 1] - t[i]) * (sm[i] - half) / (sm[i] - sm[i + 1]);
            break;
        }
    static const double uHalf = halfDepthPhase();
    const double hwhm = (right - left) / 2;
    const double a1 = depth / 2.625;
    return {xo, c, hwhm > 0 ? uHalf / hwhm : 0, a1, a1 / 2, a1 / 4, a1 / 8, a1 / 16};
}

ChordRanges chordRanges(const BatchWindow& window)
{
    ChordRanges r;
    const std::size_t n = window.m.size();
    const std::size_t c = window.centre;
    if (n < 3 || c == 0 || c + 1 >= n)
        return r;
    const std::vector<double> shape = smooth(window.m.data(), n, 40);
    const double base = (shape.front() + shape.back()) / 2;
    const double depth = shape[c] - base;
    if (!(depth > 0))
        return r;
    const double lo = base + 0.2 * depth;
    const double hi = base + 0.8 * depth;
    // From the deepest point outwards (step -1 or +1): the first point at or below four fifths
    // of the depth, then on while the points stay at or above a fifth.
    auto branch = [&](int step, int* from, int* to) {
        long long i = static_cast<long long>(c);
        const long long end = step < 0 ? -1 : static_cast<long long>(n);
        while (i != end && shape[static_cast<std::size_t>(i)] > hi)
            i += step;
        if (i == end || shape[static_cast<std::size_t>(i)] < lo)
            return;
        const long long inner = i;
        while (i + step != end && shape[static_cast<std::size_t>(i + step)] >= lo)
            i += step;
        // 1-based, the lower index first.
        *from = static_cast<int>(std::min(inner, i)) + 1;
        *to = static_cast<int>(std::max(inner, i)) + 1;
    };
    branch(-1, &r.first, &r.last);
    branch(+1, &r.first2, &r.last2);
    if (!r.found())
        r = ChordRanges();
    return r;
}

WindowCut cutWindow(const LightCurve& curve, const EclipseSettings& settings, double gap, double cycle)
{
    WindowCut cut;
    BatchWindow& w = cut.window;
    const Ephemeris& e = settings.ephemeris;
    w.cycle = cycle;
    w.predicted = e.t0 + cycle * e.period;
    w.offset = std::floor(w.predicted);

    const std::vector<double>& times = curve.times;
    const auto begin = std::lower_bound(times.begin(), times.end(), w.predicted - settings.halfWidth);
    const auto end = std::upper_bound(begin, times.end(), w.predicted + settings.halfWidth);
    const std::size_t a = static_cast<std::size_t>(begin - times.begin());
    const std::size_t n = static_cast<std::size_t>(end - begin);
    if (n == 0) {
        cut.skipped = QStringLiteral("no points within %1 d of the predicted minimum").arg(days(settings.halfWidth));
        return cut;
    }
    const auto after = std::lower_bound(begin, end, w.predicted);
    if (after != times.begin() && after != times.end() && *after - *(after - 1) > gap) {
        cut.skipped = QStringLiteral("a gap of %1 d covers the predicted minimum").arg(days(*after - *(after - 1)));
        return cut;
    }

    const std::vector<double> sm = smooth(curve.mags.data() + a, n, 6);
    std::size_t deepest = 0;
    for (std::size_t i = 1; i < n; ++i)
        if (sm[i] > sm[deepest]) // strict: of equal values the first one wins
            deepest = i;
    if (!(sm[deepest] > (sm.front() + sm.back()) / 2)) {
        cut.skipped = QStringLiteral("no dip: the deepest point is no fainter than the ends of the window");
        return cut;
    }

    const std::size_t left = deepest;
    const std::size_t right = n - 1 - deepest;
    const std::size_t need = static_cast<std::size_t>(std::max(settings.minBranchPoints, 1));
    if (left < need || right < need) {
        QStringList sides;
        if (left < need)
            sides << QStringLiteral("%1 on the left branch").arg(left);
        if (right < need)
            sides << QStringLiteral("%1 on the right branch").arg(right);
        cut.skipped = QStringLiteral("short of points: %1, %2 needed").arg(sides.join(QLatin1String(", "))).arg(need);
        return cut;
    }
    const std::size_t cap = static_cast<std::size_t>(std::max(settings.maxPoints - 1, 2)) / 2;
    const std::size_t branch = std::min({left, right, cap});
    const std::size_t first = a + deepest - branch;
    const std::size_t count = 2 * branch + 1;

    // A gap in the middle half of the range, within a quarter of its span of the deepest point,
    // leaves the bottom of the dip unobserved.
    const double centre = times[a + deepest];
    const double reach = (times[first + count - 1] - times[first]) / 4;
    for (std::size_t i = first; i + 1 < first + count; ++i) {
        if (times[i + 1] - times[i] > gap && times[i + 1] > centre - reach && times[i] < centre + reach) {
            cut.skipped = QStringLiteral("a gap of %1 d covers the minimum (in the middle half of the range)")
                              .arg(days(times[i + 1] - times[i]));
            return cut;
        }
    }

    w.centre = branch;
    w.t.resize(count);
    w.m.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
        w.t[i] = times[first + i] - w.offset;
        w.m[i] = curve.mags[first + i];
    }
    // The shape of the dip for the Fourier start values, from a light smoothing that keeps its
    // depth and width.
    const std::vector<double> shape = smooth(w.m.data(), count, 40);
    if (!(shape[branch] > (shape.front() + shape.back()) / 2)) {
        cut.skipped = QStringLiteral("no dip: the deepest point is no fainter than the ends of the range");
        return cut;
    }
    w.fourierStart = fourierStartValues(w.t, shape, branch);
    return cut;
}

} // namespace dip
