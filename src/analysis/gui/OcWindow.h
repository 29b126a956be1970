// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// "Analysis" > "O–C…": the ephemeris (T0, P, secondaries at phase 0.5), the table of the ticked
// results with their cycle E, the computed time C and O - C in days and minutes, and "Save
// plot…" for the O - C diagram as PNG, SVG or PDF. The ephemeris typed here is the session's
// (Toolkit().ephemeris): the export and the console tools use the same.

#include "analysis/OcDiagram.h"

#include <QWidget>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QTableWidget;

namespace dip {

class OcWindow : public QWidget {
    Q_OBJECT

public:
    explicit OcWindow(QWidget* parent = nullptr);

    // Reads the results and the ephemeris again (the window shows them as they are when shown).
    void refresh();

    // The diagram of the ticked results as the window would save it.
    OcDiagram diagram() const;
    // Writes the diagram to path; a message box says why when it cannot.
    bool savePlot(const QString& path);

protected:
    void showEvent(QShowEvent* event) override;
    bool event(QEvent* event) override;

private:
    void ephemerisEdited();
    void fillTable();
    void savePlotClicked();

    QLineEdit* m_t0;
    QLineEdit* m_period;
    QCheckBox* m_secondary;
    QComboBox* m_axis;
    QLabel* m_status;
    QTableWidget* m_table;
    bool m_filling = false;
};

} // namespace dip
