// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

#include <QStringList>

#include <cstdio>

namespace dip {

// dipscope-time: converts times between JD(UTC), HJD(UTC) and BJD_TDB for one star and prints
// one converted time a line with 10 decimals. Returns the exit code: 0 done, 1 a time could
// not be converted (the message on err, nothing printed), 64 a bad command line (usage on err).
int RunTimeTool(const QStringList& arguments, std::FILE* out, std::FILE* err);

} // namespace dip
