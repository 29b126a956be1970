// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

#include "runtime/RuntimeError.h"

#include <array>
#include <cstddef>

namespace rt {

// A fixed array with the index range Lo..Hi; any index outside raises "Subscript out of range"
// (9). Elements start as 0, which is how an empty value behaves in arithmetic.
template <typename T, int Lo, int Hi>
class Array {
public:
    static constexpr int lower = Lo;
    static constexpr int upper = Hi;

    T& operator()(long long i)
    {
        check(i);
        return m_data[static_cast<std::size_t>(i - Lo)];
    }
    const T& operator()(long long i) const
    {
        check(i);
        return m_data[static_cast<std::size_t>(i - Lo)];
    }
    void fill(const T& value) { m_data.fill(value); }

private:
    static void check(long long i)
    {
        if (i < Lo || i > Hi)
            raise(9);
    }
    std::array<T, static_cast<std::size_t>(Hi - Lo + 1)> m_data{};
};

// A two-dimensional array with the index ranges Lo..Hi in both directions.
template <typename T, int Lo, int Hi>
class Matrix {
public:
    T& operator()(long long i, long long j)
    {
        check(i, j);
        return m_data[static_cast<std::size_t>(i - Lo)][static_cast<std::size_t>(j - Lo)];
    }
    const T& operator()(long long i, long long j) const
    {
        check(i, j);
        return m_data[static_cast<std::size_t>(i - Lo)][static_cast<std::size_t>(j - Lo)];
    }

private:
    static void check(long long i, long long j)
    {
        if (i < Lo || i > Hi || j < Lo || j > Hi)
            raise(9);
    }
    std::array<std::array<T, static_cast<std::size_t>(Hi - Lo + 1)>, static_cast<std::size_t>(Hi - Lo + 1)> m_data{};
};

// The observation arrays: index 0..1000, element 0 unused, so at most 1000 observations.
using ObsArray = Array<double, 0, 1000>;

} // namespace rt
