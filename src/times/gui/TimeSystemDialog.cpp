// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "times/gui/TimeSystemDialog.h"

#include "times/TimeConversion.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace dip::times {

namespace {

const TimeSystem systems[] = {TimeSystem::JD_UTC, TimeSystem::HJD_UTC, TimeSystem::BJD_TDB};

QComboBox* systemBox(QWidget* parent, const QString& name)
{
    auto* box = new QComboBox(parent);
    box->setObjectName(name);
    for (const TimeSystem s : systems)
        box->addItem(timeSystemName(s), static_cast<int>(s));
    return box;
}

void choose(QComboBox* box, TimeSystem system)
{
    const int index = box->findData(static_cast<int>(system));
    if (index >= 0)
        box->setCurrentIndex(index);
}

// The parsers' messages name the field ("RA \"25:00:00\": ..."); a sentence of the dialog starts
// with a capital.
QString capitalised(QString text)
{
    if (!text.isEmpty())
        text[0] = text[0].toUpper();
    return text;
}

TimeSystem chosen(const QComboBox* box) { return static_cast<TimeSystem>(box->currentData().toInt()); }

QLineEdit* field(QWidget* parent, const QString& name, const QString& example)
{
    auto* edit = new QLineEdit(parent);
    edit->setObjectName(name);
    edit->setPlaceholderText(example);
    return edit;
}

QTableWidgetItem* cell(const QString& text, bool number)
{
    auto* item = new QTableWidgetItem(text);
    item->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled);
    if (number)
        item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    return item;
}

} // namespace

TimeSystemDialog::TimeSystemDialog(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("dlgTimeSystem"));
    setWindowTitle(QStringLiteral("Time system"));

    auto* form = new QFormLayout;
    m_fileSystem = systemBox(this, QStringLiteral("cboFileSystem"));
    m_ra = field(this, QStringLiteral("txtRa"), QStringLiteral("16:34:20.33 (hours) or 248.5846 (degrees)"));
    m_dec = field(this, QStringLiteral("txtDec"), QStringLiteral("+57:09:44.3 or 57.1623 (degrees)"));
    m_site = field(this, QStringLiteral("txtSite"), QStringLiteral("optional: latitude, longitude east, height m"));
    m_reportSystem = systemBox(this, QStringLiteral("cboReportSystem"));
    choose(m_fileSystem, TimeSystem::HJD_UTC);
    choose(m_reportSystem, TimeSystem::BJD_TDB);
    form->addRow(QStringLiteral("Times of the file:"), m_fileSystem);
    form->addRow(QStringLiteral("Right ascension (J2000):"), m_ra);
    form->addRow(QStringLiteral("Declination (J2000):"), m_dec);
    form->addRow(QStringLiteral("Observatory:"), m_site);
    form->addRow(QStringLiteral("Report in:"), m_reportSystem);

    auto* convertButton = new QPushButton(QStringLiteral("Convert"), this);
    convertButton->setObjectName(QStringLiteral("cmdConvert"));
    convertButton->setDefault(true);
    auto* closeButton = new QPushButton(QStringLiteral("Close"), this);
    closeButton->setObjectName(QStringLiteral("cmdClose"));
    closeButton->setAutoDefault(false);
    connect(convertButton, &QPushButton::clicked, this, [this] { convert(); });
    connect(closeButton, &QPushButton::clicked, this, &QDialog::hide);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(convertButton);
    buttons->addWidget(closeButton);

    m_table = new QTableWidget(0, 4, this);
    m_table->setObjectName(QStringLiteral("tblConverted"));
    m_table->verticalHeader()->hide();
    m_table->horizontalHeader()->setStretchLastSection(true);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setMinimumHeight(220);

    m_problem = new QLabel(this);
    m_problem->setObjectName(QStringLiteral("lblProblem"));
    m_problem->setWordWrap(true);
    m_problem->setTextFormat(Qt::PlainText);
    m_problem->setStyleSheet(QStringLiteral("color: rgb(180, 0, 0)"));
    m_problem->hide();

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addLayout(buttons);
    layout->addWidget(m_table);
    layout->addWidget(m_problem);
    resize(620, 460);
}

void TimeSystemDialog::setFileSystem(TimeSystem system)
{
    choose(m_fileSystem, system == TimeSystem::Unstated ? TimeSystem::HJD_UTC : system);
}

void TimeSystemDialog::setReportSystem(TimeSystem system)
{
    choose(m_reportSystem, system == TimeSystem::Unstated ? TimeSystem::BJD_TDB : system);
}

void TimeSystemDialog::setTimesSource(std::function<std::vector<TimeToConvert>()> source)
{
    m_source = std::move(source);
}

QString TimeSystemDialog::problem() const { return m_problem->isHidden() ? QString() : m_problem->text(); }

void TimeSystemDialog::showProblem(const QString& text)
{
    m_problem->setText(text);
    m_problem->setVisible(!text.isEmpty());
}

std::optional<TimeSystemChoice> TimeSystemDialog::readFields()
{
    // Until the fields read, no table: it would show times for a star other than the one typed.
    m_table->clearContents();
    m_table->setRowCount(0);
    TimeSystemChoice choice;
    choice.fileSystem = chosen(m_fileSystem);
    choice.reportSystem = chosen(m_reportSystem);
    if (m_ra->text().trimmed().isEmpty() || m_dec->text().trimmed().isEmpty()) {
        showProblem(QStringLiteral("Give the star's right ascension and declination (J2000): the conversion "
                                   "depends on where the star stands."));
        (m_ra->text().trimmed().isEmpty() ? m_ra : m_dec)->setFocus();
        return std::nullopt;
    }
    const Angle ra = parseRightAscension(m_ra->text());
    if (!ra.ok) {
        showProblem(capitalised(ra.error));
        m_ra->setFocus();
        return std::nullopt;
    }
    const Angle dec = parseDeclination(m_dec->text());
    if (!dec.ok) {
        showProblem(capitalised(dec.error));
        m_dec->setFocus();
        return std::nullopt;
    }
    choice.star = Star{ra.degrees, dec.degrees};
    if (!m_site->text().trimmed().isEmpty()) {
        const ParsedSite site = parseSite(m_site->text());
        if (!site.ok) {
            showProblem(capitalised(site.error));
            m_site->setFocus();
            return std::nullopt;
        }
        choice.site = site.site;
    }
    return choice;
}

bool TimeSystemDialog::convert()
{
    const std::optional<TimeSystemChoice> choice = readFields();
    if (!choice)
        return false;

    const std::vector<TimeToConvert> rows = m_source ? m_source() : std::vector<TimeToConvert>{};
    const TimeConverter converter(choice->star, choice->site);
    std::vector<std::optional<JulianDate>> results;
    QStringList problems;
    QString warning;

    m_table->clearContents();
    m_table->setRowCount(static_cast<int>(rows.size()));
    m_table->setHorizontalHeaderLabels({QStringLiteral("Result"), timeSystemName(choice->fileSystem),
                                        timeSystemName(choice->reportSystem), QStringLiteral("Difference (s)")});
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const int r = static_cast<int>(i);
        const TimeToConvert& row = rows[i];
        m_table->setItem(r, 0, cell(row.name, false));
        std::optional<JulianDate> result;
        if (row.time) {
            m_table->setItem(r, 1, cell(formatJulianDate(*row.time, 5), true));
            const Converted c = converter.convert(*row.time, choice->fileSystem, choice->reportSystem);
            if (c.ok) {
                result = c.time;
                if (!c.warning.isEmpty())
                    warning = c.warning;
                const double seconds = daysBetween(c.time, *row.time) * 86400.0;
                m_table->setItem(r, 2, cell(formatJulianDate(c.time, 5), true));
                m_table->setItem(r, 3, cell(QString::number(seconds, 'f', 3), true));
            } else {
                m_table->setItem(r, 2, cell(QStringLiteral("\u2014"), true));
                problems << QStringLiteral("%1: %2").arg(row.name, c.error);
            }
        }
        results.push_back(result);
    }
    m_table->resizeColumnsToContents();

    if (rows.empty())
        problems << QStringLiteral("No result is published yet: the system is kept for the results to come.");
    if (!warning.isEmpty())
        problems << warning;
    showProblem(problems.join(QLatin1Char('\n')));
    Q_EMIT converted(*choice, results);
    return true;
}

} // namespace dip::times
