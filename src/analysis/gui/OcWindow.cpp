// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/gui/OcWindow.h"

#include "analysis/ResultExport.h"
#include "analysis/SessionResults.h"
#include "analysis/Toolkit.h"
#include "analysis/gui/SaveFileChooser.h"
#include "analysis/paint/OcPlotFile.h"
#include "methods/MethodRegistry.h"
#include "runtime/MsgBox.h"
#include "runtime/Twips.h"
#include "session/Session.h"
#include "times/JulianDate.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include <cmath>

namespace dip {

namespace {

// The first size, twips: room for the seven columns of full Julian dates.
const int InitialWidth = 9600;
const int InitialHeight = 5400;

// The table's columns.
enum Column { MethodColumn, TimeColumn, ErrorColumn, CycleColumn, ComputedColumn, OcDaysColumn, OcMinutesColumn };

// Digits as the CSV export writes them, so that the window and the file agree.
QString fullDigits(double x) { return QString::number(x, 'f', 6); }

// The ephemeris the two fields and the box state; why not in *why.
std::optional<Ephemeris> typedEphemeris(const QString& t0Text, const QString& periodText, bool secondary, QString* why)
{
    times::JulianDate t0;
    if (!times::parseJulianDate(t0Text, &t0)) {
        *why = t0Text.trimmed().isEmpty() ? QStringLiteral("Type the epoch T0 and the period P.")
                                          : QStringLiteral("T0 is not a number: \"%1\".").arg(t0Text.trimmed());
        return std::nullopt;
    }
    bool ok = false;
    const double period = periodText.trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(period) || !(period > 0)) {
        *why = periodText.trimmed().isEmpty()
                   ? QStringLiteral("Type the period P.")
                   : QStringLiteral("P must be a number of days above 0: \"%1\".").arg(periodText.trimmed());
        return std::nullopt;
    }
    return Ephemeris{t0.value(), period, secondary};
}

} // namespace

OcWindow::OcWindow(QWidget* parent) : QWidget(parent, Qt::Window)
{
    setObjectName(QStringLiteral("OcWindow"));
    setWindowTitle(QStringLiteral("O–C"));

    m_t0 = new QLineEdit(this);
    m_t0->setObjectName(QStringLiteral("t0"));
    m_t0->setToolTip(QStringLiteral("A primary minimum, in the time system of the results"));
    m_period = new QLineEdit(this);
    m_period->setObjectName(QStringLiteral("period"));
    m_period->setToolTip(QStringLiteral("The period, days"));
    m_secondary = new QCheckBox(QStringLiteral("Secondary at phase 0.5"), this);
    m_secondary->setObjectName(QStringLiteral("secondary"));
    m_axis = new QComboBox(this);
    m_axis->setObjectName(QStringLiteral("axis"));
    m_axis->addItems({QStringLiteral("Cycle E"), QStringLiteral("Time")});
    m_status = new QLabel(this);
    m_status->setObjectName(QStringLiteral("status"));
    m_status->setWordWrap(true);

    m_table = new QTableWidget(0, 7, this);
    m_table->setObjectName(QStringLiteral("table"));
    m_table->setHorizontalHeaderLabels({QStringLiteral("Method"), QStringLiteral("Time of Minimum"),
                                        QStringLiteral("Error (d)"), QStringLiteral("E"), QStringLiteral("C"),
                                        QStringLiteral("O–C (d)"), QStringLiteral("O–C (min)")});
    m_table->verticalHeader()->hide();
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);

    auto* save = new QPushButton(QStringLiteral("Save plot…"), this);
    save->setObjectName(QStringLiteral("savePlot"));
    auto* close = new QPushButton(QStringLiteral("Close"), this);

    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("T0:"), m_t0);
    form->addRow(QStringLiteral("P (days):"), m_period);
    form->addRow(QString(), m_secondary);
    form->addRow(QStringLiteral("Plot against:"), m_axis);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(save);
    buttons->addWidget(close);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(m_status);
    layout->addWidget(m_table, 1);
    layout->addLayout(buttons);
    resize(InitialWidth / TwipsPerPixel, InitialHeight / TwipsPerPixel);

    connect(m_t0, &QLineEdit::textEdited, this, &OcWindow::ephemerisEdited);
    connect(m_period, &QLineEdit::textEdited, this, &OcWindow::ephemerisEdited);
    connect(m_secondary, &QCheckBox::toggled, this, &OcWindow::ephemerisEdited);
    connect(save, &QPushButton::clicked, this, &OcWindow::savePlotClicked);
    connect(close, &QPushButton::clicked, this, &QWidget::close);
    refresh();
}

void OcWindow::showEvent(QShowEvent* event)
{
    refresh();
    QWidget::showEvent(event);
}

bool OcWindow::event(QEvent* event)
{
    // Back from the main window, where results may have been ticked, unticked or timed anew.
    if (event->type() == QEvent::WindowActivate)
        refresh();
    return QWidget::event(event);
}

void OcWindow::refresh()
{
    // The fields show the session's ephemeris; a half-typed one (not yet usable) stays as typed.
    m_filling = true;
    if (const std::optional<Ephemeris>& e = Toolkit().ephemeris) {
        QString why;
        const std::optional<Ephemeris> typed =
            typedEphemeris(m_t0->text(), m_period->text(), m_secondary->isChecked(), &why);
        if (!typed || typed->t0 != e->t0 || typed->period != e->period) {
            m_t0->setText(QString::number(e->t0, 'f', 6));
            m_period->setText(QString::number(e->period, 'g', 12));
        }
        m_secondary->setChecked(e->secondaryAtHalf);
    }
    m_filling = false;
    fillTable();
}

void OcWindow::ephemerisEdited()
{
    if (m_filling)
        return;
    QString why;
    Toolkit().ephemeris = typedEphemeris(m_t0->text(), m_period->text(), m_secondary->isChecked(), &why);
    fillTable();
}

void OcWindow::fillTable()
{
    QString why;
    const bool usable = typedEphemeris(m_t0->text(), m_period->text(), m_secondary->isChecked(), &why).has_value();
    const std::vector<ExportRow> rows = sessionResults(Toolkit(), true);
    if (rows.empty())
        m_status->setText(QStringLiteral("No result is ticked \"Use in Mean?\" in the main window."));
    else
        m_status->setText(usable ? QString() : why);
    m_table->setRowCount(static_cast<int>(rows.size()));
    for (int i = 0; i < static_cast<int>(rows.size()); ++i) {
        const ExportRow& r = rows[static_cast<std::size_t>(i)];
        QStringList cells = {QString::fromLatin1(MethodOfRow(r.method).title), fullDigits(r.time),
                             fixedText(r.error, 5)};
        if (r.oc && usable)
            cells << cycleText(r.oc->cycle) << fullDigits(r.oc->computed) << fixedText(r.oc->days, 6)
                  << fixedText(r.oc->minutes(), 2);
        else
            cells << QString() << QString() << QString() << QString();
        for (int c = 0; c < cells.size(); ++c) {
            auto* item = new QTableWidgetItem(cells[c]);
            if (c != MethodColumn)
                item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            m_table->setItem(i, c, item);
        }
    }
}

OcDiagram OcWindow::diagram() const
{
    OcDiagram d;
    const ToolkitState& t = Toolkit();
    if (t.ephemeris)
        d.ephemeris = *t.ephemeris;
    d.axis = m_axis->currentIndex() == 1 ? OcAxis::Time : OcAxis::Cycle;
    d.title = !t.starName.isEmpty() ? t.starName : QFileInfo(S().DataName).fileName();
    d.timeName = reportSystem(resultSystem(t)).trimmed();
    for (const ExportRow& r : sessionResults(t, true)) {
        if (!r.oc)
            continue;
        OcPoint p;
        p.cycle = r.oc->cycle;
        p.time = r.time;
        p.oc = r.oc->days;
        p.error = r.bootstrapError ? *r.bootstrapError : r.error;
        d.points.push_back(p);
    }
    fitLine(d);
    return d;
}

bool OcWindow::savePlot(const QString& path)
{
    const OcDiagram d = diagram();
    if (!Toolkit().ephemeris || d.points.empty()) {
        rt::MsgBox(
            QStringLiteral("Nothing to plot: the O–C diagram needs an ephemeris and at least one ticked result."));
        return false;
    }
    QString error;
    if (!saveOcDiagram(path, d, &error)) {
        rt::MsgBox(QStringLiteral("The plot was not saved.\n") + error);
        return false;
    }
    return true;
}

void OcWindow::savePlotClicked()
{
    const QString path = ChooseSaveFile(this, QStringLiteral("Save plot"), QStringLiteral("oc-diagram.png"),
                                        QStringLiteral("PNG image (*.png);;SVG drawing (*.svg);;PDF document (*.pdf)"));
    if (!path.isEmpty())
        savePlot(path);
}

} // namespace dip
