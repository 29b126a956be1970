// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The random stream of one bootstrap replicate: xoshiro256** (Blackman & Vigna 2018) seeded
// through SplitMix64 from the user's seed and the replicate's index, so a replicate draws the
// same numbers whichever thread runs it and whatever ran before. Written out here rather than
// taken from <random>, whose distributions differ between standard libraries: a seed must give
// the same digits everywhere.

#include <cstdint>

namespace dip {

class ReplicateRandom {
public:
    ReplicateRandom(std::uint64_t seed, std::uint64_t replicate)
    {
        std::uint64_t x = seed ^ (replicate * 0xD1B54A32D192ED03ull);
        for (std::uint64_t& s : m_s)
            s = splitMix(x);
    }

    std::uint64_t next()
    {
        const std::uint64_t result = rotl(m_s[1] * 5, 7) * 9;
        const std::uint64_t t = m_s[1] << 17;
        m_s[2] ^= m_s[0];
        m_s[3] ^= m_s[1];
        m_s[1] ^= m_s[2];
        m_s[0] ^= m_s[3];
        m_s[2] ^= t;
        m_s[3] = rotl(m_s[3], 45);
        return result;
    }

    // Uniform in [0, 1) with 53 random bits.
    double uniform() { return double(next() >> 11) * 0x1.0p-53; }

    // Uniform integer in [0, n), n >= 1, without the bias of a plain modulo (Lemire 2019).
    std::uint64_t below(std::uint64_t n)
    {
        for (;;) {
            const unsigned __int128 product = static_cast<unsigned __int128>(next()) * n;
            const std::uint64_t low = static_cast<std::uint64_t>(product);
            if (low >= n || low >= (0 - n) % n)
                return static_cast<std::uint64_t>(product >> 64);
        }
    }

private:
    static std::uint64_t rotl(std::uint64_t x, int k) { return (x << k) | (x >> (64 - k)); }
    static std::uint64_t splitMix(std::uint64_t& x)
    {
        std::uint64_t z = (x += 0x9E3779B97F4A7C15ull);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
        return z ^ (z >> 31);
    }

    std::uint64_t m_s[4];
};

} // namespace dip
