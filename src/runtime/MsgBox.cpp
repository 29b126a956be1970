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

} // namespace rt
