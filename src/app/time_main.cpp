// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "app/TimeTool.h"

#include <QStringList>

#include <cstdio>

int main(int argc, char* argv[])
{
    // The arguments as given, without a QCoreApplication: the tool needs no event loop.
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    return dip::RunTimeTool(arguments, stdout, stderr);
}
