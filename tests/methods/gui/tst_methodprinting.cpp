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
#include <QPushButton>
#include <QRegularExpression>

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

QTEST_MAIN(MethodPrintingTest)
#include "tst_methodprinting.moc"
