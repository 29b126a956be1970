// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "mainwindow/Means.h"

#include "runtime/Integer.h"
#include "runtime/Numeric.h"
#include "runtime/Text.h"
#include "session/Formatting.h"
#include "session/MainForm.h"

#include <cmath>

namespace dip {

MeansBoxes CalcMeans(MeansBoxes boxes)
{
    // 1. The base keeps the sums small; it is taken from the first ticked box even when that
    // box is dropped below for a missing error.
    int first = -1;
    for (int k = 0; k < 6 && first < 0; ++k)
        if (boxes.ticked[k])
            first = k;
    if (first < 0)
        return boxes;
    const double base = rt::Int(rt::div(rt::Val(boxes.times[first]), 100)) * 100;

    // 2. Accumulate.
    double s1 = 0, s2 = 0, swd = 0, sw = 0;
    rt::Integer n = 0;
    for (int k = 0; k < 6; ++k) {
        if (!boxes.ticked[k])
            continue;
        const double d = rt::fin(rt::Val(boxes.times[k]) - base);
        const double e = rt::Val(boxes.errors[k]);
        // A zero or missing error would give an infinite weight.
        if (std::abs(e) < 0.000001) {
            boxes.ticked[k] = false;
            continue;
        }
        const double e2 = rt::fin(e * e);
        s1 = rt::fin(s1 + d);
        s2 = rt::fin(s2 + rt::fin(d * d));
        swd = rt::fin(swd + rt::div(d, e2));
        sw = rt::fin(sw + rt::div(1, e2));
        n = rt::i16(n + 1);
    }

    // 3-4.
    if (n >= 1) {
        boxes.means[0] = rt::LTrim(FormatFixed(base + rt::div(s1, n), 14, 5));
        boxes.means[1] = rt::LTrim(FormatFixed(base + rt::div(swd, sw), 14, 5));
        boxes.means[2] = rt::LTrim(FormatFixed(rt::sqrt(rt::div(1, sw)), 14, 5));
        if (n < 2)
            boxes.means[3] = QString();
        else
            boxes.means[3] = rt::LTrim(FormatFixed(rt::sqrt(rt::div(s2 - rt::div(s1 * s1, n), n - 1)), 12, 5));
    }
    return boxes;
}

void CalcMeansOnMainForm()
{
    MainForm& form = mainForm();
    MeansBoxes boxes;
    for (int k = 0; k < 6; ++k) {
        boxes.times[k] = form.text(k + 1);
        boxes.errors[k] = form.text(k + 7);
        boxes.ticked[k] = form.checked(k + 1);
    }
    for (int k = 0; k < 4; ++k)
        boxes.means[k] = form.text(k + 13);
    const MeansBoxes result = CalcMeans(boxes);
    for (int k = 0; k < 6; ++k)
        form.setChecked(k + 1, result.ticked[k]);
    for (int k = 0; k < 4; ++k)
        form.setText(k + 13, result.means[k]);
}

} // namespace dip
