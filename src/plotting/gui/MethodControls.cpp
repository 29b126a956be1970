// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "plotting/gui/MethodControls.h"

#include "plotting/gui/PlotWindow.h"

#include <QFontMetricsF>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace dip {

namespace {
constexpr double labelHeight = 255;
constexpr double boxHeight = 315;
constexpr double buttonWidth = 1335;
constexpr double buttonHeight = 495;
} // namespace

QLabel* MethodControls::label(const QString& name, const QString& text, double width)
{
    auto* l = new QLabel(text);
    l->setTextFormat(Qt::PlainText);
    m_form.addControl(name, l, 0, 0, width, labelHeight);
    // The layout's left edges are fixed; a caption wider than its room in this font is set a
    // little smaller rather than cut off.
    QFont font = l->font();
    while (QFontMetricsF(font).horizontalAdvance(text) > l->width() && font.pointSizeF() > 6) {
        font.setPointSizeF(font.pointSizeF() - 0.5);
        l->setFont(font);
    }
    return l;
}

QLineEdit* MethodControls::textBox(const QString& name, const QString& text, double width)
{
    auto* e = new QLineEdit(text);
    m_form.addControl(name, e, 0, 0, width, boxHeight);
    return e;
}

QPushButton* MethodControls::button(const QString& name, const QString& text, std::function<void()> onClick)
{
    auto* b = new QPushButton(text);
    m_form.addControl(name, b, 0, 0, buttonWidth, buttonHeight);
    QObject::connect(b, &QPushButton::clicked, &m_form, [onClick = std::move(onClick)] { onClick(); });
    return b;
}

double MethodControls::width(Kind kind, double given)
{
    switch (kind) {
    case Label: return given > 0 ? given : 1300;
    case TextBox: return given > 0 ? given : 1200;
    default: return buttonWidth;
    }
}

double MethodControls::rowTop(double formHeight, int row)
{
    switch (row) {
    case 1: return formHeight - 1400;
    case 2: return formHeight - 980;
    default: return formHeight - 1400 + (2 * labelHeight + 165 - buttonHeight) / 2;
    }
}

void MethodControls::place(const QString& name, double left, int row)
{
    m_form.moveControl(name, left, rowTop(m_form.formHeight(), row));
}

} // namespace dip
