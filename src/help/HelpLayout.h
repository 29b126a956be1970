// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// Where the help window puts its paragraphs, in twips. The height of a paragraph is not
// measured but estimated from its number of characters: about 15000 square twips of label
// per character, plus 400 twips of spacing. Every estimate is rounded to a 16-bit integer
// (halves to even; beyond 16 bits raises "Overflow" (6)).

#include "runtime/Integer.h"

#include <vector>

namespace dip::helplayout {

constexpr double LabelMargin = 500;      // label width = inner width - 500
constexpr rt::Integer FirstTop = 500;    // top of the first paragraph label
constexpr double AreaPerChar = 15000;    // square twips of label per character
constexpr double Spacing = 400;          // added to every paragraph's estimate
constexpr rt::Integer BaseHeight = 1000; // window height before its paragraphs

} // namespace dip::helplayout

namespace dip {

struct HelpLayout {
    double labelWidth = 0;            // of Label0 and of every paragraph label
    std::vector<rt::Integer> tops;    // paragraph k's label top at index k - 1
    std::vector<rt::Integer> heights; // paragraph k's estimated height
    rt::Integer windowHeight = 0;     // the window's new outer height
};

// innerWidth: the window's inner (client) width; windowWidth: its outer width. The window's
// height is estimated from the outer width, not the labels', so the window comes out somewhat
// shorter than the stacked labels; the help window has always been laid out that way.
HelpLayout layOutHelpParagraphs(double innerWidth, double windowWidth, const std::vector<int>& charCounts);

} // namespace dip
