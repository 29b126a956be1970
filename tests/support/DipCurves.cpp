// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "support/DipCurves.h"

#include <cmath>
#include <random>

namespace dip::test {

double gaussianMag(double t, double centre, double width, double depth, double base)
{
    return base + depth * std::exp(-((t - centre) / width) * ((t - centre) / width));
}

Points gaussianDip(int n, double first, double step, double centre, double width, double depth, double base)
{
    Points p;
    for (int i = 0; i < n; ++i) {
        const double t = first + step * i;
        p.emplace_back(t, gaussianMag(t, centre, width, depth, base));
    }
    return p;
}

Points sixtyFourthsDip(int missingFrom, int missingTo)
{
    const double h = 1.0 / 64;
    Points p;
    for (const auto& point : gaussianDip(61, 0.0, h, 30 * h, 5 * h))
        if (point.first < missingFrom * h || point.first > missingTo * h)
            p.push_back(point);
    return p;
}

double fourierMag(double t, double xo, double c, double w, const double a[5])
{
    const double u = w * (t - xo);
    double y = c;
    for (int k = 1; k <= 5; ++k)
        y = y + a[k - 1] * (std::cos(k * u) - 1);
    return y;
}

Points fourierDip(double xo, double c, double w, const double a[5], int n, double t0, double t1, double noise,
                  unsigned seed)
{
    std::mt19937_64 g(seed);
    Points points;
    for (int i = 0; i < n; ++i) {
        const double t = t0 + (t1 - t0) * i / (n - 1);
        const double r = static_cast<double>(g() >> 11) * 0x1.0p-53 - 0.5;
        points.push_back({t, fourierMag(t, xo, c, w, a) + noise * r});
    }
    return points;
}

Points parabolicDip(int n, double first, double step, double centre, double scatter, double curvature, double base)
{
    Points p;
    for (int i = 0; i < n; ++i) {
        const double t = first + step * i;
        p.emplace_back(t, base - curvature * (t - centre) * (t - centre) + scatter * std::sin(i * 2.7));
    }
    return p;
}

Points twelvePoints()
{
    Points points;
    for (int i = 1; i <= 12; ++i)
        points.push_back({1000.1 + 0.01 * i, 11.0 + 0.01 * i + (i == 6 ? 0.5 : 0.0)});
    return points;
}

QByteArray csv(const Points& points)
{
    QByteArray out;
    for (const auto& [t, m] : points)
        out += QByteArray::number(t, 'g', 17) + ',' + QByteArray::number(m, 'g', 17) + '\n';
    return out;
}

} // namespace dip::test
