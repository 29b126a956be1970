// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// Publishing a method's result: the one place where HJDOffset is added and the numbers become
// the texts of the main window's result boxes. Each procedure writes the session's result row
// (S().Results) and then shows it in the main window's boxes.

#include <QString>
#include <QStringList>

namespace dip {

// Method k's time of minimum and error by the result-row convention: Text k the time plus
// HJDOffset, Text k+6 the error, each FormatFixed(value, 14, 5) without leading blanks, and
// Check k ticked. errorText, when given, is shown instead of the formatted error (the tracing
// paper's fixed "0.0001").
void PublishResult(int method, double time, double error, const QString& errorText = QString());

// Undo in a method window: Text k and Text k+6 emptied; Check k cleared when untick is true
// (the Fourier window's Undo keeps it).
void ClearResult(int method, bool untick);

// The open dialog after a load: the twelve result boxes emptied, the rows cleared (their ticks
// stay as the load left them).
void ClearResultTexts();

// A load: the six "Use in Mean?" boxes unticked.
void UntickResults();

// The runtime error a method's own trap caught (row k keeps whatever was written before it).
void SetTrappedError(int method, int number);

// The method window's boxes after its compute, for the views that list them.
void SetResultExtras(int method, const QStringList& texts);

} // namespace dip
