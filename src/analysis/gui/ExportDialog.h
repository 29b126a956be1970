// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// "Analysis" > "Export results…": the format (CSV table, JSON, report lines), the star's name,
// the filter and the observer's code a report line carries (prefilled from what the session
// knows, an imported file's, and editable), whether only the ticked results go, and "Export…",
// which asks for the file and writes it. What was typed is kept for the session.

#include "analysis/ResultFile.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QLineEdit;

namespace dip {

class ExportDialog : public QDialog {
    Q_OBJECT

public:
    explicit ExportDialog(QWidget* parent = nullptr);

    ExportFormat format() const;
    // The text the file would hold now.
    QString text() const;
    // Writes the file; a message box says why when it cannot. The dialog closes after a write.
    bool exportTo(const QString& path);

private:
    void keepNames();
    void exportClicked();

    QComboBox* m_format;
    QLineEdit* m_star;
    QLineEdit* m_filter;
    QLineEdit* m_observer;
    QCheckBox* m_tickedOnly;
};

} // namespace dip
