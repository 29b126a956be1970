// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/MethodRegistry.h"

#include "session/Session.h"

namespace dip {

const std::vector<MethodEntry>& Methods()
{
    static const std::vector<MethodEntry> table = {
#define DIPSCOPE_METHOD(row, Name, title, option, arguments, picksRange)                                               \
    {row, #Name, title, option, arguments, picksRange, Replay##Name, Compute##Name},
#include "methods/Methods.def"
#undef DIPSCOPE_METHOD
    };
    return table;
}

const MethodEntry& MethodOfRow(int row)
{
    const std::vector<MethodEntry>& table = Methods();
    if (row < 1 || row > static_cast<int>(table.size()))
        rt::raise(9);
    return table[static_cast<std::size_t>(row - 1)];
}

bool MethodButtonPrelude(const MethodEntry& method)
{
    Session& s = S();
    if (s.DataName.isEmpty())
        return false;
    if (method.picksRange) {
        s.RangeFirst = 1;
        s.RangeLast = s.NumPts;
    }
    return true;
}

ReplayResult ReplayMethod(int row, const ReplayRequest& request)
{
    const MethodEntry& method = MethodOfRow(row);
    // The row tells afterwards whether this replay published.
    ResultRow& result = S().Results(row);
    result.published = false;
    result.trappedError = 0;
    result.extraTexts.clear();
    if (MethodButtonPrelude(method))
        method.replay(request);
    return S().Results(row);
}

} // namespace dip
