// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "app/MeasureFeature.h"

namespace dip {

namespace {

// dipscope-measure's options for full-precision times, time systems and imported files.
class TimesFeature : public MeasureFeature {
public:
    QString usage() const override { return QString(); }
    bool parse(CommandLine& /*line*/) override { return false; }
};

} // namespace

std::unique_ptr<MeasureFeature> MakeTimesFeature() { return std::make_unique<TimesFeature>(); }

} // namespace dip
