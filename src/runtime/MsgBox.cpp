// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "runtime/MsgBox.h"

#include <cstdio>

namespace rt {

namespace {

MsgBoxHook& hook()
{
    // Without a window system the message still reaches the user, on standard error.
    static MsgBoxHook h = [](const QString& text, const QString&) {
        std::fprintf(stderr, "%s\n",
                     QString(text).replace(QLatin1Char('\n'), QLatin1Char(' ')).toLocal8Bit().constData());
    };
    return h;
}

QuestionHook& question()
{
    // Without a window system nobody can answer: the question is written on standard error and
    // taken as answered "No", which changes nothing.
    static QuestionHook h = [](const QString& text, const QString&) {
        std::fprintf(stderr, "%s [No]\n",
                     QString(text).replace(QLatin1Char('\n'), QLatin1Char(' ')).toLocal8Bit().constData());
        return false;
    };
    return h;
}

thread_local MessageSink* threadSink = nullptr;

} // namespace

MessageSink::MessageSink() : m_outer(threadSink) { threadSink = this; }

MessageSink::~MessageSink() { threadSink = m_outer; }

void MsgBox(const QString& text, const QString& title)
{
    if (threadSink) {
        threadSink->m_messages << text;
        return;
    }
    hook()(text, title.isNull() ? programTitle() : title);
}

MsgBoxHook setMsgBoxHook(MsgBoxHook h)
{
    MsgBoxHook previous = std::move(hook());
    hook() = std::move(h);
    return previous;
}

bool AskYesNo(const QString& text, const QString& title)
{
    return question()(text, title.isNull() ? programTitle() : title);
}

QuestionHook setQuestionHook(QuestionHook h)
{
    QuestionHook previous = std::move(question());
    question() = std::move(h);
    return previous;
}

} // namespace rt
