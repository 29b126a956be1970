// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "MainWindowTestSupport.h"

#include "mainwindow/gui/frmMain.h"
#include "mainwindow/gui/frmOpen.h"
#include "mainwindow/gui/frmSaveAs.h"
#include "session/LoadDataFile.h"
#include "session/Procedures.h"
#include "session/Session.h"
#include "support/TestSupport.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QProcess>
#include <QPushButton>
#include <QRadioButton>

#include <cmath>

using namespace dip;
using namespace dip::test;

namespace {

QString fileText(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? QString::fromLatin1(f.readAll()) : QString();
}

// The text a control shows, whatever its kind.
QString caption(const QWidget* widget)
{
    if (auto* l = qobject_cast<const QLabel*>(widget))
        return l->text();
    if (auto* b = qobject_cast<const QAbstractButton*>(widget))
        return b->text();
    if (auto* t = qobject_cast<const QLineEdit*>(widget))
        return t->text();
    return QStringLiteral("<no text>");
}

// The top-level windows on screen.
QList<QWidget*> visibleWindows()
{
    QList<QWidget*> shown;
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w->isVisible())
            shown << w;
    return shown;
}

QStringList menuTexts(const QMenu* menu)
{
    QStringList texts;
    for (const QAction* a : menu->actions())
        texts << (a->isSeparator() ? QStringLiteral("-") : a->text());
    return texts;
}

QString fixed5(double v) { return QString::number(v, 'f', 5); }

class CloseSpy : public QWidget {
public:
    int closes = 0;

protected:
    void closeEvent(QCloseEvent* event) override
    {
        ++closes;
        QWidget::closeEvent(event);
    }
};

} // namespace

class MainWindowTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void captions_data();
    void captions();
    void methodButtonsHaveNoCaption();
    void menus();
    void stateAtStart();
    void rowsAlignedAndNothingOverlaps();
    void errorTextFilledAtStart_data();
    void errorTextFilledAtStart();

    void firstRunWithoutSettingsFile();
    void exitWritesSettingsOnce();
    void closingWritesSettingsOnce();
    void settingsLine6WrittenBackUnchanged();
    void settingsAcrossTwoRuns();
    void badSettingsFileIgnoredAtStart();
    void unwritableSettingsEndsWithReport();

    void buttonsDoNothingBeforeLoad_data();
    void buttonsDoNothingBeforeLoad();
    void methodButtonsSetRangeAfterLoad_data();
    void methodButtonsSetRangeAfterLoad();
    void switchingToInvertedKeepsDeletions();
    void loadThroughOpenDialog();
    void refusedLoadKeepsPreviousFile();

    void calcMeans_data();
    void calcMeans();

    void commandLineFile();
    void commandLineProcess_data();
    void commandLineProcess();

private:
    std::unique_ptr<WindowTestScope> m_scope;
};

void MainWindowTest::initTestCase() { prepareWindowTests(); }

void MainWindowTest::init() { m_scope = std::make_unique<WindowTestScope>(); }

void MainWindowTest::cleanup() { m_scope.reset(); }

// ---- Controls ----

void MainWindowTest::captions_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    const std::pair<const char*, const char*> rows[] = {
        {"Label1", "Dipscope v2.5d"},
        {"Label2", "1. Parabolic Fit"},
        {"Label3", "2. Tracing Paper"},
        {"Label4", "3. Bisectors of Chords"},
        {"Label5", "4. Kwee and van Woerden"},
        {"Label6", "5. Fourier Fit"},
        {"Label7", "6. Sliding Integrations"},
        {"Label8", "Time of Minimum"},
        {"Label9", "Est'd Error"},
        {"Label13", "Use in Mean?"},
        {"Command8", "Calc. Means"},
        {"Label10", "Simple Mean"},
        {"Label11", "Weighted Mean"},
        {"Label12", "Std. Error of  Weighted Mean"},
        {"Label14", "Std. Deviation of Means"},
        {"Label15", "Original # data points"},
        {"Label16", "Edited # data points"},
        {"Option1_0", "+Mags"},
        {"Option1_1", "-Mags (inverted)"},
        {"Command7", "Plot/Edit Data"},
        {"Command9", "Load File"},
    };
    for (const auto& [name, text] : rows)
        QTest::newRow(name) << QString::fromLatin1(name) << QString::fromLatin1(text);
}

void MainWindowTest::captions()
{
    QFETCH(QString, name);
    QFETCH(QString, text);
    const auto window = startMainWindow();
    const auto* widget = control<QWidget>(*window, name);
    QVERIFY2(widget, qPrintable(name));
    QCOMPARE(caption(widget), text);
}

void MainWindowTest::methodButtonsHaveNoCaption()
{
    const auto window = startMainWindow();
    for (int k = 1; k <= 6; ++k) {
        const auto* button = control<QPushButton>(*window, QStringLiteral("Command%1").arg(k));
        QVERIFY(button);
        QCOMPARE(button->text(), QString());
        const auto* box = control<QCheckBox>(*window, QStringLiteral("Check%1").arg(k));
        QVERIFY(box);
        QCOMPARE(box->text(), QString());
    }
    for (int k = 1; k <= 16; ++k)
        QVERIFY(control<QLineEdit>(*window, QStringLiteral("Text%1").arg(k)));
    QVERIFY(control<QLabel>(*window, QStringLiteral("Label17")));
    QVERIFY(control<QLabel>(*window, QStringLiteral("Label18")));
}

void MainWindowTest::menus()
{
    const auto window = startMainWindow();
    const auto* file = window->findChild<QMenu*>(QStringLiteral("mnuFile"));
    const auto* help = window->findChild<QMenu*>(QStringLiteral("mnuHelp"));
    QVERIFY(file && help);
    QCOMPARE(file->title(), QStringLiteral("File"));
    QCOMPARE(help->title(), QStringLiteral("Help"));
    QCOMPARE(menuTexts(file), (QStringList{"Open", "Save", "-", "Exit"}));
    QCOMPARE(menuTexts(help), (QStringList{"Help - Introduction", "Help -Data files", "-", "About"}));
    QCOMPARE(menuAction(*window, "Help1")->text(), QStringLiteral("Help - Introduction"));
    QCOMPARE(menuAction(*window, "Help2")->text(), QStringLiteral("Help -Data files"));
    QCOMPARE(menuAction(*window, "mnuOpen")->text(), QStringLiteral("Open"));
    QCOMPARE(menuAction(*window, "mnuSave")->text(), QStringLiteral("Save"));
    QCOMPARE(menuAction(*window, "mnuExit")->text(), QStringLiteral("Exit"));
    QCOMPARE(menuAction(*window, "mnuAbout")->text(), QStringLiteral("About"));
}

void MainWindowTest::stateAtStart()
{
    const auto window = startMainWindow();
    QCOMPARE(window->windowTitle(), QStringLiteral("Dipscope"));
    QCOMPARE(&mainForm(), static_cast<MainForm*>(window.get()));
    QVERIFY(control<QRadioButton>(*window, QStringLiteral("Option1_0"))->isChecked());
    QVERIFY(!control<QRadioButton>(*window, QStringLiteral("Option1_1"))->isChecked());
    QCOMPARE(S().MagSign, rt::Integer(1));
    QCOMPARE(S().AvgPoints, rt::Integer(1));
    for (int k = 1; k <= 16; ++k)
        QCOMPARE(window->text(k), QString());
    for (int k = 1; k <= 6; ++k)
        QVERIFY(!window->checked(k));
    QCOMPARE(window->origCountLabel(), QString());
    QCOMPARE(window->editedCountLabel(), QString());
    QVERIFY(S().DataName.isEmpty());
    QVERIFY(!window->openForm()->isVisible());
    QVERIFY(!window->saveAsForm()->isVisible());
    QVERIFY(m_scope->messages.messages().isEmpty());
    DIP_EXPECT_RUNTIME_ERROR(window->text(17), 9);
    DIP_EXPECT_RUNTIME_ERROR(window->setChecked(0, true), 9);
}

void MainWindowTest::rowsAlignedAndNothingOverlaps()
{
    const auto window = startMainWindow();
    auto centreY = [&](const QString& name) { return control<QWidget>(*window, name)->geometry().center().y(); };
    for (int k = 1; k <= 6; ++k) {
        const int y = centreY(QStringLiteral("Text%1").arg(k));
        for (const QString& other : {QStringLiteral("Command%1").arg(k), QStringLiteral("Label%1").arg(k + 1),
                                     QStringLiteral("Text%1").arg(k + 6), QStringLiteral("Check%1").arg(k)})
            QVERIFY2(std::abs(centreY(other) - y) <= 2, qPrintable(other));
        if (k > 1)
            QVERIFY(y > centreY(QStringLiteral("Text%1").arg(k - 1)));
    }
    // The controls of the form, laid out in twips, never cover one another.
    const QWidget* client = window->centralWidget();
    const QList<QWidget*> controls = client->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    QVERIFY(controls.size() >= 50);
    for (int i = 0; i < controls.size(); ++i) {
        QVERIFY2(client->rect().contains(controls[i]->geometry()), qPrintable(controls[i]->objectName()));
        for (int j = i + 1; j < controls.size(); ++j)
            QVERIFY2(!controls[i]->geometry().intersects(controls[j]->geometry()),
                     qPrintable(controls[i]->objectName() + QLatin1Char('/') + controls[j]->objectName()));
    }
}

void MainWindowTest::errorTextFilledAtStart_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("text");
    const std::pair<int, const char*> rows[] = {
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
    QCOMPARE(int(std::size(rows)), 32);
    for (const auto& [number, text] : rows)
        QTest::newRow(text) << number << QString::fromLatin1(text);
}

void MainWindowTest::errorTextFilledAtStart()
{
    QFETCH(int, number);
    QFETCH(QString, text);
    const auto window = startMainWindow();
    QCOMPARE(S().ErrorText(number), text);
    int filled = 0;
    for (int i = 0; i <= 1000; ++i)
        filled += S().ErrorText(i).isEmpty() ? 0 : 1;
    QCOMPARE(filled, 32);
}

// ---- Settings file ----

void MainWindowTest::firstRunWithoutSettingsFile()
{
    const auto window = startMainWindow();
    for (int line = 1; line <= 7; ++line)
        for (int v = 1; v <= 4; ++v)
            QCOMPARE(S().WinPos(line, v), rt::Integer(0));
    QVERIFY(!QFile::exists(QStringLiteral("zzzdip.ini")));
    menuAction(*window, "mnuExit")->trigger();
    QCOMPARE(m_scope->exits.codes(), QList<int>{0});
    QCOMPARE(fileText(QStringLiteral("zzzdip.ini")), QString(QStringLiteral("0,0,0,0\n")).repeated(7));
}

void MainWindowTest::exitWritesSettingsOnce()
{
    const auto window = startMainWindow();
    CloseSpy other;
    other.show();
    window->openForm()->show();
    menuAction(*window, "mnuExit")->trigger();
    QCOMPARE(m_scope->exits.codes(), QList<int>{0});
    QVERIFY(QFile::remove(QStringLiteral("zzzdip.ini")));
    // No other window is closed on the way out.
    QCOMPARE(other.closes, 0);
    QVERIFY(other.isVisible());
    QVERIFY(window->openForm()->isVisible());
    // Closing the main window afterwards writes nothing more.
    window->close();
    QVERIFY(!QFile::exists(QStringLiteral("zzzdip.ini")));
    QCOMPARE(m_scope->exits.codes(), QList<int>{0});
}

void MainWindowTest::closingWritesSettingsOnce()
{
    const auto window = startMainWindow();
    CloseSpy other;
    other.show();
    S().WinPos(3, 2) = 1234;
    QVERIFY(window->close());
    QCOMPARE(m_scope->exits.codes(), QList<int>{0});
    QCOMPARE(fileText(QStringLiteral("zzzdip.ini")).split(QLatin1Char('\n'))[2], QStringLiteral("0,1234,0,0"));
    QCOMPARE(other.closes, 0);
    QVERIFY(QFile::remove(QStringLiteral("zzzdip.ini")));
    menuAction(*window, "mnuExit")->trigger();
    QVERIFY(!QFile::exists(QStringLiteral("zzzdip.ini")));
    QCOMPARE(m_scope->exits.codes(), QList<int>{0});
}

void MainWindowTest::settingsLine6WrittenBackUnchanged()
{
    const QString before = QStringLiteral("1,2,3,4\n5,6,7,8\n9,10,11,12\n13,14,15,16\n17,18,19,20\n"
                                          "-7,32767,-32768,99\n25,26,27,28\n");
    m_scope->folder.write(QStringLiteral("zzzdip.ini"), before.toLatin1());
    const auto window = startMainWindow();
    QCOMPARE(S().WinPos(6, 3), rt::Integer(-32768));
    // The windows that own lines 1 and 7 store their new placements; nobody owns line 6.
    S().WinPos(1, 1) = 600;
    S().WinPos(7, 4) = 4500;
    menuAction(*window, "mnuExit")->trigger();
    const QStringList lines = fileText(QStringLiteral("zzzdip.ini")).split(QLatin1Char('\n'));
    QCOMPARE(lines.size(), 8); // seven lines, each ended by a line break
    QCOMPARE(lines[5], QStringLiteral("-7,32767,-32768,99"));
    QCOMPARE(lines[0], QStringLiteral("600,2,3,4"));
    QCOMPARE(lines[6], QStringLiteral("25,26,27,4500"));
    QCOMPARE(lines[1], QStringLiteral("5,6,7,8"));
}

void MainWindowTest::settingsAcrossTwoRuns()
{
    {
        const auto first = startMainWindow();
        for (int v = 1; v <= 4; ++v)
            S().WinPos(7, v) = rt::Integer(v * 1500);
        first->close();
    }
    const QString written = fileText(QStringLiteral("zzzdip.ini"));
    QCOMPARE(written.split(QLatin1Char('\n'))[6], QStringLiteral("1500,3000,4500,6000"));
    {
        const auto second = startMainWindow();
        for (int v = 1; v <= 4; ++v)
            QCOMPARE(S().WinPos(7, v), rt::Integer(v * 1500));
        QCOMPARE(S().WinPos(1, 1), rt::Integer(0));
        menuAction(*second, "mnuExit")->trigger();
    }
    QCOMPARE(fileText(QStringLiteral("zzzdip.ini")), written);
    QCOMPARE(m_scope->exits.codes(), (QList<int>{0, 0}));
}

void MainWindowTest::badSettingsFileIgnoredAtStart()
{
    m_scope->folder.write(QStringLiteral("zzzdip.ini"), "10,20,30,40\n50,60,oops,80\n90,100,110,120\n");
    const auto window = startMainWindow();
    QCOMPARE(S().WinPos(1, 4), rt::Integer(40));
    QCOMPARE(S().WinPos(2, 2), rt::Integer(60));
    QCOMPARE(S().WinPos(2, 3), rt::Integer(0));
    QCOMPARE(S().WinPos(3, 1), rt::Integer(0));
    QVERIFY(m_scope->messages.messages().isEmpty());
    QVERIFY(window->isVisible());
}

void MainWindowTest::unwritableSettingsEndsWithReport()
{
    // Writing is not protected: a folder in the way of the file is the runtime's error.
    m_scope->folder.mkdir(QStringLiteral("zzzdip.ini"));
    const auto window = startMainWindow();
    DIP_EXPECT_RUNTIME_ERROR(menuAction(*window, "mnuExit")->trigger(), 75);
    QVERIFY(m_scope->exits.codes().isEmpty());
}

// ---- Buttons ----

void MainWindowTest::buttonsDoNothingBeforeLoad_data()
{
    QTest::addColumn<QString>("button");
    for (int k = 1; k <= 7; ++k)
        QTest::newRow(qPrintable(QStringLiteral("Command%1").arg(k))) << QStringLiteral("Command%1").arg(k);
}

void MainWindowTest::buttonsDoNothingBeforeLoad()
{
    QFETCH(QString, button);
    const auto window = startMainWindow();
    S().RangeFirst = 77;
    S().RangeLast = 88;
    const QList<QWidget*> windowsBefore = visibleWindows();
    QTest::mouseClick(control<QPushButton>(*window, button), Qt::LeftButton);
    QCOMPARE(S().RangeFirst, rt::Integer(77));
    QCOMPARE(S().RangeLast, rt::Integer(88));
    QCOMPARE(visibleWindows(), windowsBefore);
    QVERIFY(m_scope->messages.messages().isEmpty());
    for (int k = 1; k <= 16; ++k)
        QCOMPARE(window->text(k), QString());
}

void MainWindowTest::methodButtonsSetRangeAfterLoad_data()
{
    QTest::addColumn<int>("method");
    QTest::addColumn<bool>("setsRange");
    QTest::newRow("Command1 parabolic fit") << 1 << true;
    QTest::newRow("Command2 tracing paper") << 2 << false;
    QTest::newRow("Command3 bisectors of chords") << 3 << true;
    QTest::newRow("Command4 Kwee and van Woerden") << 4 << true;
    QTest::newRow("Command5 Fourier fit") << 5 << true;
}

void MainWindowTest::methodButtonsSetRangeAfterLoad()
{
    QFETCH(int, method);
    QFETCH(bool, setsRange);
    m_scope->folder.write(QStringLiteral("curve.csv"), dipCurve(40, 7));
    const auto window = startMainWindow();
    openThroughDialog(*window, m_scope->folder.path(), QStringLiteral("curve.csv"));
    QCOMPARE(S().NumPts, rt::Integer(40));
    // Two points deleted: the range is all used points.
    S().PickIdx = 3;
    SetPickedDeleted(true);
    S().PickIdx = 30;
    SetPickedDeleted(true);
    S().RangeFirst = 5;
    S().RangeLast = 9;
    control<QPushButton>(*window, QStringLiteral("Command%1").arg(method))->click();
    QCOMPARE(S().RangeFirst, rt::Integer(setsRange ? 1 : 5));
    QCOMPARE(S().RangeLast, rt::Integer(setsRange ? 38 : 9));
}

void MainWindowTest::switchingToInvertedKeepsDeletions()
{
    const int n = 40, brightest = 7;
    m_scope->folder.write(QStringLiteral("curve.csv"), dipCurve(n, brightest));
    const auto window = startMainWindow();
    openThroughDialog(*window, m_scope->folder.path(), QStringLiteral("curve.csv"));
    const int faintest = S().IdxMagMax;
    QVERIFY(faintest > brightest);
    window->setText(1, QStringLiteral("0.50000"));
    window->setChecked(1, true);

    // Delete point 3 and the faintest point, then invert.
    for (int i : {3, faintest}) {
        S().PickIdx = rt::Integer(i);
        SetPickedDeleted(true);
    }
    QTest::mouseClick(control<QRadioButton>(*window, QStringLiteral("Option1_1")), Qt::LeftButton);
    QCOMPARE(S().MagSign, rt::Integer(-1));
    QCOMPARE(window->magOption(), 1);
    QCOMPARE(S().NumPts, rt::Integer(n - 2));
    QCOMPARE(window->editedCountLabel(), QString::number(n - 2));
    QCOMPARE(S().Deleted(3), rt::Integer(rt::True));
    QCOMPARE(S().Deleted(faintest), rt::Integer(rt::True));
    // Every used point, in file order, with its magnitude negated; the largest of those is the
    // brightest point of the file.
    int used = 0, expectedIdx = 0;
    double best = -1e9;
    for (int i = 1; i <= n; ++i) {
        if (i == 3 || i == faintest)
            continue;
        ++used;
        QCOMPARE(S().HJD(used), S().ReadHJD(i));
        QCOMPARE(S().Mag(used), -S().ReadMag(i));
        if (-S().ReadMag(i) > best) {
            best = -S().ReadMag(i);
            expectedIdx = used;
        }
    }
    QCOMPARE(int(S().IdxMagMax), expectedIdx);
    QCOMPARE(S().HJD(S().IdxMagMax), S().ReadHJD(brightest));
    QCOMPARE(S().FoldHJD, RoundTo(S().ReadHJD(brightest), 4));
    // Results and ticks are left as they are.
    QCOMPARE(window->text(1), QStringLiteral("0.50000"));
    QVERIFY(window->checked(1));

    // A deletion made while inverted survives the switch back.
    S().PickIdx = 10;
    SetPickedDeleted(true);
    control<QRadioButton>(*window, QStringLiteral("Option1_0"))->click();
    QCOMPARE(S().MagSign, rt::Integer(1));
    QCOMPARE(S().NumPts, rt::Integer(n - 3));
    QCOMPARE(S().Deleted(10), rt::Integer(rt::True));
    QCOMPARE(S().Mag(1), S().ReadMag(1));
    // The faintest point still used, by file order of the first of equals.
    int usedIdx = 0, faintestUsed = 0;
    double faintestMag = -1e9;
    for (int i = 1; i <= n; ++i) {
        if (i == 3 || i == faintest || i == 10)
            continue;
        ++usedIdx;
        if (S().ReadMag(i) > faintestMag) {
            faintestMag = S().ReadMag(i);
            faintestUsed = usedIdx;
        }
    }
    QCOMPARE(int(S().IdxMagMax), faintestUsed);
    QCOMPARE(S().MagMax, faintestMag);
}

void MainWindowTest::loadThroughOpenDialog()
{
    const QString folder = m_scope->folder.mkdir(QStringLiteral("data"));
    m_scope->folder.write(QStringLiteral("data/curve.csv"), dipCurve(25, 4));
    const auto window = startMainWindow();
    // Leftovers of an earlier session: "-Mags (inverted)", results, ticks, means.
    control<QRadioButton>(*window, QStringLiteral("Option1_1"))->click();
    for (int k = 1; k <= 16; ++k)
        window->setText(k, QStringLiteral("x%1").arg(k));
    for (int k = 1; k <= 6; ++k)
        window->setChecked(k, true);

    openThroughDialog(*window, folder, QStringLiteral("curve.csv"));
    QVERIFY(m_scope->messages.messages().isEmpty());
    QCOMPARE(window->windowTitle(), QStringLiteral("Dipscope - curve.csv"));
    QCOMPARE(control<QLabel>(*window, QStringLiteral("Label17"))->text(), QStringLiteral("25"));
    QCOMPARE(control<QLabel>(*window, QStringLiteral("Label18"))->text(), QStringLiteral("25"));
    for (int k = 1; k <= 16; ++k)
        QCOMPARE(window->text(k), QString());
    for (int k = 1; k <= 6; ++k)
        QVERIFY(!window->checked(k));
    QVERIFY(control<QRadioButton>(*window, QStringLiteral("Option1_0"))->isChecked());
    QVERIFY(!control<QRadioButton>(*window, QStringLiteral("Option1_1"))->isChecked());
    QCOMPARE(S().MagSign, rt::Integer(1));
    QCOMPARE(S().Mag(4), 11.5);
    QVERIFY(!window->openForm()->isVisible());
    const QString nativeFolder = QDir::toNativeSeparators(folder);
    QCOMPARE(S().DataDir, nativeFolder);
    QCOMPARE(S().DataName, QStringLiteral("curve.csv"));
    QCOMPARE(S().DataPath, nativeFolder + QDir::separator() + QStringLiteral("curve.csv"));
}

void MainWindowTest::refusedLoadKeepsPreviousFile()
{
    m_scope->folder.write(QStringLiteral("good.csv"), dipCurve(30, 5));
    m_scope->folder.write(QStringLiteral("bad.csv"), "2451234.5,12.3\n2451234.6 12.4\n");
    const auto window = startMainWindow();
    openThroughDialog(*window, m_scope->folder.path(), QStringLiteral("good.csv"));
    for (int k = 1; k <= 16; ++k)
        window->setText(k, QStringLiteral("r%1").arg(k));
    window->setChecked(2, true);
    const double hjd5 = S().HJD(5);

    openThroughDialog(*window, m_scope->folder.path(), QStringLiteral("bad.csv"));
    QCOMPARE(m_scope->messages.messages(), QStringList{csvFormatMessage()});
    QCOMPARE(m_scope->messages.messages().first(),
             QStringLiteral("Sorry - your data file needs to be in the Comma Separated Variables format.  "
                            "See [menu] Help > Help - Data Files for details."));
    QCOMPARE(window->windowTitle(), QStringLiteral("Dipscope - good.csv"));
    QCOMPARE(window->origCountLabel(), QStringLiteral("30"));
    QCOMPARE(S().NumPts, rt::Integer(30));
    QCOMPARE(S().HJD(5), hjd5);
    QVERIFY(window->checked(2));
    for (int k = 13; k <= 16; ++k)
        QCOMPARE(window->text(k), QStringLiteral("r%1").arg(k));
    // The dialog still hides and empties the twelve result boxes; it has set the name.
    QVERIFY(!window->openForm()->isVisible());
    for (int k = 1; k <= 12; ++k)
        QCOMPARE(window->text(k), QString());
    QCOMPARE(S().DataName, QStringLiteral("bad.csv"));
}

// ---- Calc. Means ----

void MainWindowTest::calcMeans_data()
{
    QTest::addColumn<QStringList>("times");
    QTest::addColumn<QStringList>("errors");
    QTest::addColumn<QList<bool>>("ticks");
    QTest::addColumn<QStringList>("means");
    QTest::addColumn<QList<bool>>("ticksAfter");

    const QStringList noMeans = {"m1", "m2", "m3", "m4"}; // what the boxes held before
    const QList<bool> none(6, false);
    auto only = [](int k) {
        QList<bool> t(6, false);
        t[k - 1] = true;
        return t;
    };

    QTest::newRow("no box ticked leaves the four boxes")
        << QStringList{"2459123.4", "", "", "", "", ""} << QStringList{"0.001", "", "", "", "", ""} << none << noMeans
        << none;
    QTest::newRow("one box with error 0.0005")
        << QStringList{"", "", "2459123.45678", "", "", ""} << QStringList{"", "", "0.0005", "", "", ""} << only(3)
        << QStringList{fixed5(2459123.45678), fixed5(2459123.45678), "0.00050", ""} << only(3);
    QTest::newRow("only ticked box with empty error is unticked")
        << QStringList{"", "2459123.4", "", "", "", ""} << QStringList{"", "", "", "", "", ""} << only(2) << noMeans
        << none;
    QTest::newRow("only ticked box with error 0 is unticked")
        << QStringList{"", "", "", "", "", "2459123.4"} << QStringList{"", "", "", "", "", "0"} << only(6) << noMeans
        << none;
    QTest::newRow("error just below 1e-6 is unticked")
        << QStringList{"2459123.4", "", "", "", "", ""} << QStringList{"0.0000009", "", "", "", "", ""} << only(1)
        << noMeans << none;
    QList<bool> oneAndFour(6, false);
    oneAndFour[0] = oneAndFour[3] = true;
    QTest::newRow("box with empty error dropped beside a good one")
        << QStringList{"2459123.40000", "", "", "2459123.41000", "", ""} << QStringList{"", "", "", "0.001", "", ""}
        << oneAndFour << QStringList{"2459123.41000", "2459123.41000", "0.00100", ""} << only(4);
    QTest::newRow("negative error counts squared")
        << QStringList{"", "", "", "", "0.51234", ""} << QStringList{"", "", "", "", "-0.00012", ""} << only(5)
        << QStringList{"0.51234", "0.51234", "0.00012", ""} << only(5);

    // 2459123.40000 +- 0.001 and 2459123.40100 +- 0.002, with the figures computed a second way.
    const double t1 = 2459123.40000, t2 = 2459123.40100, e1 = 0.001, e2 = 0.002;
    const double w1 = 1 / (e1 * e1), w2 = 1 / (e2 * e2);
    const QStringList two = {fixed5((t1 + t2) / 2), fixed5((t1 * w1 + t2 * w2) / (w1 + w2)),
                             fixed5(std::sqrt(1 / (w1 + w2))), fixed5(std::abs(t2 - t1) / std::sqrt(2.0))};
    QCOMPARE(two, (QStringList{"2459123.40050", "2459123.40020", "0.00089", "0.00071"}));
    QList<bool> oneAndTwo(6, false);
    oneAndTwo[0] = oneAndTwo[1] = true;
    QTest::newRow("two methods") << QStringList{"2459123.40000", "2459123.40100", "", "", "", ""}
                                 << QStringList{"0.001", "0.002", "", "", "", ""} << oneAndTwo << two << oneAndTwo;
    QList<bool> twoAndSix(6, false);
    twoAndSix[1] = twoAndSix[5] = true;
    QTest::newRow("two methods in other rows, unticked rows ignored")
        << QStringList{"1", "2459123.40000", "3", "4", "5", "2459123.40100"}
        << QStringList{"1", "0.001", "1", "1", "1", "0.002"} << twoAndSix << two << twoAndSix;
}

void MainWindowTest::calcMeans()
{
    QFETCH(QStringList, times);
    QFETCH(QStringList, errors);
    QFETCH(QList<bool>, ticks);
    QFETCH(QStringList, means);
    QFETCH(QList<bool>, ticksAfter);
    const auto window = startMainWindow();
    // Everything typed by the user, nothing computed.
    for (int k = 1; k <= 6; ++k) {
        QTest::keyClicks(control<QLineEdit>(*window, QStringLiteral("Text%1").arg(k)), times[k - 1]);
        QTest::keyClicks(control<QLineEdit>(*window, QStringLiteral("Text%1").arg(k + 6)), errors[k - 1]);
        if (ticks[k - 1])
            control<QCheckBox>(*window, QStringLiteral("Check%1").arg(k))->click();
    }
    for (int m = 0; m < 4; ++m)
        QTest::keyClicks(control<QLineEdit>(*window, QStringLiteral("Text%1").arg(13 + m)),
                         QStringLiteral("m%1").arg(m + 1));
    QTest::mouseClick(control<QPushButton>(*window, QStringLiteral("Command8")), Qt::LeftButton);
    for (int m = 0; m < 4; ++m)
        QCOMPARE(window->text(13 + m), means[m]);
    for (int k = 1; k <= 6; ++k) {
        QCOMPARE(window->checked(k), ticksAfter[k - 1]);
        QCOMPARE(window->text(k), times[k - 1]);
    }
}

// ---- dipscope FILE ----

void MainWindowTest::commandLineFile()
{
    m_scope->folder.write(QStringLiteral("obs/night 1/curve.csv"), dipCurve(12, 2));
    const auto window = startMainWindow();
    window->openFromCommandLine(QStringLiteral("obs/night 1/curve.csv"));
    const QString folder =
        QDir::toNativeSeparators(QDir(m_scope->folder.path()).filePath(QStringLiteral("obs/night 1")));
    QCOMPARE(S().DataDir, folder);
    QCOMPARE(S().DataName, QStringLiteral("curve.csv"));
    QCOMPARE(S().DataPath, folder + QDir::separator() + QStringLiteral("curve.csv"));
    QCOMPARE(window->windowTitle(), QStringLiteral("Dipscope - curve.csv"));
    QCOMPARE(window->origCountLabel(), QStringLiteral("12"));
    QCOMPARE(window->editedCountLabel(), QStringLiteral("12"));
    QVERIFY(!window->openForm()->isVisible());
    // The open dialog was used as a user would: it now shows that folder.
    QCOMPARE(window->openForm()->Label4->text(), folder);
}

void MainWindowTest::commandLineProcess_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("output");
    QTest::newRow("no argument") << QStringList{} << 0 << "dipscope: main window shown: Dipscope\n";
    QTest::newRow("a file") << QStringList{"sub/curve.csv"} << 0
                            << "dipscope: main window shown: Dipscope - curve.csv\n";
    QTest::newRow("two files") << QStringList{"a.csv", "b.csv"} << 2 << "";
}

void MainWindowTest::commandLineProcess()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    QFETCH(QString, output);
    m_scope->folder.write(QStringLiteral("sub/curve.csv"), dipCurve(12, 2));
    QProcess process;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    env.insert(QStringLiteral("DIPSCOPE_EXIT_WHEN_SHOWN"), QStringLiteral("1"));
    process.setProcessEnvironment(env);
    process.setWorkingDirectory(m_scope->folder.path());
    process.start(QStringLiteral(DIPSCOPE_BINARY), arguments);
    QVERIFY(process.waitForFinished(60000));
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), exitCode);
    QCOMPARE(QString::fromLocal8Bit(process.readAllStandardOutput()), output);
    if (exitCode == 2)
        QVERIFY(process.readAllStandardError().contains("usage: dipscope [FILE]"));
    // Leaving this way writes no settings file.
    QVERIFY(!QFile::exists(m_scope->folder.path() + QStringLiteral("/zzzdip.ini")));
}

QTEST_MAIN(MainWindowTest)
#include "tst_mainwindow.moc"
