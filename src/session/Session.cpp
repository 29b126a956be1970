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

void resetSession() { instance() = std::make_unique<Session>(); }

} // namespace dip
