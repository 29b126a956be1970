// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers

#include "analysis/NoiseCovariance.h"

#include <QtTest>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

using namespace dip;

namespace {

// White noise of sd white plus a correlated part of sd red with correlation time tau, at the
// times 0, 1, 2, ... (n of them): the model's own process.
std::vector<double> noiseOf(int n, double white, double red, double tau, std::mt19937_64& rng)
{
    std::normal_distribution<double> g(0, 1);
    const double rho = std::exp(-1 / tau);
    std::vector<double> e(static_cast<std::size_t>(n));
    double slow = red * g(rng);
    for (double& v : e) {
        v = white * g(rng) + slow;
        slow = rho * slow + red * std::sqrt(1 - rho * rho) * g(rng);
    }
    return e;
}

// The differences n(c + k) - n(c - k), k = 1 .. count: a dip's branches reflected about a point
// c on even sampling.
std::vector<NoiseContrast> reflected(const std::vector<double>& e, int c, int count)
{
    std::vector<NoiseContrast> contrasts;
    for (int k = 1; k <= count; ++k) {
        NoiseContrast x;
        x.times = {double(c + k), double(c - k)};
        x.weights = {1, -1};
        x.value = e[std::size_t(c + k)] - e[std::size_t(c - k)];
        contrasts.push_back(x);
    }
    return contrasts;
}

} // namespace

class TestNoiseCovariance : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Two neighbouring differences of three points share the middle one:
    // Cov(n0 - n1, n1 - n2) = C(1) - C(2) - C(0) + C(1).
    void contrastCovariance()
    {
        NoiseCovariance c;
        c.white = 0.5;
        c.red = 2;
        c.tau = 4;
        NoiseContrast a, b;
        a.times = {0, 1};
        a.weights = {1, -1};
        b.times = {1, 2};
        b.weights = {1, -1};
        const double expected = 2 * 2 * std::exp(-0.25) - 2 * std::exp(-0.5) - 2.5;
        QCOMPARE(c.between(a, b), expected);
        QCOMPARE(c(3, 3), 2.5);
        QCOMPARE(c(3, 5), 2 * std::exp(-0.5));
    }

    // White noise stays white: the correlated model must earn its two parameters.
    void whiteNoiseStaysWhite()
    {
        std::mt19937_64 rng(5);
        const std::vector<double> e = noiseOf(301, 0.01, 0, 1, rng);
        const NoiseCovarianceFit fit = fitNoiseCovariance(reflected(e, 150, 120), 1);
        QVERIFY(fit.ok);
        QVERIFY(!fit.covariance.correlated());
        QCOMPARE(fit.covariance.red, 0.0);
        QVERIFY2(std::abs(std::sqrt(fit.covariance.white) / 0.01 - 1) < 0.15,
                 qPrintable(QString::number(std::sqrt(fit.covariance.white))));
        QCOMPARE(int(fit.innovations.size()), 120);
    }

    // Noise of white 0.005 and correlated 0.01 over 8 points, 40 differences about a centre
    // in each of 50 draws: the fit finds it correlated in nearly all, and on average the
    // noise's size and correlation time. (The differences nearest the centre cancel most of
    // the slow part; their covariance says so, and the fit goes through it.)
    void correlatedNoiseFound()
    {
        std::mt19937_64 rng(11);
        const double total = 0.005 * 0.005 + 0.01 * 0.01;
        int correlated = 0;
        double size = 0;
        std::vector<double> taus;
        const int draws = 50;
        for (int k = 0; k < draws; ++k) {
            const std::vector<double> e = noiseOf(81, 0.005, 0.01, 8, rng);
            const NoiseCovarianceFit fit = fitNoiseCovariance(reflected(e, 40, 40), 1);
            QVERIFY(fit.ok);
            if (fit.covariance.correlated()) {
                ++correlated;
                taus.push_back(fit.covariance.tau);
            }
            size += (fit.covariance.white + fit.covariance.red) / total;
        }
        size /= draws;
        std::sort(taus.begin(), taus.end());
        const double tau = taus.empty() ? 0.0 : taus[taus.size() / 2];
        const QString found =
            QStringLiteral("correlated %1, size %2, median tau %3").arg(correlated).arg(size).arg(tau);
        QVERIFY2(correlated >= draws * 8 / 10, qPrintable(found));
        QVERIFY2(std::abs(size - 1) < 0.25, qPrintable(found));
        QVERIFY2(tau >= 4 && tau <= 16, qPrintable(found));
    }

    // The innovations the replicates are drawn from: centred, of unit mean square.
    void innovationsStandardised()
    {
        std::mt19937_64 rng(17);
        const std::vector<double> e = noiseOf(241, 0.005, 0.01, 6, rng);
        const NoiseCovarianceFit fit = fitNoiseCovariance(reflected(e, 120, 100), 1);
        QVERIFY(fit.ok);
        double mean = 0, square = 0;
        for (const double x : fit.innovations) {
            mean += x;
            square += x * x;
        }
        QVERIFY(std::abs(mean / double(fit.innovations.size())) < 1e-12);
        QCOMPARE(square / double(fit.innovations.size()), 1.0);
    }

    // Fewer than ten differences, or none of any size: nothing fitted.
    void tooLittleToFit()
    {
        std::mt19937_64 rng(3);
        const std::vector<double> e = noiseOf(41, 0.01, 0, 1, rng);
        QVERIFY(!fitNoiseCovariance(reflected(e, 20, 9), 1).ok);
        QVERIFY(fitNoiseCovariance(reflected(e, 20, 10), 1).ok);
        const std::vector<double> flat(41, 0.0);
        QVERIFY(!fitNoiseCovariance(reflected(flat, 20, 15), 1).ok);
        QVERIFY(!fitNoiseCovariance(reflected(e, 20, 15), 0).ok);
    }
};

QTEST_GUILESS_MAIN(TestNoiseCovariance)
#include "tst_noisecovariance.moc"
