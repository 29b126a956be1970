// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/ConvertedResults.h"

#include "analysis/Toolkit.h"
#include "session/Session.h"

namespace dip {

times::JulianDate PublishedTime(int method)
{
    const Session& s = S();
    // HJDOffset is a whole day; the method's time keeps every digit of its own.
    return times::JulianDate{s.HJDOffset, s.Results(method).methodTime}.normalized();
}

void StateFileSystem(TimeSystem system)
{
    Toolkit().fileSystem = system;
    S().TimesSystem = system;
}

bool ConversionSetUp()
{
    const ToolkitState& t = Toolkit();
    return t.star.has_value() && t.reportSystem != TimeSystem::Unstated;
}

times::Converted ConvertToReportSystem(const times::JulianDate& time)
{
    const ToolkitState& t = Toolkit();
    const times::TimeConverter converter(*t.star, t.site);
    return converter.convert(time, times::effectiveSystem(t.fileSystem), t.reportSystem);
}

std::vector<RowConversion> ConvertPublishedResults(int method)
{
    std::vector<RowConversion> conversions;
    ToolkitState& t = Toolkit();
    const bool setUp = ConversionSetUp();
    for (int k = 1; k <= 6; ++k) {
        if (method != 0 && k != method)
            continue;
        std::optional<times::JulianDate>& converted = t.rows[static_cast<std::size_t>(k)].convertedTime;
        converted.reset();
        if (!setUp || !S().Results(k).published)
            continue;
        RowConversion row{k, ConvertToReportSystem(PublishedTime(k))};
        if (row.converted.ok)
            converted = row.converted.time;
        conversions.push_back(row);
    }
    return conversions;
}

} // namespace dip
