// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// Results as a CSV table and the fields they add to JSON.
//
// CSV, one header line and one line per result, comma-separated, fields never quoted (none can
// hold a comma):
//
//   method,name,time,error,ticked,system,E,o_c,o_c_min,bootstrap_error,points
//
//   method           1 to 6
//   name             methodName(method)
//   time             time of minimum, days, 8 decimals (a full Julian date keeps 1 ms)
//   error            the method's estimated error, days, 8 decimals; empty when none
//   ticked           1 when "Use in Mean?" is ticked, else 0
//   system           timeSystemWord
//   E                cycle number: whole, or with ".5" for a secondary; empty without ephemeris
//   o_c              O - C, days, 8 decimals; empty without ephemeris
//   o_c_min          O - C, minutes, 5 decimals; empty without ephemeris
//   bootstrap_error  days, 8 decimals; empty where no bootstrap was run
//   points           points the method used; empty when not known
//
// Lines end with "\n". Numbers always have a point, whatever the locale.

#include "analysis/JsonText.h"
#include "analysis/ResultRow.h"

#include <QString>

#include <vector>

namespace dip {

QString resultsCsvHeader();
QString resultCsvLine(const ExportRow& row);
// The header and every row.
QString resultsCsv(const std::vector<ExportRow>& rows);

// A cycle number as text: "7024", "7024.5", "-3.5".
QString cycleText(double cycle);

// A number with the given decimals and a point; "" when it is not finite.
QString fixedText(double x, int decimals);

// The fields O - C adds to a result's JSON object: "cycle": E, "o_c": O - C in days
// (17 significant digits). The results file and the console's JSON both write them so.
void addOcFields(JsonObject& object, const OcValue& oc);

} // namespace dip
