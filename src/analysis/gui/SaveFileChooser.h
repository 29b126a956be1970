// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// Where the toolkit's windows ask for the name of a file to write. Tests install a chooser that
// answers at once, so that no test waits on a modal file dialog.

#include <QString>

#include <functional>

class QWidget;

namespace dip {

// The path chosen, or "" when the user cancelled. filter is a file dialog's filter
// ("PNG image (*.png);;SVG drawing (*.svg)"); suggested the name offered first.
using SaveFileChooser =
    std::function<QString(QWidget* parent, const QString& caption, const QString& suggested, const QString& filter)>;

QString ChooseSaveFile(QWidget* parent, const QString& caption, const QString& suggested, const QString& filter);

// Installs the chooser (an empty one: the file dialog); returns the previous one.
SaveFileChooser setSaveFileChooser(SaveFileChooser chooser);

} // namespace dip
