// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

#include <QString>

#include <array>

namespace dip {

// "Calc. Means": the main window's boxes as they stand, read back as text.
struct MeansBoxes {
    std::array<QString, 6> times;  // Text1..Text6
    std::array<QString, 6> errors; // Text7..Text12
    std::array<bool, 6> ticked{};  // Check1..Check6
    std::array<QString, 4> means;  // Text13..Text16: simple, weighted, std. error, std. deviation
};

// Combines the ticked results into the four means. A ticked box whose error is below 1e-6 in
// magnitude is unticked and skipped; with nothing ticked, or nothing left, the mean boxes keep
// their contents. Returns the boxes as the button leaves them.
MeansBoxes CalcMeans(MeansBoxes boxes);

// Command8_Click: CalcMeans on the main window's boxes, written back into them.
void CalcMeansOnMainForm();

} // namespace dip
