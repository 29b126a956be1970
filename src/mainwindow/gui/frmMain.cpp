// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "mainwindow/gui/frmMain.h"

#include "help/gui/HelpEntries.h"
#include "mainwindow/Journal.h"
#include "mainwindow/Means.h"
#include "mainwindow/Settings.h"
#include "mainwindow/StartUp.h"
#include "mainwindow/gui/ToolkitMenus.h"
#include "mainwindow/gui/TwipsLayout.h"
#include "mainwindow/gui/frmOpen.h"
#include "mainwindow/gui/frmSaveAs.h"
#include "methods/MethodRegistry.h"
#include "methods/gui/MethodStarts.h"
#include "plotting/gui/PlotDataEntry.h"
#include "plotting/gui/PlotWindow.h"
#include "runtime/RuntimeError.h"
#include "session/Points.h"
#include "session/Session.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QCloseEvent>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>

namespace dip {

namespace {

// The form's client area and its grid, in twips.
constexpr int formWidth = 8640;
constexpr int formHeight = 6060;
constexpr int rowTop = 1500;   // first method row
constexpr int rowStep = 435;   // from one row to the next
constexpr int meansTop = 4200; // first mean row
constexpr int titleLeft = 780; // the method titles and the mean labels
constexpr int titleWidth = 2400;
constexpr int timeLeft = 3300; // "Time of Minimum" column, also the means
constexpr int timeWidth = 1800;
constexpr int errorLeft = 5220; // "Est'd Error" column
constexpr int errorWidth = 1320;
constexpr int useLeft = 6660; // "Use in Mean?" column
constexpr int useWidth = 1320;
constexpr int boxHeight = 330;

const char* const meanTitles[] = {"Simple Mean", "Weighted Mean", "Std. Error of  Weighted Mean",
                                  "Std. Deviation of Means"};
const char* const meanLabelNames[] = {"Label10", "Label11", "Label12", "Label14"};

QString numbered(const char* kind, int k) { return QLatin1String(kind) + QString::number(k); }

template <typename T>
T* named(T* widget, const QString& name)
{
    widget->setObjectName(name);
    return widget;
}

QLabel* label(QWidget* parent, const QString& name, const QString& text, int left, int top, int width, int height,
              Qt::Alignment alignment = Qt::AlignLeft | Qt::AlignVCenter)
{
    auto* l = named(new QLabel(text, parent), name);
    l->setTextFormat(Qt::PlainText); // shown as written, both blanks of "Std. Error of  Weighted Mean" too
    l->setAlignment(alignment);
    placeTwips(l, left, top, width, height);
    return l;
}

QPushButton* button(QWidget* parent, const QString& name, const QString& caption, int left, int top, int width,
                    int height)
{
    auto* b = named(new QPushButton(caption, parent), name);
    b->setAutoDefault(false);
    placeTwips(b, left, top, width, height);
    return b;
}

QLineEdit* textBox(QWidget* parent, int k, int left, int top, int width)
{
    auto* t = named(new QLineEdit(parent), numbered("Text", k));
    placeTwips(t, left, top, width, boxHeight);
    return t;
}

} // namespace

frmMain::frmMain(QWidget* parent) : QMainWindow(parent)
{
    setObjectName(QStringLiteral("frmMain"));
    setWindowTitle(QStringLiteral("Dipscope"));
    buildControls();
    buildMenus();
    layout()->setSizeConstraint(QLayout::SetFixedSize);
    m_open = new frmOpen(this);
    m_saveAs = new frmSaveAs(this);
    setMainForm(this);
    // Plot windows with no placement stored open beside this one.
    PlotWindow::setPlacementAnchor(this);
    Form_Load();
}

frmMain::~frmMain()
{
    if (&mainForm() == this)
        setMainForm(nullptr);
}

void frmMain::buildControls()
{
    auto* form = new QWidget(this);
    form->setObjectName(QStringLiteral("frmMainClient"));
    form->setFixedSize(toPixels(formWidth), toPixels(formHeight));
    setCentralWidget(form);

    // Creation order is the tab order: the file and the curve first, then the method rows
    // across, then the means.
    QLabel* name = label(form, QStringLiteral("Label1"), QStringLiteral("Dipscope v2.5d"), 240, 120, 2760, 420);
    QFont big = name->font();
    big.setBold(true);
    big.setPointSizeF(big.pointSizeF() * 1.4);
    name->setFont(big);

    auto* load = button(form, QStringLiteral("Command9"), QStringLiteral("Load File"), 240, 660, 1440, 375);
    auto* plot = button(form, QStringLiteral("Command7"), QStringLiteral("Plot/Edit Data"), 1800, 660, 1440, 375);
    connect(load, &QPushButton::clicked, this, [this] { Command9_Click(); });
    connect(plot, &QPushButton::clicked, this, [this] { Command7_Click(); });

    const Qt::Alignment right = Qt::AlignRight | Qt::AlignVCenter;
    label(form, QStringLiteral("Label15"), QStringLiteral("Original # data points"), timeLeft, 150, 1980, 315, right);
    m_origCount = label(form, QStringLiteral("Label17"), QString(), timeLeft + 2100, 150, 840, 315);
    label(form, QStringLiteral("Label16"), QStringLiteral("Edited # data points"), timeLeft, 540, 1980, 315, right);
    m_editedCount = label(form, QStringLiteral("Label18"), QString(), timeLeft + 2100, 540, 840, 315);
    for (QLabel* count : {m_origCount, m_editedCount}) {
        count->setFrameStyle(QFrame::Panel | QFrame::Sunken);
        count->setIndent(4);
    }

    auto* group = new QButtonGroup(form);
    const char* const options[] = {"+Mags", "-Mags (inverted)"};
    for (int index = 0; index < 2; ++index) {
        m_option[index] =
            named(new QRadioButton(QLatin1String(options[index]), form), QStringLiteral("Option1_%1").arg(index));
        placeTwips(m_option[index], useLeft, 150 + index * 390, 1860, 315);
        group->addButton(m_option[index], index);
        // Only a choice by the user runs the sign change; a load shows "+Mags" and runs it itself.
        connect(m_option[index], &QRadioButton::clicked, this, [this, index] { Option1_Click(index); });
    }

    const Qt::Alignment centre = Qt::AlignHCenter | Qt::AlignBottom;
    label(form, QStringLiteral("Label8"), QStringLiteral("Time of Minimum"), timeLeft, 1140, timeWidth, 285, centre);
    label(form, QStringLiteral("Label9"), QStringLiteral("Est'd Error"), errorLeft, 1140, errorWidth, 285, centre);
    label(form, QStringLiteral("Label13"), QStringLiteral("Use in Mean?"), useLeft, 1140, useWidth, 285, centre);

    for (int k = 1; k <= 6; ++k) {
        const int top = rowTop + (k - 1) * rowStep;
        m_method[k] = button(form, numbered("Command", k), QString(), 240, top, 420, boxHeight);
        m_method[k]->setAccessibleName(QLatin1String(MethodOfRow(k).title));
        connect(m_method[k], &QPushButton::clicked, this, [this, k] { CommandMethod_Click(k); });
        label(form, numbered("Label", k + 1), QLatin1String(MethodOfRow(k).title), titleLeft, top, titleWidth,
              boxHeight);
        m_text[k] = textBox(form, k, timeLeft, top, timeWidth);
        m_text[k + 6] = textBox(form, k + 6, errorLeft, top, errorWidth);
        m_check[k] = named(new QCheckBox(form), numbered("Check", k));
        m_check[k]->setAccessibleName(QStringLiteral("Use in Mean? ") + QLatin1String(MethodOfRow(k).title));
        placeTwips(m_check[k], useLeft + useWidth / 2 - 135, top + 15, 300, 300);
    }

    for (int m = 0; m < 4; ++m) {
        const int top = meansTop + m * rowStep;
        // The mean rows have no button, so their labels may use the room of one.
        QLabel* title = label(form, QLatin1String(meanLabelNames[m]), QLatin1String(meanTitles[m]), 240, top - 45,
                              timeLeft - 120 - 240, boxHeight + 90, right);
        title->setWordWrap(true);
        m_text[13 + m] = textBox(form, 13 + m, timeLeft, top, timeWidth);
    }
    auto* means =
        button(form, QStringLiteral("Command8"), QStringLiteral("Calc. Means"), useLeft, meansTop, useWidth, 375);
    connect(means, &QPushButton::clicked, this, [this] { Command8_Click(); });
}

void frmMain::buildMenus()
{
    QMenu* file = menuBar()->addMenu(QStringLiteral("File"));
    file->setObjectName(QStringLiteral("mnuFile"));
    QAction* open = file->addAction(QStringLiteral("Open"), this, [this] { mnuOpen_Click(); });
    open->setObjectName(QStringLiteral("mnuOpen"));
    QAction* save = file->addAction(QStringLiteral("Save"), this, [this] { mnuSave_Click(); });
    save->setObjectName(QStringLiteral("mnuSave"));
    file->addSeparator();
    QAction* exit = file->addAction(QStringLiteral("Exit"), this, [this] { mnuExit_Click(); });
    exit->setObjectName(QStringLiteral("mnuExit"));

    // The observer's toolkit, in menus of its own beside the program's.
    QMenu* times = menuBar()->addMenu(QStringLiteral("Times"));
    times->setObjectName(QStringLiteral("mnuTimes"));
    BuildTimesMenu(*this, *times);
    QMenu* analysis = menuBar()->addMenu(QStringLiteral("Analysis"));
    analysis->setObjectName(QStringLiteral("mnuAnalysis"));
    BuildAnalysisMenu(*this, *analysis);

    QMenu* help = menuBar()->addMenu(QStringLiteral("Help"));
    help->setObjectName(QStringLiteral("mnuHelp"));
    help->addAction(QStringLiteral("Help - Introduction"), this, [] { ShowHelpIntroduction(); })
        ->setObjectName(QStringLiteral("Help1"));
    help->addAction(QStringLiteral("Help -Data files"), this, [] { ShowHelpDataFiles(); })
        ->setObjectName(QStringLiteral("Help2"));
    help->addSeparator();
    help->addAction(QStringLiteral("About"), this, [] { ShowAbout(); })->setObjectName(QStringLiteral("mnuAbout"));
}

void frmMain::Form_Load()
{
    StartUpSession();
    ReadSettings();
    m_open->prepare(QStringLiteral("*.csv"), 1);
    m_saveAs->prepare(QStringLiteral("*.txt"), 0);
    // "+Mags": with no file loaded the sign change has nothing to do but set the sign, which
    // start-up has done.
    showMagOption(0);
}

// ---- MainForm over the controls ----

QString frmMain::title() const { return windowTitle(); }
void frmMain::setTitle(const QString& title) { setWindowTitle(title); }

QString frmMain::text(int k) const
{
    if (k < 1 || k > 16)
        rt::raise(9);
    return m_text[k]->text();
}

void frmMain::setText(int k, const QString& text)
{
    if (k < 1 || k > 16)
        rt::raise(9);
    m_text[k]->setText(text);
}

bool frmMain::checked(int k) const
{
    if (k < 1 || k > 6)
        rt::raise(9);
    return m_check[k]->isChecked();
}

void frmMain::setChecked(int k, bool ticked)
{
    if (k < 1 || k > 6)
        rt::raise(9);
    m_check[k]->setChecked(ticked);
}

QString frmMain::origCountLabel() const { return m_origCount->text(); }
void frmMain::setOrigCountLabel(const QString& text) { m_origCount->setText(text); }
QString frmMain::editedCountLabel() const { return m_editedCount->text(); }
void frmMain::setEditedCountLabel(const QString& text) { m_editedCount->setText(text); }

int frmMain::magOption() const
{
    for (int index = 0; index < 2; ++index)
        if (m_option[index]->isChecked())
            return index;
    return -1;
}

void frmMain::showMagOption(int index)
{
    if (index < 0 || index > 1)
        rt::raise(9);
    m_option[index]->setChecked(true);
}

void frmMain::clearAndHidePlotData() { ClearAndHidePlotData(); }

// ---- Handlers ----

void frmMain::Option1_Click(int index) { ApplyMagSense(rt::Integer(index)); }

void frmMain::CommandMethod_Click(int method)
{
    // Nothing without a file; the range-picking methods start on all used points.
    PressMethodButton(method);
}

void frmMain::Command7_Click()
{
    if (S().DataName.isEmpty())
        return;
    ShowPlotData();
}

void frmMain::Command8_Click() { CalcMeansOnMainForm(); }

void frmMain::Command9_Click() { mnuOpen_Click(); }

void frmMain::mnuOpen_Click()
{
    // Away from "*.csv" and back again: the two changes make the dialog list its folder afresh.
    m_open->setListIndex(0);
    m_open->show();
    m_open->raise();
    m_open->activateWindow();
    m_open->setListIndex(1);
}

void frmMain::mnuSave_Click()
{
    m_saveAs->setListIndex(1);
    m_saveAs->show();
    m_saveAs->raise();
    m_saveAs->activateWindow();
    m_saveAs->setListIndex(0);
}

void frmMain::mnuExit_Click() { endProgram(); }

void frmMain::openFromCommandLine(const QString& file) { m_open->openFile(file); }

void frmMain::closeEvent(QCloseEvent* event)
{
    Form_Unload();
    event->accept();
}

void frmMain::Form_Unload() { endProgram(); }

void frmMain::endProgram()
{
    // The settings are written once per run, by whichever of Exit and closing comes first;
    // the program then ends at once, so no other window is closed or unloaded.
    if (m_ended)
        return;
    m_ended = true;
    WriteSettings();
    // Beside the settings, the session for the next start (its own file; no window is involved).
    SaveJournalAtEnd(nullptr);
    rt::exitProgram(0);
}

} // namespace dip
