// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// Colour checks on the picture of a plot window, for the window tests (GUI only).

#include "plotting/gui/PlotWindow.h"
#include "runtime/Twips.h"

#include <QColor>
#include <QImage>

namespace dip::test {

inline bool isColour(const QColor& c, Rgb rgb) { return c.red() == rgb.r && c.green() == rgb.g && c.blue() == rgb.b; }

// Whether a pixel of the colour lies within one pixel of the form position (a point's disc is
// one pixel in radius; a grid line drawn later may cover one column of it).
inline bool colourNear(const PlotWindow& form, double x, double y, Rgb rgb)
{
    for (int dx = -1; dx <= 1; ++dx)
        for (int dy = -1; dy <= 1; ++dy)
            if (isColour(form.pixelAt(x + dx * TwipsPerPixel, y + dy * TwipsPerPixel), rgb))
                return true;
    return false;
}

inline int countPixels(const QImage& image, Rgb rgb)
{
    int n = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (isColour(image.pixelColor(x, y), rgb))
                ++n;
    return n;
}

} // namespace dip::test
