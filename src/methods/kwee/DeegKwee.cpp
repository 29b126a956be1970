// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/kwee/DeegKwee.h"

#include "methods/SamplingGap.h"
#include "methods/kwee/NoiseCovariance.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

namespace dip {

namespace {

// The slope a difference's drift uses spans a fifteenth of the range's points on each side.
constexpr std::size_t slopeReachDivisor = 15;

// The segment t[j] .. t[j + 1] that x is read on (the end segments are used up to the ends).
// upper_bound brackets x between t[j] <= x < t[j + 1], so repeated times never give an empty
// interval inside the data.
std::size_t segmentOf(const std::vector<double>& t, double x)
{
    const auto above = std::upper_bound(t.begin(), t.end(), x);
    const std::size_t j = above == t.begin() ? 0 : static_cast<std::size_t>(above - t.begin()) - 1;
    return std::min(j, t.size() - 2);
}

// The linear interpolation of the observations at x, which lies within their times; w is the
// weight of t[j + 1].
double interpolate(const std::vector<double>& t, const std::vector<double>& m, double x, double* weight = nullptr)
{
    const std::size_t j = segmentOf(t, x);
    const double dt = t[j + 1] - t[j];
    const double w = dt > 0 ? (x - t[j]) / dt : 0.5;
    if (weight)
        *weight = w;
    return m[j] + (m[j + 1] - m[j]) * w;
}

// Whether x is read on a segment longer than gap: the straight line across a gap, which cuts the
// curved branch, so that a difference read there is the curve's miss, not the noise.
bool readAcrossAGap(const std::vector<double>& t, double x, double gap)
{
    const std::size_t j = segmentOf(t, x);
    return t[j + 1] - t[j] > gap;
}

// The slope of the light curve between t[j] and t[j + 1]: of the least-squares line through them
// and reach more points on each side. Between two neighbours alone it is mostly noise where the
// points are dense.
double smoothSlope(const std::vector<double>& t, const std::vector<double>& m, std::size_t j, std::size_t reach)
{
    const std::size_t first = j > reach ? j - reach : 0;
    const std::size_t last = std::min(t.size() - 1, j + 1 + reach);
    double tMean = 0, mMean = 0;
    for (std::size_t k = first; k <= last; ++k) {
        tMean += t[k];
        mMean += m[k];
    }
    const double count = double(last - first + 1);
    tMean /= count;
    mMean /= count;
    double tt = 0, tm = 0;
    for (std::size_t k = first; k <= last; ++k) {
        tt += (t[k] - tMean) * (t[k] - tMean);
        tm += (t[k] - tMean) * (m[k] - mMean);
    }
    return tt > 0 ? tm / tt : 0;
}

// The red-noise factor of the error: how much more the time moves under the noise the
// differences d_i = m_i - L(2T - t_i) of the points lo .. hi - 1 show than under white noise of
// sigma. A difference is a contrast of the noise at its point and its partner's two
// interpolation neighbours; the time moves by -sum g_i d_i / sum g_i^2, g_i = dd_i / dT, twice the
// reflected slope, so its variance under a covariance C of the noise is v'Cv / (g'g)^2, v the
// g-weighted sum of the contrasts' weights at each point. The noise's covariance is weighed over
// white noise and correlated noise of every correlation time (weighNoiseCovariances), fitted to
// the differences of the branch with more of them, with their part along g taken up by the time
// found (the restricted likelihood): at the time found sum g_i d_i = 0, which on a short curve
// hides most of the slow noise from any measure taken on the d alone. The factor is
// sqrt(sum_k w_k v'C_k v / (sigma^2 v'v)), at least 1.
double redNoiseFactor(const std::vector<double>& t, const std::vector<double>& m, std::size_t lo, std::size_t hi,
                      double T, double sigma, double spacing, double gap)
{
    const std::size_t n = t.size();
    const std::size_t reach = std::max<std::size_t>(2, n / slopeReachDivisor);
    std::vector<NoiseContrast> branch[2];
    for (std::size_t i = lo; i < hi; ++i) {
        const double x = 2 * T - t[i];
        const std::size_t j = segmentOf(t, x);
        // A point that is its own partner's neighbour differs from nothing.
        if (t[i] == T || j == i || j + 1 == i)
            continue;
        const double dt = t[j + 1] - t[j];
        if (dt > gap)
            continue;
        const double w = dt > 0 ? (x - t[j]) / dt : 0.5;
        NoiseContrast k;
        k.times = {t[i], t[j], t[j + 1]};
        k.weights = {1, -(1 - w), -w};
        k.value = m[i] - (m[j] + (m[j + 1] - m[j]) * w);
        k.drift = 2 * smoothSlope(t, m, j, reach);
        branch[t[i] < T ? 0 : 1].push_back(k);
    }
    // The other branch holds the same pairs the other way round.
    const bool left = branch[0].size() >= branch[1].size();
    const std::vector<NoiseContrast>& chosen = left ? branch[0] : branch[1];
    const std::vector<WeighedCovariance> weighed = weighNoiseCovariances(nearestTheCentre(chosen, left), spacing);
    if (weighed.empty())
        return 1;

    // v: each point's coefficient in sum_i g_i d_i, as one contrast; a point shared by several
    // differences is summed once, which keeps the quadratic forms below short.
    std::vector<std::pair<double, double>> coefficients;
    for (const NoiseContrast& k : chosen)
        for (std::size_t a = 0; a < k.times.size(); ++a)
            coefficients.emplace_back(k.times[a], k.drift * k.weights[a]);
    std::sort(coefficients.begin(), coefficients.end());
    NoiseContrast v;
    for (const auto& [time, weight] : coefficients) {
        if (!v.times.empty() && v.times.back() == time) {
            v.weights.back() += weight;
        } else {
            v.times.push_back(time);
            v.weights.push_back(weight);
        }
    }
    NoiseCovariance unitWhite;
    unitWhite.white = 1;
    const double vv = unitWhite.between(v, v);
    // v'Rv of the unit correlated part, once for each correlation time.
    std::vector<std::pair<double, double>> redSums;
    auto redSum = [&](double tau) {
        for (const auto& r : redSums)
            if (r.first == tau)
                return r.second;
        NoiseCovariance unitRed;
        unitRed.red = 1;
        unitRed.tau = tau;
        redSums.emplace_back(tau, unitRed.between(v, v));
        return redSums.back().second;
    };
    double modelled = 0;
    for (const WeighedCovariance& w : weighed) {
        double variance = w.covariance.white * vv;
        if (w.covariance.correlated())
            variance += w.covariance.red * redSum(w.covariance.tau);
        modelled += w.weight * variance;
    }
    const double white = sigma * sigma * vv;
    if (!(modelled > 0) || !(white > 0))
        return 1;
    return std::max(1.0, std::sqrt(modelled / white));
}

double median(std::vector<double> v)
{
    if (v.empty())
        return 0;
    const std::size_t mid = v.size() / 2;
    std::nth_element(v.begin(), v.begin() + static_cast<std::ptrdiff_t>(mid), v.end());
    const double upper = v[mid];
    if (v.size() % 2)
        return upper;
    return 0.5 * (upper + *std::max_element(v.begin(), v.begin() + static_cast<std::ptrdiff_t>(mid)));
}

// The fold sums about centre with step h and the least-squares parabola S = a j^2 + b j + c.
struct FoldFit {
    bool valid = false;
    int pairs = 0;
    std::size_t lo = 0, hi = 0;    // the points within reach: lo .. hi - 1
    std::vector<std::size_t> used; // of them, those reflected at every fold onto points, not a gap
    std::vector<double> sums;
    double a = 0, b = 0, c = 0;
};

class Folds {
public:
    Folds(const std::vector<double>& t, const std::vector<double>& m, int folds, double fraction, double gap)
        : m_t(t), m_m(m), m_half(folds / 2), m_fraction(fraction), m_gap(gap)
    {}

    // The points lo .. hi - 1 whose reflections about every time of times fall between points.
    std::vector<std::size_t> reflected(std::size_t lo, std::size_t hi, const std::vector<double>& times) const
    {
        std::vector<std::size_t> used;
        for (std::size_t i = lo; i < hi; ++i) {
            bool ok = true;
            for (const double T : times)
                ok = ok && !readAcrossAGap(m_t, 2 * T - m_t[i], m_gap);
            if (ok)
                used.push_back(i);
        }
        return used;
    }

    // The points within f d - 2D of centre, D = half h the distance of the outer folds: a point
    // w from the centre reflects about a fold j h away to w + 2 j h on the other side.
    std::pair<std::size_t, std::size_t> window(double centre, double h) const
    {
        const double d = std::min(centre - m_t.front(), m_t.back() - centre);
        const double w = m_fraction * d - 2 * m_half * h;
        if (!(w >= 0))
            return {0, 0};
        const auto lo = std::lower_bound(m_t.begin(), m_t.end(), centre - w);
        const auto hi = std::upper_bound(m_t.begin(), m_t.end(), centre + w);
        return {static_cast<std::size_t>(lo - m_t.begin()), static_cast<std::size_t>(hi - m_t.begin())};
    }

    double sum(const std::vector<std::size_t>& used, double T) const
    {
        double s = 0;
        for (const std::size_t i : used) {
            const double d = m_m[i] - interpolate(m_t, m_m, 2 * T - m_t[i]);
            s += d * d;
        }
        return s;
    }

    FoldFit fit(double centre, double h) const
    {
        const auto [lo, hi] = window(centre, h);
        return fitOn(lo, hi, centre, h);
    }

    // The sums at the folds over the points lo .. hi - 1 and their least-squares parabola.
    FoldFit fitOn(std::size_t lo, std::size_t hi, double centre, double h) const
    {
        FoldFit f;
        f.lo = lo;
        f.hi = hi;
        // The same points at every fold, so that the sums differ by the light curve alone.
        std::vector<double> times;
        for (int j = -m_half; j <= m_half; ++j)
            times.push_back(centre + j * h);
        f.used = reflected(lo, hi, times);
        f.pairs = static_cast<int>(f.used.size());
        if (f.pairs < 3)
            return f;
        double n = 0, su2 = 0, su4 = 0, sS = 0, suS = 0, su2S = 0;
        for (int j = -m_half; j <= m_half; ++j) {
            const double S = sum(f.used, centre + j * h);
            f.sums.push_back(S);
            const double u = j;
            n += 1;
            su2 += u * u;
            su4 += u * u * u * u;
            sS += S;
            suS += u * S;
            su2S += u * u * S;
        }
        // The abscissae are symmetric, so the odd sums vanish and b separates from a and c.
        f.b = suS / su2;
        f.a = (n * su2S - su2 * sS) / (n * su4 - su2 * su2);
        f.c = (sS - f.a * su2) / n;
        f.valid = std::isfinite(f.a) && std::isfinite(f.b) && std::isfinite(f.c);
        return f;
    }

    int half() const { return m_half; }

private:
    const std::vector<double>& m_t;
    const std::vector<double>& m_m;
    int m_half;
    double m_fraction;
    double m_gap;
};

// The start: of the observed times in the faint half of the dip (magnitudes averaged over two
// neighbours on each side at least halfway from the brightest to the faintest), the one about
// which the light curve is most symmetric, S per pair over all points whose reflection stays
// within the range. The faint half keeps flat stretches outside the eclipse, which are
// symmetric about any time, out of the choice. Only times reflecting at least 1 / locateShare of
// the most points any time of the faint half reflects take part: near an end of the range a
// handful of points is reflected, and of a handful some are symmetric by chance (a flat bottom
// running into the end of the range, or into a gap, put the start there and kept the time).
constexpr std::size_t locateShare = 2;

bool locate(const std::vector<double>& t, const std::vector<double>& m, const Folds& folds, double* centre)
{
    const std::size_t n = t.size();
    std::vector<double> smooth(n);
    for (std::size_t i = 0; i < n; ++i) {
        const std::size_t lo = i >= 2 ? i - 2 : 0;
        const std::size_t hi = std::min(n - 1, i + 2);
        double s = 0;
        for (std::size_t k = lo; k <= hi; ++k)
            s += m[k];
        smooth[i] = s / static_cast<double>(hi - lo + 1);
    }
    const auto [brightest, faintest] = std::minmax_element(smooth.begin(), smooth.end());
    const double threshold = *brightest + 0.5 * (*faintest - *brightest);
    struct Candidate {
        std::size_t i, lo, hi;
    };
    std::vector<Candidate> faint;
    std::size_t most = 0;
    for (std::size_t i = 0; i < n; ++i) {
        if (smooth[i] >= threshold) {
            const auto [lo, hi] = folds.window(t[i], 0);
            faint.push_back({i, lo, hi});
            most = std::max(most, hi - lo);
        }
    }
    bool found = false;
    double best = HUGE_VAL;
    for (const auto& [i, lo, hi] : faint) {
        if (hi - lo < 5 || (hi - lo) * locateShare < most)
            continue;
        const std::vector<std::size_t> used = folds.reflected(lo, hi, {t[i]});
        if (used.size() < 5)
            continue;
        const double perPair = folds.sum(used, t[i]) / static_cast<double>(used.size());
        if (perPair < best) {
            best = perPair;
            *centre = t[i];
            found = true;
        }
    }
    return found;
}

// The fold step. The outer folds start half a spacing out (h0). Where the noise is large for the
// sampling, S is jagged on that scale and its curvature there is the noise's, not the light
// curve's: the curvature is measured at h0, 2 h0, 4 h0 ... on one set of points, and the step is
// the smallest whose curvature the next larger step does not halve (a parabola keeps it; the
// jagged part falls at least as 1/h) and whose rise at the outer folds, A D^2,
// reaches 4 sigma^2 k^2 with k^2 = max(25, 0.72 P). The jagged part of S varies from fold to fold
// by about 3.5 sqrt(P) sigma^2, which moves the vertex by about 0.28 sqrt(P) sigma_T^2 / D; with
// the outer folds D >= 0.85 sqrt(P) sigma_T out that stays below a third of sigma_T.
double foldStep(const Folds& folds, double centre, double h0, double sigma)
{
    const int half = folds.half();
    const auto [lo0, hi0] = folds.window(centre, h0);
    const std::size_t pairs0 = hi0 - lo0;
    // The largest step that keeps half the points.
    int levels = 0;
    while (levels < 16) {
        const auto [lo, hi] = folds.window(centre, h0 * double(1 << (levels + 1)));
        if (hi - lo < std::max<std::size_t>(5, pairs0 / 2))
            break;
        ++levels;
    }
    if (levels == 0)
        return h0;
    const auto [lo, hi] = folds.window(centre, h0 * double(1 << levels));
    std::vector<double> curvature;
    for (int k = 0; k <= levels; ++k) {
        const double h = h0 * double(1 << k);
        const FoldFit f = folds.fitOn(lo, hi, centre, h);
        curvature.push_back(f.valid ? f.a / (h * h) : 0.0);
    }
    const double pairs = double(hi - lo);
    const double k2 = std::max(25.0, 0.72 * pairs);
    for (int k = 0; k <= levels; ++k) {
        const double D = half * h0 * double(1 << k);
        if (!(curvature[k] > 0) || curvature[k] * D * D < 4 * sigma * sigma * k2)
            continue;
        if (k == levels || curvature[k + 1] >= 0.5 * curvature[k])
            return h0 * double(1 << k);
    }
    return h0 * double(1 << levels);
}

// S has a minimum on any straight stretch too (at the middle of the points reflected), and on a
// maximum: the points within a third of the half-width of the time found must be fainter on
// average than those in the outer third on either side.
bool isDip(const std::vector<double>& t, const std::vector<double>& m, std::size_t lo, std::size_t hi, double time)
{
    if (hi <= lo)
        return false;
    const double w = std::max(time - t[lo], t[hi - 1] - time);
    double inner = 0, left = 0, right = 0;
    int nInner = 0, nLeft = 0, nRight = 0;
    for (std::size_t i = lo; i < hi; ++i) {
        const double x = (t[i] - time) / w;
        if (std::abs(x) <= 1.0 / 3) {
            inner += m[i];
            ++nInner;
        } else if (x <= -2.0 / 3) {
            left += m[i];
            ++nLeft;
        } else if (x >= 2.0 / 3) {
            right += m[i];
            ++nRight;
        }
    }
    if (nInner == 0 || nLeft == 0 || nRight == 0)
        return false;
    inner /= nInner;
    return inner > left / nLeft && inner > right / nRight;
}

} // namespace

double DeegLocalNoise(const std::vector<double>& t, const std::vector<double>& m)
{
    const std::size_t n = t.size();
    if (n < 5)
        return 0;
    std::vector<double> r;
    r.reserve(n);
    for (std::size_t i = 2; i + 2 < n; ++i) {
        const std::size_t idx[4] = {i - 2, i - 1, i + 1, i + 2};
        // Abscissae scaled by the neighbourhood's width, for the conditioning of the sums.
        const double scale = t[i + 2] - t[i - 2];
        if (!(scale > 0))
            continue;
        double s1 = 0, s2 = 0, s3 = 0, s4 = 0;
        double x[4];
        for (int k = 0; k < 4; ++k) {
            x[k] = (t[idx[k]] - t[i]) / scale;
            s1 += x[k];
            s2 += x[k] * x[k];
            s3 += x[k] * x[k] * x[k];
            s4 += x[k] * x[k] * x[k] * x[k];
        }
        // Row 0 of the inverse of [[4, s1, s2], [s1, s2, s3], [s2, s3, s4]] by cofactors.
        const double c00 = s2 * s4 - s3 * s3;
        const double c01 = -(s1 * s4 - s3 * s2);
        const double c02 = s1 * s3 - s2 * s2;
        const double det = 4 * c00 + s1 * c01 + s2 * c02;
        if (!(std::abs(det) > 1e-12 * (4 * s4 + s2 * s2)))
            continue;
        double q = 0;
        for (int k = 0; k < 4; ++k)
            q += (c00 + c01 * x[k] + c02 * x[k] * x[k]) / det * m[idx[k]];
        const double v = c00 / det; // variance of q over sigma^2
        r.push_back((m[i] - q) / std::sqrt(1 + v));
    }
    if (r.empty())
        return 0;

    std::vector<double> absR(r.size());
    std::transform(r.begin(), r.end(), absR.begin(), [](double x) { return std::abs(x); });
    double s = 1.4826 * median(absR);
    if (!(s > 0)) {
        double q = 0;
        for (double x : r)
            q += x * x;
        return std::sqrt(q / static_cast<double>(r.size()));
    }
    // The RMS within 3 sigma; a clipped Gaussian keeps 0.97334 of its variance.
    for (int pass = 0; pass < 10; ++pass) {
        double q = 0;
        int kept = 0;
        for (double x : r) {
            if (std::abs(x) <= 3 * s) {
                q += x * x;
                ++kept;
            }
        }
        const double next = std::sqrt(q / (kept * 0.97334));
        const bool settled = std::abs(next - s) <= 1e-9 * s;
        s = next;
        if (settled)
            break;
    }
    return s;
}

DeegKweeResult DeegKwee(const double* tIn, const double* mIn, int n, const DeegKweeParams& params)
{
    DeegKweeResult r;
    if (params.folds < 3 || params.folds % 2 == 0 || !(params.fraction > 0 && params.fraction <= 1) ||
        params.maxIterations < 1 || !std::isfinite(params.noise)) {
        r.status = DeegKweeStatus::BadParameter;
        return r;
    }
    if (n < 7) {
        r.status = DeegKweeStatus::BadRange;
        return r;
    }

    // The points in time order (a stable sort keeps the file order of equal times).
    std::vector<std::size_t> order(static_cast<std::size_t>(n));
    std::iota(order.begin(), order.end(), std::size_t{0});
    for (std::size_t i = 0; i < order.size(); ++i) {
        if (!std::isfinite(tIn[i]) || !std::isfinite(mIn[i])) {
            r.status = DeegKweeStatus::BadValue;
            return r;
        }
    }
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return tIn[a] < tIn[b]; });
    std::vector<double> t(order.size());
    std::vector<double> m(order.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        t[i] = tIn[order[i]];
        m[i] = mIn[order[i]];
    }

    std::vector<double> spacings;
    for (std::size_t i = 0; i + 1 < t.size(); ++i) {
        if (t[i + 1] > t[i])
            spacings.push_back(t[i + 1] - t[i]);
    }
    const double spacing = median(spacings);
    if (!(spacing > 0)) {
        r.status = DeegKweeStatus::NoSpread;
        return r;
    }

    r.measuredNoise = DeegLocalNoise(t, m);
    const double sigma = params.noise > 0 ? params.noise : r.measuredNoise;

    const double gap = gapInMedianSpacings * spacing;
    const Folds folds(t, m, params.folds, params.fraction, gap);
    const int half = folds.half();

    // Where: the most symmetric point of the faint half of the dip.
    double centre = 0;
    if (!locate(t, m, folds, &centre)) {
        r.status = DeegKweeStatus::NoMinimum;
        return r;
    }

    // How wide: the outer folds half a spacing out, or further where S is jagged on that scale.
    const double h = foldStep(folds, centre, 0.5 * spacing / half, sigma);

    // The folds walk to the minimum and are re-centred on the vertex of their parabola until it
    // stays within half an error of their centre.
    FoldFit fit;
    double vertex = centre;
    bool bracketed = false;
    r.status = DeegKweeStatus::NotConverged;
    for (r.iterations = 1; r.iterations <= params.maxIterations; ++r.iterations) {
        fit = folds.fit(centre, h);
        if (!fit.valid) {
            r.status = DeegKweeStatus::NoMinimum;
            break;
        }
        if (!(fit.a > 0)) {
            // Not a minimum: walk to the lowest fold; a concave set with its centre lowest has
            // no minimum to walk to.
            const auto lowest = std::min_element(fit.sums.begin(), fit.sums.end()) - fit.sums.begin();
            const int j = static_cast<int>(lowest) - half;
            if (j == 0) {
                r.status = DeegKweeStatus::NoMinimum;
                break;
            }
            centre += j * h;
            bracketed = false;
            continue;
        }
        const double v = -fit.b / (2 * fit.a);
        if (std::abs(v) > half) {
            centre += std::clamp(v, -double(half), double(half)) * h;
            bracketed = false;
            continue;
        }
        bracketed = true;
        vertex = centre + v * h;
        const double sigmaT = 2 * sigma * h / std::sqrt(fit.a);
        if (std::abs(vertex - centre) <= std::max(0.5 * sigmaT, 1e-9 * h)) {
            r.status = DeegKweeStatus::Ok;
            break;
        }
        centre = vertex;
    }
    if (r.iterations > params.maxIterations)
        r.iterations = params.maxIterations;
    if (r.status == DeegKweeStatus::NoMinimum || !bracketed || !isDip(t, m, fit.lo, fit.hi, vertex)) {
        r.status = DeegKweeStatus::NoMinimum;
        return r;
    }
    // Fewer than eight points reflected: the minimum lies so near an end of the range that a
    // handful of differences decide the time, and neither their noise nor its correlation can
    // be measured on them.
    if (fit.pairs < minimumDeegPairs) {
        r.status = DeegKweeStatus::TooFewPairs;
        r.pairs = fit.pairs;
        return r;
    }

    r.converged = r.status == DeegKweeStatus::Ok;
    r.time = vertex;
    r.foldCentre = centre;
    r.foldStep = h;
    r.pairs = fit.pairs;
    r.curvature = fit.a / (h * h);
    r.minimumSum = fit.c - fit.b * fit.b / (4 * fit.a);
    r.foldSums = fit.sums;
    for (int j = -half; j <= half; ++j)
        r.foldTimes.push_back(centre + j * h);

    const double Z = fit.pairs / 2.0;
    r.minimumSumError = Z > 1 ? std::sqrt(std::max(0.0, r.minimumSum) / (r.curvature * (Z - 1))) : 0;

    // The noise that S sees at the time found, each term over its own expected variance.
    double sAt = 0, expected = 0;
    for (const std::size_t i : fit.used) {
        double w = 0;
        const double d = m[i] - interpolate(t, m, 2 * vertex - t[i], &w);
        sAt += d * d;
        expected += 1 + w * w + (1 - w) * (1 - w);
    }
    r.noiseAtMinimum = expected > 0 ? std::sqrt(sAt / expected) : 0;

    // Where the reflected curve misses by more than the noise (an asymmetric dip), the miss
    // moves the time as noise does, and the error takes the larger of the two.
    r.noise = std::max(sigma, r.noiseAtMinimum);
    r.error = 2 * r.noise / std::sqrt(r.curvature);
    // Noise correlated over a few points moves the time more than its size says.
    r.redNoiseFactor = redNoiseFactor(t, m, fit.lo, fit.hi, vertex, r.noise, spacing, gap);
    r.error *= r.redNoiseFactor;
    return r;
}

DeegKweeResult DeegKwee(const rt::ObsArray& t, const rt::ObsArray& m, rt::Integer count, rt::Integer first,
                        rt::Integer last, const DeegKweeParams& params)
{
    if (count > rt::ObsArray::upper || first < 1 || last > count || last - first + 1 < 7) {
        DeegKweeResult r;
        r.status = DeegKweeStatus::BadRange;
        return r;
    }
    std::vector<double> tv;
    std::vector<double> mv;
    for (int i = first; i <= last; ++i) {
        tv.push_back(t(i));
        mv.push_back(m(i));
    }
    return DeegKwee(tv.data(), mv.data(), static_cast<int>(tv.size()), params);
}

QString deegKweeStatusText(DeegKweeStatus status)
{
    switch (status) {
    case DeegKweeStatus::Ok: return QStringLiteral("done");
    case DeegKweeStatus::BadRange: return QStringLiteral("the range needs at least 7 points");
    case DeegKweeStatus::BadParameter:
        return QStringLiteral("the number of folds must be odd and at least 3, the fraction between 0 and 1");
    case DeegKweeStatus::BadValue: return QStringLiteral("a time or magnitude in the range is not a number");
    case DeegKweeStatus::NoSpread: return QStringLiteral("all times of the range are equal");
    case DeegKweeStatus::NoMinimum: return QStringLiteral("no minimum found inside the range");
    case DeegKweeStatus::NotConverged: return QStringLiteral("the time of minimum did not settle");
    case DeegKweeStatus::TooFewPairs:
        return QStringLiteral("the minimum lies so near an end of the range that fewer than %1 points can be "
                              "reflected")
            .arg(minimumDeegPairs);
    }
    return QString();
}

} // namespace dip
