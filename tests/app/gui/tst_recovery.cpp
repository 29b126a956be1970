// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers

// The recovery journal as the program uses it: written on the way out (a run-time error caught
// by the application's one handler, File > Exit, closing the main window) and offered back at the
// next start. The test program runs on the program's own application object, so a handler's
// run-time error takes the same path as in the program.

#include "mainwindow/gui/MainWindowTestSupport.h"

#include "app/gui/Application.h"
#include "mainwindow/Journal.h"
#include "mainwindow/gui/frmMain.h"
#include "plotting/gui/frmPlotData.h"
#include "runtime/Numeric.h"
#include "session/LoadDataFile.h"
#include "session/Session.h"

#include <QAction>
#include <QCheckBox>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryFile>

#include <cstdio>
#include <unistd.h>

using namespace dip;
using namespace dip::test;

namespace {

// Everything written to standard error while it lives.
class StderrCapture {
public:
    StderrCapture()
    {
        QVERIFY(m_file.open());
        std::fflush(stderr);
        m_saved = ::dup(2);
        ::dup2(m_file.handle(), 2);
    }
    ~StderrCapture() { restore(); }

    // The lines the program wrote (Qt's own warnings left out).
    QStringList programLines()
    {
        restore();
        QFile f(m_file.fileName());
        if (!f.open(QIODevice::ReadOnly))
            return {QStringLiteral("<unreadable>")};
        QStringList lines;
        for (const QByteArray& line : f.readAll().split('\n'))
            if (line.startsWith("dipscope"))
                lines << QString::fromLocal8Bit(line);
        return lines;
    }

private:
    void restore()
    {
        if (m_saved < 0)
            return;
        std::fflush(stderr);
        ::dup2(m_saved, 2);
        ::close(m_saved);
        m_saved = -1;
    }
    QTemporaryFile m_file;
    int m_saved = -1;
};

// Answers every question as told and records it.
class QuestionRecorder {
public:
    explicit QuestionRecorder(bool answer)
    {
        m_previous = rt::setQuestionHook([this, answer](const QString& text, const QString& title) {
            questions << text;
            titles << title;
            return answer;
        });
    }
    ~QuestionRecorder() { rt::setQuestionHook(m_previous); }
    QStringList questions;
    QStringList titles;

private:
    rt::QuestionHook m_previous;
};

QByteArray readFile(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// What the user sees and what the methods work on after a session.
struct SessionPicture {
    QString title, orig, edited, dataDir, dataName;
    int option = -1, magSign = 0, numPts = 0, idxMagMax = 0;
    QList<double> hjd, mag;
    QList<int> deleted;
    double fullMagMin = 0, fullMagRange = 0, foldHJD = 0;
    QStringList texts;
    QList<bool> ticks;
    QStringList rows; // the session's result rows, numbers in full

    bool operator==(const SessionPicture& o) const
    {
        return title == o.title && orig == o.orig && edited == o.edited && dataDir == o.dataDir &&
               dataName == o.dataName && option == o.option && magSign == o.magSign && numPts == o.numPts &&
               idxMagMax == o.idxMagMax && hjd == o.hjd && mag == o.mag && deleted == o.deleted &&
               fullMagMin == o.fullMagMin && fullMagRange == o.fullMagRange && foldHJD == o.foldHJD &&
               texts == o.texts && ticks == o.ticks && rows == o.rows;
    }
};

SessionPicture picture(const frmMain& window)
{
    const Session& s = S();
    SessionPicture p;
    p.title = window.windowTitle();
    p.orig = window.origCountLabel();
    p.edited = window.editedCountLabel();
    p.dataDir = s.DataDir;
    p.dataName = s.DataName;
    p.option = window.magOption();
    p.magSign = s.MagSign;
    p.numPts = s.NumPts;
    p.idxMagMax = s.IdxMagMax;
    for (int i = 1; i <= s.NumPts; ++i) {
        p.hjd << s.HJD(i);
        p.mag << s.Mag(i);
    }
    for (int i = 1; i <= s.NumOrig; ++i)
        p.deleted << s.Deleted(i);
    p.fullMagMin = s.FullMagMin;
    p.fullMagRange = s.FullMagRange;
    p.foldHJD = s.FoldHJD;
    for (int k = 1; k <= 16; ++k)
        p.texts << window.text(k);
    for (int k = 1; k <= 6; ++k)
        p.ticks << window.checked(k);
    for (int k = 1; k <= 6; ++k) {
        const ResultRow& r = s.Results(k);
        p.rows << QStringLiteral("%1 %2 %3 %4 %5 %6 \"%7\" \"%8\" %9")
                      .arg(r.published)
                      .arg(r.ticked)
                      .arg(r.trappedError)
                      .arg(r.time, 0, 'g', 17)
                      .arg(r.methodTime, 0, 'g', 17)
                      .arg(r.error, 0, 'g', 17)
                      .arg(r.timeText, r.errorText, r.extraTexts.join(QLatin1Char('|')));
    }
    return p;
}

// A button whose handler divides by zero, as a computation without a trap does.
class FailingButton : public QPushButton {
public:
    FailingButton() : QPushButton(QStringLiteral("Compute"))
    {
        connect(this, &QPushButton::clicked, this, [] { rt::div(1.0, 0.0); });
    }
};

} // namespace

class RecoveryTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { prepareWindowTests(); }
    void init() { m_scope = std::make_unique<WindowTestScope>(); }
    void cleanup() { m_scope.reset(); }

    void runtimeErrorKeepsTheSession_data();
    void runtimeErrorKeepsTheSession();
    void answerNoStartsEmpty();
    void normalEndsWriteAJournalThatIsNotOffered_data();
    void normalEndsWriteAJournalThatIsNotOffered();
    void badJournalIgnoredWithOneLine_data();
    void badJournalIgnoredWithOneLine();
    void commandLineFileAndTheOffer_data();
    void commandLineFileAndTheOffer();

private:
    // A session in a first "run": the curve loaded through the open dialog, inverted if asked,
    // three points deleted in the editor, the tracing paper's and the sliding integrations'
    // results, two typed values and the means; it then ends on a handler's run-time error.
    SessionPicture runAndFail(bool inverted);

    std::unique_ptr<WindowTestScope> m_scope;
};

SessionPicture RecoveryTest::runAndFail(bool inverted)
{
    m_scope->folder.write(QStringLiteral("data/curve.csv"), dipCurve(60, 9));
    auto window = startMainWindow();
    openThroughDialog(*window, m_scope->folder.path() + QStringLiteral("/data"), QStringLiteral("curve.csv"));
    if (inverted)
        QTest::mouseClick(control<QRadioButton>(*window, QStringLiteral("Option1_1")), Qt::LeftButton);
    control<QPushButton>(*window, QStringLiteral("Command7"))->click();
    for (const int i : {4, 21, 40}) {
        S().PickIdx = rt::Integer(i);
        ActionWindow().Command1_Click();
    }
    control<QPushButton>(*window, QStringLiteral("Command2"))->click();
    control<QPushButton>(*window, QStringLiteral("Command6"))->click();
    QTest::keyClicks(control<QLineEdit>(*window, QStringLiteral("Text1")), QStringLiteral("0.50012"));
    QTest::keyClicks(control<QLineEdit>(*window, QStringLiteral("Text7")), QStringLiteral("0.0003"));
    control<QCheckBox>(*window, QStringLiteral("Check1"))->click();
    control<QPushButton>(*window, QStringLiteral("Command8"))->click();
    const SessionPicture before = picture(*window);

    FailingButton failing;
    failing.show();
    QTest::mouseClick(&failing, Qt::LeftButton);
    return before;
}

void RecoveryTest::runtimeErrorKeepsTheSession_data()
{
    QTest::addColumn<bool>("inverted");
    QTest::newRow("+Mags") << false;
    QTest::newRow("-Mags (inverted)") << true;
}

void RecoveryTest::runtimeErrorKeepsTheSession()
{
    QFETCH(bool, inverted);
    const SessionPicture before = runAndFail(inverted);
    QCOMPARE(before.numPts, 57);
    QVERIFY(!before.texts[1].isEmpty() && !before.texts[5].isEmpty() && !before.texts[12].isEmpty());
    // The tracing paper's and the sliding integrations' rows hold their results; the parabola's
    // only has what the user typed into its boxes.
    QVERIFY(S().Results(2).published && S().Results(6).published);
    QVERIFY(!S().Results(1).published);
    // The report and the end are the runtime's; the settings file is not written on this way out.
    QCOMPARE(m_scope->messages.messages(), QStringList{QStringLiteral("Run-time error '11':\n\nDivision by zero")});
    QCOMPARE(m_scope->exits.codes(), QList<int>{1});
    QVERIFY(!QFile::exists(QStringLiteral("zzzdip.ini")));
    const QByteArray journal = readFile(QStringLiteral("zzzdip.journal"));
    QVERIFY(journal.startsWith("Dipscope recovery journal 3\nEnded: run-time error 11 \"Division by zero\"\n"));

    // The next start.
    m_scope->messages.clear();
    QuestionRecorder yes(true);
    StderrCapture err;
    auto window = startMainWindow();
    QCOMPARE(picture(*window).numPts, 0);
    StartSession(*window, QString());
    QCOMPARE(err.programLines(), QStringList());
    QCOMPARE(yes.questions.size(), 1);
    QVERIFY2(yes.questions[0].startsWith(QStringLiteral(
                 "Dipscope ended on run-time error 11 (Division by zero) last time.\n\nRestore that session: ")),
             qPrintable(yes.questions[0]));
    QCOMPARE(yes.titles, QStringList{QStringLiteral("Dipscope")});
    QVERIFY(m_scope->messages.messages().isEmpty());
    QCOMPARE(picture(*window), before);
    QVERIFY(S().Results(2).published && S().Results(6).published);
    // The fold starts where it started in the first run: the editor's deletions came after the
    // sign, there as here.
    QCOMPARE(S().Deleted(21), rt::Integer(rt::True));
}

void RecoveryTest::answerNoStartsEmpty()
{
    runAndFail(false);
    QuestionRecorder no(false);
    StderrCapture err;
    auto window = startMainWindow();
    const SessionPicture empty = picture(*window);
    StartSession(*window, QString());
    QCOMPARE(no.questions.size(), 1);
    QCOMPARE(err.programLines(), QStringList());
    QCOMPARE(picture(*window), empty);
    QVERIFY(S().DataName.isEmpty());
}

void RecoveryTest::normalEndsWriteAJournalThatIsNotOffered_data()
{
    QTest::addColumn<bool>("byMenu");
    QTest::newRow("File > Exit") << true;
    QTest::newRow("closing the main window") << false;
}

void RecoveryTest::normalEndsWriteAJournalThatIsNotOffered()
{
    QFETCH(bool, byMenu);
    m_scope->folder.write(QStringLiteral("curve.csv"), dipCurve(30, 3));
    {
        auto window = startMainWindow();
        openThroughDialog(*window, m_scope->folder.path(), QStringLiteral("curve.csv"));
        S().PickIdx = 7;
        ActionWindow().Command1_Click();
        window->setText(3, QStringLiteral("0.49990"));
        if (byMenu)
            menuAction(*window, "mnuExit")->trigger();
        else
            QVERIFY(window->close());
    }
    QCOMPARE(m_scope->exits.codes(), QList<int>{0});
    // The settings file keeps its seven lines; the journal is a file of its own.
    QCOMPARE(readFile(QStringLiteral("zzzdip.ini")), QByteArray("0,0,0,0\n").repeated(7));
    const JournalParse parsed = ParseJournal(readFile(QStringLiteral("zzzdip.journal")));
    QVERIFY(parsed.ok);
    QVERIFY(!parsed.journal.endedOnRuntimeError);
    QCOMPARE(parsed.journal.dataName, QStringLiteral("curve.csv"));
    QCOMPARE(parsed.journal.deleted.size(), std::size_t(1));
    QCOMPARE(parsed.journal.deleted[0].index, 7);
    QCOMPARE(parsed.journal.texts[2], QStringLiteral("0.49990"));

    QuestionRecorder yes(true);
    StderrCapture err;
    auto window = startMainWindow();
    StartSession(*window, QString());
    QCOMPARE(err.programLines(), QStringList());
    QVERIFY(yes.questions.isEmpty());
    QVERIFY(S().DataName.isEmpty());
    QCOMPARE(window->text(3), QString());
}

void RecoveryTest::badJournalIgnoredWithOneLine_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("line");
    QTest::newRow("missing") << "missing"
                             << "dipscope: zzzdip.journal: no recovery journal; nothing to restore";
    QTest::newRow("damaged") << "damaged"
                             << "dipscope: zzzdip.journal line 6: the count of deleted points must be a whole number "
                                "from 0 to 1000; the journal is ignored";
    QTest::newRow("cut short") << "cut"
                               << "dipscope: zzzdip.journal line 13: the journal ends before \"Text4\"; the journal "
                                  "is ignored";
    QTest::newRow("data file gone") << "gone"
                                    << "dipscope: zzzdip.journal: the data file %1 no longer exists; the journal is "
                                       "ignored";
}

void RecoveryTest::badJournalIgnoredWithOneLine()
{
    QFETCH(QString, kind);
    QFETCH(QString, line);
    QString dataPath;
    if (kind != QLatin1String("missing")) {
        runAndFail(false);
        dataPath = S().DataPath;
        QByteArray journal = readFile(QStringLiteral("zzzdip.journal"));
        if (kind == QLatin1String("damaged"))
            journal.replace("Deleted: 3", "Deleted: three");
        if (kind == QLatin1String("cut"))
            journal = journal.left(journal.indexOf("Text4"));
        m_scope->folder.write(QStringLiteral("zzzdip.journal"), journal);
        if (kind == QLatin1String("gone"))
            QVERIFY(QFile::remove(dataPath));
    }
    m_scope->messages.clear();
    QuestionRecorder yes(true);
    StderrCapture err;
    auto window = startMainWindow();
    StartSession(*window, QString());
    QCOMPARE(err.programLines(), QStringList{kind == QLatin1String("gone") ? line.arg(dataPath) : line});
    QVERIFY(yes.questions.isEmpty());
    QVERIFY(m_scope->messages.messages().isEmpty());
    QVERIFY(S().DataName.isEmpty());
    for (int k = 1; k <= 16; ++k)
        QCOMPARE(window->text(k), QString());
}

void RecoveryTest::commandLineFileAndTheOffer_data()
{
    QTest::addColumn<bool>("answer");
    QTest::newRow("Yes: the session, not the file") << true;
    QTest::newRow("No: the file") << false;
}

void RecoveryTest::commandLineFileAndTheOffer()
{
    QFETCH(bool, answer);
    const SessionPicture before = runAndFail(false);
    m_scope->folder.write(QStringLiteral("other.csv"), dipCurve(20, 2));
    QuestionRecorder recorder(answer);
    StderrCapture err;
    auto window = startMainWindow();
    StartSession(*window, QStringLiteral("other.csv"));
    QCOMPARE(recorder.questions.size(), 1);
    if (answer) {
        QCOMPARE(err.programLines(),
                 QStringList{QStringLiteral("dipscope: other.csv not loaded: the last session was restored instead")});
        QCOMPARE(picture(*window), before);
    } else {
        QCOMPARE(err.programLines(), QStringList());
        QCOMPARE(S().DataName, QStringLiteral("other.csv"));
        QCOMPARE(S().NumPts, rt::Integer(20));
    }
}

int main(int argc, char* argv[])
{
    Application app(argc, argv);
    app.setAttribute(Qt::AA_Use96Dpi, true);
    RecoveryTest test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_recovery.moc"
