// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "import/ImportedRows.h"

#include "import/ImportError.h"

#include <algorithm>
#include <numeric>

namespace dip::import {

QString formatName(FileFormat format)
{
    switch (format) {
    case FileFormat::Csv: return QStringLiteral("comma-separated (the program's own)");
    case FileFormat::AavsoExtended: return QStringLiteral("AAVSO extended");
    case FileFormat::AstroImageJ: return QStringLiteral("AstroImageJ");
    case FileFormat::Fits: return QStringLiteral("FITS light curve");
    }
    return QString();
}

std::vector<FilterCount> filtersIn(const ImportedRows& rows)
{
    std::vector<FilterCount> counts;
    for (const QString& f : rows.rowFilters) {
        auto it = std::find_if(counts.begin(), counts.end(),
                               [&](const FilterCount& c) { return c.filter.compare(f, Qt::CaseInsensitive) == 0; });
        if (it == counts.end())
            counts.push_back({f, 1});
        else
            ++it->count;
    }
    return counts;
}

QString defaultFilter(const ImportedRows& rows)
{
    QString best;
    int bestCount = 0;
    // Strictly more: of equal counts the first to appear wins.
    for (const FilterCount& c : filtersIn(rows)) {
        if (c.count > bestCount) {
            best = c.filter;
            bestCount = c.count;
        }
    }
    return best;
}

ImportedRows withFilter(const ImportedRows& rows, const QString& filter)
{
    ImportedRows out = rows;
    std::vector<std::size_t> kept;
    QString name;
    out.rowFilters.clear();
    for (std::size_t i = 0; i < rows.rowFilters.size(); ++i) {
        if (rows.rowFilters[i].compare(filter, Qt::CaseInsensitive) != 0)
            continue;
        name = rows.rowFilters[i];
        kept.push_back(i);
        out.rowFilters.push_back(rows.rowFilters[i]);
    }
    out.curve = rows.curve.withRows(kept);
    if (out.curve.times.empty()) {
        QStringList present;
        for (const FilterCount& c : filtersIn(rows))
            present << QStringLiteral("%1 (%2)").arg(c.filter).arg(c.count);
        throw ImportError(rows.curve.source, 0,
                          QStringLiteral("no observation in filter \"%1\"; the file has %2")
                              .arg(filter, present.isEmpty() ? QStringLiteral("no filters") : present.join(", ")));
    }
    out.curve.filter = name;
    return out;
}

void sortByTime(ImportedRows& rows)
{
    const std::size_t n = rows.curve.times.size();
    std::vector<std::size_t> order(n);
    std::iota(order.begin(), order.end(), std::size_t(0));
    const std::vector<double>& t = rows.curve.times;
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return t[a] < t[b]; });
    std::vector<QString> filters(rows.rowFilters.empty() ? 0 : n);
    for (std::size_t i = 0; i < filters.size(); ++i)
        filters[i] = rows.rowFilters[order[i]];
    rows.curve = rows.curve.withRows(order);
    rows.rowFilters = std::move(filters);
}

int countInWindow(const LightCurve& curve, const TimeWindow& window)
{
    return static_cast<int>(std::count_if(curve.times.begin(), curve.times.end(),
                                          [&](double t) { return t >= window.first && t <= window.last; }));
}

LightCurve cutToWindow(const LightCurve& curve, const TimeWindow& window)
{
    std::vector<std::size_t> kept;
    for (std::size_t i = 0; i < curve.times.size(); ++i)
        if (curve.times[i] >= window.first && curve.times[i] <= window.last)
            kept.push_back(i);
    return curve.withRows(kept);
}

void checkObservationLimit(const LightCurve& curve)
{
    const int n = static_cast<int>(curve.times.size());
    if (n <= maxObservations)
        return;
    const auto [lo, hi] = std::minmax_element(curve.times.begin(), curve.times.end());
    throw ImportError(curve.source, 0,
                      QStringLiteral("%1 observations from %2 to %3; at most %4 can be loaded: choose a time window")
                          .arg(n)
                          .arg(*lo, 0, 'f', 5)
                          .arg(*hi, 0, 'f', 5)
                          .arg(maxObservations));
}

} // namespace dip::import
