// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/gui/ExportDialog.h"

#include "analysis/SessionResults.h"
#include "analysis/Toolkit.h"
#include "analysis/gui/SaveFileChooser.h"
#include "runtime/MsgBox.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace dip {

namespace {

struct FormatChoice {
    const char* label;
    ExportFormat format;
    const char* suggested;
    const char* filter;
};

const FormatChoice formats[] = {
    {"CSV table", ExportFormat::Csv, "minima.csv", "CSV table (*.csv);;All files (*)"},
    {"JSON", ExportFormat::Json, "minima.json", "JSON (*.json);;All files (*)"},
    {"Report lines", ExportFormat::Report, "minima.txt", "Report lines (*.txt);;All files (*)"},
};

} // namespace

ExportDialog::ExportDialog(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("ExportDialog"));
    setWindowTitle(QStringLiteral("Export results"));
    m_format = new QComboBox(this);
    m_format->setObjectName(QStringLiteral("format"));
    for (const FormatChoice& f : formats)
        m_format->addItem(QString::fromLatin1(f.label));
    const ToolkitState& t = Toolkit();
    m_star = new QLineEdit(t.starName, this);
    m_star->setObjectName(QStringLiteral("star"));
    m_filter = new QLineEdit(t.filter, this);
    m_filter->setObjectName(QStringLiteral("filter"));
    m_observer = new QLineEdit(t.observerCode, this);
    m_observer->setObjectName(QStringLiteral("observer"));
    m_tickedOnly = new QCheckBox(QStringLiteral("Only the results ticked \"Use in Mean?\""), this);
    m_tickedOnly->setObjectName(QStringLiteral("tickedOnly"));

    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Format:"), m_format);
    form->addRow(QStringLiteral("Star name:"), m_star);
    form->addRow(QStringLiteral("Filter:"), m_filter);
    form->addRow(QStringLiteral("Observer code:"), m_observer);
    form->addRow(QString(), m_tickedOnly);
    auto* exportButton = new QPushButton(QStringLiteral("Export…"), this);
    exportButton->setObjectName(QStringLiteral("export"));
    exportButton->setDefault(true);
    auto* cancel = new QPushButton(QStringLiteral("Cancel"), this);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(exportButton);
    buttons->addWidget(cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addLayout(buttons);

    connect(exportButton, &QPushButton::clicked, this, &ExportDialog::exportClicked);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
}

ExportFormat ExportDialog::format() const { return formats[m_format->currentIndex()].format; }

QString ExportDialog::text() const
{
    const ToolkitState& t = Toolkit();
    const ReportInfo info{m_star->text().trimmed(), m_filter->text().trimmed(), m_observer->text().trimmed()};
    return exportText(format(), sessionResults(t, m_tickedOnly->isChecked()), info, t.ephemeris);
}

void ExportDialog::keepNames()
{
    ToolkitState& t = Toolkit();
    t.starName = m_star->text().trimmed();
    t.filter = m_filter->text().trimmed();
    t.observerCode = m_observer->text().trimmed();
}

bool ExportDialog::exportTo(const QString& path)
{
    if (sessionResults(Toolkit(), m_tickedOnly->isChecked()).empty()) {
        rt::MsgBox(m_tickedOnly->isChecked()
                       ? QStringLiteral("No result is ticked \"Use in Mean?\": nothing to export.")
                       : QStringLiteral("No method has given a time of minimum: nothing to export."));
        return false;
    }
    QString error;
    if (!writeTextFile(path, text(), &error)) {
        rt::MsgBox(QStringLiteral("The results were not exported.\n") + error);
        return false;
    }
    keepNames();
    accept();
    return true;
}

void ExportDialog::exportClicked()
{
    const FormatChoice& f = formats[m_format->currentIndex()];
    const QString path = ChooseSaveFile(this, QStringLiteral("Export results"), QString::fromLatin1(f.suggested),
                                        QString::fromLatin1(f.filter));
    if (!path.isEmpty())
        exportTo(path);
}

} // namespace dip
