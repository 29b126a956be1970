// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/BaselineNoise.h"

#include "analysis/EclipseWindow.h"

#include <algorithm>
#include <cmath>

namespace dip {

namespace {

constexpr int fewestOnASide = 5;
constexpr int fewestPairs = 8;
constexpr double gapInSpacings = 3;
constexpr double whiteLevel = 1.645; // one-sided 5 %
// A side whose line rises or falls by more than this share of the dip's depth over the side is
// a branch of the dip, not its baseline.
constexpr double flatShareOfDepth = 0.25;

// Sums of one side: the residuals about its fitted line.
struct SideSums {
    double products = 0; // of neighbours not across a gap
    double squares = 0;
    int pairs = 0;
    int dof = 0;
};

void addSide(const std::vector<double>& t, const std::vector<double>& m, double gap, double depth, SideSums& s)
{
    const std::size_t k = t.size();
    if (k < std::size_t(fewestOnASide))
        return;
    double meanT = 0, meanM = 0;
    for (std::size_t i = 0; i < k; ++i) {
        meanT += t[i];
        meanM += m[i];
    }
    meanT /= double(k);
    meanM /= double(k);
    double stt = 0, stm = 0;
    for (std::size_t i = 0; i < k; ++i) {
        stt += (t[i] - meanT) * (t[i] - meanT);
        stm += (t[i] - meanT) * (m[i] - meanM);
    }
    if (!(stt > 0))
        return;
    const double slope = stm / stt;
    if (!(std::abs(slope) * (t.back() - t.front()) <= flatShareOfDepth * depth))
        return;
    std::vector<double> r(k);
    for (std::size_t i = 0; i < k; ++i) {
        r[i] = m[i] - meanM - slope * (t[i] - meanT);
        s.squares += r[i] * r[i];
    }
    for (std::size_t i = 1; i < k; ++i)
        if (t[i] - t[i - 1] < gap) {
            s.products += r[i] * r[i - 1];
            ++s.pairs;
        }
    s.dof += int(k) - 2;
}

} // namespace

BaselineNoise JudgeBaselineNoise(const Curve& curve, double dipStart, double dipEnd)
{
    BaselineNoise out;
    const double width = dipEnd - dipStart;
    if (!(width > 0))
        return out;
    std::vector<double> before, beforeM, after, afterM, times;
    double faintest = 0, brightest = 0;
    bool inDip = false;
    for (int i = 1; i <= curve.n; ++i) {
        const double t = curve.t(i);
        if (t < dipStart - width || t > dipEnd + width)
            continue;
        times.push_back(t);
        if (t >= dipStart && t <= dipEnd) {
            faintest = inDip ? std::max(faintest, double(curve.m(i))) : curve.m(i);
            brightest = inDip ? std::min(brightest, double(curve.m(i))) : curve.m(i);
            inDip = true;
        } else if (t < dipStart) {
            before.push_back(t);
            beforeM.push_back(curve.m(i));
        } else if (t > dipEnd) {
            after.push_back(t);
            afterM.push_back(curve.m(i));
        }
    }
    const double gap = gapInSpacings * medianCadence(times);
    const double depth = faintest - brightest;
    SideSums s;
    addSide(before, beforeM, gap, depth, s);
    addSide(after, afterM, gap, depth, s);
    out.pairs = s.pairs;
    if (s.pairs < fewestPairs || s.dof < 1 || !(s.squares > 0))
        return out;
    out.judged = true;
    out.lag1 = (s.products / s.pairs) / (s.squares / s.dof) + 1.0 / s.dof;
    out.correlated = out.lag1 > whiteLevel / std::sqrt(double(s.pairs));
    return out;
}

std::optional<TimeSpan> DipExtent(const Curve& curve, const std::vector<MethodRequest>& requests)
{
    std::optional<TimeSpan> out;
    auto add = [&](int first, int last) {
        if (first < 1 || last < first || last > curve.n)
            return;
        for (int i = first; i <= last; ++i) {
            const double t = curve.t(i);
            if (!out)
                out = TimeSpan{t, t};
            out->start = std::min(out->start, t);
            out->end = std::max(out->end, t);
        }
    };
    for (const MethodRequest& r : requests) {
        add(r.first, r.last);
        add(r.first2, r.last2);
    }
    return out;
}

} // namespace dip
