// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

#include <QString>

#include <exception>
#include <functional>
#include <string>

namespace rt {

// A trappable runtime failure: the runtime's error number and its standard text.
class RuntimeError : public std::exception {
public:
    explicit RuntimeError(int number);
    RuntimeError(int number, const QString& text);

    int number() const { return m_number; }
    const QString& text() const { return m_text; }
    const char* what() const noexcept override { return m_what.c_str(); }

private:
    int m_number;
    QString m_text;
    std::string m_what;
};

// The standard text of a runtime error number ("Overflow" for 6, ...).
QString standardErrorText(int number);

[[noreturn]] void raise(int number);

// The standard report of an untrapped failure: "Run-time error 'N':", a blank line, the text.
QString reportText(const RuntimeError& error);

// Shows the standard report in the program's message box and ends the program through the
// exit hook (tests replace the hook so that nothing ends).
void reportFatal(const RuntimeError& error);

using ExitHook = std::function<void(int code)>;
// Returns the previous hook.
ExitHook setExitHook(ExitHook hook);

// Ends the program at once with code through the exit hook: no window is closed or unloaded
// first. Returns only when a test has replaced the hook.
void exitProgram(int code);

} // namespace rt
