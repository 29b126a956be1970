// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers

#include "methods/kwee/NoiseCovariance.h"
#include "support/SimulatedEclipse.h"

#include <QtTest>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

using namespace dip;

namespace {

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

// The contrasts with their part along a drift g (the reflected slope of a dip of half-width
// 12 points) taken out by least squares, as a centre fitted to them does; the drifts are told
// to the fit only when tell is set.
std::vector<NoiseContrast> centred(std::vector<NoiseContrast> contrasts, bool tell)
{
    double cg = 0, gg = 0;
    for (NoiseContrast& x : contrasts) {
        const double k = x.times[0] - x.times[1];
        x.drift = k * std::exp(-(k / 24) * (k / 24));
        cg += x.value * x.drift;
        gg += x.drift * x.drift;
    }
    for (NoiseContrast& x : contrasts) {
        x.value -= cg / gg * x.drift;
        if (!tell)
            x.drift = 0;
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
        const std::vector<double> e = test::correlatedNoise(301, 0.01, 0, 1, rng);
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
            const std::vector<double> e = test::correlatedNoise(81, 0.005, 0.01, 8, rng);
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

    // Told the noise is correlated, the fit takes the best correlated model even where it gains
    // too little over white noise to be chosen: on 20 differences of correlated noise the test
    // calls it white in some draws, told never; where the test found it correlated, telling
    // changes nothing.
    void knownCorrelatedNoiseIsNeverCalledWhite()
    {
        std::mt19937_64 rng(11);
        const int draws = 40;
        int found = 0, told = 0, same = 0;
        for (int k = 0; k < draws; ++k) {
            const std::vector<double> e = test::correlatedNoise(41, 0.005, 0.01, 8, rng);
            const std::vector<NoiseContrast> contrasts = reflected(e, 20, 20);
            const NoiseCovarianceFit plain = fitNoiseCovariance(contrasts, 1);
            const NoiseCovarianceFit known = fitNoiseCovariance(contrasts, 1, true);
            QVERIFY(plain.ok && known.ok);
            told += known.covariance.correlated() ? 1 : 0;
            if (plain.covariance.correlated()) {
                ++found;
                if (known.covariance.white == plain.covariance.white && known.covariance.red == plain.covariance.red &&
                    known.covariance.tau == plain.covariance.tau)
                    ++same;
            }
        }
        const QString counts = QStringLiteral("found %1, told %2, same %3").arg(found).arg(told).arg(same);
        QVERIFY2(found < draws, qPrintable(counts));
        QVERIFY2(found > 0, qPrintable(counts));
        QCOMPARE(told, draws);
        QCOMPARE(same, found);

        // White noise, told correlated, is taken as correlated too: the observer's word holds.
        const std::vector<double> white = test::correlatedNoise(301, 0.01, 0, 1, rng);
        QVERIFY(!fitNoiseCovariance(reflected(white, 150, 120), 1).covariance.correlated());
        QVERIFY(fitNoiseCovariance(reflected(white, 150, 120), 1, true).covariance.correlated());
    }

    // What a fitted centre took up cannot matter: with the drifts told, values that differ by
    // a multiple of them give the same fit; untold, the fit follows the values.
    void driftTakenUpChangesNothing()
    {
        std::mt19937_64 rng(41);
        const std::vector<double> e = test::correlatedNoise(81, 0.005, 0.01, 8, rng);
        const std::vector<NoiseContrast> told = centred(reflected(e, 40, 40), true);
        std::vector<NoiseContrast> moved = told;
        for (NoiseContrast& x : moved)
            x.value += 0.002 * x.drift;
        const NoiseCovarianceFit a = fitNoiseCovariance(told, 1);
        const NoiseCovarianceFit b = fitNoiseCovariance(moved, 1);
        QVERIFY(a.ok && b.ok);
        QVERIFY(a.covariance.correlated());
        QCOMPARE(b.covariance.tau, a.covariance.tau);
        QVERIFY(std::abs(b.covariance.red / a.covariance.red - 1) < 1e-9);
        QVERIFY(std::abs(b.covariance.white / a.covariance.white - 1) < 1e-9);

        std::vector<NoiseContrast> untold = told, untoldMoved = moved;
        for (NoiseContrast& x : untold)
            x.drift = 0;
        for (NoiseContrast& x : untoldMoved)
            x.drift = 0;
        const NoiseCovarianceFit c = fitNoiseCovariance(untold, 1);
        const NoiseCovarianceFit d = fitNoiseCovariance(untoldMoved, 1);
        QVERIFY(std::abs((d.covariance.white + d.covariance.red) / (c.covariance.white + c.covariance.red) - 1) > 0.01);
    }

    // Slow noise over 61 points with a centre fitted to it, 50 draws: told the drifts, the fit
    // finds the noise's size (1.08 of it on average); untold, it takes what the centre left for
    // all of the noise and finds a fifth too little (0.80).
    void driftKeepsTheSlowNoise()
    {
        std::mt19937_64 rng(43);
        const double total = 0.005 * 0.005 + 0.01 * 0.01;
        const int draws = 50;
        double size[2] = {0, 0};
        int correlated[2] = {0, 0};
        for (int k = 0; k < draws; ++k) {
            const std::vector<NoiseContrast> contrasts =
                reflected(test::correlatedNoise(61, 0.005, 0.01, 8, rng), 30, 30);
            for (int tell = 0; tell < 2; ++tell) {
                const NoiseCovarianceFit fit = fitNoiseCovariance(centred(contrasts, tell == 1), 1);
                QVERIFY(fit.ok);
                size[tell] += (fit.covariance.white + fit.covariance.red) / total / draws;
                correlated[tell] += fit.covariance.correlated() ? 1 : 0;
            }
        }
        const QString found = QStringLiteral("size %1 / %2, correlated %3 / %4")
                                  .arg(size[0])
                                  .arg(size[1])
                                  .arg(correlated[0])
                                  .arg(correlated[1]);
        QVERIFY2(std::abs(size[1] - 1) < 0.15, qPrintable(found));
        QVERIFY2(size[0] < 0.9, qPrintable(found));
        QVERIFY2(correlated[1] >= draws * 7 / 10, qPrintable(found));
    }

    // Where the noise is correlated the fit keeps the plausible covariances, the best among
    // them with weight 1; the fewer the differences, the wider their correlation times spread
    // (the weighted spread of log tau over 30 draws, from 30 and from 120 differences).
    void doubtShrinksWithData()
    {
        std::mt19937_64 rng(29);
        auto spread = [](const NoiseCovarianceFit& fit) {
            double total = 0, mean = 0, square = 0, previous = 0;
            for (std::size_t k = 0; k < fit.plausible.size(); ++k) {
                const double w = fit.cumulativeWeights[k] - previous;
                previous = fit.cumulativeWeights[k];
                const double x = std::log(fit.plausible[k].tau);
                total += w;
                mean += w * x;
                square += w * x * x;
            }
            mean /= total;
            return std::sqrt(std::max(0.0, square / total - mean * mean));
        };
        double fewSpread = 0, manySpread = 0;
        int few = 0, many = 0;
        for (int k = 0; k < 30; ++k) {
            const std::vector<double> e = test::correlatedNoise(301, 0.005, 0.01, 6, rng);
            for (const int count : {30, 120}) {
                const NoiseCovarianceFit fit = fitNoiseCovariance(reflected(e, 150, count), 1);
                QVERIFY(fit.ok);
                if (!fit.covariance.correlated()) {
                    QVERIFY(fit.plausible.empty());
                    continue;
                }
                QCOMPARE(int(fit.innovations.size()), count);
                QCOMPARE(fit.plausible.size(), fit.cumulativeWeights.size());
                QVERIFY(fit.cumulativeWeights.back() >= 1);
                QVERIFY(std::is_sorted(fit.cumulativeWeights.begin(), fit.cumulativeWeights.end()));
                bool bestKept = false;
                for (const NoiseCovariance& c : fit.plausible)
                    bestKept =
                        bestKept || (c.tau == fit.covariance.tau && std::abs(c.red / fit.covariance.red - 1) < 1e-9);
                QVERIFY(bestKept);
                (count == 30 ? fewSpread : manySpread) += spread(fit);
                ++(count == 30 ? few : many);
            }
        }
        QVERIFY(few >= 10 && many >= 25);
        fewSpread /= few;
        manySpread /= many;
        QVERIFY2(
            fewSpread > 1.3 * manySpread,
            qPrintable(QStringLiteral("spread of log tau: 30 differences %1, 120 %2").arg(fewSpread).arg(manySpread)));
    }

    // A replicate's covariance: the plausible one the uniform number falls on by weight, its
    // scale divided by chi^2_d / d at the normal number (Wilson and Hilferty: at z = 0,
    // (1 - 2 / 9d)^3), at most 125 times; white noise's fitted covariance as it is.
    void drawByWeightAndScale()
    {
        NoiseCovarianceFit fit;
        fit.covariance.white = 1;
        QCOMPARE(fit.draw(0.7, 3).white, 1.0);
        QCOMPARE(fit.draw(0.7, 3).red, 0.0);

        NoiseCovariance a, b;
        a.white = 1;
        a.red = 2;
        a.tau = 3;
        b.white = 0.5;
        b.red = 4;
        b.tau = 12;
        fit.covariance = a;
        fit.plausible = {a, b};
        fit.cumulativeWeights = {1, 4};
        fit.innovations.assign(11, 0.0);
        fit.degreesOfFreedom = 10; // eleven contrasts fitted, with drifts
        const double atZero = std::pow(1 - 2.0 / 90, 3);
        QCOMPARE(fit.draw(0.2, 0).tau, 3.0);
        QCOMPARE(fit.draw(0.2, 0).red, 2 / atZero);
        QCOMPARE(fit.draw(0.3, 0).tau, 12.0);
        QCOMPARE(fit.draw(0.3, 0).white, 0.5 / atZero);
        QCOMPARE(fit.draw(0.99, -20).red, 4 / 0.008);
        QVERIFY(fit.draw(0.99, 2).red < 4);
    }

    // The scale's degrees of freedom: one per contrast, less the one a fitted centre took up
    // where the contrasts carry its drifts.
    void degreesOfFreedomCountTheCentre()
    {
        std::mt19937_64 rng(47);
        const std::vector<NoiseContrast> contrasts = reflected(test::correlatedNoise(61, 0.005, 0.01, 8, rng), 30, 30);
        const NoiseCovarianceFit untold = fitNoiseCovariance(centred(contrasts, false), 1);
        const NoiseCovarianceFit told = fitNoiseCovariance(centred(contrasts, true), 1);
        QVERIFY(untold.ok && told.ok);
        QCOMPARE(int(untold.degreesOfFreedom), 30);
        QCOMPARE(int(told.degreesOfFreedom), 29);
    }

    // The innovations the replicates are drawn from: centred, of unit mean square.
    void innovationsStandardised()
    {
        std::mt19937_64 rng(17);
        const std::vector<double> e = test::correlatedNoise(241, 0.005, 0.01, 6, rng);
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

    // The weighing: white noise on 120 differences leaves white noise the heaviest, correlated
    // noise over 8 points rules it out; the weights sum to 1 and the light ones are left out.
    void weighingFollowsTheNoise()
    {
        std::mt19937_64 rng(7);
        const std::vector<WeighedCovariance> white =
            weighNoiseCovariances(reflected(test::correlatedNoise(301, 0.01, 0, 1, rng), 150, 120), 1);
        const std::vector<WeighedCovariance> red =
            weighNoiseCovariances(reflected(test::correlatedNoise(301, 0.003, 0.01, 8, rng), 150, 120), 1);
        for (const auto* weighed : {&white, &red}) {
            QVERIFY(!weighed->empty());
            double sum = 0, heaviest = 0;
            for (const WeighedCovariance& w : *weighed) {
                sum += w.weight;
                heaviest = std::max(heaviest, w.weight);
            }
            QCOMPARE(sum, 1.0);
            for (const WeighedCovariance& w : *weighed)
                QVERIFY(w.weight > 1e-3 * heaviest);
        }
        QVERIFY(!white.front().covariance.correlated());
        QVERIFY2(white.front().weight > 0.5, qPrintable(QString::number(white.front().weight)));
        for (const WeighedCovariance& w : red)
            QVERIFY(w.covariance.correlated());
        QVERIFY(weighNoiseCovariances(reflected(test::correlatedNoise(41, 0.01, 0, 1, rng), 20, 9), 1).empty());
    }

    // Of a long branch the fit takes the 120 differences nearest the centre: the left branch's
    // last, the right branch's first; a short branch whole.
    void nearestTheCentreKeepsTheInnerDifferences()
    {
        std::vector<NoiseContrast> branch(150);
        for (std::size_t k = 0; k < branch.size(); ++k)
            branch[k].value = double(k);
        const std::vector<NoiseContrast> left = nearestTheCentre(branch, true);
        const std::vector<NoiseContrast> right = nearestTheCentre(branch, false);
        QCOMPARE(int(left.size()), 120);
        QCOMPARE(left.front().value, 30.0);
        QCOMPARE(left.back().value, 149.0);
        QCOMPARE(int(right.size()), 120);
        QCOMPARE(right.front().value, 0.0);
        QCOMPARE(right.back().value, 119.0);
        branch.resize(40);
        QCOMPARE(int(nearestTheCentre(branch, true).size()), 40);
    }

    // Fewer than ten differences, or none of any size: nothing fitted.
    void tooLittleToFit()
    {
        std::mt19937_64 rng(3);
        const std::vector<double> e = test::correlatedNoise(41, 0.01, 0, 1, rng);
        QVERIFY(!fitNoiseCovariance(reflected(e, 20, 9), 1).ok);
        QVERIFY(fitNoiseCovariance(reflected(e, 20, 10), 1).ok);
        const std::vector<double> flat(41, 0.0);
        QVERIFY(!fitNoiseCovariance(reflected(flat, 20, 15), 1).ok);
        QVERIFY(!fitNoiseCovariance(reflected(e, 20, 15), 0).ok);
    }
};

QTEST_GUILESS_MAIN(TestNoiseCovariance)
#include "tst_noisecovariance.moc"
