// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/BatchBootstrap.h"

#include "analysis/MethodBootstrap.h"

namespace dip {

BootstrapResult batchBootstrap(int row, const Curve& curve, const MethodRequest& request, const MethodResult& fitted,
                               int replicates, std::uint64_t seed)
{
    MethodBootstrapOptions options;
    options.replicates = replicates;
    options.seed = seed;
    options.threads = 1; // the batch already runs one eclipse per thread
    return BootstrapMethod(row, curve, request, fitted, options);
}

} // namespace dip
