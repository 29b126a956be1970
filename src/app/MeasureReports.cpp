// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "app/MeasureFeature.h"

namespace dip {

namespace {

// dipscope-measure's options for O-C from an ephemeris, and the results as CSV or report lines.
class ReportsFeature : public MeasureFeature {
public:
    QString usage() const override { return QString(); }
    bool parse(CommandLine& /*line*/) override { return false; }
};

} // namespace

std::unique_ptr<MeasureFeature> MakeReportsFeature() { return std::make_unique<ReportsFeature>(); }

} // namespace dip
