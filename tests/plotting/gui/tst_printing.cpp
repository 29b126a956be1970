// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "plotting/gui/PlotDataEntry.h"
#include "plotting/gui/Printing.h"
#include "plotting/gui/frmPlotData.h"
#include "session/Session.h"
#include "support/TestSupport.h"
#include "support/gui/PdfRaster.h"

#include <QAction>
#include <QApplication>
#include <QFile>
#include <QLoggingCategory>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <cmath>

using namespace dip;

namespace {

// A second plot window, standing for the method windows.
class OtherForm : public PlotWindow {
public:
    OtherForm() : PlotWindow(1) {}
};

// A printer system with the given printers and default, whose dialog answers as told and
// records how it was called.
struct FakeSystem {
    QList<InstalledPrinter> printers;
    QString defaultName;
    bool confirm = false;
    PrintDialogChoice answer;
    int dialogs = 0;
    PrinterState seed;
    int flags = 0;
    QWidget* owner = nullptr;

    PrinterSystem system()
    {
        PrinterSystem s;
        s.installed = [this] { return printers; };
        s.defaultName = [this] { return defaultName; };
        s.runDialog = [this](const PrinterState& seedState, int dialogFlags, QWidget* dialogOwner,
                             PrintDialogChoice* choice) {
            ++dialogs;
            seed = seedState;
            flags = dialogFlags;
            owner = dialogOwner;
            if (confirm)
                *choice = answer;
            return confirm;
        };
        return s;
    }
};

bool sameState(const PrinterState& a, const PrinterState& b)
{
    return a.deviceName == b.deviceName && a.driverName == b.driverName && a.port == b.port &&
           a.outputFile == b.outputFile && a.copies == b.copies && a.orientation == b.orientation &&
           a.colorMode == b.colorMode && a.duplex == b.duplex && a.paperBin == b.paperBin &&
           a.paperSize == b.paperSize && a.printQuality == b.printQuality;
}

QByteArray readFile(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// The pages of a PDF file: its page objects ("/Type /Page", not "/Pages").
int pdfPages(const QByteArray& pdf)
{
    return int(QString::fromLatin1(pdf).count(QRegularExpression(QStringLiteral("/Type\\s*/Page(?!s)"))));
}

// The widths and heights of the images a PDF file holds.
QList<QSize> pdfImages(const QByteArray& pdf)
{
    QList<QSize> sizes;
    const QString text = QString::fromLatin1(pdf);
    QRegularExpression image(QStringLiteral("/Subtype\\s*/Image[^>]*?/Width\\s+(\\d+)[^>]*?/Height\\s+(\\d+)"));
    auto it = image.globalMatch(text);
    while (it.hasNext()) {
        const auto m = it.next();
        sizes << QSize(m.captured(1).toInt(), m.captured(2).toInt());
    }
    return sizes;
}

QStringList logged;
void recordLog(QtMsgType, const QMessageLogContext& context, const QString& message)
{
    if (QByteArray(context.category) == "dipscope.printer")
        logged << message;
}

} // namespace

class PrintingTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup() { SetPrinterSystem(QtPrinterSystem()); }
    void printsTheWindowOnOnePage();
    void settingsReachThePage();
    void noPrinterNothingHappens();
    void followsTheSystemDefaultUntilSetup();
    void cancelLeavesThePrinter();
    void dialogSeededAndOwned();
    void chosenPrinterServesEveryWindow();
    void lookupByUpperCaseNameLastWins_data();
    void lookupByUpperCaseNameLastWins();
    void printToFileChoice();
    void descriptionsOnlyInTheLog_data();
    void descriptionsOnlyInTheLog();

private:
    FakeSystem m_fake;
    QTemporaryDir m_dir;
};

void PrintingTest::init()
{
    m_fake = FakeSystem();
    SetPrinterSystem(m_fake.system());
    ResetPrinter();
    std::vector<std::pair<double, double>> points;
    for (int i = 0; i < 50; ++i)
        points.push_back({2454123.4 + 0.004 * i, 11.2 + 0.6 * std::exp(-std::pow((i - 25) / 8.0, 2))});
    QVERIFY(test::loadText(test::csv(points)));
    ShowPlotData();
}

void PrintingTest::printsTheWindowOnOnePage()
{
    const QString pdf = m_dir.filePath(QStringLiteral("window.pdf"));
    CurrentPrinter().outputFile = pdf;
    CurrentPrinter().printQuality = 600;
    frmPlotData& form = PlotDataWindow();
    form.findChild<QAction*>(QStringLiteral("mPrint"))->trigger();
    const QByteArray bytes = readFile(pdf);
    QVERIFY(bytes.startsWith("%PDF"));
    QCOMPARE(pdfPages(bytes), 1);
    // The picture is drawn on the page, not pasted as the screen's pixels.
    QCOMPARE(pdfImages(bytes), QList<QSize>{});

    // The plot's frame: one pixel wide on the screen and one printer's dot (1/600 in) on paper,
    // as long as on the screen.
    const double width = S().PlotWidth / TwipsPerPixel, height = S().PlotHeight / TwipsPerPixel;
    const test::StraightLine screenAcross = test::longestLine(form.picture(), true);
    const test::StraightLine screenDown = test::longestLine(form.picture(), false);
    QCOMPARE(screenAcross.thickness, 1);
    QCOMPARE(screenDown.thickness, 1);
    QVERIFY(std::abs(screenAcross.length - width) <= 2);
    QString error;
    const QImage page = test::rasterisePdf(pdf, 600, &error);
    QVERIFY2(!page.isNull(), qPrintable(error));
    const test::StraightLine across = test::longestLine(page, true);
    const test::StraightLine down = test::longestLine(page, false);
    QCOMPARE(across.thickness, 1);
    QCOMPARE(down.thickness, 1);
    const double scale = 600.0 / 96;
    QVERIFY2(std::abs(across.length - width * scale) <= 3, qPrintable(QString::number(across.length)));
    QVERIFY2(std::abs(down.length - height * scale) <= 3, qPrintable(QString::number(down.length)));
}

void PrintingTest::settingsReachThePage()
{
    const QString pdf = m_dir.filePath(QStringLiteral("landscape.pdf"));
    PrinterState& printer = CurrentPrinter();
    printer.outputFile = pdf;
    printer.orientation = 2;
    printer.paperSize = QPageSize::A4;
    PrintForm(&PlotDataWindow());
    // An A4 page turned: 842 x 595 points.
    const QString text = QString::fromLatin1(readFile(pdf));
    const auto box = QRegularExpression(QStringLiteral("/MediaBox\\s*\\[0 0 ([\\d.]+) ([\\d.]+)\\]")).match(text);
    QVERIFY(box.hasMatch());
    QCOMPARE(qRound(box.captured(1).toDouble()), 842);
    QCOMPARE(qRound(box.captured(2).toDouble()), 595);
}

void PrintingTest::noPrinterNothingHappens()
{
    test::MessageRecorder messages;
    QVERIFY(CurrentPrinter().deviceName.isEmpty());
    QList<QWidget*> shownBefore;
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w->isVisible())
            shownBefore << w;
    PlotDataWindow().findChild<QAction*>(QStringLiteral("mPrint"))->trigger();
    // A printer that is not installed any more: the same.
    CurrentPrinter().deviceName = QStringLiteral("Gone Printer");
    PrintForm(&PlotDataWindow());
    QVERIFY(messages.messages().isEmpty());
    QList<QWidget*> shownAfter;
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w->isVisible())
            shownAfter << w;
    QCOMPARE(shownAfter, shownBefore);
    QVERIFY(PlotDataWindow().isVisible()); // and the program goes on
}

void PrintingTest::followsTheSystemDefaultUntilSetup()
{
    m_fake.printers = {{QStringLiteral("Office"), QStringLiteral("Laser 5"), QStringLiteral("LPT1:")},
                       {QStringLiteral("Photo"), QStringLiteral("Inkjet"), QStringLiteral("USB1:")}};
    m_fake.defaultName = QStringLiteral("Office");
    QVERIFY(FollowsSystemDefaultPrinter());
    QCOMPARE(CurrentPrinter().deviceName, QStringLiteral("Office"));
    QCOMPARE(CurrentPrinter().driverName, QStringLiteral("Laser 5"));
    QCOMPARE(CurrentPrinter().port, QStringLiteral("LPT1:"));
    m_fake.defaultName = QStringLiteral("Photo");
    QCOMPARE(CurrentPrinter().deviceName, QStringLiteral("Photo"));
    // Print Setup, even when cancelled, makes the printer the program's own.
    PrintSetup(&PlotDataWindow());
    QVERIFY(!FollowsSystemDefaultPrinter());
    m_fake.defaultName = QStringLiteral("Office");
    QCOMPARE(CurrentPrinter().deviceName, QStringLiteral("Photo"));
}

void PrintingTest::cancelLeavesThePrinter()
{
    m_fake.printers = {{QStringLiteral("Office"), {}, {}}, {QStringLiteral("Photo"), {}, {}}};
    m_fake.defaultName = QStringLiteral("Office");
    PrinterState& printer = CurrentPrinter();
    printer.copies = 3;
    printer.orientation = 2;
    printer.duplex = 3;
    const PrinterState before = printer;
    m_fake.confirm = false;
    m_fake.answer.printerName = QStringLiteral("Photo");
    m_fake.answer.copies = 9;
    PlotDataWindow().findChild<QAction*>(QStringLiteral("mPrintSetup"))->trigger();
    QCOMPARE(m_fake.dialogs, 1);
    QVERIFY(sameState(CurrentPrinter(), before));
}

void PrintingTest::dialogSeededAndOwned()
{
    m_fake.printers = {{QStringLiteral("Office"), QStringLiteral("Laser 5"), QStringLiteral("LPT1:")}};
    m_fake.defaultName = QStringLiteral("Office");
    CurrentPrinter().paperBin = QPrinter::Manual;
    PrintSetup(&PlotDataWindow());
    QCOMPARE(m_fake.seed.deviceName, QStringLiteral("Office"));
    QCOMPARE(m_fake.seed.driverName, QStringLiteral("Laser 5"));
    QCOMPARE(m_fake.seed.port, QStringLiteral("LPT1:"));
    QCOMPARE(m_fake.seed.paperBin, int(QPrinter::Manual));
    // No selection (4), no page numbers (8), a device context (256).
    QCOMPARE(m_fake.flags, 268);
    QCOMPARE(m_fake.owner, static_cast<QWidget*>(&PlotDataWindow()));
}

void PrintingTest::chosenPrinterServesEveryWindow()
{
    m_fake.printers = {{QStringLiteral("Office"), {}, {}}, {QStringLiteral("Photo"), QStringLiteral("Inkjet"), {}}};
    m_fake.defaultName = QStringLiteral("Office");
    m_fake.confirm = true;
    m_fake.answer.printerName = QStringLiteral("Photo");
    m_fake.answer.copies = 2;
    m_fake.answer.orientation = 2;
    m_fake.answer.colorMode = 1;
    m_fake.answer.duplex = 2;
    m_fake.answer.paperBin = QPrinter::Lower;
    m_fake.answer.paperSize = QPageSize::Letter;
    m_fake.answer.printQuality = 600;
    PrintSetup(&PlotDataWindow());
    const PrinterState& printer = CurrentPrinter();
    QCOMPARE(printer.deviceName, QStringLiteral("Photo"));
    QCOMPARE(printer.driverName, QStringLiteral("Inkjet"));
    QCOMPARE(printer.copies, 2);
    QCOMPARE(printer.orientation, 2);
    QCOMPARE(printer.colorMode, 1);
    QCOMPARE(printer.duplex, 2);
    QCOMPARE(printer.paperBin, int(QPrinter::Lower));
    QCOMPARE(printer.paperSize, int(QPageSize::Letter));
    QCOMPARE(printer.printQuality, 600);
    // The system default changing does not replace it, and another window starts from it.
    m_fake.defaultName = QStringLiteral("Office");
    OtherForm other;
    other.showForm();
    m_fake.confirm = false;
    other.findChild<QAction*>(QStringLiteral("mPrintSetup"))->trigger();
    QCOMPARE(m_fake.seed.deviceName, QStringLiteral("Photo"));
    QCOMPARE(m_fake.seed.copies, 2);
    QCOMPARE(CurrentPrinter().deviceName, QStringLiteral("Photo"));
}

void PrintingTest::lookupByUpperCaseNameLastWins_data()
{
    QTest::addColumn<QStringList>("installed");
    QTest::addColumn<QString>("current");
    QTest::addColumn<QString>("chosen");
    QTest::addColumn<QString>("result");
    const QStringList three = {QStringLiteral("Office Laser"), QStringLiteral("OFFICE LASER"),
                               QStringLiteral("office laser")};
    QTest::newRow("last match wins") << three << QStringLiteral("Photo") << QStringLiteral("Office Laser")
                                     << QStringLiteral("office laser");
    QTest::newRow("upper-case current not looked up")
        << three << QStringLiteral("OFFICE LASER") << QStringLiteral("office laser") << QStringLiteral("OFFICE LASER");
    QTest::newRow("lower-case current looked up again")
        << QStringList{QStringLiteral("Photo")} << QStringLiteral("Photo") << QStringLiteral("Photo")
        << QStringLiteral("Photo");
    QTest::newRow("not installed: printer kept") << QStringList{QStringLiteral("Photo")} << QStringLiteral("Photo")
                                                 << QStringLiteral("Plotter") << QStringLiteral("Photo");
}

void PrintingTest::lookupByUpperCaseNameLastWins()
{
    QFETCH(QStringList, installed);
    QFETCH(QString, current);
    QFETCH(QString, chosen);
    QFETCH(QString, result);
    for (int i = 0; i < installed.size(); ++i)
        m_fake.printers << InstalledPrinter{installed[i], QStringLiteral("driver %1").arg(i), {}};
    m_fake.defaultName = current;
    CurrentPrinter().driverName = QStringLiteral("as it was");
    m_fake.confirm = true;
    m_fake.answer.printerName = chosen;
    PrintSetup(&PlotDataWindow());
    QCOMPARE(CurrentPrinter().deviceName, result);
    // The driver comes with the printer found (or stays, when none was looked up).
    const int found = installed.lastIndexOf(result);
    const bool lookedUp =
        current != chosen.toUpper() && installed.contains(result) && result.toUpper() == chosen.toUpper();
    QCOMPARE(CurrentPrinter().driverName,
             lookedUp ? QStringLiteral("driver %1").arg(found) : QStringLiteral("as it was"));
}

void PrintingTest::printToFileChoice()
{
    // The dialog's "Print to File": later prints from any window go into that file.
    const QString pdf = m_dir.filePath(QStringLiteral("chosen.pdf"));
    m_fake.confirm = true;
    m_fake.answer.outputFile = pdf;
    m_fake.answer.printQuality = 600;
    PrintSetup(&PlotDataWindow());
    OtherForm other;
    other.showForm();
    other.setForeColor(colours::red);
    other.line(300, 300, 3000, 300);
    other.findChild<QAction*>(QStringLiteral("mPrint"))->trigger();
    const QByteArray bytes = readFile(pdf);
    QCOMPARE(pdfPages(bytes), 1);
    QCOMPARE(pdfImages(bytes), QList<QSize>{});
    // The line, 180 pixels long on the screen, is one dot thick on the page at the dialog's
    // resolution, not a band of scaled-up pixels.
    QCOMPARE(CurrentPrinter().printQuality, 600);
    QString error;
    const QImage page = test::rasterisePdf(pdf, 600, &error);
    QVERIFY2(!page.isNull(), qPrintable(error));
    const test::StraightLine line = test::longestLine(page, true);
    QCOMPARE(line.thickness, 1);
    QVERIFY2(std::abs(line.length - 180 * 600 / 96) <= 2, qPrintable(QString::number(line.length)));
}

void PrintingTest::descriptionsOnlyInTheLog_data()
{
    QTest::addColumn<int>("orientation");
    QTest::addColumn<int>("colorMode");
    QTest::addColumn<int>("duplex");
    QTest::addColumn<QString>("words");
    QTest::newRow("portrait colour none") << 1 << 2 << 1 << QStringLiteral("Portrait. Color. None. ");
    QTest::newRow("landscape mono short")
        << 2 << 1 << 3 << QStringLiteral("Landscape. Black and White. Vertical/Short Edge. ");
    QTest::newRow("long edge") << 1 << 2 << 2 << QStringLiteral("Portrait. Color. Horizontal/Long Edge. ");
    QTest::newRow("other duplex") << 1 << 2 << 4 << QStringLiteral("Portrait. Color. Unknown. ");
}

void PrintingTest::descriptionsOnlyInTheLog()
{
    QFETCH(int, orientation);
    QFETCH(int, colorMode);
    QFETCH(int, duplex);
    QFETCH(QString, words);
    test::MessageRecorder messages;
    m_fake.confirm = true;
    m_fake.answer.orientation = orientation;
    m_fake.answer.colorMode = colorMode;
    m_fake.answer.duplex = duplex;
    logged.clear();
    QLoggingCategory::setFilterRules(QStringLiteral("dipscope.printer.debug=true"));
    const QtMessageHandler previous = qInstallMessageHandler(recordLog);
    PrintSetup(&PlotDataWindow());
    qInstallMessageHandler(previous);
    QLoggingCategory::setFilterRules(QString());
    QCOMPARE(logged.size(), 1);
    QVERIFY2(logged.first().endsWith(words), qPrintable(logged.first()));
    QVERIFY(messages.messages().isEmpty());
}

QTEST_MAIN(PrintingTest)
#include "tst_printing.moc"
