// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "help/AboutTexts.h"

namespace dip::about {

QString product() { return QStringLiteral("Dipscope"); }
QString version() { return QStringLiteral("This is version 25d of 2009-02-12"); }
QString rule() { return QStringLiteral("------------------------------"); }
QString credits() { return QStringLiteral("Written by the Dipscope developers."); }
QString licence() { return QStringLiteral("Free software under the MIT licence:"); }
QString licenceTerms() { return QStringLiteral("use, copy, modify and distribute it freely, without warranty."); }
QString licenceFile() { return QStringLiteral("The full terms are in the LICENSE file that comes with it."); }
QString bugReports() { return QStringLiteral("Please report bugs on the project's issue tracker."); }

} // namespace dip::about
