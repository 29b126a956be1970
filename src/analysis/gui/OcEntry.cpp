// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/gui/OcEntry.h"

#include "analysis/gui/ExportDialog.h"
#include "analysis/gui/OcWindow.h"

#include <QAction>
#include <QMenu>
#include <QPointer>

#include <memory>

namespace dip {

void AddOcActions(QWidget& main, QMenu& menu)
{
    QAction* oc = menu.addAction(QStringLiteral("O–C…"));
    oc->setObjectName(QStringLiteral("actionOc"));
    QWidget* owner = &main;
    // One O-C window, kept while the main window lives; shown again with the current results.
    auto window = std::make_shared<QPointer<OcWindow>>();
    QObject::connect(oc, &QAction::triggered, owner, [owner, window] {
        if (!*window)
            *window = new OcWindow(owner);
        (*window)->show();
        (*window)->raise();
        (*window)->activateWindow();
    });
    QAction* exportAction = menu.addAction(QStringLiteral("Export results…"));
    exportAction->setObjectName(QStringLiteral("actionExportResults"));
    QObject::connect(exportAction, &QAction::triggered, owner, [owner] {
        // Not modal: the main window stays usable, and nothing waits on the dialog.
        auto* dialog = new ExportDialog(owner);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->show();
    });
}

} // namespace dip
