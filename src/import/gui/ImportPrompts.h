// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// What "Times" > "Import…" asks the user: the file, the filter when the file holds several,
// and the time window when it holds more observations than a session can. Each question is a
// function the import calls, so that a test answers it without a modal dialog; the real ones
// show the file dialog and the two dialogs below.

#include "import/ImportedRows.h"

#include <QDialog>

#include <functional>
#include <optional>
#include <vector>

class QComboBox;
class QDialogButtonBox;
class QLabel;
class QLineEdit;

namespace dip::import {

// Which filter to take: one line per filter with its count; the preferred one chosen at first.
class FilterChoiceDialog : public QDialog {
    Q_OBJECT
public:
    FilterChoiceDialog(const QString& file, const std::vector<FilterCount>& filters, const QString& preferred,
                       QWidget* parent = nullptr);
    QString filter() const;

private:
    QComboBox* m_filters = nullptr;
    std::vector<FilterCount> m_list;
};

// Which time window to take, both ends included, in the file's own times: the count of the
// observations inside is shown as the ends are typed, and OK takes only a window of 1 to 1000.
// It opens on the first 1000 observations.
class TimeWindowDialog : public QDialog {
    Q_OBJECT
public:
    TimeWindowDialog(const QString& file, std::vector<double> times, QWidget* parent = nullptr);

    // The window typed, when both ends read as times and it holds 1 to 1000 observations.
    std::optional<TimeWindow> window() const;
    // The count shown, or what is wrong with the ends.
    QString status() const;

private:
    void update();

    std::vector<double> m_times; // sorted
    QLineEdit* m_from = nullptr;
    QLineEdit* m_to = nullptr;
    QLabel* m_status = nullptr;
    QDialogButtonBox* m_buttons = nullptr;
};

struct ImportPrompts {
    // The file to import; empty when the user cancels.
    std::function<QString(QWidget* owner)> chooseFile;
    // The filter of a file that holds several; nothing when the user cancels.
    std::function<std::optional<QString>(QWidget* owner, const QString& file, const std::vector<FilterCount>& filters,
                                         const QString& preferred)>
        chooseFilter;
    // The time window of a file of more than 1000 observations; nothing when the user cancels.
    std::function<std::optional<TimeWindow>(QWidget* owner, const QString& file, const std::vector<double>& times)>
        chooseWindow;
};

// The prompts "Import…" uses: the real dialogs unless a test replaced them.
ImportPrompts& importPrompts();
// The real dialogs.
ImportPrompts realImportPrompts();

} // namespace dip::import
