// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "help/HelpLayout.h"

#include "runtime/Numeric.h"

namespace dip {

namespace {

// 15000 x chars / width + 400, rounded to 16 bits.
rt::Integer estimate(int chars, double width)
{
    return rt::CInt(rt::div(helplayout::AreaPerChar * chars, width) + helplayout::Spacing);
}

} // namespace

HelpLayout layOutHelpParagraphs(double innerWidth, double windowWidth, const std::vector<int>& charCounts)
{
    HelpLayout layout;
    layout.labelWidth = innerWidth - helplayout::LabelMargin;

    rt::Integer top = helplayout::FirstTop;
    for (int chars : charCounts) {
        const rt::Integer height = estimate(chars, layout.labelWidth);
        layout.tops.push_back(top);
        layout.heights.push_back(height);
        top = rt::i16(top + height);
    }

    // Each term rounded as it is added, against the window's own width.
    rt::Integer windowHeight = helplayout::BaseHeight;
    for (int chars : charCounts)
        windowHeight = rt::i16(windowHeight + estimate(chars, windowWidth));
    layout.windowHeight = windowHeight;
    return layout;
}

} // namespace dip
