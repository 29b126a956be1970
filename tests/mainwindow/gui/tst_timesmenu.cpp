// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "MainWindowTestSupport.h"

#include "analysis/Toolkit.h"
#include "import/gui/ImportPrompts.h"
#include "mainwindow/gui/frmMain.h"
#include "runtime/MsgBox.h"
#include "session/Results.h"
#include "session/Session.h"
#include "session/WholeDays.h"
#include "times/gui/TimeSystemDialog.h"

#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>

using namespace dip;
using namespace dip::test;

namespace {

QString importData(const QString& name)
{
    return qEnvironmentVariable("DIPSCOPE_SOURCE_DIR") + QStringLiteral("/tests/import/data/") + name;
}

QMenu* timesMenu(const frmMain& window) { return window.findChild<QMenu*>(QStringLiteral("mnuTimes")); }

// The menu as it is about to show: its notes shown or hidden as they apply now.
QMenu* openTimesMenu(const frmMain& window)
{
    QMenu* menu = timesMenu(window);
    Q_EMIT menu->aboutToShow();
    return menu;
}

// The same dip as full Julian dates.
QByteArray fullJdCurve() { return dipCurve(40, 3).replace("\n0.", "\n2458739."); }

// Answers the questions asked, and keeps them.
class QuestionRecorder {
public:
    explicit QuestionRecorder(bool answer)
    {
        m_previous = rt::setQuestionHook([this, answer](const QString& text, const QString&) {
            questions << text;
            return answer;
        });
    }
    ~QuestionRecorder() { rt::setQuestionHook(m_previous); }
    QStringList questions;

private:
    rt::QuestionHook m_previous;
};

// The import's questions answered by the test, each call kept.
struct Prompts {
    QString file;
    std::optional<QString> filter;
    std::optional<import::TimeWindow> window;
    int filterAsked = 0;
    int windowAsked = 0;
    std::vector<import::FilterCount> filtersOffered;
    QString preferred;
    std::size_t timesOffered = 0;
    import::ImportPrompts previous;

    Prompts()
    {
        previous = import::importPrompts();
        import::ImportPrompts& p = import::importPrompts();
        p.chooseFile = [this](QWidget*) { return file; };
        p.chooseFilter = [this](QWidget*, const QString&, const std::vector<import::FilterCount>& filters,
                                const QString& preferredFilter) {
            ++filterAsked;
            filtersOffered = filters;
            preferred = preferredFilter;
            return filter;
        };
        p.chooseWindow = [this](QWidget*, const QString&, const std::vector<double>& times) {
            ++windowAsked;
            timesOffered = times.size();
            return window;
        };
    }
    ~Prompts() { import::importPrompts() = previous; }
};

QStringList boxes(const frmMain& window)
{
    QStringList texts;
    for (int k = 1; k <= 16; ++k)
        texts << window.text(k);
    return texts;
}

} // namespace

class TimesMenuTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init();
    void menuItems();
    void switchSubtractsAtTheNextLoad();
    void warningOnlyWhileItApplies();
    void timeSystemDialogConverts();
    void timeSystemDialogRefusesBadInput();
    void importWithFilterAndQuestion();
    void importTheUserCancels();
    void importWithTimeWindow();
    void importProblemsKeepTheSession_data();
    void importProblemsKeepTheSession();
    void importOwnFileAsOpenDoes();
};

void TimesMenuTest::initTestCase() { prepareWindowTests(); }

void TimesMenuTest::init() { resetToolkit(); }

void TimesMenuTest::menuItems()
{
    WindowTestScope scope;
    const auto window = startMainWindow();
    QStringList menus;
    for (const QAction* a : window->menuBar()->actions())
        menus << a->text();
    QCOMPARE(menus, (QStringList{"File", "Times", "Analysis", "Help"}));
    QMenu* menu = openTimesMenu(*window);
    QStringList texts;
    for (const QAction* a : menu->actions())
        texts << (a->isSeparator() ? QStringLiteral("-") : a->text());
    QCOMPARE(texts, (QStringList{"Subtract whole days", "    (takes effect at the next load)",
                                 "Times above 10 days: subtract whole days and load again", "-",
                                 QStringLiteral("Time system\u2026"), QStringLiteral("Import\u2026")}));
    QAction* subtract = menuAction(*window, "mnuSubtractDays");
    QVERIFY(subtract->isCheckable());
    QVERIFY(!subtract->isChecked());
    // The two notes are disabled, and hidden while nothing is loaded.
    for (const char* note : {"mnuSubtractPending", "mnuLargeTimes"}) {
        QVERIFY(!menuAction(*window, note)->isEnabled());
        QVERIFY(!menuAction(*window, note)->isVisible());
    }
    QVERIFY(scope.messages.messages().isEmpty());
}

void TimesMenuTest::switchSubtractsAtTheNextLoad()
{
    WindowTestScope scope;
    const auto window = startMainWindow();
    scope.folder.write(QStringLiteral("full.csv"), fullJdCurve());
    menuAction(*window, "mnuSubtractDays")->trigger();
    QVERIFY(S().SubtractWholeDays);
    openThroughDialog(*window, scope.folder.path(), QStringLiteral("full.csv"));
    QCOMPARE(S().HJDOffset, 2458739.0);
    QCOMPARE(S().ReadHJD(1), 0.405);
    QCOMPARE(TimeAxisName(), QStringLiteral("HJD \u2212 2458739"));
    // A result is shown with its day.
    PublishResult(1, 0.5, 0.0002);
    QCOMPARE(window->text(1), QStringLiteral("2458739.50000"));
    openTimesMenu(*window);
    QVERIFY(!menuAction(*window, "mnuSubtractPending")->isVisible());
    // Turned off, the light curve keeps its times until the next load, and the menu says so.
    menuAction(*window, "mnuSubtractDays")->trigger();
    QVERIFY(!S().SubtractWholeDays);
    openTimesMenu(*window);
    QVERIFY(menuAction(*window, "mnuSubtractPending")->isVisible());
    QCOMPARE(S().HJDOffset, 2458739.0);
    QCOMPARE(window->text(1), QStringLiteral("2458739.50000"));
    openThroughDialog(*window, scope.folder.path(), QStringLiteral("full.csv"));
    QCOMPARE(S().HJDOffset, 0.0);
    openTimesMenu(*window);
    QVERIFY(!menuAction(*window, "mnuSubtractPending")->isVisible());
    QVERIFY(!menuAction(*window, "mnuSubtractDays")->isChecked());
}

void TimesMenuTest::warningOnlyWhileItApplies()
{
    WindowTestScope scope;
    const auto window = startMainWindow();
    scope.folder.write(QStringLiteral("full.csv"), fullJdCurve());
    scope.folder.write(QStringLiteral("small.csv"), dipCurve(40, 3));
    QAction* warning = menuAction(*window, "mnuLargeTimes");
    openThroughDialog(*window, scope.folder.path(), QStringLiteral("full.csv"));
    openTimesMenu(*window);
    QVERIFY(warning->isVisible());
    QVERIFY(!warning->isEnabled());
    // The load itself is untouched.
    QCOMPARE(S().HJDOffset, 0.0);
    QCOMPARE(S().ReadHJD(1), 2458739.405);
    QCOMPARE(int(S().NumOrig), 40);
    openThroughDialog(*window, scope.folder.path(), QStringLiteral("small.csv"));
    openTimesMenu(*window);
    QVERIFY(!warning->isVisible());
    menuAction(*window, "mnuSubtractDays")->trigger();
    openThroughDialog(*window, scope.folder.path(), QStringLiteral("full.csv"));
    openTimesMenu(*window);
    QVERIFY(!warning->isVisible());
    QVERIFY(scope.messages.messages().isEmpty());
}

void TimesMenuTest::timeSystemDialogConverts()
{
    WindowTestScope scope;
    const auto window = startMainWindow();
    scope.folder.write(QStringLiteral("full.csv"), fullJdCurve());
    menuAction(*window, "mnuSubtractDays")->trigger();
    openThroughDialog(*window, scope.folder.path(), QStringLiteral("full.csv"));
    PublishResult(4, 0.9291169, 0.00001);
    window->setText(13, QStringLiteral("2458739.92912"));
    const QStringList before = boxes(*window);

    menuAction(*window, "mnuTimeSystem")->trigger();
    auto* dialog = window->findChild<times::TimeSystemDialog*>(QStringLiteral("dlgTimeSystem"));
    QVERIFY(dialog);
    QVERIFY(dialog->isVisible());
    QCOMPARE(dialog->findChild<QComboBox*>(QStringLiteral("cboFileSystem"))->currentText(), QStringLiteral("HJD(UTC)"));
    dialog->findChild<QComboBox*>(QStringLiteral("cboFileSystem"))->setCurrentIndex(2);   // BJD_TDB
    dialog->findChild<QComboBox*>(QStringLiteral("cboReportSystem"))->setCurrentIndex(1); // HJD(UTC)
    dialog->findChild<QLineEdit*>(QStringLiteral("txtRa"))->setText(QStringLiteral("16:34:20.33"));
    dialog->findChild<QLineEdit*>(QStringLiteral("txtDec"))->setText(QStringLiteral("+57:09:44.3"));
    dialog->findChild<QPushButton*>(QStringLiteral("cmdConvert"))->click();

    // The toolkit holds what was stated and the converted result; the main window is as it was.
    const ToolkitState& t = Toolkit();
    QCOMPARE(t.fileSystem, TimeSystem::BJD_TDB);
    QCOMPARE(S().TimesSystem, TimeSystem::BJD_TDB);
    QCOMPARE(t.reportSystem, TimeSystem::HJD_UTC);
    QVERIFY(t.star);
    QVERIFY(!t.site);
    QVERIFY(t.rows[4].convertedTime);
    // The README's example: BJD_TDB 2458739.9291169 is HJD(UTC) 2458739.9283185587.
    QCOMPARE(times::formatJulianDate(*t.rows[4].convertedTime, 10), QStringLiteral("2458739.9283185587"));
    QVERIFY(!t.rows[1].convertedTime);
    QCOMPARE(boxes(*window), before);
    const QTableWidget* table = dialog->findChild<QTableWidget*>(QStringLiteral("tblConverted"));
    QCOMPARE(table->rowCount(), 2);
    QCOMPARE(table->item(0, 0)->text(), QStringLiteral("4. Kwee and van Woerden"));
    QCOMPARE(table->item(0, 2)->text(), QStringLiteral("2458739.92832"));
    QCOMPARE(table->item(1, 0)->text(), QStringLiteral("Simple Mean"));
    QCOMPARE(TimeAxisName(), QStringLiteral("BJD \u2212 2458739"));
    // A result published afterwards is converted the same way.
    PublishResult(1, 0.9291169, 0.00002);
    QCOMPARE(times::formatJulianDate(*Toolkit().rows[1].convertedTime, 10), QStringLiteral("2458739.9283185587"));
    // Opened again, it shows what was stated.
    dialog->hide();
    menuAction(*window, "mnuTimeSystem")->trigger();
    QCOMPARE(dialog->findChild<QComboBox*>(QStringLiteral("cboFileSystem"))->currentText(), QStringLiteral("BJD_TDB"));
    QCOMPARE(dialog->findChild<QComboBox*>(QStringLiteral("cboReportSystem"))->currentText(),
             QStringLiteral("HJD(UTC)"));
    QCOMPARE(window->findChildren<times::TimeSystemDialog*>().size(), 1);
    QVERIFY(scope.messages.messages().isEmpty());
}

void TimesMenuTest::timeSystemDialogRefusesBadInput()
{
    WindowTestScope scope;
    const auto window = startMainWindow();
    menuAction(*window, "mnuTimeSystem")->trigger();
    auto* dialog = window->findChild<times::TimeSystemDialog*>(QStringLiteral("dlgTimeSystem"));
    dialog->findChild<QLineEdit*>(QStringLiteral("txtRa"))->setText(QStringLiteral("16h99m"));
    dialog->findChild<QLineEdit*>(QStringLiteral("txtDec"))->setText(QStringLiteral("57"));
    dialog->findChild<QPushButton*>(QStringLiteral("cmdConvert"))->click();
    QVERIFY(dialog->isVisible());
    QVERIFY(dialog->problem().startsWith(QStringLiteral("RA \"16h99m\": ")));
    QVERIFY(!Toolkit().star);
    QCOMPARE(Toolkit().reportSystem, TimeSystem::Unstated);
    QVERIFY(scope.messages.messages().isEmpty());
    QVERIFY(scope.exits.codes().isEmpty());
}

void TimesMenuTest::importWithFilterAndQuestion()
{
    WindowTestScope scope;
    const auto window = startMainWindow();
    Prompts prompts;
    QuestionRecorder questions(true);
    prompts.file = importData(QStringLiteral("aavso-two-filters.txt"));
    prompts.filter = QStringLiteral("B");
    menuAction(*window, "mnuImport")->trigger();
    QCOMPARE(prompts.filterAsked, 1);
    QCOMPARE(int(prompts.filtersOffered.size()), 2);
    QCOMPARE(prompts.preferred, QStringLiteral("V"));
    QCOMPARE(prompts.windowAsked, 0);
    int b = 0;
    for (const import::FilterCount& f : prompts.filtersOffered)
        if (f.filter == QLatin1String("B"))
            b = f.count;
    QCOMPARE(int(S().NumOrig), b);
    QCOMPARE(window->title(), QStringLiteral("Dipscope - aavso-two-filters.txt"));
    // Full Julian dates: the switch was offered, and taken.
    QCOMPARE(questions.questions.size(), 1);
    QVERIFY(questions.questions[0].startsWith(QStringLiteral("The times of aavso-two-filters.txt are full Julian "
                                                             "dates (2459123.")));
    QVERIFY(S().SubtractWholeDays);
    QCOMPARE(S().HJDOffset, 2459123.0);
    openTimesMenu(*window);
    QVERIFY(menuAction(*window, "mnuSubtractDays")->isChecked());
    // What the file says, for the reports.
    QCOMPARE(Toolkit().starName, QStringLiteral("V0404 LYR"));
    QCOMPARE(Toolkit().filter, QStringLiteral("B"));
    QCOMPARE(Toolkit().observerCode, QStringLiteral("DIPX"));
    QCOMPARE(Toolkit().fileSystem, TimeSystem::HJD_UTC);
    // One message tells what was read.
    QCOMPARE(scope.messages.messages().size(), 1);
    QVERIFY(scope.messages.messages()[0].startsWith(
        QStringLiteral("aavso-two-filters.txt: %1 observations of V0404 LYR, filter B, times in HJD(UTC) (AAVSO "
                       "extended file).")
            .arg(b)));
    // The switch on, the next import asks nothing.
    menuAction(*window, "mnuImport")->trigger();
    QCOMPARE(questions.questions.size(), 1);
}

void TimesMenuTest::importTheUserCancels()
{
    WindowTestScope scope;
    const auto window = startMainWindow();
    scope.folder.write(QStringLiteral("small.csv"), dipCurve(40, 3));
    openThroughDialog(*window, scope.folder.path(), QStringLiteral("small.csv"));
    PublishResult(2, 0.5, 0.0001);
    Prompts prompts;
    QuestionRecorder questions(false);
    // No file chosen.
    menuAction(*window, "mnuImport")->trigger();
    QCOMPARE(prompts.filterAsked, 0);
    // The filter not chosen.
    prompts.file = importData(QStringLiteral("aavso-two-filters.txt"));
    menuAction(*window, "mnuImport")->trigger();
    QCOMPARE(prompts.filterAsked, 1);
    // The time window not chosen.
    prompts.file = importData(QStringLiteral("aij-1500.xls"));
    menuAction(*window, "mnuImport")->trigger();
    QCOMPARE(prompts.windowAsked, 1);
    QCOMPARE(int(prompts.timesOffered), 1500);
    // Each time the session as it was, and nothing said.
    QCOMPARE(S().DataName, QStringLiteral("small.csv"));
    QCOMPARE(int(S().NumOrig), 40);
    QCOMPARE(window->text(2), QStringLiteral("0.50000"));
    QVERIFY(scope.messages.messages().isEmpty());
    QVERIFY(questions.questions.isEmpty());
}

void TimesMenuTest::importWithTimeWindow()
{
    WindowTestScope scope;
    const auto window = startMainWindow();
    Prompts prompts;
    QuestionRecorder questions(false);
    prompts.file = importData(QStringLiteral("aij-1500.xls"));
    prompts.window = import::TimeWindow{2459123.40, 2459123.60};
    menuAction(*window, "mnuImport")->trigger();
    QCOMPARE(prompts.windowAsked, 1);
    QVERIFY(S().NumOrig > 0 && S().NumOrig <= 1000);
    QVERIFY(S().ReadHJD(1) >= 2459123.40);
    QCOMPARE(Toolkit().fileSystem, TimeSystem::BJD_TDB);
    // Answered "No": the times stay full, and the menu warns.
    QCOMPARE(questions.questions.size(), 1);
    QVERIFY(!S().SubtractWholeDays);
    openTimesMenu(*window);
    QVERIFY(menuAction(*window, "mnuLargeTimes")->isVisible());
    QCOMPARE(TimeAxisName(), QStringLiteral("BJD"));
}

void TimesMenuTest::importProblemsKeepTheSession_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("message");
    QTest::newRow("bad magnitude") << importData(QStringLiteral("aavso-bad-mag.txt")) << ", line ";
    QTest::newRow("short row") << importData(QStringLiteral("aij-short-row.xls")) << ", line ";
    QTest::newRow("missing file") << QStringLiteral("/no/such/curve.txt") << ": cannot be read";
    QTest::newRow("own file with a word")
        << QStringLiteral("bad.csv") << ", line 3: a time or magnitude is not a number";
}

void TimesMenuTest::importProblemsKeepTheSession()
{
    QFETCH(QString, file);
    QFETCH(QString, message);
    WindowTestScope scope;
    const auto window = startMainWindow();
    scope.folder.write(QStringLiteral("small.csv"), dipCurve(40, 3));
    scope.folder.write(QStringLiteral("bad.csv"), "t,m\n0.4,11\n0.5,x\n");
    openThroughDialog(*window, scope.folder.path(), QStringLiteral("small.csv"));
    Prompts prompts;
    prompts.file = file.startsWith(QLatin1Char('/')) ? file : scope.folder.path() + QLatin1Char('/') + file;
    menuAction(*window, "mnuImport")->trigger();
    // One message naming the file (and the line), the session as it was, the program going on.
    QCOMPARE(scope.messages.messages().size(), 1);
    QVERIFY2(scope.messages.messages()[0].startsWith(prompts.file + message), qPrintable(scope.messages.messages()[0]));
    QCOMPARE(S().DataName, QStringLiteral("small.csv"));
    QCOMPARE(int(S().NumOrig), 40);
    QCOMPARE(window->title(), QStringLiteral("Dipscope - small.csv"));
    QVERIFY(scope.exits.codes().isEmpty());
}

void TimesMenuTest::importOwnFileAsOpenDoes()
{
    WindowTestScope scope;
    const auto window = startMainWindow();
    scope.folder.write(QStringLiteral("small.csv"), dipCurve(40, 3));
    openThroughDialog(*window, scope.folder.path(), QStringLiteral("small.csv"));
    const Session opened = S();
    PublishResult(1, 0.5, 0.0001);
    Prompts prompts;
    prompts.file = scope.folder.path() + QStringLiteral("/small.csv");
    menuAction(*window, "mnuImport")->trigger();
    QCOMPARE(S().NumOrig, opened.NumOrig);
    QCOMPARE(S().DataPath, opened.DataPath);
    for (int k = 1; k <= S().NumOrig; ++k)
        QCOMPARE(S().ReadHJD(k), opened.ReadHJD(k));
    // A load: the result boxes emptied; nothing to tell for the program's own file.
    QCOMPARE(window->text(1), QString());
    QVERIFY(scope.messages.messages().isEmpty());
}

QTEST_MAIN(TimesMenuTest)
#include "tst_timesmenu.moc"
