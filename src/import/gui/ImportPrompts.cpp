// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "import/gui/ImportPrompts.h"

#include "import/TextFile.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace dip::import {

namespace {

QDialogButtonBox* okCancel(QDialog* dialog)
{
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, dialog);
    buttons->setObjectName(QStringLiteral("buttons"));
    QObject::connect(buttons, &QDialogButtonBox::accepted, dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    return buttons;
}

QLabel* wrapped(const QString& text, QWidget* parent)
{
    auto* label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

// A time as the window's ends are typed: six decimals (under a tenth of a second).
QString windowText(double t) { return QString::number(t, 'f', 6); }

} // namespace

FilterChoiceDialog::FilterChoiceDialog(const QString& file, const std::vector<FilterCount>& filters,
                                       const QString& preferred, QWidget* parent)
    : QDialog(parent), m_list(filters)
{
    setObjectName(QStringLiteral("dlgImportFilter"));
    setWindowTitle(QStringLiteral("Import: filter"));
    m_filters = new QComboBox(this);
    m_filters->setObjectName(QStringLiteral("cboFilter"));
    for (const FilterCount& f : filters)
        m_filters->addItem(QStringLiteral("%1 (%2 observations)").arg(f.filter).arg(f.count));
    for (std::size_t i = 0; i < filters.size(); ++i)
        if (filters[i].filter.compare(preferred, Qt::CaseInsensitive) == 0)
            m_filters->setCurrentIndex(static_cast<int>(i));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(
        wrapped(QStringLiteral("%1 holds observations in %2 filters. A light curve is one filter: which one?")
                    .arg(QFileInfo(file).fileName())
                    .arg(filters.size()),
                this));
    layout->addWidget(m_filters);
    layout->addWidget(okCancel(this));
}

QString FilterChoiceDialog::filter() const
{
    const int i = m_filters->currentIndex();
    return i >= 0 && i < static_cast<int>(m_list.size()) ? m_list[static_cast<std::size_t>(i)].filter : QString();
}

TimeWindowDialog::TimeWindowDialog(const QString& file, std::vector<double> times, QWidget* parent)
    : QDialog(parent), m_times(std::move(times))
{
    std::sort(m_times.begin(), m_times.end());
    setObjectName(QStringLiteral("dlgImportWindow"));
    setWindowTitle(QStringLiteral("Import: time window"));
    m_from = new QLineEdit(this);
    m_from->setObjectName(QStringLiteral("txtFrom"));
    m_to = new QLineEdit(this);
    m_to->setObjectName(QStringLiteral("txtTo"));
    m_status = new QLabel(this);
    m_status->setObjectName(QStringLiteral("lblCount"));
    m_status->setTextFormat(Qt::PlainText);
    m_buttons = okCancel(this);

    auto* layout = new QVBoxLayout(this);
    const std::size_t n = m_times.size();
    layout->addWidget(wrapped(QStringLiteral("%1 holds %2 observations from %3 to %4; a light curve holds at most "
                                             "%5. Which time window (both ends included)?")
                                  .arg(QFileInfo(file).fileName())
                                  .arg(n)
                                  .arg(n ? windowText(m_times.front()) : QString())
                                  .arg(n ? windowText(m_times.back()) : QString())
                                  .arg(maxObservations),
                              this));
    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("From:"), m_from);
    form->addRow(QStringLiteral("To:"), m_to);
    layout->addLayout(form);
    layout->addWidget(m_status);
    layout->addWidget(m_buttons);

    // The first 1000 observations: up to half-way to the 1001st.
    if (n > 0) {
        const std::size_t last = std::min<std::size_t>(n, maxObservations) - 1;
        const double to = last + 1 < n ? (m_times[last] + m_times[last + 1]) / 2 : m_times[last];
        m_from->setText(windowText(std::floor(m_times.front() * 1e6) / 1e6));
        m_to->setText(windowText(std::floor(to * 1e6) / 1e6));
    }
    connect(m_from, &QLineEdit::textChanged, this, [this] { update(); });
    connect(m_to, &QLineEdit::textChanged, this, [this] { update(); });
    update();
}

std::optional<TimeWindow> TimeWindowDialog::window() const
{
    const std::optional<double> from = numberField(m_from->text());
    const std::optional<double> to = numberField(m_to->text());
    if (!from || !to || std::isnan(*from) || std::isnan(*to) || *from > *to)
        return std::nullopt;
    const TimeWindow w{*from, *to};
    const auto lo = std::lower_bound(m_times.begin(), m_times.end(), w.first);
    const auto hi = std::upper_bound(m_times.begin(), m_times.end(), w.last);
    const auto count = hi - lo;
    if (count < 1 || count > maxObservations)
        return std::nullopt;
    return w;
}

QString TimeWindowDialog::status() const { return m_status->text(); }

void TimeWindowDialog::update()
{
    const std::optional<double> from = numberField(m_from->text());
    const std::optional<double> to = numberField(m_to->text());
    QString text;
    if (!from || std::isnan(*from))
        text = QStringLiteral("From: \"%1\" is not a time").arg(m_from->text().trimmed());
    else if (!to || std::isnan(*to))
        text = QStringLiteral("To: \"%1\" is not a time").arg(m_to->text().trimmed());
    else if (*from > *to)
        text = QStringLiteral("The window ends before it begins");
    else {
        const auto lo = std::lower_bound(m_times.begin(), m_times.end(), *from);
        const auto hi = std::upper_bound(m_times.begin(), m_times.end(), *to);
        const long long count = hi - lo;
        text = QStringLiteral("%1 observations in the window").arg(count);
        if (count == 0)
            text += QStringLiteral(": choose one that holds some");
        else if (count > maxObservations)
            text += QStringLiteral(": at most %1 can be loaded").arg(maxObservations);
    }
    m_status->setText(text);
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(window().has_value());
}

ImportPrompts realImportPrompts()
{
    ImportPrompts prompts;
    prompts.chooseFile = [](QWidget* owner) {
        return QFileDialog::getOpenFileName(owner, QStringLiteral("Import a light curve"), QString(),
                                            QStringLiteral("All files (*);;Light curves (*.txt *.csv *.dat *.xls "
                                                           "*.tbl *.fits *.fit *.fts)"));
    };
    prompts.chooseFilter = [](QWidget* owner, const QString& file, const std::vector<FilterCount>& filters,
                              const QString& preferred) -> std::optional<QString> {
        FilterChoiceDialog dialog(file, filters, preferred, owner);
        if (dialog.exec() != QDialog::Accepted)
            return std::nullopt;
        return dialog.filter();
    };
    prompts.chooseWindow = [](QWidget* owner, const QString& file,
                              const std::vector<double>& times) -> std::optional<TimeWindow> {
        TimeWindowDialog dialog(file, times, owner);
        if (dialog.exec() != QDialog::Accepted)
            return std::nullopt;
        return dialog.window();
    };
    return prompts;
}

ImportPrompts& importPrompts()
{
    static ImportPrompts prompts = realImportPrompts();
    return prompts;
}

} // namespace dip::import
