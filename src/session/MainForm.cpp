// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "session/MainForm.h"

#include "runtime/RuntimeError.h"

namespace dip {

MainForm::~MainForm() = default;

QString MainBoxes::text(int k) const
{
    if (k < 1 || k > 16)
        rt::raise(9);
    return m_texts[k];
}

void MainBoxes::setText(int k, const QString& text)
{
    if (k < 1 || k > 16)
        rt::raise(9);
    m_texts[k] = text;
}

bool MainBoxes::checked(int k) const
{
    if (k < 1 || k > 6)
        rt::raise(9);
    return m_checks[k];
}

void MainBoxes::setChecked(int k, bool ticked)
{
    if (k < 1 || k > 6)
        rt::raise(9);
    m_checks[k] = ticked;
}

namespace {
MainBoxes& memoryForm()
{
    static MainBoxes boxes;
    return boxes;
}
MainForm*& current()
{
    static MainForm* form = &memoryForm();
    return form;
}
} // namespace

MainForm& mainForm() { return *current(); }

MainForm* setMainForm(MainForm* form)
{
    MainForm* previous = current();
    current() = form ? form : &memoryForm();
    return previous;
}

} // namespace dip
