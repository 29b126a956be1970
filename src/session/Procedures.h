// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The session's module procedures, by topic: the used points and extents (Points.h), number
// formatting (Formatting.h) and publishing results (Results.h). Include the topic you use;
// this header gathers them for code that uses several.

#include "session/Formatting.h"
#include "session/Points.h"
#include "session/Results.h"
