// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/paint/OcPlotFile.h"

#include "analysis/paint/OcPainter.h"

#include <QFile>
#include <QImage>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSvgGenerator>

namespace dip {

namespace {

const int pdfResolution = 150;

bool fail(QString* error, const QString& why)
{
    if (error)
        *error = why;
    return false;
}

} // namespace

QSize ocPlotSize() { return {1200, 800}; }

bool saveOcDiagram(const QString& path, const OcDiagram& diagram, QString* error)
{
    const std::optional<PlotFormat> format = plotFormatFor(path);
    if (!format)
        return fail(error, QStringLiteral("%1: a plot is written as .png, .svg or .pdf").arg(path));
    const QSize size = ocPlotSize();
    const QRectF area(QPointF(0, 0), QSizeF(size));
    // The painter and the writers report little; a file that cannot be opened is found first.
    {
        QFile probe(path);
        if (!probe.open(QIODevice::WriteOnly))
            return fail(error, QStringLiteral("%1: cannot be written (%2)").arg(path, probe.errorString()));
    }
    switch (*format) {
    case PlotFormat::Png: {
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::white);
        {
            QPainter painter(&image);
            paintOcDiagram(painter, area, diagram);
        }
        if (!image.save(path, "PNG"))
            return fail(error, QStringLiteral("%1: the image could not be written").arg(path));
        return true;
    }
    case PlotFormat::Svg: {
        QSvgGenerator svg;
        svg.setFileName(path);
        svg.setSize(size);
        svg.setViewBox(QRect(QPoint(0, 0), size));
        svg.setTitle(diagram.title.isEmpty() ? QStringLiteral("O-C diagram") : diagram.title);
        QPainter painter;
        if (!painter.begin(&svg))
            return fail(error, QStringLiteral("%1: the SVG file could not be written").arg(path));
        paintOcDiagram(painter, area, diagram);
        painter.end();
        return true;
    }
    case PlotFormat::Pdf: {
        QPdfWriter pdf(path);
        pdf.setResolution(pdfResolution);
        pdf.setPageSize(QPageSize(QSizeF(double(size.width()) / pdfResolution, double(size.height()) / pdfResolution),
                                  QPageSize::Inch));
        pdf.setPageMargins(QMarginsF(0, 0, 0, 0));
        pdf.setTitle(diagram.title.isEmpty() ? QStringLiteral("O-C diagram") : diagram.title);
        QPainter painter;
        if (!painter.begin(&pdf))
            return fail(error, QStringLiteral("%1: the PDF file could not be written").arg(path));
        paintOcDiagram(painter, QRectF(0, 0, pdf.width(), pdf.height()), diagram);
        painter.end();
        return true;
    }
    }
    return false;
}

} // namespace dip
