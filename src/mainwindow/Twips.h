// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// Form layout in twips, 15 to the logical pixel: every position and size of the main window
// and the file dialogs is given in twips and placed through these.

#include <QWidget>

namespace dip {

constexpr int twipsPerPixel = 15;

inline int toPixels(int twips) { return (twips + twipsPerPixel / 2) / twipsPerPixel; }
inline int toTwips(int pixels) { return pixels * twipsPerPixel; }

// Left, top, width and height of a control, in twips of its form.
inline void placeTwips(QWidget* widget, int left, int top, int width, int height)
{
    widget->setGeometry(toPixels(left), toPixels(top), toPixels(width), toPixels(height));
}

} // namespace dip
