// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// Form layout in twips: every position and size of the main window and the file dialogs is
// given in twips and placed through these.

#include "runtime/Twips.h"

#include <QWidget>

namespace dip {

inline int toPixels(int twips) { return (twips + TwipsPerPixel / 2) / TwipsPerPixel; }
inline int toTwips(int pixels) { return pixels * TwipsPerPixel; }

// Left, top, width and height of a control, in twips of its form.
inline void placeTwips(QWidget* widget, int left, int top, int width, int height)
{
    widget->setGeometry(toPixels(left), toPixels(top), toPixels(width), toPixels(height));
}

} // namespace dip
