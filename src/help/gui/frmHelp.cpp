// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "help/gui/frmHelp.h"

#include "runtime/Twips.h"

#include <QCloseEvent>
#include <QLabel>
#include <QMoveEvent>
#include <QPointer>
#include <QResizeEvent>

#include <algorithm>
#include <cmath>

namespace dip {

namespace {

constexpr int LabelLeft = 240; // twips
constexpr int TitleTop = 120;  // twips
// Narrower than this the estimates would no longer fit in 16 bits and the layout would end the
// program with an overflow; 200 pixels keeps them far inside.
constexpr int MinimumWidth = 200; // pixels
constexpr int StartWidth = 640;   // pixels
constexpr int StartHeight = 480;  // pixels, replaced by the layout at once
constexpr int ParagraphPoints = 8;

int toPixels(double twips) { return static_cast<int>(std::lround(twips / TwipsPerPixel)); }

// A window placed beyond 32767 twips (about 2184 pixels) is remembered at the edge of the
// 16-bit range rather than ending the program on closing the help.
rt::Integer toTwips16(int pixels)
{
    const long long twips = static_cast<long long>(pixels) * TwipsPerPixel;
    return static_cast<rt::Integer>(std::clamp<long long>(twips, -32768, 32767));
}

QPointer<frmHelp>& loadedForm()
{
    static QPointer<frmHelp> form;
    return form;
}

} // namespace

HelpPlace& helpPlace()
{
    static HelpPlace place;
    return place;
}

frmHelp& frmHelp::load()
{
    QPointer<frmHelp>& form = loadedForm();
    if (!form)
        form = new frmHelp;
    return *form;
}

frmHelp* frmHelp::loaded() { return loadedForm().data(); }

frmHelp::frmHelp(QWidget* parent) : QWidget(parent, Qt::Window)
{
    setObjectName(QStringLiteral("frmHelp"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Help"));

    m_label0 = new QLabel(this);
    m_label0->setObjectName(QStringLiteral("Label0"));
    QFont titleFont = m_label0->font();
    titleFont.setBold(true);
    m_label0->setFont(titleFont);

    // 8 points: a character then takes close to the 15000 square twips the layout estimates.
    QFont paragraphFont = font();
    paragraphFont.setPointSize(ParagraphPoints);
    for (int k = 1; k <= LabelCount; ++k) {
        auto* label = new QLabel(this);
        label->setFont(paragraphFont);
        label->setObjectName(QStringLiteral("Label1_%1").arg(k));
        label->setWordWrap(true);
        label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
        label->hide();
        m_label1[k - 1] = label;
    }

    setMinimumWidth(MinimumWidth);
    resize(StartWidth, StartHeight);
    Form_Load();
}

QLabel* frmHelp::Label1(int index) const { return m_label1.at(static_cast<std::size_t>(index - 1)); }

void frmHelp::Form_Load() { move(helpPlace().left / TwipsPerPixel, helpPlace().top / TwipsPerPixel); }

void frmHelp::Form_Unload()
{
    helpPlace().left = toTwips16(pos().x());
    helpPlace().top = toTwips16(pos().y());
}

void frmHelp::showPage(const HelpPage& page)
{
    m_label0->setText(page.title);
    m_charCounts.clear();
    for (int k = 1; k <= LabelCount; ++k) {
        QLabel* label = Label1(k);
        if (k <= page.paragraphs.size()) {
            const QString& text = page.paragraphs.at(k - 1);
            label->setText(text);
            label->show();
            m_charCounts.push_back(static_cast<int>(text.size()));
        } else {
            // A shorter page leaves no paragraph of the longer one behind.
            label->clear();
            label->hide();
        }
    }
    Form_Resize();
    show();
    raise();
    activateWindow();
}

void frmHelp::Form_Resize()
{
    if (m_resizing || (windowState() & (Qt::WindowMinimized | Qt::WindowMaximized | Qt::WindowFullScreen)))
        return;
    // Our own height change comes back here as a resize of the same width: nothing to redo.
    struct Guard {
        bool& flag;
        explicit Guard(bool& f) : flag(f) { flag = true; }
        ~Guard() { flag = false; }
    } guard(m_resizing);

    const double innerWidth = double(width()) * TwipsPerPixel;
    const double windowWidth = double(frameGeometry().width()) * TwipsPerPixel;
    m_layout = layOutHelpParagraphs(innerWidth, windowWidth, m_charCounts);
    const HelpLayout& layout = m_layout;

    const int left = toPixels(LabelLeft);
    const int labelWidth = toPixels(layout.labelWidth);
    m_label0->setGeometry(left, toPixels(TitleTop), labelWidth, m_label0->sizeHint().height());
    for (std::size_t k = 0; k < layout.tops.size(); ++k) {
        QLabel* label = m_label1[k];
        // A word-wrapped label grows to its text; an empty one has no height.
        const int labelHeight = std::max(0, label->heightForWidth(labelWidth));
        label->setGeometry(left, toPixels(layout.tops[k]), labelWidth, labelHeight);
    }

    // The rule gives the outer height; the frame's share comes off for the inner one.
    const int frameExtra = frameGeometry().height() - height();
    const int innerHeight = std::max(1, toPixels(layout.windowHeight) - frameExtra);
    if (innerHeight != height())
        resize(width(), innerHeight);
}

void frmHelp::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    Form_Resize();
}

// The window manager frames the window after it is shown, which moves its inner area; the
// frame's height is only then known, so the window's height is worked out again.
void frmHelp::moveEvent(QMoveEvent* event)
{
    QWidget::moveEvent(event);
    if (isVisible())
        Form_Resize();
}

void frmHelp::closeEvent(QCloseEvent* event)
{
    Form_Unload();
    // The next help entry loads a fresh window, which comes up where this one was.
    if (loadedForm() == this)
        loadedForm() = nullptr;
    event->accept();
}

} // namespace dip
