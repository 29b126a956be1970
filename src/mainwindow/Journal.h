// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The recovery journal "zzzdip.journal", beside the settings file: what a session held when the
// program ended, so that a run-time error loses nothing. It is written by every way the program
// ends (a run-time error, File > Exit, closing the main window) and read at the next start; when
// that run ended on a run-time error the user is offered the session back. The settings file is
// not touched by any of this.
//
// The file is text, one item a line, in UTF-8:
//
//     Dipscope recovery journal 3
//     Ended: run-time error 11 "Division by zero"      (or: Ended: normally)
//     DataDir: "/home/obs/data"
//     DataName: "curve.csv"
//     MagSign: -1
//     Deleted: 2
//     3,0.41500000000000004,12.000299999999999        (index, its time and magnitude as read)
//     17,0.48499999999999999,12.5891
//     Text1: "0.51234"
//     ...                                             (Text1 .. Text16, each a quoted text)
//     Check: 1,0,0,0,1,0
//     Result1: 1,1,0,0.51234012345678901,0.00012345,0.51234012345678901
//     Result1 time: "0.51234"                         (the result row of method 1: published,
//     Result1 error: "0.00012"                         ticked, the run-time error its trap
//     Result1 boxes: 0                                 caught, time, error and the method's own
//     ...                                              time (without HJDOffset) in full; the texts
//     Result6 boxes: 0                                 it was shown with; the window's boxes after
//                                                      its compute, one quoted text a line)
//     WholeDays: 0                                    (1: the file was loaded with its whole days
//                                                      set apart, HJDOffset holding them)
//
// Texts are quoted, with \\ \" \n \r \t as the only escapes. Anything else is a damaged journal.
// A journal of version 1 (from before the result rows) ends after "Check" and is read as one
// whose rows were empty; one of version 2 has no method's times and no "WholeDays" (read as 0,
// the method's time being the time).

#include "runtime/RuntimeError.h"
#include "session/ResultTable.h"

#include <QByteArray>
#include <QString>

#include <array>
#include <vector>

namespace dip {

// A deleted point: its index in the file and the time and magnitude that row held, so that a
// deletion is only applied again to the same row.
struct JournalDeletion {
    int index = 0;
    double time = 0;
    double mag = 0;
    friend bool operator==(const JournalDeletion& a, const JournalDeletion& b)
    {
        return a.index == b.index && a.time == b.time && a.mag == b.mag;
    }
};

struct SessionJournal {
    bool endedOnRuntimeError = false;
    int errorNumber = 0;
    QString errorText;
    QString dataDir; // DataDir and DataName as the open dialog set them; empty: no file
    QString dataName;
    int magSign = 1; // +1 "+Mags", -1 "-Mags (inverted)"
    std::vector<JournalDeletion> deleted;
    std::array<QString, 16> texts; // the main window's Text1 .. Text16 (results, errors, means)
    std::array<bool, 6> ticks{};   // Check1 .. Check6
    // The session's result rows 1..6 as the methods left them: the numbers in full beside the
    // texts the boxes show (which the user may have typed over).
    std::array<ResultRow, 6> rows;
    // The file was loaded with "Subtract whole days": it is read again so.
    bool wholeDaysSubtracted = false;
};

// "zzzdip.journal": relative, beside "zzzdip.ini" in the folder the program was started in.
QString journalFileName();

// The session and the main window's boxes as they stand; error is the run-time error that ends
// the program, or nullptr for a normal end.
SessionJournal CaptureJournal(const rt::RuntimeError* error);

QByteArray JournalText(const SessionJournal& journal);

struct JournalParse {
    bool ok = false;
    SessionJournal journal;
    int line = 0; // 1-based line of the first problem
    QString problem;
};
JournalParse ParseJournal(const QByteArray& text);

// Writes the journal (replacing the file as a whole); returns what went wrong, or an empty text.
// Never raises.
QString WriteJournal(const SessionJournal& journal, const QString& path = journalFileName());

// On the way out: the journal of the session as it stands. A journal that cannot be written is
// one line on standard error; the program's end goes on as it would.
void SaveJournalAtEnd(const rt::RuntimeError* error);

// What start-up makes of the journal: whether to offer the session back, and the one line for
// standard error when the journal is ignored (missing, damaged, or naming a data file that no
// longer exists). A journal of a run that ended normally is neither offered nor reported.
struct JournalOffer {
    bool offer = false;
    SessionJournal journal;
    QString note;
};
JournalOffer CheckJournal(const QString& path = journalFileName());

// The question that offers the session back.
QString RestoreQuestion(const SessionJournal& journal);

struct RestoreOutcome {
    bool loaded = false;      // the data file was read again
    std::vector<int> skipped; // deletions not applied: their row is no longer the same
    QString problem;          // a run-time error of the reader, trapped
};

// "Yes": the data file through the open dialog's path (OpenDataFile), "-Mags (inverted)" as its
// option does, each deletion as the editor's "Delete" does (PickIdx, then the delete procedure),
// then the six result rows, the sixteen boxes and six ticks as they were. A deletion whose row no longer holds the
// time and magnitude it held is not applied, and one message names those points; a file the
// reader can no longer read is one message too, and the boxes are restored all the same.
RestoreOutcome RestoreJournal(const SessionJournal& journal);

// The whole start-up offer: CheckJournal, its line on standard error, the question, and on "Yes"
// RestoreJournal. Returns whether the session was restored.
bool OfferJournalRestore(const QString& path = journalFileName());

} // namespace dip
