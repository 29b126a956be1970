// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

#include <QString>
#include <QStringList>

#include <functional>

namespace rt {

// Every message box of the program is a modal box with a single OK button. They all go through
// MsgBox, so that the windows can show them, the console tool can print them and tests can
// intercept them without ever blocking on a modal dialog.
using MsgBoxHook = std::function<void(const QString& text, const QString& title)>;

// Shows text in an OK box titled with the program's name (or title when given).
void MsgBox(const QString& text, const QString& title = QString());

// Installs the function that shows message boxes; returns the previous one.
MsgBoxHook setMsgBoxHook(MsgBoxHook hook);

// A question with "Yes" and "No" buttons; true for "Yes". The observer's toolkit asks through it
// (the recovery offer at start-up), so that tests answer it without a modal dialog.
using QuestionHook = std::function<bool(const QString& text, const QString& title)>;

bool AskYesNo(const QString& text, const QString& title = QString());

// Installs the function that asks questions; returns the previous one.
QuestionHook setQuestionHook(QuestionHook hook);

// A computation run away from the windows (a worker thread, a batch, a bootstrap) collects the
// messages it would show instead of showing them: while a MessageSink lives, MsgBox on its
// thread appends to it and calls no hook, so two threads never share a box or a stream.
// Sinks nest; the innermost one of the thread collects.
class MessageSink {
public:
    MessageSink();
    ~MessageSink();
    MessageSink(const MessageSink&) = delete;
    MessageSink& operator=(const MessageSink&) = delete;

    const QStringList& messages() const { return m_messages; }

private:
    friend void MsgBox(const QString& text, const QString& title);
    QStringList m_messages;
    MessageSink* m_outer;
};

// The program's title, used by every message box.
inline QString programTitle() { return QStringLiteral("Dipscope"); }

} // namespace rt
