// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "mainwindow/Journal.h"
#include "session/LoadDataFile.h"
#include "session/MainForm.h"
#include "session/Procedures.h"
#include "session/Results.h"
#include "session/Session.h"
#include "support/TestSupport.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>

using namespace dip;
using namespace dip::test;

Q_DECLARE_METATYPE(dip::SessionJournal)

namespace {

// The session's result rows as they stand.
std::array<ResultRow, 6> sessionRows()
{
    std::array<ResultRow, 6> rows;
    for (int k = 1; k <= 6; ++k)
        rows[std::size_t(k - 1)] = S().Results(k);
    return rows;
}

bool sameJournal(const SessionJournal& a, const SessionJournal& b)
{
    return a.endedOnRuntimeError == b.endedOnRuntimeError && a.errorNumber == b.errorNumber &&
           a.errorText == b.errorText && a.dataDir == b.dataDir && a.dataName == b.dataName && a.magSign == b.magSign &&
           a.deleted == b.deleted && a.texts == b.texts && a.ticks == b.ticks && a.rows == b.rows && a.wholeDaysSubtracted == b.wholeDaysSubtracted;
}

SessionJournal sample()
{
    SessionJournal j;
    j.endedOnRuntimeError = true;
    j.errorNumber = 11;
    j.errorText = QStringLiteral("Division by zero");
    j.dataDir = QStringLiteral("/obs/night 1");
    j.dataName = QStringLiteral("curve.csv");
    j.magSign = -1;
    j.deleted = {{3, 0.415, 12.0003}, {17, 2454123.4851234567, -1.5}};
    j.texts[0] = QStringLiteral("0.51234");
    j.texts[6] = QStringLiteral("0.00012");
    j.texts[12] = QStringLiteral("0.51230");
    j.ticks[0] = true;
    j.ticks[4] = true;
    // The parabola's result, typed over in its time box; the Fourier fit's with its eight boxes;
    // the sliding integrations' trapped run-time error.
    ResultRow& parabola = j.rows[0];
    parabola.published = true;
    parabola.ticked = true;
    parabola.time = 0.51234012345678901;
    parabola.methodTime = parabola.time;
    parabola.error = 0.00012345;
    parabola.timeText = QStringLiteral("0.51234");
    parabola.errorText = QStringLiteral("0.00012");
    ResultRow& fourier = j.rows[4];
    fourier.published = true;
    fourier.time = 2451234.5678;
    fourier.methodTime = 0.5678; // the whole days set apart in HJDOffset
    fourier.error = 0.25;
    fourier.timeText = QStringLiteral("2451234.56780");
    fourier.errorText = QStringLiteral("0.25000");
    fourier.extraTexts = QStringList{"2451234.56780", "a \"b\"", "", "x", "y", "z", "w", "v"};
    j.rows[5].trappedError = 11;
    j.wholeDaysSubtracted = true;
    return j;
}

// The sample's text of version 1 (no result rows), written out by hand.
QByteArray sampleTextVersion1()
{
    QByteArray t = "Dipscope recovery journal 1\n"
                   "Ended: run-time error 11 \"Division by zero\"\n"
                   "DataDir: \"/obs/night 1\"\n"
                   "DataName: \"curve.csv\"\n"
                   "MagSign: -1\n"
                   "Deleted: 2\n"
                   "3,0.41499999999999998,12.000299999999999\n"
                   "17,2454123.4851234569,-1.5\n";
    for (int k = 1; k <= 16; ++k) {
        const char* value = k == 1 ? "0.51234" : k == 7 ? "0.00012" : k == 13 ? "0.51230" : "";
        t += "Text" + QByteArray::number(k) + ": \"" + value + "\"\n";
    }
    return t + "Check: 1,0,0,0,1,0\n";
}

// The sample's text of version 2 (no method's times, no whole days), written out by hand.
QByteArray sampleTextVersion2()
{
    QByteArray t = sampleTextVersion1().replace("journal 1\n", "journal 2\n");
    t += "Result1: 1,1,0,0.51234012345678903,0.00012344999999999999\n"
         "Result1 time: \"0.51234\"\n"
         "Result1 error: \"0.00012\"\n"
         "Result1 boxes: 0\n";
    for (const char* k : {"2", "3", "4"})
        t += QByteArray("Result") + k + ": 0,0,0,0,0\nResult" + k + " time: \"\"\nResult" + k + " error: \"\"\nResult" +
             k + " boxes: 0\n";
    t += "Result5: 1,0,0,2451234.5677999998,0.25\n"
         "Result5 time: \"2451234.56780\"\n"
         "Result5 error: \"0.25000\"\n"
         "Result5 boxes: 8\n"
         "\"2451234.56780\"\n"
         "\"a \\\"b\\\"\"\n"
         "\"\"\n"
         "\"x\"\n\"y\"\n\"z\"\n\"w\"\n\"v\"\n";
    return t + "Result6: 0,0,11,0,0\nResult6 time: \"\"\nResult6 error: \"\"\nResult6 boxes: 0\n";
}

// The sample's text: each result line ends with the method's time, and the whole days line.
QByteArray sampleText()
{
    return sampleTextVersion2()
               .replace("journal 2\n", "journal 3\n")
               .replace("Result1: 1,1,0,0.51234012345678903,0.00012344999999999999\n",
                        "Result1: 1,1,0,0.51234012345678903,0.00012344999999999999,0.51234012345678903\n")
               .replace(": 0,0,0,0,0\n", ": 0,0,0,0,0,0\n")
               .replace("Result5: 1,0,0,2451234.5677999998,0.25\n",
                        "Result5: 1,0,0,2451234.5677999998,0.25,0.56779999999999997\n")
               .replace("Result6: 0,0,11,0,0\n", "Result6: 0,0,11,0,0,0\n") +
           "WholeDays: 1\n";
}

// A curve of n points with a dip at 0.5.
QByteArray curve(int n)
{
    std::vector<std::pair<double, double>> p;
    for (int i = 1; i <= n; ++i) {
        const double t = 0.4 + 0.005 * i;
        p.emplace_back(t, 12.0 + 0.6 * std::exp(-std::pow((t - 0.5) / 0.03, 2)) + 0.0001 * i);
    }
    return csv(p);
}

void writeFile(const QString& path, const QByteArray& content)
{
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    f.write(content);
}

// What a restore must give back: the light curve as the session holds it.
struct CurveState {
    int numOrig = 0, numPts = 0, magSign = 0, idxMagMax = 0, fullIdxMagMax = 0;
    QList<double> hjd, mag;
    QList<int> deleted;
    double fullMagMin = 0, fullMagRange = 0, foldHJD = 0, hjdMin = 0, magMax = 0;
    bool operator==(const CurveState& o) const
    {
        return numOrig == o.numOrig && numPts == o.numPts && magSign == o.magSign && idxMagMax == o.idxMagMax &&
               fullIdxMagMax == o.fullIdxMagMax && hjd == o.hjd && mag == o.mag && deleted == o.deleted &&
               fullMagMin == o.fullMagMin && fullMagRange == o.fullMagRange && foldHJD == o.foldHJD &&
               hjdMin == o.hjdMin && magMax == o.magMax;
    }
};

CurveState curveState()
{
    const Session& s = S();
    CurveState c;
    c.numOrig = s.NumOrig;
    c.numPts = s.NumPts;
    c.magSign = s.MagSign;
    c.idxMagMax = s.IdxMagMax;
    c.fullIdxMagMax = s.FullIdxMagMax;
    for (int i = 1; i <= s.NumPts; ++i) {
        c.hjd << s.HJD(i);
        c.mag << s.Mag(i);
    }
    for (int i = 1; i <= s.NumOrig; ++i)
        c.deleted << s.Deleted(i);
    c.fullMagMin = s.FullMagMin;
    c.fullMagRange = s.FullMagRange;
    c.foldHJD = s.FoldHJD;
    c.hjdMin = s.HJDMin;
    c.magMax = s.MagMax;
    return c;
}

void deletePoint(int i)
{
    S().PickIdx = rt::Integer(i);
    SetPickedDeleted(true);
}

} // namespace

class JournalTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { freshSession(); }
    void fileName() { QCOMPARE(journalFileName(), QStringLiteral("zzzdip.journal")); }
    void textOfAJournal();
    void roundTrip_data();
    void roundTrip();
    void damaged_data();
    void damaged();
    void captureFromTheSession();
    void writeReplacesAndReportsFailure();
    void check_data();
    void check();
    void restoreGivesTheSessionBack_data();
    void restoreGivesTheSessionBack();
    void restoreWithWholeDaysSetApart();
    void restoreOfAChangedFile();
    void restoreOfAnUnreadableFile();
    void restoreWithoutDataFile();
    void questionNamesTheSession();
};

void JournalTest::textOfAJournal()
{
    QCOMPARE(JournalText(sample()), sampleText());
    const JournalParse parsed = ParseJournal(sampleText());
    QVERIFY2(parsed.ok, qPrintable(parsed.problem));
    QVERIFY(sameJournal(parsed.journal, sample()));
    // Line breaks of Windows read the same.
    QVERIFY(ParseJournal(QByteArray(sampleText()).replace("\n", "\r\n")).ok);
    // A journal of version 1 reads as one whose result rows were empty.
    const JournalParse old = ParseJournal(sampleTextVersion1());
    QVERIFY2(old.ok, qPrintable(old.problem));
    SessionJournal withoutRows = sample();
    withoutRows.rows = {};
    withoutRows.wholeDaysSubtracted = false;
    QVERIFY(sameJournal(old.journal, withoutRows));
    // One of version 2: no whole days set apart, each method's time is its time.
    const JournalParse two = ParseJournal(sampleTextVersion2());
    QVERIFY2(two.ok, qPrintable(two.problem));
    SessionJournal beforeWholeDays = sample();
    beforeWholeDays.wholeDaysSubtracted = false;
    for (ResultRow& row : beforeWholeDays.rows)
        row.methodTime = row.time;
    QVERIFY(beforeWholeDays.rows[4].methodTime != sample().rows[4].methodTime);
    QVERIFY(sameJournal(two.journal, beforeWholeDays));
}

void JournalTest::roundTrip_data()
{
    QTest::addColumn<SessionJournal>("journal");
    QTest::newRow("sample") << sample();
    QTest::newRow("a fresh start, ended normally") << SessionJournal();
    SessionJournal quotes = sample();
    quotes.texts[1] = QStringLiteral("a \"quoted\" \\ back\\slash,\ttab\nnew line\r");
    quotes.dataName = QStringLiteral("Été,\"δ Cep\".csv");
    quotes.errorText = QString();
    QTest::newRow("quotes, escapes, commas and non-ASCII") << quotes;
    SessionJournal many;
    many.endedOnRuntimeError = true;
    many.errorNumber = 9;
    many.errorText = QStringLiteral("Subscript out of range");
    many.dataName = QStringLiteral("big.csv");
    for (int i = 1; i <= 1000; ++i)
        many.deleted.push_back({i, 2459000.0 + i / 7.0, -0.1 * i});
    many.ticks.fill(true);
    QTest::newRow("every point of a full file deleted") << many;
}

void JournalTest::roundTrip()
{
    QFETCH(SessionJournal, journal);
    const JournalParse parsed = ParseJournal(JournalText(journal));
    QVERIFY2(parsed.ok, qPrintable(QStringLiteral("line %1: %2").arg(parsed.line).arg(parsed.problem)));
    QVERIFY(sameJournal(parsed.journal, journal));
}

void JournalTest::damaged_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("line");
    QTest::addColumn<QString>("problem");
    const QByteArray good = sampleText();
    auto replaced = [&](const char* from, const char* to) { return QByteArray(good).replace(from, to); };
    QTest::newRow("empty file") << QByteArray() << 1 << "the journal ends before \"Dipscope recovery journal 3\"";
    QTest::newRow("not a journal") << QByteArray("1,2,3,4\n") << 1 << "expected \"Dipscope recovery journal 3\"";
    QTest::newRow("another version") << replaced("journal 3\n", "journal 4\n") << 1
                                     << "expected \"Dipscope recovery journal 3\"";
    QTest::newRow("ended how") << replaced("Ended: run-time error 11", "Ended: somehow 11") << 2
                               << "\"Ended\" must be \"normally\" or a run-time error";
    QTest::newRow("error without text") << replaced("error 11 \"Division by zero\"", "error 11") << 2
                                        << "the run-time error needs its number and text";
    QTest::newRow("error number not a number")
        << replaced("error 11 ", "error x1 ") << 2 << "the error number must be a whole number from 1 to 65535";
    QTest::newRow("missing DataDir") << replaced("DataDir: \"/obs/night 1\"\n", "") << 3 << "expected \"DataDir\"";
    QTest::newRow("unquoted text") << replaced("\"/obs/night 1\"", "/obs/night 1") << 3
                                   << "a text in double quotes was expected";
    QTest::newRow("quote inside a text") << replaced("\"curve.csv\"", "\"cur\"ve.csv\"") << 4
                                         << "a double quote inside a text must be written \\\"";
    QTest::newRow("unknown escape") << replaced("\"curve.csv\"", "\"curve\\x.csv\"") << 4
                                    << "unknown escape \\x in a text";
    QTest::newRow("sign 0") << replaced("MagSign: -1", "MagSign: 0") << 5 << "\"MagSign\" must be 1 or -1";
    QTest::newRow("count beyond 1000") << replaced("Deleted: 2", "Deleted: 1001") << 6
                                       << "the count of deleted points must be a whole number from 0 to 1000";
    QTest::newRow("index 0") << replaced("\n3,0.41", "\n0,0.41") << 7
                             << "the index of a deleted point must be a whole number from 1 to 1000";
    QTest::newRow("index 1001") << replaced("\n17,", "\n1001,") << 8
                                << "the index of a deleted point must be a whole number from 1 to 1000";
    QTest::newRow("time not a number") << replaced(",0.41499999999999998,", ",x,") << 7
                                       << "the time of a deleted point must be a number";
    QTest::newRow("magnitude missing") << replaced(",-1.5\n", "\n") << 8
                                       << "a deleted point is its index, time and magnitude, separated by commas";
    QTest::newRow("indexes out of order")
        << replaced("\n17,", "\n2,") << 8 << "the deleted points must be in ascending order of index";
    QTest::newRow("fewer deleted points than counted")
        << replaced("Deleted: 2", "Deleted: 3") << 9
        << "a deleted point is its index, time and magnitude, separated by commas";
    QTest::newRow("a text box missing") << replaced("Text9: \"\"\n", "") << 17 << "expected \"Text9\"";
    QTest::newRow("five ticks") << replaced("Check: 1,0,0,0,1,0", "Check: 1,0,0,0,1") << 25
                                << "\"Check\" needs six values, 0 or 1";
    QTest::newRow("tick 2") << replaced("Check: 1,0,0,0,1,0", "Check: 1,0,2,0,1,0") << 25
                            << "\"Check\" needs six values, 0 or 1";
    QTest::newRow("cut short") << good.left(good.indexOf("Text5")) << 13 << "the journal ends before \"Text5\"";
    QTest::newRow("version 1 with result rows")
        << replaced("journal 3\n", "journal 1\n") << 26 << "more lines than a journal has";
    QTest::newRow("version 2 without result rows")
        << good.left(good.indexOf("Result1")) << 26 << "the journal ends before \"Result1\"";
    QTest::newRow("a result's flag 2") << replaced("Result1: 1,1,", "Result1: 1,2,") << 26
                                       << "\"Result1\" is published, ticked (0 or 1), the run-time error number, the "
                                          "time and the error and the method's time, separated by commas";
    QTest::newRow("a result's time not a number")
        << replaced("Result1: 1,1,0,0.5123", "Result1: 1,1,0,x0.5123") << 26 << "the time of a result must be a number";
    QTest::newRow("a result's method time missing")
        << replaced("Result6: 0,0,11,0,0,0\n", "Result6: 0,0,11,0,0\n") << 54
        << "\"Result6\" is published, ticked (0 or 1), the run-time error number, the time and the error and the "
           "method's time, separated by commas";
    QTest::newRow("a result's method time not a number")
        << replaced(",0.25,0.5677", ",0.25,x0.5677") << 42 << "the method's time of a result must be a number";
    QTest::newRow("version 2 with the method's times")
        << replaced("journal 3\n", "journal 2\n") << 26
        << "\"Result1\" is published, ticked (0 or 1), the run-time error number, the time and the error, separated "
           "by commas";
    QTest::newRow("a result's text unquoted") << replaced("Result1 error: \"0.00012\"", "Result1 error: 0.00012") << 28
                                              << "a text in double quotes was expected";
    QTest::newRow("fewer boxes than counted")
        << replaced("Result5 boxes: 8", "Result5 boxes: 9") << 54 << "a text in double quotes was expected";
    QTest::newRow("boxes cut short") << good.left(good.indexOf("\"y\"")) << 50
                                     << "the journal ends before the 8 boxes of \"Result5\"";
    QTest::newRow("a box count beyond 100") << replaced("Result5 boxes: 8", "Result5 boxes: 101") << 45
                                            << "the count of a result's boxes must be a whole number from 0 to 100";
    QTest::newRow("whole days 2") << replaced("WholeDays: 1", "WholeDays: 2") << 58
                                  << "\"WholeDays\" must be 0 or 1";
    QTest::newRow("whole days missing") << good.left(good.indexOf("WholeDays")) << 58
                                        << "the journal ends before \"WholeDays\"";
    QTest::newRow("a line too many") << good + "Text17: \"\"\n" << 59 << "more lines than a journal has";
}

void JournalTest::damaged()
{
    QFETCH(QByteArray, text);
    QFETCH(int, line);
    QFETCH(QString, problem);
    const JournalParse parsed = ParseJournal(text);
    QVERIFY(!parsed.ok);
    QCOMPARE(parsed.problem, problem);
    QCOMPARE(parsed.line, line);
    QVERIFY(sameJournal(parsed.journal, SessionJournal()));
}

void JournalTest::captureFromTheSession()
{
    QVERIFY(loadText(curve(30), QStringLiteral("night.csv")));
    deletePoint(4);
    deletePoint(21);
    ApplyMagSense(1);
    MainForm& form = mainForm();
    for (int k = 1; k <= 16; ++k)
        form.setText(k, QStringLiteral("box %1").arg(k));
    form.setChecked(2, true);
    form.setChecked(6, true);
    PublishResult(4, 0.4987654321, 0.000321);
    SetResultExtras(4, QStringList{"a", "b"});
    SetTrappedError(6, 11);
    const rt::RuntimeError error(6);
    const SessionJournal j = CaptureJournal(&error);
    QVERIFY(j.endedOnRuntimeError);
    QCOMPARE(j.errorNumber, 6);
    QCOMPARE(j.errorText, QStringLiteral("Overflow"));
    QCOMPARE(j.dataDir, S().DataDir);
    QCOMPARE(j.dataName, QStringLiteral("night.csv"));
    QCOMPARE(j.magSign, -1);
    const std::vector<JournalDeletion> expected = {{4, S().ReadHJD(4), S().ReadMag(4)},
                                                   {21, S().ReadHJD(21), S().ReadMag(21)}};
    QVERIFY(j.deleted == expected);
    QCOMPARE(j.texts[15], QStringLiteral("box 16"));
    QCOMPARE(j.texts[0], QStringLiteral("box 1"));
    QCOMPARE(j.ticks, (std::array<bool, 6>{false, true, false, true, false, true})); // the publish ticked 4
    // The rows as the methods left them, whatever the boxes now show.
    QVERIFY(j.rows == sessionRows());
    QVERIFY(j.rows[3].published);
    QCOMPARE(j.rows[3].time, 0.4987654321);
    QCOMPARE(j.rows[3].timeText, QStringLiteral("0.49877"));
    QCOMPARE(j.rows[3].extraTexts, (QStringList{"a", "b"}));
    QCOMPARE(j.rows[5].trappedError, 11);
    QVERIFY(!CaptureJournal(nullptr).endedOnRuntimeError);
}

void JournalTest::writeReplacesAndReportsFailure()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("zzzdip.journal"));
    writeFile(path, "old and longer than the new one ...........................................................");
    QCOMPARE(WriteJournal(SessionJournal(), path), QString());
    QFile f(path);
    QVERIFY(f.open(QIODevice::ReadOnly));
    QCOMPARE(f.readAll(), JournalText(SessionJournal()));
    // A folder in the way: the failure is told, not raised.
    QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("blocked")));
    QVERIFY(!WriteJournal(SessionJournal(), dir.filePath(QStringLiteral("blocked"))).isEmpty());
}

void JournalTest::check_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("offer");
    QTest::addColumn<QString>("note");
    QTest::newRow("missing") << "missing" << false << "dipscope: %1: no recovery journal; nothing to restore";
    QTest::newRow("damaged") << "damaged" << false
                             << "dipscope: %1 line 5: \"MagSign\" must be 1 or -1; the journal is ignored";
    QTest::newRow("data file gone") << "gone" << false
                                    << "dipscope: %1: the data file %2 no longer exists; the journal is ignored";
    QTest::newRow("ended normally") << "normal" << false << "";
    QTest::newRow("ended on a run-time error") << "error" << true << "";
    QTest::newRow("ended on a run-time error with no file loaded") << "nofile" << true << "";
}

void JournalTest::check()
{
    QFETCH(QString, kind);
    QFETCH(bool, offer);
    QFETCH(QString, note);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("zzzdip.journal"));
    writeFile(dir.filePath(QStringLiteral("curve.csv")), curve(10));
    SessionJournal j = sample();
    j.dataDir = QDir::toNativeSeparators(dir.path());
    if (kind == QLatin1String("gone"))
        j.dataName = QStringLiteral("gone.csv");
    if (kind == QLatin1String("normal"))
        j.endedOnRuntimeError = false;
    if (kind == QLatin1String("nofile"))
        j.dataName.clear();
    if (kind == QLatin1String("damaged"))
        writeFile(path, QByteArray(JournalText(j)).replace("MagSign: -1", "MagSign: +1"));
    else if (kind != QLatin1String("missing"))
        QCOMPARE(WriteJournal(j, path), QString());
    const JournalOffer got = CheckJournal(path);
    QCOMPARE(got.offer, offer);
    QCOMPARE(got.note, note.isEmpty() ? QString() : note.arg(path, DataPathOf(j.dataDir, j.dataName)));
    if (offer)
        QVERIFY(sameJournal(got.journal, j));
}

void JournalTest::restoreGivesTheSessionBack_data()
{
    QTest::addColumn<bool>("inverted");
    QTest::newRow("+Mags") << false;
    QTest::newRow("-Mags (inverted), chosen before the deletions") << true;
}

void JournalTest::restoreGivesTheSessionBack()
{
    QFETCH(bool, inverted);
    QVERIFY(loadText(curve(40)));
    const QString dir = S().DataDir;
    if (inverted) {
        mainForm().showMagOption(1);
        ApplyMagSense(1);
    }
    // The deepest point among the deletions, so that the extents change.
    for (const int i : {2, 20, 33})
        deletePoint(i);
    // Two methods' results, one of them then typed over, and the user's own values.
    PublishResult(2, 0.50012345678901234, 0.0001, QStringLiteral("0.0001"));
    PublishResult(5, 0.49998765432109876, 0.00023);
    SetResultExtras(5, QStringList{"one", "two"});
    for (int k = 1; k <= 16; ++k)
        if (k != 2 && k != 8 && k != 11)
            mainForm().setText(k, k % 3 ? QStringLiteral("%1.5").arg(k) : QString());
    mainForm().setChecked(3, true);
    mainForm().setChecked(5, false);
    const CurveState before = curveState();
    const std::array<ResultRow, 6> rows = sessionRows();
    QVERIFY(rows[1].published && rows[4].published);
    const SessionJournal j = CaptureJournal(nullptr);

    // The next start: nothing loaded.
    MessageRecorder messages;
    freshSession();
    const RestoreOutcome outcome = RestoreJournal(j);
    QVERIFY(outcome.loaded);
    QVERIFY(outcome.skipped.empty());
    QVERIFY(messages.messages().isEmpty());
    QCOMPARE(curveState(), before);
    QCOMPARE(S().DataDir, dir);
    QCOMPARE(S().DataName, QStringLiteral("curve.csv"));
    QCOMPARE(mainForm().magOption(), inverted ? 1 : 0);
    QCOMPARE(mainForm().editedCountLabel(), QStringLiteral("37"));
    QCOMPARE(mainForm().title(), QStringLiteral("Dipscope - curve.csv"));
    for (int k = 1; k <= 16; ++k) {
        const QString shown = k == 2    ? QStringLiteral("0.50012")
                              : k == 8  ? QStringLiteral("0.0001")
                              : k == 11 ? QStringLiteral("0.00023")
                              : k % 3   ? QStringLiteral("%1.5").arg(k)
                                        : QString();
        QCOMPARE(mainForm().text(k), shown);
    }
    for (int k = 1; k <= 6; ++k)
        QCOMPARE(mainForm().checked(k), k == 2 || k == 3);
    // The rows hold the results in full as they were published, the Fourier time typed over.
    QVERIFY(sessionRows() == rows);
    QCOMPARE(S().Results(5).time, 0.49998765432109876);
    QCOMPARE(S().Results(5).timeText, QStringLiteral("0.49999"));
    QCOMPARE(mainForm().text(5), QStringLiteral("5.5"));
    // The editor's own procedure did the deleting: PickIdx is the last point deleted.
    QCOMPARE(int(S().PickIdx), 33);
}

// A file loaded with "Subtract whole days" is read again so: the deleted points are found by
// the times that session held, and each result keeps the method's own time in full.
void JournalTest::restoreWithWholeDaysSetApart()
{
    std::vector<std::pair<double, double>> p;
    for (int i = 1; i <= 40; ++i)
        p.emplace_back(2459123.4 + 0.005 * i, 12.0 + 0.0001 * i);
    QVERIFY(loadText(csv(p)));
    // The switch takes effect at the next load: the same file again.
    S().SubtractWholeDays = true;
    QVERIFY(OpenDataFile(S().DataDir, S().DataName));
    QCOMPARE(S().HJDOffset, 2459123.0);
    deletePoint(7);
    PublishResult(1, 0.50012345678901234, 0.0001);
    const std::array<ResultRow, 6> rows = sessionRows();
    const SessionJournal j = CaptureJournal(nullptr);
    QVERIFY(j.wholeDaysSubtracted);
    const JournalParse parsed = ParseJournal(JournalText(j));
    QVERIFY2(parsed.ok, qPrintable(parsed.problem));

    MessageRecorder messages;
    freshSession();
    QVERIFY(!S().SubtractWholeDays);
    const RestoreOutcome outcome = RestoreJournal(parsed.journal);
    QVERIFY(outcome.loaded);
    QVERIFY(outcome.skipped.empty());
    QVERIFY(messages.messages().isEmpty());
    QVERIFY(S().SubtractWholeDays && S().WholeDaysSubtracted);
    QCOMPARE(S().HJDOffset, 2459123.0);
    QCOMPARE(mainForm().editedCountLabel(), QStringLiteral("39"));
    QVERIFY(sessionRows() == rows);
    QCOMPARE(S().Results(1).methodTime, 0.50012345678901234);
}

void JournalTest::restoreOfAChangedFile()
{
    QVERIFY(loadText(curve(40)));
    const QString path = S().DataPath;
    for (const int i : {5, 12, 38})
        deletePoint(i);
    const SessionJournal j = CaptureJournal(nullptr);

    // The file now holds 36 rows, and row 12 a different magnitude.
    QByteArray changed = curve(36);
    QList<QByteArray> lines = changed.split('\n');
    lines[11] = lines[11].left(lines[11].indexOf(',')) + ",13.25";
    writeFile(path, lines.join('\n'));

    MessageRecorder messages;
    freshSession();
    const RestoreOutcome outcome = RestoreJournal(j);
    QVERIFY(outcome.loaded);
    QCOMPARE(outcome.skipped, (std::vector<int>{12, 38}));
    QCOMPARE(S().NumOrig, rt::Integer(36));
    QCOMPARE(S().NumPts, rt::Integer(35));
    QCOMPARE(S().Deleted(5), rt::Integer(rt::True));
    QCOMPARE(S().Deleted(12), rt::Integer(0));
    QCOMPARE(messages.messages(),
             QStringList{QStringLiteral("%1 has changed since the last session: points 12, 38 no longer hold the time "
                                        "and magnitude they held, so they are not deleted again. Every other "
                                        "deletion, the results and the means are restored.")
                             .arg(path)});
}

void JournalTest::restoreOfAnUnreadableFile()
{
    QVERIFY(loadText(curve(10)));
    const QString path = S().DataPath;
    mainForm().setText(5, QStringLiteral("0.49876"));
    const SessionJournal j = CaptureJournal(nullptr);
    // A time that is no number: the reader raises "Type mismatch", which the restore traps.
    writeFile(path, "0.1,12.0\n0.2,12.1\nabc,12.2\n");

    MessageRecorder messages;
    freshSession();
    const RestoreOutcome outcome = RestoreJournal(j);
    QVERIFY(!outcome.loaded);
    QCOMPARE(outcome.problem, QStringLiteral("Run-time error '13': Type mismatch"));
    QVERIFY(S().DataName.isEmpty());
    QVERIFY(S().DataPath.isEmpty());
    QCOMPARE(mainForm().text(5), QStringLiteral("0.49876"));
    QCOMPARE(messages.messages(),
             QStringList{QStringLiteral("%1 could not be read again (Run-time error '13': Type mismatch). The results "
                                        "and means of the last session are restored; the light curve is not.")
                             .arg(path)});
}

void JournalTest::restoreWithoutDataFile()
{
    SessionJournal j;
    j.endedOnRuntimeError = true;
    j.texts[13] = QStringLiteral("2459123.40000");
    j.ticks[1] = true;
    const RestoreOutcome outcome = RestoreJournal(j);
    QVERIFY(!outcome.loaded);
    QVERIFY(S().DataName.isEmpty());
    QCOMPARE(mainForm().text(14), QStringLiteral("2459123.40000"));
    QVERIFY(mainForm().checked(2));
}

void JournalTest::questionNamesTheSession()
{
    SessionJournal j = sample();
    QCOMPARE(RestoreQuestion(j), QStringLiteral("Dipscope ended on run-time error 11 (Division by zero) last time.\n\n"
                                                "Restore that session: %1, \"-Mags (inverted)\", with 2 deleted points "
                                                "and the results and means as they were?")
                                     .arg(DataPathOf(j.dataDir, j.dataName)));
    j.magSign = 1;
    j.deleted.resize(1);
    QCOMPARE(RestoreQuestion(j), QStringLiteral("Dipscope ended on run-time error 11 (Division by zero) last time.\n\n"
                                                "Restore that session: %1 with 1 deleted point and the results and "
                                                "means as they were?")
                                     .arg(DataPathOf(j.dataDir, j.dataName)));
    j.dataName.clear();
    QVERIFY(RestoreQuestion(j).endsWith(
        QStringLiteral("Restore that session: the results and means as they were (no data file was loaded)?")));
}

QTEST_GUILESS_MAIN(JournalTest)
#include "tst_journal.moc"
