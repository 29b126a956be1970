// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/Bootstrap.h"

#include "analysis/LocalSmoother.h"
#include "analysis/ReplicateRandom.h"
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
};

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
        for (;;) {
            if (cancel && cancel->load())
                break;
            const int index = next.fetch_add(1);
            if (index >= B)
                break;
            ReplicateRandom random(setup.seed, std::uint64_t(index));
            resample(prepared.residuals, prepared.blockLength, random, &drawn);
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
