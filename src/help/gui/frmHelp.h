// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The help window: a title label `Label0` and the paragraph labels `Label1`(1..9), whose
// objectNames are "Label0" and "Label1_1" ... "Label1_9". The paragraphs are word-wrapped
// labels stacked by the character-count estimate of HelpLayout on show and on every resize; the
// window's height follows from its width.

#include "help/HelpLayout.h"
#include "help/HelpTexts.h"
#include "runtime/Integer.h"

#include <QWidget>

#include <array>
#include <vector>

class QLabel;

namespace dip {

// Where the help window was last closed, in twips. Kept while the program runs; the settings
// file does not hold it.
struct HelpPlace {
    rt::Integer left = 0;
    rt::Integer top = 0;
};
HelpPlace& helpPlace();

class frmHelp : public QWidget {
    Q_OBJECT
public:
    static constexpr int LabelCount = 9;

    // The loaded help window, loading it (Form_Load) when it is not.
    static frmHelp& load();
    // The loaded help window, or nullptr once it has been closed.
    static frmHelp* loaded();

    // Title, paragraphs, layout, and show: what the main window's help entries do.
    void showPage(const HelpPage& page);

    int paragraphCount() const { return static_cast<int>(m_charCounts.size()); }
    // The layout applied last (twips).
    const HelpLayout& layout() const { return m_layout; }
    QLabel* Label0() const { return m_label0; }
    QLabel* Label1(int index) const; // 1..9

protected:
    void resizeEvent(QResizeEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    explicit frmHelp(QWidget* parent = nullptr);
    void Form_Load();
    void Form_Resize();
    void Form_Unload();

    QLabel* m_label0 = nullptr;
    std::array<QLabel*, LabelCount> m_label1{};
    std::vector<int> m_charCounts; // characters of each paragraph of the page shown
    HelpLayout m_layout;
    bool m_resizing = false;
};

} // namespace dip
