// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// Who must hear when the session's light curve or one of its result rows changes: the
// observer's toolkit keeps values derived from them (a result's time in another time system,
// the file's own time system) that would otherwise go stale. The program's own windows read the
// session directly and need none of this.

#include "session/LightCurveData.h"

#include <functional>

namespace dip {

struct SessionChange {
    enum Kind {
        Loaded,        // a light curve was installed (curve is set)
        ResultChanged, // result row `method` was published or cleared; method 0: all six rows
    };
    Kind kind = Loaded;
    int method = 0;
    const LightCurve* curve = nullptr; // the light curve just installed (Loaded only)
};

using SessionListener = std::function<void(const SessionChange&)>;

// Adds a listener for the life of the process; listeners are called in the order added, on the
// thread that changed the session (the user-interface thread, or the console tool's).
void addSessionListener(SessionListener listener);

// Tells every listener.
void notifySessionChange(const SessionChange& change);

} // namespace dip
