// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/BatchBootstrap.h"

// The bootstrap of the methods (MethodBootstrap.h) is being written beside the batch; until it
// is part of the build, the batch says that no bootstrap error can be formed.
#if __has_include("analysis/MethodBootstrap.h")
#include "analysis/MethodBootstrap.h"
#define DIPSCOPE_METHOD_BOOTSTRAP 1
#endif

namespace dip {

bool batchBootstrapAvailable()
{
#ifdef DIPSCOPE_METHOD_BOOTSTRAP
    return true;
#else
    return false;
#endif
}

BootstrapResult batchBootstrap(int row, const Curve& curve, const MethodRequest& request, const MethodResult& fitted,
                               int replicates, std::uint64_t seed)
{
#ifdef DIPSCOPE_METHOD_BOOTSTRAP
    MethodBootstrapOptions options;
    options.replicates = replicates;
    options.seed = seed;
    options.threads = 1;
    return BootstrapMethod(row, curve, request, fitted, options);
#else
    (void)row, (void)curve, (void)request, (void)fitted, (void)seed;
    BootstrapResult none;
    none.requested = replicates;
    none.problem = QStringLiteral("this build has no bootstrap of the methods");
    return none;
#endif
}

} // namespace dip
