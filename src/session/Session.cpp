// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "session/Session.h"

#include <memory>

namespace dip {

namespace {
std::unique_ptr<Session>& instance()
{
    static std::unique_ptr<Session> s = std::make_unique<Session>();
    return s;
}
} // namespace

Session& S() { return *instance(); }

void ResetMethodWindowFlags(Session& s)
{
    s.FirstTime(1) = 0;
    s.FirstTime(3) = 0;
    s.FirstTime(4) = 0;
    s.FirstTime(5) = 0;
    s.AvgPoints = 1;
    s.ParabolaPick.clearFlags();
    s.KweePick.clearFlags();
    s.Fourier.Range.clearFlags();
}

void resetSession() { instance() = std::make_unique<Session>(); }

} // namespace dip
