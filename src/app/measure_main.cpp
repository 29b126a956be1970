// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "app/Measure.h"

#include <QCoreApplication>
#include <QStringList>

#include <cstdio>

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QStringList arguments = QCoreApplication::arguments();
    arguments.removeFirst();
    return dip::RunMeasure(arguments, stdout, stderr);
}
