// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

#include <QList>
#include <QPageSize>
#include <QPrinter>
#include <QString>

#include <functional>

class QWidget;

namespace dip {

// The File menu of every plot window: "Print" puts an image of the window's client area on one
// page of the program's current printer, ignoring every failure; "Print Setup ..." lets the
// user choose the printer and its settings.
void PrintForm(QWidget* form);
void PrintSetup(QWidget* form);

// The program's current printer: the device with its driver and port, and its settings. Until
// the first Print Setup it follows the system's default printer; from then on it is the
// program's own, whatever the system default becomes.
struct PrinterState {
    QString deviceName; // as the system lists it; empty: no printer
    QString driverName;
    QString port;
    // Output into this PDF file instead of the device (the print dialog's "Print to File").
    QString outputFile;
    int copies = 1;
    int orientation = 1;           // 1 portrait, 2 landscape
    int colorMode = 2;             // 1 monochrome, 2 colour
    int duplex = 1;                // 1 none, 2 long edge (horizontal), 3 short edge (vertical), 4 the printer's choice
    int paperBin = QPrinter::Auto; // a QPrinter::PaperSource
    int paperSize = QPageSize::A4; // a QPageSize::PageSizeId
    int printQuality = 0;          // dots per inch; 0 the device's own
};

// The current printer (following the system default while it does).
PrinterState& CurrentPrinter();
bool FollowsSystemDefaultPrinter();
// Forgets the program's printer: back to following the system default with default settings.
void ResetPrinter();

// What the user confirmed in the print dialog.
struct PrintDialogChoice {
    QString printerName; // empty when printing to a file
    QString outputFile;
    int copies = 1;
    int orientation = 1;
    int colorMode = 2;
    int duplex = 1;
    int paperBin = QPrinter::Auto;
    int paperSize = QPageSize::A4;
    int printQuality = 0;
};

struct InstalledPrinter {
    QString name;
    QString driverName;
    QString port;
};

// Print dialog flags: no selection choice, no page numbers, return a device context.
constexpr int PdNoSelection = 4;
constexpr int PdNoPageNums = 8;
constexpr int PdReturnDc = 256;

// The printers of the system as printing sees them. Tests replace it, so that no real dialog
// ever waits and no real printer is needed.
struct PrinterSystem {
    // The installed printers, in the system's order.
    std::function<QList<InstalledPrinter>()> installed;
    // The system's default printer's name, empty when there is none.
    std::function<QString()> defaultName;
    // Shows the print dialog owned by owner, seeded from seed, with the dialog flags; returns
    // false when the user cancels, else fills choice.
    std::function<bool(const PrinterState& seed, int flags, QWidget* owner, PrintDialogChoice* choice)> runDialog;
};

// The real one: Qt's printer information and QPrintDialog.
PrinterSystem QtPrinterSystem();
// Puts a printer system in place (empty members are taken from the real one); returns the
// previous one.
PrinterSystem SetPrinterSystem(const PrinterSystem& system);

} // namespace dip
