// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers

// "Print" of every method window into a PDF at 600 dpi: the picture is drawn again at the
// printer's resolution, so a line that is one pixel wide on the screen is one printer's dot
// (1/600 inch) wide on the page, and the controls stand on it drawn at that resolution too.

#include "mainwindow/gui/MainWindowTestSupport.h"

#include "methods/chords/gui/frmPlott3.h"
#include "methods/fourier/gui/frmPlott5.h"
#include "methods/kwee/gui/frmPlott4.h"
#include "methods/parabola/gui/frmPlott1.h"
#include "methods/tracing/gui/frmPlott2.h"
#include "plotting/gui/Printing.h"
#include "session/Session.h"
#include "support/gui/PdfRaster.h"

#include <QAction>
#include <QFile>
#include <QLineEdit>
#include <QPrinter>
#include <QPushButton>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>

using namespace dip;
using namespace dip::test;

namespace {

PlotWindow* methodWindow(int method)
{
    switch (method) {
    case 1: return &frmPlott1::form();
    case 2: return &frmPlott2::form();
    case 3: return &frmPlott3::form();
    case 4: return &frmPlott4::form();
    default: return &frmPlott5::form();
    }
}

// The widths and heights of the images a PDF file holds.
QList<QSize> pdfImages(const QByteArray& pdf)
{
    QList<QSize> sizes;
    QRegularExpression image(QStringLiteral("/Subtype\\s*/Image[^>]*?/Width\\s+(\\d+)[^>]*?/Height\\s+(\\d+)"));
    auto it = image.globalMatch(QString::fromLatin1(pdf));
    while (it.hasNext()) {
        const auto m = it.next();
        sizes << QSize(m.captured(1).toInt(), m.captured(2).toInt());
    }
    return sizes;
}

} // namespace

class MethodPrintingTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { prepareWindowTests(); }
    void init();
    void cleanup();
    void linesOneDotWideAt600Dpi_data();
    void linesOneDotWideAt600Dpi();
    void overlaysInsideTheBoxOnThePage();

private:
    std::unique_ptr<WindowTestScope> m_scope;
    std::unique_ptr<frmMain> m_window;
};

void MethodPrintingTest::init()
{
    m_scope = std::make_unique<WindowTestScope>();
    ResetPrinter();
    m_scope->folder.write(QStringLiteral("curve.csv"), dipCurve(60, 9));
    m_window = startMainWindow();
    m_window->openFromCommandLine(QStringLiteral("curve.csv"));
}

void MethodPrintingTest::cleanup()
{
    m_window.reset();
    m_scope.reset();
    ResetPrinter();
}

void MethodPrintingTest::linesOneDotWideAt600Dpi_data()
{
    QTest::addColumn<int>("method");
    QTest::newRow("frmPlott1 parabolic fit") << 1;
    QTest::newRow("frmPlott2 tracing paper") << 2;
    QTest::newRow("frmPlott3 bisectors of chords") << 3;
    QTest::newRow("frmPlott4 Kwee and van Woerden") << 4;
    QTest::newRow("frmPlott5 Fourier fit") << 5;
}

void MethodPrintingTest::linesOneDotWideAt600Dpi()
{
    QFETCH(int, method);
    control<QPushButton>(*m_window, QStringLiteral("Command%1").arg(method))->click();
    PlotWindow& form = *methodWindow(method);
    QVERIFY(form.isVisible());
    const QString pdf = QDir(m_scope->folder.path()).filePath(QStringLiteral("window.pdf"));
    CurrentPrinter().outputFile = pdf;
    CurrentPrinter().printQuality = 600;
    form.findChild<QAction*>(QStringLiteral("mPrint"))->trigger();
    QFile file(pdf);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();

    // On the screen the plot's frame is one pixel wide.
    const double scale = 600.0 / 96;
    const StraightLine screenAcross = longestLine(form.picture(), true);
    const StraightLine screenDown = longestLine(form.picture(), false);
    QCOMPARE(screenAcross.thickness, 1);
    QCOMPARE(screenDown.thickness, 1);

    // On the page: one dot, the same lines as long as the screen's at the printer's resolution.
    QString error;
    const QImage page = rasterisePdf(pdf, 600, &error);
    QVERIFY2(!page.isNull(), qPrintable(error));
    const StraightLine across = longestLine(page, true);
    const StraightLine down = longestLine(page, false);
    QCOMPARE(across.thickness, 1);
    QCOMPARE(down.thickness, 1);
    // The same lines: as long as on the screen, give or take the ticks that may join them there.
    QVERIFY2(std::abs(across.length - screenAcross.length * scale) <= 0.02 * across.length,
             qPrintable(QStringLiteral("%1 dots for %2 pixels").arg(across.length).arg(screenAcross.length)));
    QVERIFY2(std::abs(down.length - screenDown.length * scale) <= 0.02 * down.length,
             qPrintable(QStringLiteral("%1 dots for %2 pixels").arg(down.length).arg(screenDown.length)));

    // The controls are drawn on it at the printer's resolution, each from its own style: the
    // "Done" button is an image 600/96 times its size on the screen.
    const QString done = method == 2 || method == 5 ? QStringLiteral("Command4") : QStringLiteral("Command3");
    const QSize button = form.control<QPushButton>(done)->size();
    bool found = false;
    for (const QSize& image : pdfImages(bytes))
        found = found || (std::abs(image.width() - button.width() * scale) <= 1 &&
                          std::abs(image.height() - button.height() * scale) <= 1);
    QVERIFY2(found,
             qPrintable(
                 QStringLiteral("no image of %1 x %2 dots").arg(button.width() * scale).arg(button.height() * scale)));
    QVERIFY(!pdfImages(bytes).contains(form.clientSize()));
    form.hide();
}

// The Fourier window with a preview curve far off the scale and its range markers, printed at
// 600 dpi: the page differs from the page of the bare plot only strictly inside the frame (and
// in the controls, whose texts changed), so the curve is clipped on paper as on the screen.
void MethodPrintingTest::overlaysInsideTheBoxOnThePage()
{
    control<QPushButton>(*m_window, QStringLiteral("Command5"))->click();
    frmPlott5& form = frmPlott5::form();
    QVERIFY(form.isVisible());
    QApplication::processEvents();
    CurrentPrinter().printQuality = 600;
    auto printPage = [&](const QString& name, QImage* page) {
        const QString pdf = QDir(m_scope->folder.path()).filePath(name);
        CurrentPrinter().outputFile = pdf;
        form.findChild<QAction*>(QStringLiteral("mPrint"))->trigger();
        QString error;
        *page = rasterisePdf(pdf, 600, &error);
        QVERIFY2(!page->isNull(), qPrintable(error));
    };
    QImage before;
    printPage(QStringLiteral("before.pdf"), &before);

    const Session& s = S();
    const PlotTransform& box = form.transform();
    for (const double t : {s.HJDMin + 0.3 * s.HJDRange, s.HJDMin + 0.7 * s.HJDRange}) {
        const double x = box.PlotLeft + box.PlotWidth * (t - s.HJDMin) / s.HJDRange;
        QTest::mouseClick(form.surface(), Qt::RightButton, {},
                          QPoint(int(std::lround(x / 15)), int(std::lround((box.PlotTop + box.PlotBottom) / 30))));
    }
    QCOMPARE(s.Fourier.Range.RangeSet, rt::True);
    // Xo at the deepest point, an amplitude far larger than the dip: the preview leaves the box
    // at its top.
    const QStringList start = {
        QString::number(s.HJD(s.IdxMagMax), 'f', 5), QString::number(s.MagMax), "25", "3", "0", "0", "0", "0"};
    for (int k = 1; k <= 8; ++k)
        form.Text1(k)->setText(start[k - 1]);
    form.Command1()->click();
    const FourierState& f = s.Fourier;
    QVERIFY(*std::min_element(&f.CurveM(0), &f.CurveM(0) + 101) < s.MagMin - s.MagRange);
    QImage after;
    printPage(QStringLiteral("after.pdf"), &after);
    QCOMPARE(after.size(), before.size());

    // Where the client area stands on the page: at the printable area's corner, 600/96 dots to a
    // pixel (the window fits the page).
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setPageSize(QPageSize(QPageSize::A4));
    printer.setResolution(600);
    const QPointF origin = printer.pageLayout().paintRectPixels(600).topLeft();
    const double scale = 600.0 / form.logicalDpiX();
    QVERIFY(form.clientSize().width() * scale <= printer.pageLayout().paintRectPixels(600).width());
    auto dotX = [&](double twips) { return origin.x() + twips / 15 * scale; };
    auto dotY = [&](double twips) { return origin.y() + twips / 15 * scale; };
    // The frame is there: its left edge inked down most of the box on the bare plot's page.
    const InkMap ink(before);
    const int frameColumn = int(std::floor(dotX(box.PlotLeft)));
    int inked = 0;
    for (int y = int(dotY(box.PlotTop)) + 2; y < int(dotY(box.PlotBottom)) - 2; ++y)
        inked += ink.at(frameColumn, y) ? 1 : 0;
    QVERIFY2(inked > 0.9 * (dotY(box.PlotBottom) - dotY(box.PlotTop)),
             qPrintable(QStringLiteral("the frame's left edge is not at dot column %1").arg(frameColumn)));

    // Every dot that changed lies clear of the frame's lines (each 1 dot wide about its place),
    // unless it is in a control.
    QList<QRectF> controls;
    for (QWidget* c : form.surface()->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
        controls << QRectF(dotX(c->x() * 15) - 2, dotY(c->y() * 15) - 2, c->width() * scale + 4,
                           c->height() * scale + 4);
    const double left = dotX(box.PlotLeft) + 0.5, right = dotX(box.PlotRight) - 0.5;
    const double top = dotY(box.PlotTop) + 0.5, bottom = dotY(box.PlotBottom) - 0.5;
    int changedInside = 0;
    for (int y = 0; y < after.height(); ++y) {
        const uchar* a = after.constScanLine(y);
        const uchar* b = before.constScanLine(y);
        for (int x = 0; x < after.width(); ++x) {
            if (a[x] == b[x])
                continue;
            if (x >= left && x + 1 <= right && y >= top && y + 1 <= bottom) {
                ++changedInside;
                continue;
            }
            const QPointF dot(x + 0.5, y + 0.5);
            QVERIFY2(std::any_of(controls.begin(), controls.end(), [&dot](const QRectF& r) { return r.contains(dot); }),
                     qPrintable(QStringLiteral("dot (%1, %2) changed outside the box %3..%4, %5..%6")
                                    .arg(x)
                                    .arg(y)
                                    .arg(left)
                                    .arg(right)
                                    .arg(top)
                                    .arg(bottom)));
        }
    }
    QVERIFY(changedInside > 1000);
    form.hide();
}

QTEST_MAIN(MethodPrintingTest)
#include "tst_methodprinting.moc"
