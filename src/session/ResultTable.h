// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The results of the six methods, one row per method k (1 parabolic fit, 2 tracing paper,
// 3 bisectors of chords, 4 Kwee and van Woerden, 5 Fourier fit, 6 sliding integrations). A
// method publishes into its row once (PublishResult, session/Results.h); the main window's
// boxes and the console tool's output are two views of the rows. The user may still type into
// the boxes, and "Calc. Means" reads the boxes' texts, not these rows.

#include <QString>
#include <QStringList>

namespace dip {

struct ResultRow {
    bool published = false; // the method wrote this row since it was last cleared
    double time = 0;        // the method's time of minimum plus HJDOffset
    double methodTime = 0;  // the method's own time of minimum, without HJDOffset
    double error = 0;
    bool ticked = false; // "Use in Mean?" as the method left it
    QString timeText;    // the texts the row's boxes were given
    QString errorText;
    int trappedError = 0;   // the runtime error the method's own trap caught (sliding integrations)
    QStringList extraTexts; // the method window's boxes after its compute (the Fourier fit's eight)

    friend bool operator==(const ResultRow& a, const ResultRow& b)
    {
        return a.published == b.published && a.time == b.time && a.methodTime == b.methodTime &&
               a.error == b.error && a.ticked == b.ticked && a.timeText == b.timeText &&
               a.errorText == b.errorText && a.trappedError == b.trappedError && a.extraTexts == b.extraTexts;
    }
};

class ResultTable {
public:
    // k = 1..6; any other k raises "Subscript out of range" (9).
    ResultRow& operator()(int k);
    const ResultRow& operator()(int k) const;

private:
    ResultRow m_rows[7];
};

} // namespace dip
