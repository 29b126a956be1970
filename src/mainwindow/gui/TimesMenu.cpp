// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "mainwindow/gui/ToolkitMenus.h"

#include "mainwindow/gui/frmMain.h"

#include "analysis/ConvertedResults.h"
#include "analysis/FileLoading.h"
#include "analysis/Toolkit.h"
#include "import/gui/ImportPrompts.h"
#include "methods/MethodRegistry.h"
#include "runtime/MsgBox.h"
#include "session/MainForm.h"
#include "session/Session.h"
#include "session/WholeDays.h"
#include "times/TimeConversion.h"
#include "times/gui/TimeSystemDialog.h"

#include <QFileInfo>
#include <QMenu>

#include <cmath>

namespace dip {

namespace {

// The published results and the two means, as the Time system dialog converts them.
std::vector<times::TimeToConvert> resultTimes()
{
    std::vector<times::TimeToConvert> rows;
    for (int k = 1; k <= 6; ++k)
        if (S().Results(k).published)
            rows.push_back({QString::fromLatin1(MethodOfRow(k).title), PublishedTime(k)});
    const char* const means[] = {"Simple Mean", "Weighted Mean"};
    for (int m = 0; m < 2; ++m) {
        times::JulianDate t;
        if (times::parseJulianDate(mainForm().text(13 + m), &t))
            rows.push_back({QString::fromLatin1(means[m]), t});
    }
    return rows;
}

// What the user stated in the dialog becomes the toolkit's, and the result rows' converted
// times follow it.
void takeChoice(const times::TimeSystemChoice& choice)
{
    ToolkitState& t = Toolkit();
    StateFileSystem(choice.fileSystem);
    t.reportSystem = choice.reportSystem;
    t.star = choice.star;
    t.site = choice.site;
    ConvertPublishedResults();
}

times::TimeSystemDialog& timeSystemDialog(frmMain& main)
{
    auto* dialog = main.findChild<times::TimeSystemDialog*>(QStringLiteral("dlgTimeSystem"));
    if (!dialog) {
        dialog = new times::TimeSystemDialog(&main);
        dialog->setTimesSource(resultTimes);
        QObject::connect(dialog, &times::TimeSystemDialog::converted, dialog,
                         [](const times::TimeSystemChoice& choice,
                            const std::vector<std::optional<times::JulianDate>>&) { takeChoice(choice); });
    }
    return *dialog;
}

void showTimeSystem(frmMain& main)
{
    times::TimeSystemDialog& dialog = timeSystemDialog(main);
    dialog.setFileSystem(Toolkit().fileSystem);
    dialog.setReportSystem(Toolkit().reportSystem);
    dialog.show();
    dialog.raise();
    dialog.activateWindow();
}

// What the user is told after an import: what was read, and what was left out.
QString importSummary(const PreparedFile& file, const LightCurve& curve)
{
    QString text = QStringLiteral("%1: %2 observations").arg(QFileInfo(file.path).fileName()).arg(curve.rowCount);
    if (!curve.starName.isEmpty())
        text += QStringLiteral(" of %1").arg(curve.starName);
    if (!curve.filter.isEmpty())
        text += QStringLiteral(", filter %1").arg(curve.filter);
    text += QStringLiteral(", times in %1 (%2 file).")
                .arg(times::timeSystemName(curve.timeSystem), import::formatName(file.format));
    if (!file.rows.notes.isEmpty())
        text += QLatin1Char('\n') + file.rows.notes.join(QLatin1Char('\n'));
    return text;
}

// "Import…": the file by its content, the filter and the time window asked for when needed,
// every problem one message, and the session as it was until the light curve is installed.
void importFile(frmMain& main)
{
    import::ImportPrompts& prompts = import::importPrompts();
    const QString path = prompts.chooseFile(&main);
    if (path.isEmpty())
        return;
    try {
        const PreparedFile file = PrepareLightCurveFile(path);
        import::ImportOptions options;
        const std::vector<import::FilterCount> filters = import::filtersIn(file.rows);
        if (filters.size() > 1) {
            const std::optional<QString> filter =
                prompts.chooseFilter(&main, path, filters, import::defaultFilter(file.rows));
            if (!filter)
                return;
            options.filter = *filter;
        }
        const std::vector<double> times = FilterTimes(file, options.filter);
        if (static_cast<int>(times.size()) > import::maxObservations) {
            const std::optional<import::TimeWindow> window = prompts.chooseWindow(&main, path, times);
            if (!window)
                return;
            options.window = *window;
        }
        const LightCurve curve = ChooseLightCurveRows(file, options);
        // Full Julian dates leave the fits too few digits: the switch is offered once.
        if (!S().SubtractWholeDays && FirstLargeTime(curve.times) &&
            rt::AskYesNo(QStringLiteral("The times of %1 are full Julian dates (%2): the methods lose digits on "
                                        "them. Subtract whole days before fitting (Times > Subtract whole days)?")
                             .arg(QFileInfo(path).fileName(), QString::number(curve.times.front(), 'f', 5))))
            S().SubtractWholeDays = true;
        InstallFileCurve(file, curve);
        if (file.format != import::FileFormat::Csv)
            rt::MsgBox(importSummary(file, curve));
    } catch (const import::ImportError& e) {
        rt::MsgBox(e.text());
    }
}

} // namespace

void BuildTimesMenu(frmMain& main, QMenu& menu)
{
    // The toolkit follows the session from the start.
    Toolkit();

    QAction* subtract = menu.addAction(QStringLiteral("Subtract whole days"));
    subtract->setObjectName(QStringLiteral("mnuSubtractDays"));
    subtract->setCheckable(true);
    QObject::connect(subtract, &QAction::toggled, &menu, [](bool on) { S().SubtractWholeDays = on; });

    // Two notes that show only while they apply.
    QAction* pending = menu.addAction(QStringLiteral("    (takes effect at the next load)"));
    pending->setObjectName(QStringLiteral("mnuSubtractPending"));
    pending->setEnabled(false);
    QAction* large = menu.addAction(QStringLiteral("Times above 10 days: subtract whole days and load again"));
    large->setObjectName(QStringLiteral("mnuLargeTimes"));
    large->setEnabled(false);

    menu.addSeparator();
    menu.addAction(QStringLiteral("Time system\u2026"), &main, [&main] { showTimeSystem(main); })
        ->setObjectName(QStringLiteral("mnuTimeSystem"));
    menu.addAction(QStringLiteral("Import\u2026"), &main, [&main] { importFile(main); })
        ->setObjectName(QStringLiteral("mnuImport"));

    const auto refresh = [subtract, pending, large] {
        subtract->setChecked(S().SubtractWholeDays);
        pending->setVisible(WholeDaysSwitchPending());
        large->setVisible(LargeTimesWithoutOffset().has_value());
    };
    QObject::connect(&menu, &QMenu::aboutToShow, &menu, refresh);
    refresh();
}

} // namespace dip
