// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The error an import raises, for the import tests.

#include "import/ImportError.h"

#include <QString>

#include <functional>

namespace dip::test {

// The error run raises, or an empty one with line -1 when it raises none.
inline import::ImportError importErrorOf(const std::function<void()>& run)
{
    try {
        run();
    } catch (const import::ImportError& e) {
        return e;
    }
    return import::ImportError(QString(), -1, QString());
}

} // namespace dip::test
