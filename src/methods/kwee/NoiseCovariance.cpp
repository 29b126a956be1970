// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/kwee/NoiseCovariance.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

namespace dip {

namespace {

// The correlated fractions r / (w + r) and the correlation times (in median spacings) tried.
constexpr double fractions[] = {0.1, 0.2, 0.35, 0.5, 0.65, 0.8, 0.9, 0.97};
constexpr double times[] = {0.5, 0.75, 1, 1.5, 2, 3, 4, 6, 8, 12, 17, 25, 35, 50, 70, 100};

// What the correlated model must gain over white noise: two parameters more.
constexpr double criterionMargin = 4;

// Before the data, white noise is twice as likely as correlated noise of any kind (whose odds
// the cells of the grid share equally). Even odds make the errors on white noise a third too
// large on short curves, where many correlated covariances fit as well as white noise does.
constexpr double whitePriorOdds = 2;

// A cell of the grid this much less likely than the best is ruled out.
constexpr double negligibleWeight = 1e-3;

// A symmetric n x n matrix, row by row.
using Matrix = std::vector<double>;

// Cholesky's factor L of K (lower, in place of a copy); false when K is not positive definite.
bool cholesky(const Matrix& K, std::size_t n, Matrix* L)
{
    *L = K;
    Matrix& a = *L;
    for (std::size_t j = 0; j < n; ++j) {
        double d = a[j * n + j];
        for (std::size_t k = 0; k < j; ++k)
            d -= a[j * n + k] * a[j * n + k];
        if (!(d > 0))
            return false;
        d = std::sqrt(d);
        a[j * n + j] = d;
        for (std::size_t i = j + 1; i < n; ++i) {
            double s = a[i * n + j];
            for (std::size_t k = 0; k < j; ++k)
                s -= a[i * n + k] * a[j * n + k];
            a[i * n + j] = s / d;
        }
    }
    return true;
}

// z = L^-1 c.
std::vector<double> forward(const Matrix& L, std::size_t n, const std::vector<double>& c)
{
    std::vector<double> z(n);
    for (std::size_t i = 0; i < n; ++i) {
        double s = c[i];
        for (std::size_t k = 0; k < i; ++k)
            s -= L[i * n + k] * z[k];
        z[i] = s / L[i * n + i];
    }
    return z;
}

// -2 log L with the scale profiled out, and that scale; false when K is not positive definite.
// With drifts g (non-empty) the likelihood is the restricted one, of the contrasts' part free of
// g: the centre was fitted to the data and took up their part along g, which holds much of the
// slow noise. With h = L^-1 g, the remaining square is z'z - (z'h)^2 / h'h over n - 1 degrees
// of freedom, and log h'h joins log det K. Its whitened contrasts are those with the part along
// h taken out. plain: the ordinary -2 log L of the contrasts as they are (the same without drifts).
bool criterion(const Matrix& K, std::size_t n, const std::vector<double>& c, const std::vector<double>& g,
               double* value, double* scale, std::vector<double>* whitened, double* plain = nullptr)
{
    Matrix L;
    if (!cholesky(K, n, &L))
        return false;
    std::vector<double> z = forward(L, n, c);
    double zz = 0, logDet = 0;
    for (std::size_t i = 0; i < n; ++i) {
        zz += z[i] * z[i];
        logDet += 2 * std::log(L[i * n + i]);
    }
    if (plain)
        *plain = double(n) * std::log(zz / double(n)) + logDet;
    double dof = double(n);
    if (!g.empty()) {
        const std::vector<double> h = forward(L, n, g);
        double zh = 0, hh = 0;
        for (std::size_t i = 0; i < n; ++i) {
            zh += z[i] * h[i];
            hh += h[i] * h[i];
        }
        if (!(hh > 0))
            return false;
        zz -= zh * zh / hh;
        logDet += std::log(hh);
        dof -= 1;
        for (std::size_t i = 0; i < n; ++i)
            z[i] -= zh / hh * h[i];
    }
    const double s = zz / dof;
    if (!(s > 0))
        return false;
    *value = dof * std::log(s) + logDet;
    *scale = s;
    if (whitened)
        *whitened = z;
    return true;
}

} // namespace

double NoiseCovariance::operator()(double t1, double t2) const
{
    double c = t1 == t2 ? white : 0.0;
    if (correlated())
        c += red * std::exp(-std::abs(t1 - t2) / tau);
    return c;
}

double NoiseCovariance::between(const NoiseContrast& a, const NoiseContrast& b) const
{
    double c = 0;
    for (std::size_t i = 0; i < a.times.size(); ++i)
        for (std::size_t j = 0; j < b.times.size(); ++j)
            c += a.weights[i] * b.weights[j] * (*this)(a.times[i], b.times[j]);
    return c;
}

NoiseCovariance NoiseCovarianceFit::draw(double u, double z) const
{
    if (plausible.empty())
        return covariance;
    const double target = u * cumulativeWeights.back();
    const std::size_t k =
        std::min(std::size_t(std::upper_bound(cumulativeWeights.begin(), cumulativeWeights.end(), target) -
                             cumulativeWeights.begin()),
                 plausible.size() - 1);
    NoiseCovariance c = plausible[k];
    const double a = 2.0 / (9 * double(std::max<std::size_t>(degreesOfFreedom, 1)));
    const double q = std::max(1 - a + z * std::sqrt(a), 0.2);
    const double chiOverN = q * q * q;
    c.white /= chiOverN;
    c.red /= chiOverN;
    return c;
}

namespace {

// The contrasts' values, and their drifts (none when all are zero).
void valuesAndDrifts(const std::vector<NoiseContrast>& contrasts, std::vector<double>* c, std::vector<double>* g)
{
    bool drifts = false;
    for (const NoiseContrast& k : contrasts) {
        c->push_back(k.value);
        g->push_back(k.drift);
        drifts = drifts || k.drift != 0;
    }
    if (!drifts)
        g->clear();
}

// A covariance of the grid (or white noise alone) at its own scale, with its restricted -2 log L
// (value) and its ordinary one (plain).
struct Cell {
    NoiseCovariance covariance;
    double value = 0;
    double plain = 0;
    double fraction = 0;
};

// White noise and every cell of the grid the contrasts allow (a positive definite covariance),
// each at the scale that fits it best; false when white noise itself cannot be fitted.
// c and g: the contrasts' values and drifts (valuesAndDrifts).
bool evaluateGrid(const std::vector<NoiseContrast>& contrasts, const std::vector<double>& c,
                  const std::vector<double>& g, double spacing, Cell* white, std::vector<Cell>* cells)
{
    const std::size_t n = contrasts.size();

    // The white part's matrix: the contrasts share noise only where they share points.
    Matrix W(n * n);
    NoiseCovariance unitWhite;
    unitWhite.white = 1;
    for (std::size_t i = 0; i < n; ++i)
        for (std::size_t j = 0; j <= i; ++j)
            W[i * n + j] = W[j * n + i] = unitWhite.between(contrasts[i], contrasts[j]);
    double scale = 0;
    if (!criterion(W, n, c, g, &white->value, &scale, nullptr, &white->plain))
        return false;
    white->covariance = NoiseCovariance();
    white->covariance.white = scale;

    Matrix R(n * n), K(n * n);
    for (const double tauSpacings : times) {
        NoiseCovariance unitRed;
        unitRed.red = 1;
        unitRed.tau = tauSpacings * spacing;
        for (std::size_t i = 0; i < n; ++i)
            for (std::size_t j = 0; j <= i; ++j)
                R[i * n + j] = R[j * n + i] = unitRed.between(contrasts[i], contrasts[j]);
        for (const double f : fractions) {
            for (std::size_t k = 0; k < n * n; ++k)
                K[k] = (1 - f) * W[k] + f * R[k];
            Cell cell;
            if (!criterion(K, n, c, g, &cell.value, &scale, nullptr, &cell.plain))
                continue;
            cell.covariance.white = scale * (1 - f);
            cell.covariance.red = scale * f;
            cell.covariance.tau = unitRed.tau;
            cell.fraction = f;
            cells->push_back(cell);
        }
    }
    return true;
}

} // namespace

std::vector<NoiseContrast> nearestTheCentre(std::vector<NoiseContrast> branch, bool leftBranch)
{
    if (branch.size() > maximumFittedContrasts) {
        if (leftBranch)
            branch.erase(branch.begin(), branch.end() - std::ptrdiff_t(maximumFittedContrasts));
        else
            branch.resize(maximumFittedContrasts);
    }
    return branch;
}

std::vector<WeighedCovariance> weighNoiseCovariances(const std::vector<NoiseContrast>& contrasts, double spacing)
{
    std::vector<WeighedCovariance> weighed;
    Cell white;
    std::vector<Cell> cells;
    std::vector<double> c, g;
    valuesAndDrifts(contrasts, &c, &g);
    if (contrasts.size() < 10 || !(spacing > 0) || !evaluateGrid(contrasts, c, g, spacing, &white, &cells))
        return weighed;
    double best = white.value;
    for (const Cell& cell : cells)
        best = std::min(best, cell.value);
    const double whitePrior = whitePriorOdds * double(std::max<std::size_t>(cells.size(), 1));
    double largest = 0, total = 0;
    weighed.push_back({white.covariance, whitePrior * std::exp(-(white.value - best) / 2)});
    for (const Cell& cell : cells)
        weighed.push_back({cell.covariance, std::exp(-(cell.value - best) / 2)});
    for (const WeighedCovariance& w : weighed)
        largest = std::max(largest, w.weight);
    weighed.erase(std::remove_if(weighed.begin(), weighed.end(),
                                 [&](const WeighedCovariance& w) { return !(w.weight > negligibleWeight * largest); }),
                  weighed.end());
    for (const WeighedCovariance& w : weighed)
        total += w.weight;
    for (WeighedCovariance& w : weighed)
        w.weight /= total;
    return weighed;
}

NoiseCovarianceFit fitNoiseCovariance(const std::vector<NoiseContrast>& contrasts, double spacing, bool knownCorrelated)
{
    NoiseCovarianceFit fit;
    const std::size_t n = contrasts.size();
    Cell white;
    std::vector<Cell> cells;
    std::vector<double> c, g;
    valuesAndDrifts(contrasts, &c, &g);
    if (n < 10 || !(spacing > 0) || !evaluateGrid(contrasts, c, g, spacing, &white, &cells))
        return fit;

    // White against correlated on the ordinary likelihood (plain); the best correlated cell on
    // the restricted one (value). Strict comparison: of equal values the first (the shorter, the
    // less correlated) wins.
    const double whitePlain = white.plain;
    double bestPlain = whitePlain;
    double bestValue = std::numeric_limits<double>::infinity(), bestFraction = 0, bestTau = 0;
    for (const Cell& cell : cells) {
        bestPlain = std::min(bestPlain, cell.plain);
        if (cell.value < bestValue) {
            bestValue = cell.value;
            bestFraction = cell.fraction;
            bestTau = cell.covariance.tau;
        }
    }
    if (!knownCorrelated && !(whitePlain - bestPlain > criterionMargin)) {
        bestFraction = 0;
        bestTau = 0;
    }

    Matrix K(n * n);
    NoiseCovariance unit;
    unit.white = 1 - bestFraction;
    unit.red = bestFraction;
    unit.tau = bestTau;
    for (std::size_t i = 0; i < n; ++i)
        for (std::size_t j = 0; j <= i; ++j)
            K[i * n + j] = K[j * n + i] = unit.between(contrasts[i], contrasts[j]);
    double value = 0, scale = 0;
    std::vector<double> z;
    if (!criterion(K, n, c, g, &value, &scale, &z))
        return fit;
    fit.covariance.white = scale * unit.white;
    fit.covariance.red = scale * unit.red;
    fit.covariance.tau = unit.tau;
    double mean = 0;
    for (const double x : z)
        mean += x;
    mean /= double(n);
    double square = 0;
    for (double& x : z) {
        x -= mean;
        square += x * x;
    }
    if (!(square > 0))
        return fit;
    const double norm = std::sqrt(square / double(n));
    for (double& x : z)
        x /= norm;
    fit.innovations = z;
    fit.degreesOfFreedom = g.empty() ? n : n - 1;
    if (fit.covariance.correlated()) {
        double total = 0;
        for (const Cell& cell : cells) {
            const double weight = std::exp(-(cell.value - value) / 2);
            if (!(weight > negligibleWeight))
                continue;
            total += weight;
            fit.plausible.push_back(cell.covariance);
            fit.cumulativeWeights.push_back(total);
        }
    }
    fit.ok = true;
    return fit;
}

} // namespace dip
