// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The rows of a batch timing as CSV or as JSON lines.
//
// CSV: a header line, then one line per eclipse and method:
//
//   file,E,type,method,time,error,bootstrap_error,o_c,o_c_min,points,status
//
//   file             the light curve as named on the command line (quoted when it holds a
//                    comma, a quote or a line end, quotes doubled)
//   E                cycle number: whole, or with ".5" for a secondary
//   type             "p" primary, "s" secondary
//   method           1, 3, 4, 5 or 6
//   time             time of minimum, days, 8 decimals, in the light curve's own times
//   error            the method's own estimated error, days, 8 decimals
//   bootstrap_error  days, 8 decimals, where a bootstrap was run
//   o_c              O - C, days, 8 decimals
//   o_c_min          O - C, minutes, 5 decimals
//   points           points the method used
//   status           "ok", or "skipped: REASON" (the eclipse) or "failed: REASON" (the
//                    method); quoted like file
//
// Fields without a value are empty. JSON lines: one object a line with the keys "file",
// "cycle", "type", "method", "time", "error", "bootstrap_error", "o_c", "o_c_min", "points",
// "status", null where the CSV field is empty.

#include "analysis/BatchTiming.h"

#include <QString>

namespace dip {

QString batchCsvHeader();
QString batchCsvLine(const BatchRow& row);
QString batchJsonLine(const BatchRow& row);

// A CSV field, quoted when it has to be.
QString csvField(const QString& text);

} // namespace dip
