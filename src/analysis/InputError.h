// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// What was wrong with an input file, said once: the file, the line (0 when the fault is not
// on one line) and what was wrong.

#include <QString>

#include <exception>
#include <utility>

namespace dip {

struct InputError : std::exception {
    InputError(QString file_, int line_, QString what_) : file(std::move(file_)), line(line_), problem(std::move(what_))
    {}
    QString file;
    int line = 0;
    QString problem;

    // "FILE:LINE: problem", or "FILE: problem" when no line is named.
    QString message() const
    {
        // One arg() call each: a file name may hold "%1".
        return line > 0 ? QStringLiteral("%1:%2: %3").arg(file, QString::number(line), problem)
                        : QStringLiteral("%1: %2").arg(file, problem);
    }
    const char* what() const noexcept override { return "input error"; }
};

} // namespace dip
