// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "plotting/gui/Printing.h"

#include "plotting/gui/PlotWindow.h"

#include <QDir>
#include <QLoggingCategory>
#include <QMainWindow>
#include <QPainter>
#include <QPixmap>
#include <QPrintDialog>
#include <QPrinterInfo>

#include <algorithm>

// The printer's settings in words, for a diagnostic log only; the user never sees them.
Q_LOGGING_CATEGORY(lcPrinter, "dipscope.printer", QtInfoMsg)

namespace dip {

namespace {

struct ProgramPrinter {
    PrinterState state;
    bool followsDefault = true;
    PrinterSystem system = QtPrinterSystem();
};

ProgramPrinter& program()
{
    static ProgramPrinter printer;
    return printer;
}

void takeDevice(PrinterState& state, const InstalledPrinter& printer)
{
    state.deviceName = printer.name;
    state.driverName = printer.driverName;
    state.port = printer.port;
}

QPrinter::DuplexMode duplexMode(int duplex)
{
    switch (duplex) {
    case 1: return QPrinter::DuplexNone;
    case 2: return QPrinter::DuplexLongSide;
    case 3: return QPrinter::DuplexShortSide;
    default: return QPrinter::DuplexAuto;
    }
}

int duplexCode(QPrinter::DuplexMode mode)
{
    switch (mode) {
    case QPrinter::DuplexNone: return 1;
    case QPrinter::DuplexLongSide: return 2;
    case QPrinter::DuplexShortSide: return 3;
    default: return 4;
    }
}

// Puts the state's output and settings on a Qt printer; false when there is nothing to print
// on (no printer, or one that is not installed).
bool configure(QPrinter& printer, const PrinterState& state)
{
    bool device = true;
    if (!state.outputFile.isEmpty()) {
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(state.outputFile);
    } else if (!state.deviceName.isEmpty() && !QPrinterInfo::printerInfo(state.deviceName).isNull()) {
        printer.setPrinterName(state.deviceName);
    } else {
        device = false;
    }
    printer.setCopyCount(std::max(1, state.copies));
    printer.setPageOrientation(state.orientation == 2 ? QPageLayout::Landscape : QPageLayout::Portrait);
    printer.setColorMode(state.colorMode == 1 ? QPrinter::GrayScale : QPrinter::Color);
    printer.setDuplex(duplexMode(state.duplex));
    printer.setPaperSource(static_cast<QPrinter::PaperSource>(state.paperBin));
    printer.setPageSize(QPageSize(static_cast<QPageSize::PageSizeId>(state.paperSize)));
    if (state.printQuality > 0)
        printer.setResolution(state.printQuality);
    return device;
}

bool runQtPrintDialog(const PrinterState& seed, int flags, QWidget* owner, PrintDialogChoice* choice)
{
    QPrinter printer(QPrinter::HighResolution);
    // With no printer to start from, the dialog offers a file named after the program.
    if (!configure(printer, seed))
        printer.setOutputFileName(QDir::home().filePath(QStringLiteral("dipscope.pdf")));
    QPrintDialog dialog(&printer, owner);
    QAbstractPrintDialog::PrintDialogOptions options = dialog.options();
    if (flags & PdNoSelection)
        options &= ~QAbstractPrintDialog::PrintDialogOptions(QAbstractPrintDialog::PrintSelection);
    if (flags & PdNoPageNums)
        options &= ~QAbstractPrintDialog::PrintDialogOptions(QAbstractPrintDialog::PrintPageRange |
                                                             QAbstractPrintDialog::PrintCurrentPage);
    dialog.setOptions(options);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    const bool toFile = printer.outputFormat() == QPrinter::PdfFormat;
    choice->printerName = toFile ? QString() : printer.printerName();
    choice->outputFile = toFile ? printer.outputFileName() : QString();
    choice->copies = printer.copyCount();
    choice->orientation = printer.pageLayout().orientation() == QPageLayout::Landscape ? 2 : 1;
    choice->colorMode = printer.colorMode() == QPrinter::GrayScale ? 1 : 2;
    choice->duplex = duplexCode(printer.duplex());
    choice->paperBin = printer.paperSource();
    choice->paperSize = printer.pageLayout().pageSize().id();
    choice->printQuality = printer.resolution();
    return true;
}

QString describe(const PrinterState& state)
{
    QString words = state.orientation == 1 ? QStringLiteral("Portrait. ") : QStringLiteral("Landscape. ");
    words += state.colorMode == 1 ? QStringLiteral("Black and White. ") : QStringLiteral("Color. ");
    switch (state.duplex) {
    case 1: words += QStringLiteral("None. "); break;
    case 2: words += QStringLiteral("Horizontal/Long Edge. "); break;
    case 3: words += QStringLiteral("Vertical/Short Edge. "); break;
    default: words += QStringLiteral("Unknown. "); break;
    }
    return words;
}

} // namespace

PrinterSystem QtPrinterSystem()
{
    PrinterSystem system;
    system.installed = [] {
        QList<InstalledPrinter> printers;
        const QList<QPrinterInfo> infos = QPrinterInfo::availablePrinters();
        for (const QPrinterInfo& info : infos)
            printers.append({info.printerName(), info.makeAndModel(), info.location()});
        return printers;
    };
    system.defaultName = [] { return QPrinterInfo::defaultPrinterName(); };
    system.runDialog = runQtPrintDialog;
    return system;
}

PrinterSystem SetPrinterSystem(const PrinterSystem& system)
{
    ProgramPrinter& p = program();
    const PrinterSystem previous = p.system;
    const PrinterSystem real = QtPrinterSystem();
    p.system.installed = system.installed ? system.installed : real.installed;
    p.system.defaultName = system.defaultName ? system.defaultName : real.defaultName;
    p.system.runDialog = system.runDialog ? system.runDialog : real.runDialog;
    return previous;
}

PrinterState& CurrentPrinter()
{
    ProgramPrinter& p = program();
    if (p.followsDefault) {
        const QString name = p.system.defaultName();
        if (name != p.state.deviceName) {
            p.state.deviceName = name;
            p.state.driverName.clear();
            p.state.port.clear();
            for (const InstalledPrinter& printer : p.system.installed())
                if (printer.name == name)
                    takeDevice(p.state, printer);
        }
    }
    return p.state;
}

bool FollowsSystemDefaultPrinter() { return program().followsDefault; }

void ResetPrinter()
{
    ProgramPrinter& p = program();
    p.state = PrinterState();
    p.followsDefault = true;
}

void PrintForm(QWidget* form)
{
    // Every failure is ignored: no printer, a printer off line, a file that cannot be written.
    try {
        if (!form)
            return;
        QPrinter printer(QPrinter::HighResolution);
        if (!configure(printer, CurrentPrinter()))
            return;
        // The client area: the picture with the controls on it, without the menu bar.
        QWidget* client = form;
        if (auto* window = qobject_cast<QMainWindow*>(form); window && window->centralWidget())
            client = window->centralWidget();
        QPainter painter;
        if (!painter.begin(&printer))
            return;
        // As large as on the screen, made smaller to fit the page.
        const QSizeF logical = client->size();
        QSizeF size = logical * (printer.resolution() / double(std::max(1, client->logicalDpiX())));
        const QSizeF page = painter.viewport().size();
        if (size.width() > page.width() || size.height() > page.height())
            size.scale(page, Qt::KeepAspectRatio);
        if (auto* plot = qobject_cast<PlotWindow*>(form)) {
            // A plot window draws its picture again at the printer's resolution.
            painter.scale(size.width() / std::max(1.0, logical.width()),
                          size.height() / std::max(1.0, logical.height()));
            plot->renderClientArea(painter);
        } else {
            const QPixmap image = client->grab();
            painter.drawPixmap(QRectF(QPointF(0, 0), size), image, QRectF(image.rect()));
        }
        painter.end();
    } catch (...) {
    }
}

void PrintSetup(QWidget* form)
{
    try {
        ProgramPrinter& p = program();
        // 1-2. The dialog starts from the current printer and offers neither a selection nor
        // page numbers.
        const PrinterState seed = CurrentPrinter();
        const int flags = PdNoSelection | PdNoPageNums | PdReturnDc;
        // 3. From now on the printer is the program's own, whatever the system default becomes.
        p.followsDefault = false;
        // 4. A cancel changes nothing.
        PrintDialogChoice choice;
        if (!p.system.runDialog(seed, flags, form, &choice))
            return;
        // 5. The chosen printer, looked up by its name in upper case; of several that match,
        // the last listed wins. The current name is compared as it stands, so a name with
        // lower-case letters is always looked up again, which ends on the same printer.
        PrinterState& current = p.state;
        const QString newName = choice.printerName.toUpper();
        if (current.deviceName != newName) {
            for (const InstalledPrinter& printer : p.system.installed())
                if (printer.name.toUpper() == newName)
                    takeDevice(current, printer);
        }
        current.outputFile = choice.outputFile;
        // 6. The seven settings, in this order.
        current.copies = choice.copies;
        current.orientation = choice.orientation;
        current.colorMode = choice.colorMode;
        current.duplex = choice.duplex;
        current.paperBin = choice.paperBin;
        current.paperSize = choice.paperSize;
        current.printQuality = choice.printQuality;
        // 7. No report to the user.
        qCDebug(lcPrinter).noquote() << current.deviceName << describe(current);
    } catch (...) {
    }
}

} // namespace dip
