// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// Sequential input of a comma-separated text file, as the data reader uses it: whole lines, and
// a stream of fields in which a comma and a line end both end a field.
//
// Lines end at LF, CRLF or CR; a line end is never part of a line. Blank lines (empty, or only
// blanks and tabs) are skipped everywhere and never count as lines or rows.

#include <QByteArray>
#include <QString>

#include <vector>

namespace dip {

class CsvInput {
public:
    // Opens path for reading: a missing folder raises "Path not found" (76), a missing or
    // unreadable file "File not found" (53).
    explicit CsvInput(const QString& path);

    // The next line that is not blank; at the end of the file raises "Input past end of
    // file" (62).
    QString lineInput();

    // One field: leading blanks skipped; a quoted field runs to the closing quote and the rest
    // up to the comma or line end is dropped; an unquoted one runs to the next comma or line
    // end, trailing blanks dropped. Raises 62 when no field is left.
    struct Field {
        QString text;
        bool quoted = false;
    };
    Field input();

    // True when nothing but blank lines remains.
    bool eof();

    // The file's number (from 1, blank lines counted) of the line the next line or field comes
    // from; the last line's number at the end of the file. For messages only.
    int lineNumber() const;

private:
    void splitLines(const QByteArray& data);

    std::vector<QString> m_lines; // the lines that are not blank
    std::vector<int> m_numbers;   // their numbers in the file
    int m_lineCount = 0;          // the lines of the file, blank ones included
    std::size_t m_line = 0;       // the current line
    int m_pos = 0;                // where the next field starts in the current line
    bool m_fieldPending = false;  // a comma ended the last field, so one more field follows
};

} // namespace dip
