// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "app/MeasureFeature.h"

namespace dip {

MeasureFeature::~MeasureFeature() = default;

std::vector<std::unique_ptr<MeasureFeature>> MeasureFeatures()
{
    std::vector<std::unique_ptr<MeasureFeature>> features;
    features.push_back(MakeTimesFeature());
    features.push_back(MakeErrorsFeature());
    features.push_back(MakeReportsFeature());
    return features;
}

} // namespace dip
