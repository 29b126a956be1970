// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "runtime/RuntimeError.h"

#include "runtime/MsgBox.h"

#include <cstdio>
#include <cstdlib>
#include <map>

namespace rt {

namespace {

const std::map<int, const char*>& standardTexts()
{
    static const std::map<int, const char*> texts = {
        {3, "Return without GoSub"},
        {5, "Invalid procedure call or argument"},
        {6, "Overflow"},
        {7, "Out of memory"},
        {9, "Subscript out of range"},
        {11, "Division by zero"},
        {13, "Type mismatch"},
        {52, "Bad file name or number"},
        {53, "File not found"},
        {54, "Bad file mode"},
        {55, "File already open"},
        {57, "Device I/O error"},
        {58, "File already exists"},
        {61, "Disk full"},
        {62, "Input past end of file"},
        {67, "Too many files"},
        {68, "Device unavailable"},
        {70, "Permission denied"},
        {71, "Disk not ready"},
        {75, "Path/File access error"},
        {76, "Path not found"},
        {380, "Invalid property value"},
    };
    return texts;
}

ExitHook& exitHook()
{
    static ExitHook hook = [](int code) {
        std::fflush(nullptr);
        std::_Exit(code);
    };
    return hook;
}

} // namespace

RuntimeError::RuntimeError(int number) : RuntimeError(number, standardErrorText(number)) {}

RuntimeError::RuntimeError(int number, const QString& text)
    : m_number(number), m_text(text), m_what(reportText(*this).toStdString())
{}

QString standardErrorText(int number)
{
    const auto& texts = standardTexts();
    const auto it = texts.find(number);
    return it == texts.end() ? QStringLiteral("Application-defined or object-defined error")
                             : QString::fromLatin1(it->second);
}

void raise(int number) { throw RuntimeError(number); }

QString reportText(const RuntimeError& error)
{
    return QStringLiteral("Run-time error '%1':\n\n%2").arg(error.number()).arg(error.text());
}

void reportFatal(const RuntimeError& error)
{
    MsgBox(reportText(error));
    exitProgram(1);
}

void exitProgram(int code) { exitHook()(code); }

ExitHook setExitHook(ExitHook hook)
{
    ExitHook previous = std::move(exitHook());
    exitHook() = std::move(hook);
    return previous;
}

} // namespace rt
