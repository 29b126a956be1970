// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "plotting/gui/frmPlotData.h"

#include "session/Points.h"

#include <QApplication>
#include <QGridLayout>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>

namespace dip {

frmPlotData::frmPlotData(QWidget* parent) : PlotWindow(7, parent)
{
    setObjectName(QStringLiteral("frmPlotData"));
    // No controls on the form: only the plot box and its axes need room.
    setMinimumFormSize(StandardMinimumWidth, StandardMinimumHeight);
}

void frmPlotData::PlotData() { PlotLightCurve(*this); }

void frmPlotData::Form_Load()
{
    restorePlacement();
    setCaption(QStringLiteral("Light Curve - LEFT-CLICK TO DELETE (or undelete) A POINT."));
}

void frmPlotData::Form_Resize()
{
    // The placement is already stored; the picture follows the new size.
    PlotData();
    // Forces a repaint of the whole picture (once done by making the window one unit lower).
    if (windowState() == Qt::WindowNoState)
        surface()->update();
}

void frmPlotData::Form_MouseDown(int button, int, double x, double y)
{
    if (button != 1)
        return; // right and middle clicks do nothing here
    frmAction& action = ActionWindow();
    action.showForm();
    PickNearestPoint(transform(), x, y);
    MarkPick(*this);
    action.showPick(PickedPointTexts());
}

frmAction::frmAction(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmAction"));
    setWindowTitle(QStringLiteral("Action"));
    setModal(false);
    auto* grid = new QGridLayout(this);
    const QString captions[] = {QStringLiteral("Index"), QStringLiteral("HJD"), QStringLiteral("Magn")};
    for (int k = 1; k <= 3; ++k) {
        auto* label = new QLabel(captions[k - 1], this);
        label->setObjectName(QStringLiteral("Label%1").arg(k));
        auto* text = new QLineEdit(this);
        text->setObjectName(QStringLiteral("Text%1").arg(k));
        text->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("2454123.456789")) + 12);
        grid->addWidget(label, k - 1, 0);
        grid->addWidget(text, k - 1, 1, 1, 2);
    }
    const QString buttons[] = {QStringLiteral("Delete"), QStringLiteral("Undelete"), QStringLiteral("Cancel")};
    for (int k = 1; k <= 3; ++k) {
        auto* button = new QPushButton(buttons[k - 1], this);
        button->setObjectName(QStringLiteral("Command%1").arg(k));
        button->setAutoDefault(false);
        grid->addWidget(button, 3, k - 1);
    }
    connect(findChild<QPushButton*>(QStringLiteral("Command1")), &QPushButton::clicked, this,
            [this] { Command1_Click(); });
    connect(findChild<QPushButton*>(QStringLiteral("Command2")), &QPushButton::clicked, this,
            [this] { Command2_Click(); });
    connect(findChild<QPushButton*>(QStringLiteral("Command3")), &QPushButton::clicked, this,
            [this] { Command3_Click(); });
}

void frmAction::showForm()
{
    if (!m_placed) {
        // Beside the light-curve window rather than over the points, when the screen has room.
        m_placed = true;
        adjustSize();
        const QRect plot = PlotDataWindow().frameGeometry();
        QPoint at(plot.right() + 8, plot.top());
        if (const QScreen* screen = PlotDataWindow().screen()) {
            const QRect room = screen->availableGeometry();
            if (at.x() + frameGeometry().width() > room.right())
                at.setX(std::max(room.left(), room.right() - frameGeometry().width()));
        }
        move(at);
    }
    show();
    raise();
}

void frmAction::showPick(const PickTexts& texts)
{
    findChild<QLineEdit*>(QStringLiteral("Text1"))->setText(texts.index);
    findChild<QLineEdit*>(QStringLiteral("Text2"))->setText(texts.time);
    findChild<QLineEdit*>(QStringLiteral("Text3"))->setText(texts.magn);
}

void frmAction::Command1_Click()
{
    SetPickedDeleted(true);
    hide();
    PlotDataWindow().PlotData();
}

void frmAction::Command2_Click()
{
    SetPickedDeleted(false);
    hide();
    PlotDataWindow().PlotData();
    hide();
}

void frmAction::Command3_Click()
{
    hide();
    PlotDataWindow().PlotData(); // which removes the blue cross
}

void frmAction::reject() { Command3_Click(); }

namespace {

frmPlotData* plotDataWindow = nullptr;

// The windows go before the application does.
void deleteWindows()
{
    delete plotDataWindow; // and frmAction with it
    plotDataWindow = nullptr;
}

} // namespace

frmPlotData& PlotDataWindow()
{
    if (!plotDataWindow) {
        plotDataWindow = new frmPlotData;
        qAddPostRoutine(deleteWindows);
    }
    return *plotDataWindow;
}

frmAction& ActionWindow()
{
    frmPlotData& owner = PlotDataWindow();
    if (auto* action = owner.findChild<frmAction*>(QString(), Qt::FindDirectChildrenOnly))
        return *action;
    return *new frmAction(&owner);
}

} // namespace dip
