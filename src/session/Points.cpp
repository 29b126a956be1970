// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "session/Points.h"

#include "runtime/Numeric.h"
#include "session/Formatting.h"
#include "session/MainForm.h"
#include "session/Session.h"

namespace dip {

using rt::i16;

void CompactPoints()
{
    Session& s = S();
    s.NumPts = 0;
    for (int i = 1; i <= s.NumOrig; ++i) {
        if (s.Deleted(i) == 0) {
            s.NumPts = i16(s.NumPts + 1);
            s.HJD(s.NumPts) = s.OrigHJD(i);
            s.Mag(s.NumPts) = s.OrigMag(i);
        }
    }
    mainForm().setEditedCountLabel(QString::number(s.NumPts));
}

void UpdateExtents()
{
    Session& s = S();
    s.HJDMin = 99999999;
    s.HJDMax = -99999999;
    s.MagMin = 99;
    s.MagMax = -99;
    for (int i = 1; i <= s.NumPts; ++i) {
        if (s.HJD(i) < s.HJDMin)
            s.HJDMin = s.HJD(i);
        if (s.HJD(i) > s.HJDMax)
            s.HJDMax = s.HJD(i);
        if (s.Mag(i) > s.MagMax) {
            s.IdxMagMax = i16(i);
            s.MagMax = s.Mag(i);
        }
        if (s.Mag(i) < s.MagMin) {
            s.IdxMagMin = i16(i);
            s.MagMin = s.Mag(i);
        }
    }
    s.HJDMin = s.HJDMin - 0.002;
    s.HJDMax = s.HJDMax + 0.002;
    s.HJDRange = s.HJDMax - s.HJDMin;
    s.MagRange = s.MagMax - s.MagMin;
}

void SnapshotExtents()
{
    Session& s = S();
    s.FullHJDMin = s.HJDMin;
    s.FullHJDMax = s.HJDMax;
    s.FullHJDRange = s.HJDRange;
    s.FullIdxMagMin = s.IdxMagMin;
    s.FullIdxMagMax = s.IdxMagMax;
    s.FullMagMin = s.MagMin;
    s.FullMagMax = s.MagMax;
    s.FullMagRange = s.MagRange;
    s.FoldHJD = RoundTo(s.HJD(s.IdxMagMax), 4);
}

void ApplyMagSense(rt::Integer index)
{
    Session& s = S();
    s.MagSign = i16(1 - 2 * index);
    for (int i = 1; i <= s.NumOrig; ++i)
        s.OrigMag(i) = rt::fin(s.ReadMag(i) * s.MagSign);
    CompactPoints();
    UpdateExtents();
    SnapshotExtents();
}

void SetPickedDeleted(bool deleted)
{
    Session& s = S();
    s.Deleted(s.PickIdx) = deleted ? rt::True : rt::False;
    CompactPoints();
    UpdateExtents();
}

} // namespace dip
