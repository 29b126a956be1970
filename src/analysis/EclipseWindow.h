// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// Every eclipse of a long light curve, one at a time: where the ephemeris predicts it, the
// window of points around it, the range a method works on, picked as a careful user would pick
// it, and the start values of the Fourier fit, all from the data alone.

#include "analysis/Ephemeris.h"
#include "session/LightCurveData.h"

#include <QString>

#include <array>
#include <cstddef>
#include <vector>

namespace dip {

struct EclipseSettings {
    Ephemeris ephemeris;
    bool secondaries = false; // also the secondary eclipses, at phase 0.5
    double halfWidth = 0;     // of the window about the predicted minimum, days
    int minBranchPoints = 5;  // fewest points on each side of the minimum
    // At most this many points in a range, as a session holds: the deepest point and up to
    // (maxPoints - 1) / 2 on each side. A wider window loses the points farthest from the minimum.
    int maxPoints = 1000;
};

// The eclipses the ephemeris predicts from first to last (the data's span, ends included):
// every whole cycle, and every half cycle with secondaries, in time order.
class EclipseSchedule {
public:
    EclipseSchedule(const Ephemeris& ephemeris, bool secondaries, double first, double last);
    std::size_t size() const { return m_count; }
    double cycle(std::size_t i) const;
    double predicted(std::size_t i) const;

private:
    Ephemeris m_ephemeris;
    double m_step = 1;         // 1, or 0.5 with secondaries
    long long m_firstStep = 0; // the first cycle in steps
    std::size_t m_count = 0;
};

// The median interval between consecutive points (sorted times); 0 for fewer than two points.
double medianCadence(const std::vector<double>& times);

// Two points further apart than this leave a gap: five cadences.
double gapLimit(double cadence);

// The half-width of the window, measured on the light curve folded on the ephemeris: the
// folded curve's median in bins (about ten points each), its baseline the median of all bins,
// the primary's deepest bin within 0.05 in phase of phase 0. From there outwards, the first
// bin on each side back within a tenth of the depth of the baseline marks the eclipse; the
// half-width is 1.3 times the wider side (the eclipse's contacts lie a little beyond the tenth
// of its depth, and the methods want some baseline). Suits detached systems with flat light
// between the eclipses. problem says why when no eclipse stands out.
struct WidthMeasure {
    double halfWidth = 0;
    QString problem;
};
WidthMeasure measureHalfWidth(const LightCurve& curve, const Ephemeris& ephemeris);

// One eclipse ready for the methods. Times are reduced by offset, the whole day at or below the
// predicted minimum, so that the methods, which fit times as stored, keep their digits.
struct BatchWindow {
    double cycle = 0;
    double predicted = 0;  // T0 + E P
    double offset = 0;     // subtracted from every time below
    std::vector<double> t; // the range: the deepest smoothed point and n points on each side
    std::vector<double> m;
    std::size_t centre = 0; // index of the deepest smoothed point; t.size() == 2 centre + 1
    // The Fourier start values in the order of the Fourier window's boxes: Xo (reduced), C, W,
    // A1 ... A5 (see fourierStartValues).
    std::array<double, 8> fourierStart{};
    bool secondary() const;
    // The central part of the range with at most maxPoints points, same count on both sides.
    BatchWindow central(std::size_t maxPoints) const;
};

// The window of one predicted eclipse, or why it is skipped (skipped is empty when it is not).
struct WindowCut {
    BatchWindow window;
    QString skipped;
};

// Cuts the points within halfWidth of the predicted minimum (curve sorted by time), smooths
// them with a running mean over 2h + 1 points (h = a sixth of the window's points, at least 1,
// at most 100, narrowed near the ends to stay symmetric: a wide mean keeps a symmetric dip
// symmetric about its centre and steadies the deepest point against the noise), and takes the
// range symmetric about the deepest smoothed point (the first of equals), with the same number
// of points on both branches. Skipped, in this order of tests: no points in the window; a gap
// (consecutive points more than `gap` apart) around the predicted minimum; no dip (the deepest
// smoothed point no fainter than the mean of the window's smoothed ends); fewer than
// minBranchPoints on either branch; a gap in the middle half of the range (nearer to the
// deepest point than a quarter of the range's span); no dip in the range smoothed lightly (h =
// a fortieth of its points, the smoothing that also gives the Fourier start values).
WindowCut cutWindow(const LightCurve& curve, const EclipseSettings& settings, double gap, double cycle);

// The two ranges of the bisectors of chords, as indexes 1..n into the window's range: on each
// branch the stretch whose lightly smoothed magnitude (the smoothing of the Fourier start
// values) lies between a fifth and four fifths of the depth below the ends' level, found from
// the deepest point outwards: the steep part of the branch, where a chord meets the other branch
// well inside the range. A branch without such a point leaves its range empty (0, 0).
struct ChordRanges {
    int first = 0, last = 0;   // the left (descending) branch
    int first2 = 0, last2 = 0; // the right (ascending) branch
    bool found() const { return first > 0 && first2 > 0; }
    int points() const { return found() ? (last - first + 1) + (last2 - first2 + 1) : 0; }
};
ChordRanges chordRanges(const BatchWindow& window);

// The Fourier start values from the smoothed range (sm, same indexes as t): Xo the deepest
// point's time, C its smoothed magnitude, the baseline the mean of the smoothed ends, A1 ... A5
// halving (the help's advice for typed values) and summing so that the model meets the baseline
// at W (t - Xo) = pi: A1 = depth / 2.625. W puts the model's half depth where the smoothed
// curve crosses it (the mean distance of the two crossings from Xo).
std::array<double, 8> fourierStartValues(const std::vector<double>& t, const std::vector<double>& sm,
                                         std::size_t centre);

} // namespace dip
