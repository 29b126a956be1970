// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers

// Linked into every test program: numbers are read and written in the C locale, whatever the
// machine's, before the first test runs.

#include <QLocale>
#include <QtGlobal>

namespace {
void useCLocale() { QLocale::setDefault(QLocale::c()); }
} // namespace
Q_CONSTRUCTOR_FUNCTION(useCLocale)
