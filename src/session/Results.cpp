// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "session/Results.h"

#include "runtime/RuntimeError.h"
#include "session/Formatting.h"
#include "session/MainForm.h"
#include "session/Session.h"
#include "session/SessionEvents.h"

namespace dip {

ResultRow& ResultTable::operator()(int k)
{
    if (k < 1 || k > 6)
        rt::raise(9);
    return m_rows[k];
}

const ResultRow& ResultTable::operator()(int k) const
{
    if (k < 1 || k > 6)
        rt::raise(9);
    return m_rows[k];
}

void PublishResult(int method, double time, double error, const QString& errorText)
{
    Session& s = S();
    ResultRow& row = s.Results(method);
    row.published = true;
    row.time = s.HJDOffset + time;
    row.methodTime = time;
    row.error = error;
    row.ticked = true;
    row.trappedError = 0;
    row.timeText = FormatResult(row.time);
    row.errorText = errorText.isNull() ? FormatResult(error) : errorText;

    MainForm& form = mainForm();
    form.setText(method, row.timeText);
    form.setText(method + 6, row.errorText);
    form.setChecked(method, true);
    notifySessionChange({SessionChange::ResultChanged, method, nullptr});
}

void ClearResult(int method, bool untick)
{
    ResultRow& row = S().Results(method);
    row.published = false;
    row.timeText.clear();
    row.errorText.clear();
    row.extraTexts.clear();
    MainForm& form = mainForm();
    form.setText(method, QString());
    form.setText(method + 6, QString());
    if (untick) {
        row.ticked = false;
        form.setChecked(method, false);
    }
    notifySessionChange({SessionChange::ResultChanged, method, nullptr});
}

void ClearResultTexts()
{
    ResultTable& rows = S().Results;
    MainForm& form = mainForm();
    for (int k = 1; k <= 6; ++k) {
        const bool ticked = rows(k).ticked;
        rows(k) = ResultRow{};
        rows(k).ticked = ticked;
    }
    for (int k = 1; k <= 12; ++k)
        form.setText(k, QString());
    notifySessionChange({SessionChange::ResultChanged, 0, nullptr});
}

void UntickResults()
{
    ResultTable& rows = S().Results;
    MainForm& form = mainForm();
    for (int k = 1; k <= 6; ++k) {
        rows(k).ticked = false;
        form.setChecked(k, false);
    }
}

void SetTrappedError(int method, int number) { S().Results(method).trappedError = number; }

void SetResultExtras(int method, const QStringList& texts) { S().Results(method).extraTexts = texts; }

} // namespace dip
