// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The texts of the About box, by label name. Nothing in the box is computed.

#include <QString>

namespace dip::about {

QString product();      // Label1, in a larger sans-serif
QString version();      // Label6
QString rule();         // Label8, a dashed rule
QString credits();      // Label2
QString licence();      // Label3
QString licenceTerms(); // Label4
QString licenceFile();  // Label5
QString bugReports();   // Label9

} // namespace dip::about
