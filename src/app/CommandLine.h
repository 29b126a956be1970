// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The command lines of the console tools: operands, and options that start with "--" and take
// their value as the next argument or after '=' ("--kwee 0.46,0.565" or "--kwee=0.46,0.565").
// A fault is a UsageError, which a tool answers with its usage text and the exit code 64.

#include "analysis/Ephemeris.h"

#include <QString>
#include <QStringList>

#include <cstdio>
#include <optional>
#include <vector>

namespace dip {

struct UsageError {
    QString what;
};

class CommandLine {
public:
    explicit CommandLine(QStringList arguments) : m_arguments(std::move(arguments)) {}

    // Moves to the next argument; false when there is none left.
    bool next();
    // The argument is an operand (a file, a time): it does not start with "--", or it is "--"
    // itself when the tool takes that as an operand.
    bool isOperand(bool dashDashIsOperand = false) const;
    const QString& operand() const { return m_current; }
    // The option's name, without a value given after '='.
    const QString& option() const { return m_option; }
    bool is(const char* name) const { return m_option == QLatin1String(name); }

    // An option that takes no value: a value after '=' is a fault.
    void flag() const;
    // The option's value: after '=', or the next argument (a fault when there is none).
    QString value();

    // "OPTION: 'TEXT' is not a number" for a text that is not a finite number.
    double number(const QString& text) const;
    // A whole number of at least least.
    int whole(const QString& text, int least) const;
    // count comma-separated numbers (any count when count is 0).
    std::vector<double> numbers(const QString& text, int count) const;
    // "T0,P": a primary minimum and a period above 0, days.
    Ephemeris ephemeris(const QString& text) const;

    [[noreturn]] void unknown() const;

private:
    QStringList m_arguments;
    int m_index = -1;
    QString m_current;
    QString m_option;
    std::optional<QString> m_inlineValue;
};

// Text to a stream as UTF-8.
void print(std::FILE* f, const QString& s);

} // namespace dip
