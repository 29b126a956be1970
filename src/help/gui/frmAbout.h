// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The About box: product name `Label1`, version `Label6`, a dashed rule `Label8`, the credits,
// terms of distribution and bug-report contact `Label2` ... `Label5`, `Label9`, and an OK button
// `cmdOK` that closes it. It comes up at the top left corner of the screen.

#include <QDialog>

class QLabel;

namespace dip {

class frmAbout : public QDialog {
    Q_OBJECT
public:
    // The loaded About box, loading it (Form_Load) when it is not.
    static frmAbout& load();
    // The loaded About box, or nullptr once it has been closed.
    static frmAbout* loaded();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    explicit frmAbout(QWidget* parent = nullptr);
    void Form_Load();
    QLabel* addLabel(const QString& name, const QString& text);
};

} // namespace dip
