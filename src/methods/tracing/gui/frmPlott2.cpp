// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/tracing/gui/frmPlott2.h"

#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalBlocker>

#include <algorithm>

namespace dip {

namespace {

QPointer<frmPlott2>& created()
{
    static QPointer<frmPlott2> form;
    return form;
}

// Sizes in twips. The bar is as long as the row above it allows, from the left edge of "Fold
// HJD:" to the right edge of "Update" (the averaging label stands beside it at 3960), rather
// than the window design's 1095, so that a step of the fold is a step the mouse can make; its
// height is the design's. The others fit their captions between the fixed left positions of
// the layout.
constexpr double ScrollWidth = 2880 + 975 - 240, ScrollHeight = 255;
constexpr double BoxWidth = 1455, BoxHeight = 315;
constexpr double ButtonHeight = 375;

// The fold's scroll bar. Keys move it as on a horizontal bar of the desktop: Left and Right by
// one unit, Page Up and Page Down by a page left and right, Home and End to the ends. (Qt's
// scroll bars invert the key directions for the sake of vertical ones.)
class FoldScrollBar : public QScrollBar {
public:
    FoldScrollBar() : QScrollBar(Qt::Horizontal) {}

protected:
    void keyPressEvent(QKeyEvent* event) override
    {
        switch (event->key()) {
        case Qt::Key_Left: triggerAction(SliderSingleStepSub); break;
        case Qt::Key_Right: triggerAction(SliderSingleStepAdd); break;
        case Qt::Key_PageUp: triggerAction(SliderPageStepSub); break;
        case Qt::Key_PageDown: triggerAction(SliderPageStepAdd); break;
        case Qt::Key_Home: triggerAction(SliderToMinimum); break;
        case Qt::Key_End: triggerAction(SliderToMaximum); break;
        default: QScrollBar::keyPressEvent(event); return;
        }
        event->accept();
    }
};

} // namespace

frmPlott2& frmPlott2::form()
{
    if (!created())
        created() = new frmPlott2;
    return *created();
}

frmPlott2* frmPlott2::existing() { return created().data(); }

frmPlott2::frmPlott2() : PlotWindow(2)
{
    setObjectName(QStringLiteral("frmPlott2"));
    const double buttons = formHeight() - 1550, bar = formHeight() - 1130;
    m_label7 = new QLabel;
    addControl(QStringLiteral("Label7"), m_label7, 240, buttons, 1020, BoxHeight);
    m_text1 = new QLineEdit;
    m_text1->setAlignment(Qt::AlignRight);
    addControl(QStringLiteral("Text1"), m_text1, 1320, buttons, BoxWidth, BoxHeight);
    m_command1 = new QPushButton;
    addControl(QStringLiteral("Command1"), m_command1, 2880, buttons, 975, ButtonHeight);
    m_command2 = new QPushButton;
    addControl(QStringLiteral("Command2"), m_command2, 3960, buttons, 855, ButtonHeight);
    m_command3 = new QPushButton;
    addControl(QStringLiteral("Command3"), m_command3, 4920, buttons, 1335, ButtonHeight);
    m_command4 = new QPushButton;
    addControl(QStringLiteral("Command4"), m_command4, 6600, buttons, 975, ButtonHeight);
    m_scroll = new FoldScrollBar;
    m_scroll->setRange(ScrollMin, ScrollMax);
    m_scroll->setSingleStep(1);
    m_scroll->setPageStep(5);
    m_scroll->setValue(ScrollCentre);
    addControl(QStringLiteral("HScroll1"), m_scroll, 240, bar, ScrollWidth, ScrollHeight);
    m_label8 = new QLabel;
    addControl(QStringLiteral("Label8"), m_label8, 3960, bar, 2400, BoxHeight);
    SetTracingPaperDesignTexts(*this);

    connect(m_scroll, &QScrollBar::valueChanged, this, [this] { HScroll1_Change(); });
    connect(m_command1, &QPushButton::clicked, this, [this] { Command1_Click(); });
    connect(m_command2, &QPushButton::clicked, this, [this] { Command2_Click(); });
    connect(m_command3, &QPushButton::clicked, this, [this] { Command3_Click(); });
    connect(m_command4, &QPushButton::clicked, this, [this] { Command4_Click(); });
    // Reached with Tab after "Done", and moved with the keys.
    m_scroll->setFocusPolicy(Qt::StrongFocus);
    pressOnEnter(QStringLiteral("Text1"), QStringLiteral("Command1"));
    // At least as wide as the controls at their fixed left edges need and as high as the two
    // rows, the axes and a plot box of the least room (its bottom is at H - 2100).
    double right = 0;
    for (QWidget* control : {static_cast<QWidget*>(m_label8), static_cast<QWidget*>(m_command4)})
        right = std::max(right, double(control->geometry().right() + 1) * TwipsPerPixel);
    setMinimumFormSize(std::max(right + ControlMargin, StandardMinimumWidth), 242 + MinPlotHeight + 2100);
}

frmPlott2::~frmPlott2() = default;

void frmPlott2::Form_Load()
{
    // A loaded window starts from its design: texts, and the bar at its centre (its design
    // value, so setting it raises no change event).
    SetTracingPaperDesignTexts(*this);
    restorePlacement();
    {
        const QSignalBlocker quiet(m_scroll);
        m_scroll->setValue(ScrollCentre);
    }
    setCaption(tracingPaperCaption());
}

void frmPlott2::Form_Resize()
{
    // The placement is already stored by the base; clear and redraw.
    PlotTracingPaper(view());
}

void frmPlott2::showForm() { PlotWindow::showForm(); }

void frmPlott2::moveControl(const QString& name, double left, double top) { PlotWindow::moveControl(name, left, top); }

int frmPlott2::scrollValue() const { return m_scroll->value(); }

void frmPlott2::setScrollValue(int value) { m_scroll->setValue(value); }

void frmPlott2::HScroll1_Scroll() { FoldFromScrollBar(view()); }

// Arrow clicks, trough clicks, keys and drags all act alike.
void frmPlott2::HScroll1_Change() { HScroll1_Scroll(); }

void frmPlott2::Command1_Click() { UpdateFold(view()); }

void frmPlott2::Command2_Click() { SmoothFold(view()); }

void frmPlott2::Command3_Click() { UndoSmoothFold(view()); }

// The published result stays in the main window.
void frmPlott2::Command4_Click() { hide(); }

} // namespace dip
