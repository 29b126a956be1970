// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "app/MeasureFeature.h"

namespace dip {

namespace {

// dipscope-measure's options for bootstrap errors and Deeg's error for Kwee and van Woerden.
class ErrorsFeature : public MeasureFeature {
public:
    QString usage() const override { return QString(); }
    bool parse(CommandLine& /*line*/) override { return false; }
};

} // namespace

std::unique_ptr<MeasureFeature> MakeErrorsFeature() { return std::make_unique<ErrorsFeature>(); }

} // namespace dip
