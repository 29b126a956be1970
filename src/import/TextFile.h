// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The text files the importers read: every line with its number, and the numbers in them.

#include <QString>

#include <optional>
#include <vector>

namespace dip::import {

// The lines of a text file (UTF-8, a byte-order mark dropped; LF, CRLF or CR ends a line), all
// of them, blank ones included, so that lines[i] is line i + 1. Throws ImportError when the
// file cannot be read.
std::vector<QString> readTextLines(const QString& path);

// A number field: blanks around allowed, a point for decimals, an exponent allowed. "NaN" (any
// case) reads as NaN, which importers treat as a missing measurement; anything else that is
// not a finite number gives nullopt.
std::optional<double> numberField(const QString& text);

// The path as a message names it.
QString fileLabel(const QString& path);

} // namespace dip::import
