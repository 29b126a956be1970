// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The bootstrap error of one method's result on one eclipse of a batch, on the calling thread
// (the batch already runs one eclipse per thread).

#include "analysis/Bootstrap.h"
#include "methods/MethodRegistry.h"
#include "session/Curve.h"

#include <cstdint>

namespace dip {

// The bootstrap of row's result fitted on curve with request: replicates resamples drawn from
// the streams of seed. Never throws: what went wrong is in the result.
BootstrapResult batchBootstrap(int row, const Curve& curve, const MethodRequest& request, const MethodResult& fitted,
                               int replicates, std::uint64_t seed);

} // namespace dip
