// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "mainwindow/Journal.h"

#include "runtime/MsgBox.h"
#include "session/LoadDataFile.h"
#include "session/MainForm.h"
#include "session/Procedures.h"
#include "session/Session.h"

#include <QFile>
#include <QFileInfo>
#include <QList>
#include <QSaveFile>
#include <QStringList>

#include <cmath>
#include <cstdio>

namespace dip {

namespace {

const QByteArray versionPrefix = "Dipscope recovery journal ";
// Version 1 had no result rows.
constexpr int journalVersion = 3;

QByteArray quoted(const QString& text)
{
    QByteArray out = "\"";
    for (const char c : text.toUtf8()) {
        switch (c) {
        case '\\': out += "\\\\"; break;
        case '"': out += "\\\""; break;
        case '\n': out += "\\n"; break;
        case '\r': out += "\\r"; break;
        case '\t': out += "\\t"; break;
        default: out += c; break;
        }
    }
    return out + '"';
}

// The shortest text that reads back as the same double.
QByteArray exact(double value) { return QByteArray::number(value, 'g', 17); }

void note(const QString& line) { std::fprintf(stderr, "%s\n", line.toLocal8Bit().constData()); }

// Reading: each step takes one line and says what was wrong with it.
class Reader {
public:
    explicit Reader(const QByteArray& text)
    {
        m_lines = text.split('\n');
        // The last line ends with a line break like every other.
        if (!m_lines.isEmpty() && m_lines.last().isEmpty())
            m_lines.removeLast();
        for (QByteArray& line : m_lines)
            if (line.endsWith('\r'))
                line.chop(1);
    }

    bool failed() const { return !m_problem.isEmpty(); }
    int line() const { return m_line; }
    const QString& problem() const { return m_problem; }
    bool atEnd() const { return m_line >= m_lines.size(); }

    // The next line, which must start with prefix; gives what follows it.
    bool next(const QByteArray& prefix, QByteArray* rest)
    {
        if (failed())
            return false;
        if (m_line >= m_lines.size())
            return fail(m_lines.size() + 1, QStringLiteral("the journal ends before \"%1\"").arg(label(prefix)));
        const QByteArray& line = m_lines[m_line++];
        if (!line.startsWith(prefix))
            return fail(m_line, QStringLiteral("expected \"%1\"").arg(label(prefix)));
        *rest = line.mid(prefix.size());
        return true;
    }

    bool fail(int line, const QString& problem)
    {
        if (!failed()) {
            m_line = line;
            m_problem = problem;
        }
        return false;
    }
    bool fail(const QString& problem) { return fail(m_line, problem); }

    // A quoted text filling the rest of the line.
    bool text(const QByteArray& rest, QString* value)
    {
        if (rest.size() < 2 || !rest.startsWith('"') || !rest.endsWith('"'))
            return fail(QStringLiteral("a text in double quotes was expected"));
        QByteArray bytes;
        for (qsizetype i = 1; i < rest.size() - 1; ++i) {
            char c = rest[i];
            if (c == '"')
                return fail(QStringLiteral("a double quote inside a text must be written \\\""));
            if (c == '\\') {
                if (++i >= rest.size() - 1)
                    return fail(QStringLiteral("a text ends with a lone backslash"));
                switch (rest[i]) {
                case '\\': c = '\\'; break;
                case '"': c = '"'; break;
                case 'n': c = '\n'; break;
                case 'r': c = '\r'; break;
                case 't': c = '\t'; break;
                default: return fail(QStringLiteral("unknown escape \\%1 in a text").arg(QLatin1Char(rest[i])));
                }
            }
            bytes += c;
        }
        *value = QString::fromUtf8(bytes);
        if (value->toUtf8() != bytes)
            return fail(QStringLiteral("a text that is not UTF-8"));
        return true;
    }

    // A whole number in lo..hi.
    bool integer(const QByteArray& field, int lo, int hi, const QString& what, int* value)
    {
        bool ok = false;
        const int v = field.toInt(&ok);
        if (!ok || v < lo || v > hi || field.trimmed() != field || field.startsWith('+'))
            return fail(QStringLiteral("%1 must be a whole number from %2 to %3").arg(what).arg(lo).arg(hi));
        *value = v;
        return true;
    }

    bool number(const QByteArray& field, const QString& what, double* value)
    {
        bool ok = false;
        const double v = field.toDouble(&ok);
        if (!ok || field.trimmed() != field || !std::isfinite(v))
            return fail(QStringLiteral("%1 must be a number").arg(what));
        *value = v;
        return true;
    }

private:
    static QString label(const QByteArray& prefix)
    {
        return QString::fromLatin1(prefix.endsWith(": ") ? prefix.chopped(2) : prefix);
    }

    QList<QByteArray> m_lines;
    int m_line = 0;
    QString m_problem;
};

} // namespace

QString journalFileName() { return QStringLiteral("zzzdip.journal"); }

SessionJournal CaptureJournal(const rt::RuntimeError* error)
{
    const Session& s = S();
    MainForm& form = mainForm();
    SessionJournal j;
    if (error) {
        j.endedOnRuntimeError = true;
        j.errorNumber = error->number();
        j.errorText = error->text();
    }
    j.dataDir = s.DataDir;
    j.dataName = s.DataName;
    j.magSign = s.MagSign < 0 ? -1 : 1;
    for (int i = 1; i <= s.NumOrig; ++i)
        if (s.Deleted(i) != 0)
            j.deleted.push_back({i, s.ReadHJD(i), s.ReadMag(i)});
    for (int k = 1; k <= 16; ++k)
        j.texts[static_cast<std::size_t>(k - 1)] = form.text(k);
    for (int k = 1; k <= 6; ++k)
        j.ticks[static_cast<std::size_t>(k - 1)] = form.checked(k);
    for (int k = 1; k <= 6; ++k)
        j.rows[static_cast<std::size_t>(k - 1)] = s.Results(k);
    j.wholeDaysSubtracted = s.WholeDaysSubtracted;
    return j;
}

QByteArray JournalText(const SessionJournal& j)
{
    QByteArray out = versionPrefix + QByteArray::number(journalVersion) + '\n';
    if (j.endedOnRuntimeError)
        out += "Ended: run-time error " + QByteArray::number(j.errorNumber) + ' ' + quoted(j.errorText) + '\n';
    else
        out += "Ended: normally\n";
    out += "DataDir: " + quoted(j.dataDir) + '\n';
    out += "DataName: " + quoted(j.dataName) + '\n';
    out += "MagSign: " + QByteArray::number(j.magSign) + '\n';
    out += "Deleted: " + QByteArray::number(qsizetype(j.deleted.size())) + '\n';
    for (const JournalDeletion& d : j.deleted)
        out += QByteArray::number(d.index) + ',' + exact(d.time) + ',' + exact(d.mag) + '\n';
    for (int k = 1; k <= 16; ++k)
        out += "Text" + QByteArray::number(k) + ": " + quoted(j.texts[static_cast<std::size_t>(k - 1)]) + '\n';
    out += "Check: ";
    for (int k = 1; k <= 6; ++k)
        out += QByteArray(k > 1 ? "," : "") + (j.ticks[static_cast<std::size_t>(k - 1)] ? '1' : '0');
    out += '\n';
    for (int k = 1; k <= 6; ++k) {
        const ResultRow& row = j.rows[static_cast<std::size_t>(k - 1)];
        const QByteArray name = "Result" + QByteArray::number(k);
        out += name + ": " + (row.published ? '1' : '0') + ',' + (row.ticked ? '1' : '0') + ',' +
               QByteArray::number(row.trappedError) + ',' + exact(row.time) + ',' + exact(row.error) + ',' +
               exact(row.methodTime) + '\n';
        out += name + " time: " + quoted(row.timeText) + '\n';
        out += name + " error: " + quoted(row.errorText) + '\n';
        out += name + " boxes: " + QByteArray::number(row.extraTexts.size()) + '\n';
        for (const QString& box : row.extraTexts)
            out += quoted(box) + '\n';
    }
    out += QByteArray("WholeDays: ") + (j.wholeDaysSubtracted ? '1' : '0') + '\n';
    return out;
}

JournalParse ParseJournal(const QByteArray& text)
{
    JournalParse result;
    SessionJournal& j = result.journal;
    Reader in(text);
    QByteArray rest;

    // This version's journal, or one of an earlier version.
    const QByteArray current = versionPrefix + QByteArray::number(journalVersion);
    int version = 0;
    if (in.atEnd())
        in.fail(1, QStringLiteral("the journal ends before \"%1\"").arg(QString::fromLatin1(current)));
    else if (in.next("", &rest) && rest != current && rest != versionPrefix + '1' && rest != versionPrefix + '2')
        in.fail(QStringLiteral("expected \"%1\"").arg(QString::fromLatin1(current)));
    else
        version = rest.mid(versionPrefix.size()).toInt();

    if (in.next("Ended: ", &rest)) {
        const QByteArray error = "run-time error ";
        if (rest == "normally") {
            j.endedOnRuntimeError = false;
        } else if (rest.startsWith(error)) {
            const QByteArray tail = rest.mid(error.size());
            const qsizetype blank = tail.indexOf(' ');
            j.endedOnRuntimeError = true;
            if (blank < 0)
                in.fail(QStringLiteral("the run-time error needs its number and text"));
            else if (in.integer(tail.left(blank), 1, 65535, QStringLiteral("the error number"), &j.errorNumber))
                in.text(tail.mid(blank + 1), &j.errorText);
        } else {
            in.fail(QStringLiteral("\"Ended\" must be \"normally\" or a run-time error"));
        }
    }
    if (in.next("DataDir: ", &rest))
        in.text(rest, &j.dataDir);
    if (in.next("DataName: ", &rest))
        in.text(rest, &j.dataName);
    if (in.next("MagSign: ", &rest) && rest != "1" && rest != "-1")
        in.fail(QStringLiteral("\"MagSign\" must be 1 or -1"));
    else if (!in.failed())
        j.magSign = rest.toInt();

    int count = 0;
    if (in.next("Deleted: ", &rest))
        in.integer(rest, 0, 1000, QStringLiteral("the count of deleted points"), &count);
    for (int n = 0; n < count && !in.failed(); ++n) {
        if (in.atEnd()) {
            in.fail(in.line() + 1, QStringLiteral("the journal ends before its %1 deleted points").arg(count));
            break;
        }
        in.next("", &rest);
        const QList<QByteArray> fields = rest.split(',');
        JournalDeletion d;
        if (fields.size() != 3) {
            in.fail(QStringLiteral("a deleted point is its index, time and magnitude, separated by commas"));
        } else if (in.integer(fields[0], 1, 1000, QStringLiteral("the index of a deleted point"), &d.index) &&
                   in.number(fields[1], QStringLiteral("the time of a deleted point"), &d.time) &&
                   in.number(fields[2], QStringLiteral("the magnitude of a deleted point"), &d.mag)) {
            if (!j.deleted.empty() && d.index <= j.deleted.back().index)
                in.fail(QStringLiteral("the deleted points must be in ascending order of index"));
            j.deleted.push_back(d);
        }
    }

    for (int k = 1; k <= 16; ++k)
        if (in.next("Text" + QByteArray::number(k) + ": ", &rest))
            in.text(rest, &j.texts[static_cast<std::size_t>(k - 1)]);

    if (in.next("Check: ", &rest)) {
        const QList<QByteArray> fields = rest.split(',');
        if (fields.size() != 6)
            in.fail(QStringLiteral("\"Check\" needs six values, 0 or 1"));
        for (int k = 1; k <= 6 && !in.failed(); ++k) {
            const QByteArray& f = fields[k - 1];
            if (f != "0" && f != "1")
                in.fail(QStringLiteral("\"Check\" needs six values, 0 or 1"));
            j.ticks[static_cast<std::size_t>(k - 1)] = f == "1";
        }
    }
    for (int k = 1; k <= 6 && version >= 2 && !in.failed(); ++k) {
        ResultRow& row = j.rows[static_cast<std::size_t>(k - 1)];
        const QByteArray name = "Result" + QByteArray::number(k);
        if (in.next(name + ": ", &rest)) {
            const QList<QByteArray> fields = rest.split(',');
            // Version 2 has no method's time: its journals come from sessions without whole days
            // set apart, where the method's time is the time.
            const bool methodTime = version >= 3;
            const QString what =
                QStringLiteral("\"%1\" is published, ticked (0 or 1), the run-time error number, the time and the "
                               "error%2, separated by commas")
                    .arg(QString::fromLatin1(name), methodTime ? QStringLiteral(" and the method's time") : QString());
            int trapped = 0;
            if (fields.size() != (methodTime ? 6 : 5) || (fields[0] != "0" && fields[0] != "1") ||
                (fields[1] != "0" && fields[1] != "1"))
                in.fail(what);
            else if (in.integer(fields[2], 0, 65535, QStringLiteral("the run-time error of a result"), &trapped) &&
                     in.number(fields[3], QStringLiteral("the time of a result"), &row.time) &&
                     in.number(fields[4], QStringLiteral("the error of a result"), &row.error) &&
                     (!methodTime ||
                      in.number(fields[5], QStringLiteral("the method's time of a result"), &row.methodTime))) {
                row.published = fields[0] == "1";
                row.ticked = fields[1] == "1";
                row.trappedError = trapped;
                if (!methodTime)
                    row.methodTime = row.time;
            }
        }
        if (in.next(name + " time: ", &rest))
            in.text(rest, &row.timeText);
        if (in.next(name + " error: ", &rest))
            in.text(rest, &row.errorText);
        int boxes = 0;
        if (in.next(name + " boxes: ", &rest))
            in.integer(rest, 0, 100, QStringLiteral("the count of a result's boxes"), &boxes);
        for (int n = 0; n < boxes && !in.failed(); ++n) {
            if (in.atEnd()) {
                in.fail(in.line() + 1, QStringLiteral("the journal ends before the %1 boxes of \"%2\"")
                                           .arg(boxes)
                                           .arg(QString::fromLatin1(name)));
                break;
            }
            QString box;
            in.next("", &rest);
            if (in.text(rest, &box))
                row.extraTexts << box;
        }
    }
    if (version >= 3 && in.next("WholeDays: ", &rest)) {
        if (rest != "0" && rest != "1")
            in.fail(QStringLiteral("\"WholeDays\" must be 0 or 1"));
        j.wholeDaysSubtracted = rest == "1";
    }
    if (!in.failed() && !in.atEnd())
        in.fail(in.line() + 1, QStringLiteral("more lines than a journal has"));

    result.ok = !in.failed();
    result.line = in.line();
    result.problem = in.problem();
    if (!result.ok)
        result.journal = SessionJournal();
    return result;
}

QString WriteJournal(const SessionJournal& journal, const QString& path)
{
    try {
        // Written aside and then put in place, so that the old journal stays whole until the new
        // one is.
        QSaveFile file(path);
        if (!file.open(QIODevice::WriteOnly))
            return file.errorString();
        const QByteArray text = JournalText(journal);
        if (file.write(text) != text.size())
            return file.errorString();
        if (!file.commit())
            return file.errorString();
        return QString();
    } catch (const std::exception& e) {
        return QString::fromLocal8Bit(e.what());
    }
}

void SaveJournalAtEnd(const rt::RuntimeError* error)
{
    QString problem;
    try {
        problem = WriteJournal(CaptureJournal(error));
    } catch (const std::exception& e) {
        problem = QString::fromLocal8Bit(e.what());
    }
    if (!problem.isEmpty())
        note(QStringLiteral("dipscope: %1: the recovery journal cannot be written: %2")
                 .arg(journalFileName(), problem.replace(QLatin1Char('\n'), QLatin1Char(' '))));
}

JournalOffer CheckJournal(const QString& path)
{
    JournalOffer offer;
    QFile file(path);
    if (!file.exists()) {
        offer.note = QStringLiteral("dipscope: %1: no recovery journal; nothing to restore").arg(path);
        return offer;
    }
    if (!file.open(QIODevice::ReadOnly)) {
        offer.note =
            QStringLiteral("dipscope: %1: cannot be read (%2); the journal is ignored").arg(path, file.errorString());
        return offer;
    }
    const JournalParse parsed = ParseJournal(file.readAll());
    if (!parsed.ok) {
        offer.note = QStringLiteral("dipscope: %1 line %2: %3; the journal is ignored")
                         .arg(path)
                         .arg(parsed.line)
                         .arg(parsed.problem);
        return offer;
    }
    if (!parsed.journal.endedOnRuntimeError)
        return offer;
    const SessionJournal& j = parsed.journal;
    if (!j.dataName.isEmpty()) {
        const QString data = DataPathOf(j.dataDir, j.dataName);
        if (!QFileInfo(data).isFile()) {
            offer.note = QStringLiteral("dipscope: %1: the data file %2 no longer exists; the journal is ignored")
                             .arg(path, data);
            return offer;
        }
    }
    offer.offer = true;
    offer.journal = j;
    return offer;
}

QString RestoreQuestion(const SessionJournal& j)
{
    QString what;
    if (j.dataName.isEmpty()) {
        what = QStringLiteral("the results and means as they were (no data file was loaded)");
    } else {
        const int n = int(j.deleted.size());
        what = QStringLiteral("%1 with %2 and the results and means as they were")
                   .arg(DataPathOf(j.dataDir, j.dataName),
                        n == 1 ? QStringLiteral("1 deleted point") : QStringLiteral("%1 deleted points").arg(n));
        if (j.magSign < 0)
            what.replace(QStringLiteral(" with "), QStringLiteral(", \"-Mags (inverted)\", with "));
    }
    return QStringLiteral("Dipscope ended on run-time error %1 (%2) last time.\n\nRestore that session: %3?")
        .arg(j.errorNumber)
        .arg(j.errorText, what);
}

RestoreOutcome RestoreJournal(const SessionJournal& j)
{
    RestoreOutcome outcome;
    Session& s = S();
    MainForm& form = mainForm();
    if (!j.dataName.isEmpty()) {
        // The file is read as it was: with its whole days set apart or not, so that the times
        // of the deleted points and the results' offset are those of that session.
        s.SubtractWholeDays = j.wholeDaysSubtracted;
        const QString dir = s.DataDir, name = s.DataName, path = s.DataPath;
        try {
            outcome.loaded = OpenDataFile(j.dataDir, j.dataName);
        } catch (const rt::RuntimeError& error) {
            // The file changed into one the reader cannot take: nothing was loaded, and the
            // session keeps the names it had.
            s.DataDir = dir;
            s.DataName = name;
            s.DataPath = path;
            outcome.problem = rt::reportText(error).replace(QStringLiteral("\n\n"), QStringLiteral(" "));
        }
    }
    if (outcome.loaded) {
        if (j.magSign < 0) {
            // As choosing "-Mags (inverted)" does, before the deletions: the editor's scale and
            // the methods' reference point are those of the whole file in that sign.
            form.showMagOption(1);
            ApplyMagSense(1);
        }
        for (const JournalDeletion& d : j.deleted) {
            if (d.index <= s.NumOrig && s.ReadHJD(d.index) == d.time && s.ReadMag(d.index) == d.mag) {
                s.PickIdx = rt::Integer(d.index);
                SetPickedDeleted(true);
            } else {
                outcome.skipped.push_back(d.index);
            }
        }
    }
    // The rows as the methods left them, then the boxes as the user left them: a value typed over
    // a result stays typed, and the row keeps the number the method published.
    for (int k = 1; k <= 6; ++k)
        s.Results(k) = j.rows[static_cast<std::size_t>(k - 1)];
    for (int k = 1; k <= 16; ++k)
        form.setText(k, j.texts[static_cast<std::size_t>(k - 1)]);
    for (int k = 1; k <= 6; ++k)
        form.setChecked(k, j.ticks[static_cast<std::size_t>(k - 1)]);

    const QString data = DataPathOf(j.dataDir, j.dataName);
    if (!outcome.problem.isEmpty()) {
        rt::MsgBox(QStringLiteral("%1 could not be read again (%2). The results and means of the last session "
                                  "are restored; the light curve is not.")
                       .arg(data, outcome.problem));
    } else if (!outcome.skipped.empty()) {
        QStringList points;
        for (const int i : outcome.skipped)
            points << QString::number(i);
        const bool one = points.size() == 1;
        rt::MsgBox(QStringLiteral("%1 has changed since the last session: %2 %3 no longer %4 the time and magnitude "
                                  "%5 held, so %6 not deleted again. Every other deletion, the results and the means "
                                  "are restored.")
                       .arg(data, one ? QStringLiteral("point") : QStringLiteral("points"),
                            points.join(QStringLiteral(", ")), one ? QStringLiteral("holds") : QStringLiteral("hold"),
                            one ? QStringLiteral("it") : QStringLiteral("they"),
                            one ? QStringLiteral("it is") : QStringLiteral("they are")));
    }
    return outcome;
}

bool OfferJournalRestore(const QString& path)
{
    const JournalOffer offer = CheckJournal(path);
    if (!offer.note.isEmpty())
        note(offer.note);
    if (!offer.offer || !rt::AskYesNo(RestoreQuestion(offer.journal)))
        return false;
    RestoreJournal(offer.journal);
    return true;
}

} // namespace dip
