// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "session/WholeDays.h"

#include "runtime/Numeric.h"
#include "session/Session.h"

#include <cmath>

namespace dip {

double WholeDayOffset(const LightCurve& curve)
{
    if (curve.rowCount < 1 || curve.times.empty())
        return 0;
    return rt::Int(curve.times.front());
}

bool LargeTimesWithoutOffset()
{
    const Session& s = S();
    if (s.DataName.isEmpty() || s.WholeDaysSubtracted)
        return false;
    for (int k = 1; k <= s.NumOrig; ++k)
        if (std::abs(s.ReadHJD(k)) > LargeTimeDays)
            return true;
    return false;
}

bool WholeDaysSwitchPending()
{
    const Session& s = S();
    return !s.DataName.isEmpty() && s.SubtractWholeDays != s.WholeDaysSubtracted;
}

QString TimeSystemShortName(TimeSystem system)
{
    switch (system) {
    case TimeSystem::JD_UTC: return QStringLiteral("JD");
    case TimeSystem::BJD_TDB: return QStringLiteral("BJD");
    case TimeSystem::HJD_UTC:
    case TimeSystem::Unstated: break;
    }
    return QStringLiteral("HJD");
}

QString TimeAxisName()
{
    const Session& s = S();
    QString name = TimeSystemShortName(s.TimesSystem);
    if (s.HJDOffset > 0)
        name += QStringLiteral(" \u2212 ") + QString::number(s.HJDOffset, 'f', 0);
    else if (s.HJDOffset < 0)
        name += QStringLiteral(" + ") + QString::number(-s.HJDOffset, 'f', 0);
    return name;
}

} // namespace dip
