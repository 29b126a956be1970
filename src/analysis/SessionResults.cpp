// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/SessionResults.h"

#include "analysis/PublishedBootstrap.h"
#include "methods/MethodRegistry.h"
#include "session/Session.h"

#include <cmath>

namespace dip {

namespace {

int rangePoints(rt::Integer first, rt::Integer last) { return first > 0 && last >= first ? last - first + 1 : 0; }

} // namespace

int sessionPoints(int k)
{
    // The tracing paper folds the whole light curve by eye: no count of its own.
    if (k == TracingPaperRow || k < ParabolaRow || k > SlidingRow)
        return 0;
    if (k == SlidingRow)
        return S().SlideN > 0 ? S().SlideN : 0;
    const MethodRequest r = PublishedRequest(k);
    const int first = rangePoints(r.first, r.last);
    if (k != ChordsRow)
        return first;
    const int second = rangePoints(r.first2, r.last2);
    return first > 0 && second > 0 ? first + second : 0;
}

TimeSystem resultSystem(const ToolkitState& toolkit)
{
    return toolkit.reportSystem != TimeSystem::Unstated ? toolkit.reportSystem : toolkit.fileSystem;
}

std::optional<ExportRow> sessionResult(int k, const ToolkitState& toolkit)
{
    const ResultRow& published = S().Results(k);
    if (!published.published || published.trappedError != 0)
        return std::nullopt;
    ExportRow row;
    row.method = k;
    const ToolkitRow& extra = toolkit.rows[static_cast<std::size_t>(k)];
    if (extra.convertedTime) {
        row.time = extra.convertedTime->value();
        row.system = resultSystem(toolkit);
    } else {
        row.time = published.time;
        row.system = toolkit.fileSystem;
    }
    // The main window shows the error's size; a method's error may carry the sign of its time.
    row.error = std::abs(published.error);
    row.ticked = published.ticked;
    if (toolkit.ephemeris && isUsable(*toolkit.ephemeris))
        row.oc = ocFor(*toolkit.ephemeris, row.time, MinimumKind::Nearest);
    if (extra.bootstrap && extra.bootstrap->valid())
        row.bootstrapError = extra.bootstrap->error;
    row.points = sessionPoints(k);
    return row;
}

std::vector<ExportRow> sessionResults(const ToolkitState& toolkit, bool tickedOnly)
{
    std::vector<ExportRow> rows;
    for (int k = 1; k <= 6; ++k) {
        const std::optional<ExportRow> row = sessionResult(k, toolkit);
        if (row && (!tickedOnly || row->ticked))
            rows.push_back(*row);
    }
    return rows;
}

ReportInfo toolkitReportInfo(const ToolkitState& toolkit)
{
    return ReportInfo{toolkit.starName, toolkit.filter, toolkit.observerCode};
}

} // namespace dip
