// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "mainwindow/ErrorTable.h"

#include "session/Session.h"

namespace dip {

void FillErrorText()
{
    // Two texts (72 and 74) lack the final full stop; they are kept as the table holds them.
    static const struct {
        int number;
        const char* text;
    } table[] = {
        {4, "Error 4: Out of data."},
        {6, "Error 6: Overflow."},
        {7, "Error 7: Out of memory."},
        {9, "Error 9: Subscript out of range."},
        {24, "Error 24: Device timeout."},
        {25, "Error 25: Device fault."},
        {27, "Error 27: Out of paper."},
        {52, "Error 52: Bad file name or number."},
        {53, "Error 53: File not found."},
        {54, "Error 54: Bad file mode."},
        {55, "Error 55: File already open."},
        {57, "Error 57: Device I/O error."},
        {58, "Error 58: File already exists."},
        {61, "Error 61: Disk full."},
        {62, "Error 62: Input past end of file."},
        {64, "Error 64: Bad file name."},
        {67, "Error 67: Too many files."},
        {68, "Error 68: Device unavailable."},
        {70, "Error 70: Permission denied."},
        {71, "Error 71: Disk not ready."},
        {72, "Error 72: Disk media error"},
        {74, "Error 74: Rename across disks"},
        {75, "Error 75: Path/file access error."},
        {76, "Error 76: Path not found."},
        {321, "Error 321: Invalid file format."},
        {708, "Error 708: File not found."},
        {712, "Error 712: Device I/O error."},
        {716, "Error 716: Disk full."},
        {719, "Error 719: Bad file name."},
        {725, "Error 725: Permission denied."},
        {730, "Error 730: Path access error."},
        {731, "Error 731: Path not found."},
    };
    Session& s = S();
    for (const auto& entry : table)
        s.ErrorText(entry.number) = QString::fromLatin1(entry.text);
}

} // namespace dip
