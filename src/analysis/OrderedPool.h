// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// Work items 0 .. count-1 computed on a pool of threads and delivered in item order, each as
// soon as it and every item before it is done. Workers run at most `ahead` items beyond the
// last delivered one, so the results waiting in memory stay bounded whatever the count, and
// the delivered sequence is the same for every number of threads.

#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace dip {

// work(i) runs on a worker thread (on the calling thread when threads is 1); deliver(i, result)
// always runs on the calling thread, in order. An exception from work is rethrown here after
// every thread has stopped; one from deliver stops the pool and is rethrown too.
template <typename Result>
void runOrdered(std::size_t count, int threads, const std::function<Result(std::size_t)>& work,
                const std::function<void(std::size_t, Result&&)>& deliver)
{
    if (threads <= 1 || count <= 1) {
        for (std::size_t i = 0; i < count; ++i)
            deliver(i, work(i));
        return;
    }
    const std::size_t ahead = 4 * static_cast<std::size_t>(threads);
    std::vector<std::optional<Result>> slots(ahead);
    std::mutex mutex;
    std::condition_variable changed;
    std::size_t next = 0;      // the next item a worker takes
    std::size_t delivered = 0; // items handed to deliver
    bool stop = false;
    std::exception_ptr failure;
    // The first failure, of a worker or of deliver, stops everything; it is thrown at the end.
    auto fail = [&] {
        std::lock_guard<std::mutex> lock(mutex);
        if (!failure)
            failure = std::current_exception();
        stop = true;
        changed.notify_all();
    };

    auto worker = [&] {
        for (;;) {
            std::size_t i;
            {
                std::unique_lock<std::mutex> lock(mutex);
                changed.wait(lock, [&] { return stop || next >= count || next < delivered + ahead; });
                if (stop || next >= count)
                    return;
                i = next++;
            }
            std::optional<Result> r;
            try {
                r.emplace(work(i));
            } catch (...) {
                fail();
                return;
            }
            std::lock_guard<std::mutex> lock(mutex);
            slots[i % ahead] = std::move(r);
            changed.notify_all();
        }
    };
    std::vector<std::thread> pool;
    for (int k = 0; k < threads; ++k)
        pool.emplace_back(worker);

    for (std::size_t i = 0; i < count; ++i) {
        Result r;
        {
            std::unique_lock<std::mutex> lock(mutex);
            changed.wait(lock, [&] { return stop || slots[i % ahead].has_value(); });
            if (stop)
                break;
            r = std::move(*slots[i % ahead]);
            slots[i % ahead].reset();
            ++delivered;
            changed.notify_all();
        }
        try {
            deliver(i, std::move(r));
        } catch (...) {
            fail();
            break;
        }
    }
    for (std::thread& t : pool)
        t.join();
    if (failure)
        std::rethrow_exception(failure);
}

} // namespace dip
