// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// Light curves the tracing-paper tests share.

#include <QByteArray>

namespace dip::test {

// Ten points at 0.40, 0.41, ... 0.49 (times exactly as a user types them), the faintest at
// 0.45 (index 6).
inline QByteArray tenPoints()
{
    QByteArray out;
    const double mags[] = {11.0, 11.1, 11.3, 11.6, 11.9, 12.0, 11.8, 11.5, 11.2, 11.05};
    for (int i = 0; i < 10; ++i)
        out += "0.4" + QByteArray::number(i) + "," + QByteArray::number(mags[i], 'g', 17) + "\n";
    return out;
}

} // namespace dip::test
