// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/ResultRow.h"

namespace dip {

QString methodName(int method)
{
    static const char* const names[] = {"parabola", "tracing", "bisector", "KvW", "Fourier", "sliding"};
    if (method < 1 || method > 6)
        return QString();
    return QString::fromLatin1(names[method - 1]);
}

QString timeSystemWord(TimeSystem system)
{
    switch (system) {
    case TimeSystem::JD_UTC: return QStringLiteral("JD_UTC");
    case TimeSystem::HJD_UTC: return QStringLiteral("HJD_UTC");
    case TimeSystem::BJD_TDB: return QStringLiteral("BJD_TDB");
    case TimeSystem::Unstated: break;
    }
    return QStringLiteral("unstated");
}

} // namespace dip
