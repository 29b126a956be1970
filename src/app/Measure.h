// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

#include <QStringList>

#include <cstdio>

namespace dip {

// dipscope-measure: replays a user's session on a data file without windows and prints the
// results. Returns the process's exit code: 0 done, 1 the reader refused the file, 2 a runtime
// error ended the session, 64 a bad command line.
int RunMeasure(const QStringList& arguments, std::FILE* out, std::FILE* err);

} // namespace dip
