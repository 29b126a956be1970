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

} // namespace

void MsgBox(const QString& text, const QString& title) { hook()(text, title.isNull() ? programTitle() : title); }

MsgBoxHook setMsgBoxHook(MsgBoxHook h)
{
    MsgBoxHook previous = std::move(hook());
    hook() = std::move(h);
    return previous;
}

} // namespace rt
