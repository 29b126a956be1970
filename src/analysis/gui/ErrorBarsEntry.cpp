// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/gui/ErrorBarsEntry.h"

#include "analysis/gui/ErrorBarsWindow.h"

#include <QAction>
#include <QMenu>
#include <QPointer>

namespace dip {

void AddErrorBarsActions(QWidget& main, QMenu& menu)
{
    QAction* action = menu.addAction(QStringLiteral("Error bars…"));
    action->setObjectName(QStringLiteral("actionErrorBars"));
    // One window, kept while the main window lives, so that its last result stays on show.
    auto window = std::make_shared<QPointer<ErrorBarsWindow>>();
    QObject::connect(action, &QAction::triggered, &main, [&main, window] {
        if (!*window)
            *window = new ErrorBarsWindow(&main);
        (*window)->show();
        (*window)->raise();
        (*window)->activateWindow();
    });
}

} // namespace dip
