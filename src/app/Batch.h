// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

#include "analysis/BatchTiming.h"
#include "analysis/OcDiagram.h"

#include <QStringList>

#include <cstdio>
#include <functional>

namespace dip {

// Saves an O - C diagram to a picture file; false with why in *error.
using PlotWriter = std::function<bool(const QString& path, const OcDiagram& diagram, QString* error)>;

// dipscope-batch: times every eclipse of one or many light curves and writes one row per eclipse
// and method. Returns the exit code: 0 every file was timed, 1 a file was skipped (reported on
// err with its name and line), 2 the rows or the plot could not be written, 64 a bad command
// line (usage on err).
int RunBatch(const QStringList& arguments, std::FILE* out, std::FILE* err, const MethodRunner& runner,
             const PlotWriter& plot);

// Whether the arguments ask for a plot, which needs Qt Gui to draw its text.
bool BatchWantsPlot(const QStringList& arguments);

} // namespace dip
