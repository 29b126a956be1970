// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/Bootstrap.h"

#include "analysis/Autoregression.h"
#include "analysis/LocalSmoother.h"
#include "analysis/ReplicateRandom.h"
#include "methods/kwee/NoiseCovariance.h"
#include "runtime/RuntimeError.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <exception>
#include <limits>
#include <mutex>
#include <thread>

namespace dip {

namespace {

// What a replicate gave: a time, or the number its failure is counted under.
struct Outcome {
    bool ran = false;
    bool ok = false;
    double time = 0;
    int failure = 0;
};

// The range's model values and the residuals to resample, ready for the workers.
struct Prepared {
    std::vector<double> base;      // model at the range's points
    std::vector<double> residuals; // scaled and centred
    int blockLength = 1;
    double lag1 = 0;
    double rms = 0;
    int neighbours = 0;
    // The sieve: the autoregression a_1..a_p of the noise and its centred innovations; empty
    // when the noise is resampled in blocks.
    std::vector<double> ar;
    std::vector<double> innovations;
    double noiseRms = 0;
    bool sieve = false;
    // The modelled noise: its covariance fitted to the reflected differences, the plausible
    // ones a replicate's is drawn from, and the innovations that drive it; used when it is correlated.
    NoiseCovarianceFit noise;
    bool known = false; // the covariance was given (BootstrapSetup::knownNoise), white or not
    // The replicates' noise is drawn from the covariance (given, or fitted and correlated),
    // not resampled from the residuals or the autoregression.
    bool drawnFromCovariance() const { return known || noise.covariance.correlated(); }
};

// The autoregression of the series e by Burg's method (Burg 1975): at each order the reflection
// coefficient minimises the forward and backward prediction errors together, on the series
// itself. Its order 0..maxOrder is chosen by Akaike's criterion n log v_p + 2p (v_p the
// innovation variance of order p). Yule-Walker's estimates, from autocovariances divided by n,
// are pulled towards zero on a short series of slowly correlated noise, and with them the
// long-run variance; Burg's keep it, and every reflection coefficient lies within (-1, 1), so
// the process is stationary.
std::vector<double> fitAutoregression(const std::vector<double>& e, int maxOrder)
{
    const std::size_t n = e.size();
    if (maxOrder < 1 || n < 10)
        return {};
    std::vector<double> f = e, b = e;
    double v = 0;
    for (const double x : e)
        v += x * x;
    v /= double(n);
    if (!(v > 0))
        return {};
    AutoregressionByOrder ar(v, n);
    for (int p = 1; p <= maxOrder && std::size_t(p) < n; ++p) {
        double num = 0, den = 0;
        for (std::size_t t = std::size_t(p); t < n; ++t) {
            num += f[t] * b[t - 1];
            den += f[t] * f[t] + b[t - 1] * b[t - 1];
        }
        if (!(den > 0))
            break;
        const double k = 2 * num / den;
        for (std::size_t t = n - 1; t >= std::size_t(p); --t) {
            const double ft = f[t];
            f[t] = ft - k * b[t - 1];
            b[t] = b[t - 1] - k * ft;
        }
        if (!ar.extend(k))
            break;
    }
    return ar.best();
}

// The noise of all the used points, measured without any model of the dip: each point of a
// branch is compared with the curve reflected about the centre, read by quadratic interpolation
// Q through the two observations about 2 centre - t_i and the nearer next one (a straight line
// would leave the curvature of the dip in the differences where the sampling is sparse):
// d_i = (m_i - Q(2 centre - t_i)) / sqrt(1 + l_1^2 + l_2^2 + l_3^2) with l the interpolation
// weights, which has the variance of one point's noise where the dip is symmetric. A smoother, even a
// folded one, takes the slow noise common to both branches for part of the dip and leaves too
// little of it to resample; the reflected difference leaves all of it. Points whose partner
// falls outside the curve, across a gap (a bracket wider than three median spacings) or onto
// the point itself are passed over, and the part of the differences proportional to the
// reflected curve's slope (a centre a little off the dip's own) is fitted and taken out; the
// covariance fit is told so through each difference's drift. Of the two branches the one
// with more differences is used (the other holds the same differences with the sign changed). When the noise's
// covariance fitted to them is correlated, it goes into p for the modelled noise; otherwise, when an
// autoregression finds the differences correlated, its coefficients and innovations go into p for the sieve.
void prepareSieve(const BootstrapSetup& setup, double centre, Prepared* p)
{
    const std::size_t n = setup.t.size();
    if (n < 10)
        return;
    std::vector<std::size_t> order(n);
    for (std::size_t i = 0; i < n; ++i)
        order[i] = i;
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return setup.t[a] < setup.t[b]; });
    std::vector<double> t(n), m(n);
    for (std::size_t i = 0; i < n; ++i) {
        t[i] = setup.t[order[i]];
        m[i] = setup.m[order[i]];
    }
    std::vector<double> spacing;
    for (std::size_t i = 1; i < n; ++i)
        if (t[i] > t[i - 1])
            spacing.push_back(t[i] - t[i - 1]);
    if (spacing.empty())
        return;
    std::nth_element(spacing.begin(), spacing.begin() + std::ptrdiff_t(spacing.size() / 2), spacing.end());
    const double widest = 3 * spacing[spacing.size() / 2];

    // Per branch: the raw difference as a contrast of the noise (the point less the
    // interpolation weights on its partners) and the slope of the reflected curve.
    struct Difference {
        NoiseContrast contrast;
        double slope;
    };
    std::vector<Difference> branch[2];
    for (std::size_t i = 0; i < n; ++i) {
        const double u = 2 * centre - t[i];
        if (t[i] == centre || u < t.front() || u > t.back())
            continue;
        std::size_t j = std::size_t(std::upper_bound(t.begin(), t.end(), u) - t.begin());
        if (j >= n)
            j = n - 1;
        if (j == 0)
            continue;
        const std::size_t a = j - 1;
        if (a == i || j == i || !(t[j] > t[a]) || t[j] - t[a] > widest)
            continue;
        // The third point: the nearer of the two beyond the bracket.
        std::size_t c = n;
        if (a >= 1 && (j + 1 >= n || u - t[a - 1] <= t[j + 1] - u))
            c = a - 1;
        else if (j + 1 < n)
            c = j + 1;
        if (c == n || c == i || !(std::abs(t[c] - u) <= widest) || t[c] == t[a] || t[c] == t[j])
            continue;
        const double x[3] = {t[a], t[j], t[c]};
        const double y[3] = {m[a], m[j], m[c]};
        double value = 0, slope = 0;
        NoiseContrast contrast;
        contrast.times = {t[i], x[0], x[1], x[2]};
        contrast.weights = {1};
        for (int k = 0; k < 3; ++k) {
            const int q1 = (k + 1) % 3, q2 = (k + 2) % 3;
            const double den = (x[k] - x[q1]) * (x[k] - x[q2]);
            const double l = (u - x[q1]) * (u - x[q2]) / den;
            value += l * y[k];
            slope += ((u - x[q1]) + (u - x[q2])) / den * y[k];
            contrast.weights.push_back(-l);
        }
        contrast.value = m[i] - value;
        const Difference diff{contrast, slope};
        if (std::isfinite(contrast.value) && std::isfinite(slope))
            branch[t[i] < centre ? 0 : 1].push_back(diff);
    }
    const std::vector<Difference>& chosen = branch[0].size() >= branch[1].size() ? branch[0] : branch[1];
    // A centre off the dip's own by delta adds 2 delta times the slope to every difference:
    // that part, fitted by least squares, is the time's offset, not noise, and is taken out.
    double dg = 0, gg = 0;
    for (const Difference& x : chosen) {
        dg += x.contrast.value * x.slope;
        gg += x.slope * x.slope;
    }
    const double offset = gg > 0 ? dg / gg : 0;
    // The differences less that part, as contrasts and scaled to one point's noise (e).
    std::vector<NoiseContrast> contrasts;
    std::vector<double> e;
    for (const Difference& x : chosen) {
        NoiseContrast k = x.contrast;
        k.value -= offset * x.slope;
        k.drift = x.slope;
        double norm = 0;
        for (const double w : k.weights)
            norm += w * w;
        e.push_back(k.value / std::sqrt(norm));
        contrasts.push_back(k);
    }
    if (e.size() < 10)
        return;

    // The noise's covariance, fitted to the differences nearest the centre (where the slow
    // noise cancels most, and a series model fitted to them sees least of it); not where it is
    // given (prepare).
    if (!p->known) {
        NoiseCovarianceFit fit = fitNoiseCovariance(nearestTheCentre(contrasts, &chosen == &branch[0]),
                                                    spacing[spacing.size() / 2], setup.correlatedNoise);
        if (fit.ok)
            p->noise = std::move(fit);
    }

    // Not centred: at the method's time the differences of a symmetric dip have mean zero, and
    // an offset between the branches is the slowest part of the noise, the one that moves a
    // time most.
    double s0 = 0;
    for (const double r : e)
        s0 += r * r;
    const std::size_t count = e.size();
    p->noiseRms = std::sqrt(s0 / double(count));
    // A given noise takes the autoregression's place as well: nothing more to measure.
    if (p->known)
        return;
    const int maxOrder = std::min(int(std::lround(10 * std::log10(double(count)))), int(count) / 5);
    std::vector<double> a = fitAutoregression(e, maxOrder);
    // The fitted persistence is too small on a short series (Autoregression.h): the
    // coefficients are scaled to the persistence with its bias added back, so the replicates'
    // noise has the long-run variance the noise has, not the one a few dozen differences suggest.
    const double fitted = persistenceOf(a);
    const double persistence = unbiasedPersistence(fitted, count);
    if (fitted > 0)
        for (double& x : a)
            x *= persistence / fitted;
    const std::size_t q = a.size();
    std::vector<double> innovations;
    double mu = 0;
    for (std::size_t i = q; i < count; ++i) {
        double v = e[i];
        for (std::size_t j = 1; j <= q; ++j)
            v -= a[j - 1] * e[i - j];
        innovations.push_back(v);
        mu += v;
    }
    mu /= double(innovations.size());
    for (double& v : innovations)
        v -= mu;
    p->ar = a;
    p->innovations = innovations;
    // What moves a time of minimum is the slow part of the noise: the source with the larger
    // long-run variance is resampled. The autoregression's is var(innovations) / (1 - sum a)^2;
    // the range's residuals', in blocks, is taken as of an AR(1) with their lag-1 correlation.
    const double sumA = persistenceOf(a);
    double innovationVariance = 0;
    for (double v : innovations)
        innovationVariance += v * v;
    innovationVariance /= double(innovations.size());
    const double sieveLongRun = innovationVariance / ((1 - sumA) * (1 - sumA));
    const double rho = std::max(0.0, std::min(p->lag1, 0.99));
    const double blockLongRun = p->rms * p->rms * (1 + rho) / (1 - rho);
    p->sieve = !p->drawnFromCovariance() && sieveLongRun > blockLongRun;
}

QString prepare(const BootstrapSetup& setup, Prepared* p)
{
    const int n = static_cast<int>(setup.t.size());
    if (setup.m.size() != setup.t.size())
        return QStringLiteral("the times and magnitudes differ in number");
    if (n > rt::ObsArray::upper)
        return QStringLiteral("more than %1 points").arg(rt::ObsArray::upper);
    if (setup.first < 1 || setup.last > n || setup.last - setup.first + 1 < 3)
        return QStringLiteral("the range %1 to %2 does not hold three of the %3 points")
            .arg(setup.first)
            .arg(setup.last)
            .arg(n);
    if (setup.replicates < 1)
        return QStringLiteral("no replicates asked for");
    for (int i = 0; i < n; ++i) {
        if (!std::isfinite(setup.t[std::size_t(i)]) || !std::isfinite(setup.m[std::size_t(i)]))
            return QStringLiteral("point %1 is not a number").arg(i + 1);
    }

    const std::size_t lo = std::size_t(setup.first - 1);
    const std::size_t hi = std::size_t(setup.last);
    const std::vector<double> t(setup.t.begin() + std::ptrdiff_t(lo), setup.t.begin() + std::ptrdiff_t(hi));
    const std::vector<double> m(setup.m.begin() + std::ptrdiff_t(lo), setup.m.begin() + std::ptrdiff_t(hi));
    const std::size_t ns = t.size();

    p->residuals.resize(ns);
    if (setup.model) {
        p->base.resize(ns);
        for (std::size_t i = 0; i < ns; ++i)
            p->base[i] = setup.model(t[i]);
        const int dof = int(ns) - setup.modelParameters;
        const double scale = setup.modelParameters > 0 && dof > 0 ? std::sqrt(double(ns) / dof) : 1.0;
        for (std::size_t i = 0; i < ns; ++i)
            p->residuals[i] = (m[i] - p->base[i]) * scale;
    } else if (setup.foldCentre) {
        std::vector<double> x(ns);
        for (std::size_t i = 0; i < ns; ++i)
            x[i] = std::abs(t[i] - *setup.foldCentre);
        const LocalSmoother smoother(x, m);
        p->neighbours = smoother.neighbours();
        p->base = smoother.fittedValues();
        const std::vector<double> h = smoother.leverages();
        for (std::size_t i = 0; i < ns; ++i)
            p->residuals[i] = (m[i] - p->base[i]) / std::sqrt(std::max(1 - h[i], 1e-3));
    } else {
        const LocalSmoother smoother(t, m);
        p->neighbours = smoother.neighbours();
        p->base = smoother.fittedValues();
        const std::vector<double> h = smoother.leverages();
        for (std::size_t i = 0; i < ns; ++i)
            p->residuals[i] = (m[i] - p->base[i]) / std::sqrt(std::max(1 - h[i], 1e-3));
    }
    for (std::size_t i = 0; i < ns; ++i) {
        if (!std::isfinite(p->base[i]) || !std::isfinite(p->residuals[i]))
            return QStringLiteral("the model is not a number at point %1").arg(int(lo + i) + 1);
    }

    double mean = 0;
    for (double r : p->residuals)
        mean += r;
    mean /= double(ns);
    double s0 = 0, s1 = 0;
    for (std::size_t i = 0; i < ns; ++i) {
        p->residuals[i] -= mean;
        s0 += p->residuals[i] * p->residuals[i];
        if (i > 0)
            s1 += p->residuals[i] * p->residuals[i - 1];
    }
    p->rms = std::sqrt(s0 / double(ns));
    p->lag1 = s0 > 0 ? s1 / s0 : 0;
    p->blockLength =
        setup.blockLength > 0 ? std::min(setup.blockLength, int(ns)) : bootstrapBlockLength(p->lag1, int(ns));
    if (setup.knownNoise) {
        // Given, not measured: no doubt of its own to carry (no plausible others), and normal
        // innovations (none drawn from the curve). Set before the sieve is prepared, which then
        // neither fits the covariance nor takes the autoregression's place.
        p->noise.ok = true;
        p->noise.covariance = *setup.knownNoise;
        p->known = true;
    }
    if (setup.noiseCentre)
        prepareSieve(setup, *setup.noiseCentre, p);
    return QString();
}

// One replicate's residuals: blocks of L consecutive residuals from uniformly drawn starts.
void resample(const std::vector<double>& r, int L, ReplicateRandom& random, std::vector<double>* out)
{
    const std::size_t n = r.size();
    const std::size_t length = std::size_t(L);
    const std::uint64_t starts = n - length + 1;
    std::size_t k = 0;
    while (k < n) {
        const std::size_t start = std::size_t(random.below(starts));
        for (std::size_t j = 0; j < length && k < n; ++j, ++k)
            (*out)[k] = r[start + j];
    }
}

// One replicate's residuals from the sieve: the autoregression run on innovations drawn with
// replacement, long enough before the range for its start to be forgotten.
void generate(const Prepared& p, ReplicateRandom& random, std::vector<double>* scratch, std::vector<double>* out)
{
    const std::size_t order = p.ar.size();
    const std::size_t burn = 50 + 10 * order;
    const std::size_t total = burn + out->size();
    scratch->assign(total, 0.0);
    std::vector<double>& x = *scratch;
    const std::uint64_t count = p.innovations.size();
    for (std::size_t i = 0; i < total; ++i) {
        double v = p.innovations[std::size_t(random.below(count))];
        for (std::size_t j = 1; j <= order && j <= i; ++j)
            v += p.ar[j - 1] * x[i - j];
        x[i] = v;
    }
    std::copy(x.begin() + std::ptrdiff_t(burn), x.end(), out->begin());
}

// A normal number from two uniform ones (Box and Muller).
double normalFrom(ReplicateRandom& random)
{
    double u = random.uniform();
    while (!(u > 0))
        u = random.uniform();
    return std::sqrt(-2 * std::log(u)) * std::cos(6.283185307179586 * random.uniform());
}

// One replicate's residuals from the modelled noise at the range's times (in time order
// through order): a covariance drawn from the plausible ones, its white part plus its
// correlated part run through time, both driven by innovations drawn with replacement (normal
// numbers where the covariance was given and there are none).
void generateModelled(const Prepared& p, const std::vector<double>& times, const std::vector<std::size_t>& order,
                      ReplicateRandom& random, std::vector<double>* out)
{
    const double u = random.uniform();
    const NoiseCovariance c = p.noise.draw(u, normalFrom(random));
    const std::vector<double>& innovations = p.noise.innovations;
    const std::uint64_t count = innovations.size();
    auto draw = [&] { return count ? innovations[std::size_t(random.below(count))] : normalFrom(random); };
    const double white = std::sqrt(c.white), red = std::sqrt(c.red);
    double slow = 0;
    for (std::size_t k = 0; k < order.size(); ++k) {
        const std::size_t i = order[k];
        if (!c.correlated()) {
            slow = 0;
        } else if (k == 0) {
            slow = red * draw();
        } else {
            const double rho = std::exp(-(times[i] - times[order[k - 1]]) / c.tau);
            slow = rho * slow + std::sqrt(1 - rho * rho) * red * draw();
        }
        (*out)[i] = white * draw() + slow;
    }
}

double percentile(const std::vector<double>& sorted, double q)
{
    const double x = q * double(sorted.size() - 1);
    const std::size_t i = std::size_t(std::floor(x));
    if (i + 1 >= sorted.size())
        return sorted.back();
    return sorted[i] + (x - double(i)) * (sorted[i + 1] - sorted[i]);
}

} // namespace

int bootstrapBlockLength(double rho, int n)
{
    if (n < 2 || !(rho > 2 / std::sqrt(double(n))))
        return 1;
    const double r = std::min(rho, 0.99);
    const double L = std::pow(2 * r / (1 - r * r), 2.0 / 3) * std::cbrt(double(n));
    return std::max(2, std::min(int(std::lround(L)), std::max(2, n / 3)));
}

BootstrapSetup BootstrapSetup::fromArrays(const rt::ObsArray& t, const rt::ObsArray& m, rt::Integer count,
                                          rt::Integer first, rt::Integer last)
{
    BootstrapSetup s;
    for (int i = 1; i <= count && i <= rt::ObsArray::upper; ++i) {
        s.t.push_back(t(i));
        s.m.push_back(m(i));
    }
    s.first = first;
    s.last = last;
    return s;
}

BootstrapResult runBootstrap(const BootstrapSetup& setup, const ReplicateMethod& method,
                             const std::function<void(int, int)>& progress, const std::atomic<bool>* cancel)
{
    BootstrapResult result;
    result.requested = setup.replicates;
    Prepared prepared;
    result.problem = prepare(setup, &prepared);
    if (!result.problem.isEmpty())
        return result;
    result.blockLength = prepared.blockLength;
    result.lag1 = prepared.lag1;
    result.residualRms = prepared.rms;
    result.smootherNeighbours = prepared.neighbours;
    result.arOrder = int(prepared.ar.size());
    result.sieve = prepared.sieve;
    result.noiseCovariance = prepared.noise.covariance;
    result.noiseRms = prepared.noiseRms;
    result.points = int(setup.t.size());
    result.correlatedNoise = setup.correlatedNoise;
    result.noiseGiven = prepared.known;

    // The range's times, and their order in time for the modelled noise.
    const std::vector<double> rangeTimes(setup.t.begin() + (setup.first - 1), setup.t.begin() + setup.last);
    std::vector<std::size_t> rangeOrder(rangeTimes.size());
    for (std::size_t i = 0; i < rangeOrder.size(); ++i)
        rangeOrder[i] = i;
    std::stable_sort(rangeOrder.begin(), rangeOrder.end(),
                     [&](std::size_t a, std::size_t b) { return rangeTimes[a] < rangeTimes[b]; });

    const int B = setup.replicates;
    std::vector<Outcome> outcomes(static_cast<std::size_t>(B));
    std::atomic<int> next{0};
    std::atomic<int> done{0};
    std::mutex mutex;
    std::condition_variable changed;
    int running = 0;

    auto worker = [&] {
        ResampledCurve curve;
        curve.count = rt::Integer(setup.t.size());
        curve.first = rt::Integer(setup.first);
        curve.last = rt::Integer(setup.last);
        if (setup.arrays) {
            curve.t = setup.arrays->t;
            curve.m = setup.arrays->m;
        }
        for (std::size_t i = 0; i < setup.t.size(); ++i) {
            curve.t(long(i) + 1) = setup.t[i];
            curve.m(long(i) + 1) = setup.m[i];
        }
        std::vector<double> drawn(prepared.residuals.size());
        std::vector<double> scratch;
        for (;;) {
            if (cancel && cancel->load())
                break;
            const int index = next.fetch_add(1);
            if (index >= B)
                break;
            ReplicateRandom random(setup.seed, std::uint64_t(index));
            if (prepared.drawnFromCovariance())
                generateModelled(prepared, rangeTimes, rangeOrder, random, &drawn);
            else if (!prepared.sieve)
                resample(prepared.residuals, prepared.blockLength, random, &drawn);
            else
                generate(prepared, random, &scratch, &drawn);
            for (std::size_t k = 0; k < drawn.size(); ++k)
                curve.m(setup.first + long(k)) = prepared.base[k] + drawn[k];

            Outcome& o = outcomes[std::size_t(index)];
            o.ran = true;
            try {
                const std::optional<double> time = method(curve);
                o.ok = time.has_value() && std::isfinite(*time);
                o.time = o.ok ? *time : 0.0;
                o.failure = noResultFailure;
            } catch (const rt::RuntimeError& e) {
                o.failure = e.number();
            } catch (...) {
                o.failure = otherFailure;
            }
            done.fetch_add(1);
            changed.notify_one();
        }
        std::lock_guard<std::mutex> lock(mutex);
        --running;
        changed.notify_one();
    };

    int threads = setup.threads > 0 ? setup.threads : int(std::thread::hardware_concurrency());
    threads = std::max(1, std::min(threads, B));
    std::vector<std::thread> pool;
    running = threads;
    for (int k = 0; k < threads; ++k)
        pool.emplace_back(worker);
    {
        std::unique_lock<std::mutex> lock(mutex);
        while (running > 0) {
            changed.wait_for(lock, std::chrono::milliseconds(bootstrapProgressIntervalMs));
            if (progress && running > 0) {
                lock.unlock();
                progress(done.load(), B);
                lock.lock();
            }
        }
    }
    for (std::thread& th : pool)
        th.join();

    // The statistics, in replicate order.
    result.times.assign(std::size_t(B), std::numeric_limits<double>::quiet_NaN());
    std::vector<double> ok;
    for (int i = 0; i < B; ++i) {
        const Outcome& o = outcomes[std::size_t(i)];
        if (!o.ran)
            continue;
        ++result.done;
        if (o.ok) {
            result.times[std::size_t(i)] = o.time;
            ok.push_back(o.time);
        } else {
            ++result.failures;
            ++result.failuresByError[o.failure];
        }
    }
    result.successes = int(ok.size());
    result.cancelled = result.done < B;
    if (!ok.empty()) {
        double sum = 0;
        for (double x : ok)
            sum += x;
        result.mean = sum / double(ok.size());
        double q = 0;
        for (double x : ok)
            q += (x - result.mean) * (x - result.mean);
        result.error = ok.size() > 1 ? std::sqrt(q / double(ok.size() - 1)) : 0.0;
        std::sort(ok.begin(), ok.end());
        result.p16 = percentile(ok, 0.16);
        result.p84 = percentile(ok, 0.84);
    }
    if (progress)
        progress(result.done, B);
    return result;
}

} // namespace dip
