// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/gui/SaveFileChooser.h"

#include <QFileDialog>

namespace dip {

namespace {

SaveFileChooser& chooser()
{
    static SaveFileChooser c;
    return c;
}

} // namespace

QString ChooseSaveFile(QWidget* parent, const QString& caption, const QString& suggested, const QString& filter)
{
    if (chooser())
        return chooser()(parent, caption, suggested, filter);
    return QFileDialog::getSaveFileName(parent, caption, suggested, filter);
}

SaveFileChooser setSaveFileChooser(SaveFileChooser c)
{
    SaveFileChooser previous = std::move(chooser());
    chooser() = std::move(c);
    return previous;
}

} // namespace dip
