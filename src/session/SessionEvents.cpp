// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "session/SessionEvents.h"

#include <vector>

namespace dip {

namespace {
std::vector<SessionListener>& listeners()
{
    static std::vector<SessionListener> all;
    return all;
}
} // namespace

void addSessionListener(SessionListener listener) { listeners().push_back(std::move(listener)); }

void notifySessionChange(const SessionChange& change)
{
    for (const SessionListener& listener : listeners())
        listener(change);
}

} // namespace dip
