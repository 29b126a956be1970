// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// Printed pages as pixels, for the printing tests: a PDF page rasterised at the printer's
// resolution by pdftoppm (poppler-utils, installed by tools/install-deps.sh) without
// anti-aliasing, so that a pixel is either inked or not, and the measure of the long straight
// lines of a picture (a plot's frame and markers).

#include <QDir>
#include <QImage>
#include <QImageReader>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

#include <algorithm>
#include <vector>

namespace dip::test {

// The first page of pdf at dpi in grey levels; a null image, with error set, when it cannot be had.
inline QImage rasterisePdf(const QString& pdf, int dpi, QString* error)
{
    QTemporaryDir dir;
    const QString prefix = QDir(dir.path()).filePath(QStringLiteral("page"));
    QProcess tool;
    tool.start(QStringLiteral("pdftoppm"), {QStringLiteral("-r"), QString::number(dpi), QStringLiteral("-gray"),
                                            QStringLiteral("-aa"), QStringLiteral("no"), QStringLiteral("-aaVector"),
                                            QStringLiteral("no"), QStringLiteral("-singlefile"), pdf, prefix});
    if (!tool.waitForStarted(10000)) {
        *error = QStringLiteral("pdftoppm (poppler-utils) is needed: make deps installs it");
        return QImage();
    }
    if (!tool.waitForFinished(60000) || tool.exitCode() != 0) {
        *error = QStringLiteral("pdftoppm failed: ") + QString::fromLocal8Bit(tool.readAllStandardError());
        return QImage();
    }
    // A page at 600 dpi is larger than a picture is allowed to be by default.
    QImageReader::setAllocationLimit(std::max(QImageReader::allocationLimit(), 1024));
    QImageReader reader(prefix + QStringLiteral(".pgm"));
    const QImage page = reader.read();
    if (page.isNull())
        *error = QStringLiteral("pdftoppm's page cannot be read: ") + reader.errorString();
    return page.convertToFormat(QImage::Format_Grayscale8);
}

inline bool inked(const QImage& image, int x, int y) { return qGray(image.pixel(x, y)) < 128; }

// Which pixels are inked, row by row.
class InkMap {
public:
    explicit InkMap(const QImage& image)
        : m_width(image.width()), m_height(image.height()), m_ink(std::size_t(m_width) * std::size_t(m_height))
    {
        // A grey page as it is; a coloured picture by qGray's weights.
        const bool grey = image.format() == QImage::Format_Grayscale8;
        const QImage rgb = grey ? QImage() : image.convertToFormat(QImage::Format_RGB32);
        for (int y = 0; y < m_height; ++y) {
            const uchar* greyRow = grey ? image.constScanLine(y) : nullptr;
            const auto* rgbRow = grey ? nullptr : reinterpret_cast<const QRgb*>(rgb.constScanLine(y));
            for (int x = 0; x < m_width; ++x)
                m_ink[std::size_t(y) * std::size_t(m_width) + std::size_t(x)] =
                    (grey ? int(greyRow[x]) : qGray(rgbRow[x])) < 128;
        }
    }
    int width() const { return m_width; }
    int height() const { return m_height; }
    bool at(int x, int y) const { return m_ink[std::size_t(y) * std::size_t(m_width) + std::size_t(x)]; }

private:
    int m_width;
    int m_height;
    std::vector<bool> m_ink;
};

// The longest straight run of inked pixels (horizontal or vertical), and across how many
// neighbouring rows or columns the run is inked (90 % of it or more): the line's thickness.
struct StraightLine {
    int length = 0;
    int thickness = 0;
    int at = -1; // its row (horizontal) or column (vertical)
};

inline StraightLine longestLine(const QImage& image, bool horizontal)
{
    const InkMap map(image);
    const int lines = horizontal ? map.height() : map.width();
    const int along = horizontal ? map.width() : map.height();
    auto ink = [&](int line, int i) { return horizontal ? map.at(i, line) : map.at(line, i); };
    StraightLine best;
    int bestStart = 0;
    for (int line = 0; line < lines; ++line) {
        int run = 0;
        for (int i = 0; i <= along; ++i) {
            if (i < along && ink(line, i)) {
                ++run;
                continue;
            }
            if (run > best.length) {
                best.length = run;
                best.at = line;
                bestStart = i - run;
            }
            run = 0;
        }
    }
    if (best.length == 0)
        return best;
    auto carries = [&](int line) {
        if (line < 0 || line >= lines)
            return false;
        int n = 0;
        for (int i = bestStart; i < bestStart + best.length; ++i)
            n += ink(line, i) ? 1 : 0;
        return n * 10 >= best.length * 9;
    };
    best.thickness = 1;
    for (int line = best.at - 1; carries(line); --line)
        ++best.thickness;
    for (int line = best.at + 1; carries(line); ++line)
        ++best.thickness;
    return best;
}

} // namespace dip::test
