// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/fourier/gui/frmPlott5.h"

#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>

#include <algorithm>

namespace dip {

namespace {

QPointer<frmPlott5>& created()
{
    static QPointer<frmPlott5> form;
    return form;
}

const char* const parameterCaptions[9] = {"",          "ToM, Xo",   "Const, C",  "A.Freq, W", "Const, A1",
                                          "Const, A2", "Const, A3", "Const, A4", "Const, A5"};

// Sizes in twips.
constexpr double BoxWidth = 1800, BoxHeight = 315, CaptionHeight = 240, BoxPitch = 600;
constexpr double ButtonWidth = 1200, ButtonHeight = 375, ButtonPitch = 1320;
constexpr double LabelHeight = 255;
// Room between controls that must not touch.
constexpr double ControlGap = 120;

} // namespace

frmPlott5& frmPlott5::form()
{
    if (!created())
        created() = new frmPlott5;
    return *created();
}

frmPlott5* frmPlott5::existing() { return created().data(); }

frmPlott5::frmPlott5()
    : PlotWindow(5), m_view{*this, [this] {
                                placeControls();
                                PlotFourierLightCurve(*this);
                            }}
{
    setObjectName(QStringLiteral("frmPlott5"));
    setCaption(fourierText::windowCaption());
    for (int k = 1; k <= 8; ++k) {
        m_captions[static_cast<std::size_t>(k)] = new QLabel(QString::fromLatin1(parameterCaptions[k]));
        addControl(QStringLiteral("Label%1").arg(10 + k), m_captions[static_cast<std::size_t>(k)], 0, 0, BoxWidth,
                   CaptionHeight);
        auto* box = new QLineEdit;
        m_text1[static_cast<std::size_t>(k)] = box;
        addControl(fourierText::boxName(k), box, 0, 0, BoxWidth, BoxHeight);
        // Only the user's own edits mark a parameter as edited.
        connect(box, &QLineEdit::textEdited, this, [this, k] { Text1_Change(k); });
    }
    m_label7 = new QLabel(QStringLiteral("Left index:"));
    addControl(QStringLiteral("Label7"), m_label7, 0, 0, 1000, LabelHeight);
    m_label10 = new QLabel;
    addControl(fourierText::leftIndexLabel(), m_label10, 0, 0, 700, LabelHeight);
    m_label9 = new QLabel(QStringLiteral("Right index:"));
    addControl(QStringLiteral("Label9"), m_label9, 0, 0, 1100, LabelHeight);
    m_label8 = new QLabel;
    addControl(fourierText::rightIndexLabel(), m_label8, 0, 0, 700, LabelHeight);
    for (QLabel* label : {m_label7, m_label8, m_label9, m_label10})
        label->setTextFormat(Qt::PlainText);

    m_command1 = new QPushButton(QStringLiteral("Update"));
    addControl(QStringLiteral("Command1"), m_command1, 0, 0, ButtonWidth, ButtonHeight);
    m_command2 = new QPushButton(QStringLiteral(" Fit Fourier"));
    addControl(QStringLiteral("Command2"), m_command2, 0, 0, ButtonWidth, ButtonHeight);
    m_command3 = new QPushButton(QStringLiteral("Undo"));
    addControl(QStringLiteral("Command3"), m_command3, 0, 0, ButtonWidth, ButtonHeight);
    m_command4 = new QPushButton(QStringLiteral("Done"));
    addControl(QStringLiteral("Command4"), m_command4, 0, 0, ButtonWidth, ButtonHeight);
    connect(m_command1, &QPushButton::clicked, this, [this] { Command1_Click(); });
    connect(m_command2, &QPushButton::clicked, this, [this] { Command2_Click(); });
    connect(m_command3, &QPushButton::clicked, this, [this] { Command3_Click(); });
    connect(m_command4, &QPushButton::clicked, this, [this] { Command4_Click(); });
    // Enter in a parameter box presses "Update", the preview of the values typed.
    for (int k = 1; k <= 8; ++k)
        pressOnEnter(fourierText::boxName(k), QStringLiteral("Command1"));
    setMinimumFormSize(minimumWidth(), minimumHeight());
    placeControls();
}

// The boxes' column (from W - 2100, as wide as a box) stays clear of the buttons' row, which
// ends at the right edge of "Done", and the plot box keeps its least width.
double frmPlott5::minimumWidth()
{
    const double buttonsRight = FourierPlotLeft + 3 * ButtonPitch + ButtonWidth;
    const double column = FourierRightMargin - 300; // from the column's left edge to W
    return std::max(buttonsRight + ControlGap + column, FourierPlotLeft + MinPlotWidth + FourierRightMargin);
}

// The eighth box ends inside the form, and the plot box keeps its least height above the rows
// of the index labels and the buttons.
double frmPlott5::minimumHeight()
{
    const double boxesBottom = FourierPlotTop + 7 * BoxPitch + CaptionHeight + BoxHeight;
    return std::max(boxesBottom + ControlGap, FourierPlotTop + MinPlotHeight + FourierBottomMargin);
}

frmPlott5::~frmPlott5() = default;

void frmPlott5::placeControls()
{
    const double W = formWidth(), H = formHeight();
    const double column = W - FourierRightMargin + 300;
    for (int k = 1; k <= 8; ++k) {
        const double top = FourierPlotTop + (k - 1) * BoxPitch;
        moveControl(QStringLiteral("Label%1").arg(10 + k), column, top);
        moveControl(fourierText::boxName(k), column, top + CaptionHeight);
    }
    const double labels = H - FourierBottomMargin + 200;
    moveControl(QStringLiteral("Label7"), FourierPlotLeft, labels);
    moveControl(fourierText::leftIndexLabel(), FourierPlotLeft + 1000, labels);
    moveControl(QStringLiteral("Label9"), FourierPlotLeft + 2000, labels);
    moveControl(fourierText::rightIndexLabel(), FourierPlotLeft + 3100, labels);
    const double buttons = labels + 400;
    for (int n = 1; n <= 4; ++n)
        moveControl(QStringLiteral("Command%1").arg(n), FourierPlotLeft + (n - 1) * ButtonPitch, buttons);
}

void frmPlott5::start()
{
    showForm();
    showFourierWindow(m_view);
}

void frmPlott5::Form_Load()
{
    m_suppressChange = true;
    restorePlacement();
    placeControls();
    m_suppressChange = false;
    fourierFormLoad(*this);
}

void frmPlott5::Form_Resize()
{
    // The placement is already stored by the base; the redraw places the controls.
    redrawFourierWindow(m_view);
}

void frmPlott5::Form_MouseDown(int button, int, double x, double y) { fourierMouseDown(m_view, button, x, y); }

void frmPlott5::Form_MouseMove(int, int, double x, double y) { setMousePointer(int(pointerAt(transform(), x, y))); }

// The window taking or losing the focus redraws. The activation that comes with showing the
// window is not a change of focus of its own: the method button has just drawn the plot, the
// markers and the curve by its own rules, and that picture stays.
void frmPlott5::changeEvent(QEvent* event)
{
    PlotWindow::changeEvent(event);
    if (event->type() != QEvent::ActivationChange || !isLoaded() || !isVisible())
        return;
    if (isActiveWindow()) {
        if (m_activatedByShow) {
            m_activatedByShow = false;
            return;
        }
        Form_GotFocus();
    } else {
        m_activatedByShow = false;
        Form_LostFocus();
    }
}

void frmPlott5::showEvent(QShowEvent* event)
{
    PlotWindow::showEvent(event);
    m_activatedByShow = !isActiveWindow();
}

void frmPlott5::Text1_Change(int index)
{
    if (!m_suppressChange)
        fourierParEdited(index);
}

void frmPlott5::Command1_Click() { updateFourier(m_view); }

void frmPlott5::Command2_Click() { fitFourier(m_view); }

void frmPlott5::Command3_Click() { undoFourier(m_view); }

// The results stay in the main window.
void frmPlott5::Command4_Click() { hide(); }

void frmPlott5::Form_GotFocus() { redrawFourierWindow(m_view); }

void frmPlott5::Form_LostFocus() { redrawFourierWindow(m_view); }

} // namespace dip
