// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The pieces of JSON the console tools write, by hand so that the order of the keys and the
// digits of the numbers are ours.

#include <QString>

namespace dip {

// A JSON string: quotes, backslashes and control characters escaped.
QString jsonString(const QString& s);

// A number with 17 significant digits (it reads back to the same double); null when it is not
// finite, which JSON cannot say.
QString jsonNumber(double x);

} // namespace dip
