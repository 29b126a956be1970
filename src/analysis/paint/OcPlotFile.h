// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The O - C diagram saved to a file: PNG (an image), SVG or PDF (one page), chosen by the
// file's suffix. Text needs a QGuiApplication (programs without windows run one on the offscreen
// platform).

#include "analysis/OcDiagram.h"

#include <QSize>
#include <QString>

namespace dip {

// The picture's size: 1200 x 800 pixels (PNG and SVG); the PDF page is 8 x 5.33 inches at
// 150 dots per inch, the same 1200 x 800.
QSize ocPlotSize();

// Writes the diagram to path. False, with why in *error, when the suffix is not one of the three
// or the file cannot be written.
bool saveOcDiagram(const QString& path, const OcDiagram& diagram, QString* error);

} // namespace dip
