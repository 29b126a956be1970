// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The main window as the computations see it: its title, the sixteen text boxes (Text1..Text6
// times of minimum, Text7..Text12 estimated errors, Text13..Text16 the means), the six "Use in
// Mean?" boxes, the two count labels and the magnitude option. The window implements it over
// its controls; MainBoxes keeps the same state in memory for the console tool and for tests.

#include <QString>

namespace dip {

class MainForm {
public:
    virtual ~MainForm();

    virtual QString title() const = 0;
    virtual void setTitle(const QString& title) = 0;
    // k = 1..16.
    virtual QString text(int k) const = 0;
    virtual void setText(int k, const QString& text) = 0;
    // k = 1..6; ticked = 1.
    virtual bool checked(int k) const = 0;
    virtual void setChecked(int k, bool ticked) = 0;
    // Label17 "Original # data points" value, Label18 "Edited # data points" value.
    virtual QString origCountLabel() const = 0;
    virtual void setOrigCountLabel(const QString& text) = 0;
    virtual QString editedCountLabel() const = 0;
    virtual void setEditedCountLabel(const QString& text) = 0;
    // Shows Option1(index) as selected without running its click handler (the caller runs the
    // sign change itself).
    virtual int magOption() const = 0;
    virtual void showMagOption(int index) = 0;
    // Clears the light-curve editor's drawing and hides it.
    virtual void clearAndHidePlotData() {}
};

class MainBoxes : public MainForm {
public:
    QString title() const override { return m_title; }
    void setTitle(const QString& title) override { m_title = title; }
    QString text(int k) const override;
    void setText(int k, const QString& text) override;
    bool checked(int k) const override;
    void setChecked(int k, bool ticked) override;
    QString origCountLabel() const override { return m_orig; }
    void setOrigCountLabel(const QString& text) override { m_orig = text; }
    QString editedCountLabel() const override { return m_edited; }
    void setEditedCountLabel(const QString& text) override { m_edited = text; }
    int magOption() const override { return m_option; }
    void showMagOption(int index) override { m_option = index; }

private:
    QString m_title = QStringLiteral("Dipscope");
    QString m_texts[17];
    bool m_checks[7] = {};
    QString m_orig;
    QString m_edited;
    int m_option = -1;
};

// The main window the procedures talk to. Starts as an in-memory MainBoxes.
MainForm& mainForm();
// Makes form the main window (nullptr puts back the in-memory one); returns the previous.
MainForm* setMainForm(MainForm* form);

} // namespace dip
