// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "app/Measure.h"

#include "analysis/JsonText.h"
#include "analysis/Toolkit.h"
#include "app/CommandLine.h"
#include "app/MeasureFeature.h"

#include "mainwindow/Means.h"
#include "mainwindow/StartUp.h"
#include "methods/MethodRegistry.h"
#include "runtime/MsgBox.h"
#include "runtime/RuntimeError.h"
#include "runtime/Text.h"
#include "session/LoadDataFile.h"
#include "session/MainForm.h"
#include "session/Points.h"
#include "session/Session.h"

#include <QFileInfo>

#include <array>
#include <optional>
#include <vector>

namespace dip {

namespace {

const char* const usageText =
    "usage: dipscope-measure FILE [--inverted] [--delete I,J,...] [--json]\n"
    "         [--parabola T1,T2] [--fold T] [--chords T1,T2,T3,T4]\n"
    "         [--kwee T1,T2 [--stepp TEXT] [--frac TEXT]]\n"
    "         [--fourier T1,T2 [--fourier-start V1,...,V8]] [--sliding]\n"
    "Loads FILE as the Open dialog does, replays the given deletions, right-clicks and method\n"
    "buttons in the order 1 to 6, presses \"Calc. Means\" and prints the main window's results\n"
    "(and the Fourier window's boxes after its fit).\n"
    "Options take their value as the next argument or after '='.\n";

struct Options {
    QString file;
    std::vector<std::unique_ptr<MeasureFeature>> features = MeasureFeatures();
    bool inverted = false;
    bool json = false;
    std::vector<long long> deletes;
    // Per method row: asked for by its option, and what the user gives it.
    bool asked[7] = {};
    ReplayRequest requests[7];
    bool steppGiven = false;
    bool fracGiven = false;
};

std::vector<long long> parseIndexes(const QString& value)
{
    std::vector<long long> indexes;
    for (const QString& part : value.split(QLatin1Char(','))) {
        bool ok = false;
        const long long i = part.trimmed().toLongLong(&ok);
        if (!ok)
            throw UsageError{QStringLiteral("--delete: '%1' is not a whole number").arg(part)};
        indexes.push_back(i);
    }
    return indexes;
}

Options parseOptions(const QStringList& arguments)
{
    Options o;
    bool haveFile = false;
    CommandLine line(arguments);
    while (line.next()) {
        if (line.isOperand(true)) {
            if (haveFile)
                throw UsageError{QStringLiteral("more than one FILE given")};
            o.file = line.operand();
            haveFile = true;
            continue;
        }
        bool taken = false;
        for (const std::unique_ptr<MeasureFeature>& feature : o.features)
            if (!taken && feature->parse(line))
                taken = true;
        if (taken)
            continue;
        const MethodEntry* method = nullptr;
        for (const MethodEntry& m : Methods())
            if (line.is(m.option))
                method = &m;
        if (method) {
            // A method's own option: a flag, a text or a number of times.
            ReplayRequest& request = o.requests[method->row];
            if (method->optionArguments == 0)
                line.flag();
            else if (method->optionArguments < 0)
                request.text = line.value();
            else
                request.clicks = line.numbers(line.value(), method->optionArguments);
            o.asked[method->row] = true;
        } else if (line.is("--inverted")) {
            line.flag();
            o.inverted = true;
        } else if (line.is("--json")) {
            line.flag();
            o.json = true;
        } else if (line.is("--delete")) {
            const std::vector<long long> more = parseIndexes(line.value());
            o.deletes.insert(o.deletes.end(), more.begin(), more.end());
        } else if (line.is("--stepp")) {
            o.requests[KweeRow].stepp = line.value();
            o.steppGiven = true;
        } else if (line.is("--frac")) {
            o.requests[KweeRow].frac = line.value();
            o.fracGiven = true;
        } else if (line.is("--fourier-start")) {
            const QStringList texts = line.value().split(QLatin1Char(','));
            if (texts.size() != 8)
                throw UsageError{QStringLiteral("--fourier-start takes 8 comma-separated values")};
            o.requests[FourierRow].fourierStart = texts;
        } else {
            line.unknown();
        }
    }
    if (!haveFile)
        throw UsageError{QStringLiteral("no FILE given")};
    if ((o.steppGiven || o.fracGiven) && !o.asked[KweeRow])
        throw UsageError{QStringLiteral("--stepp and --frac go with --kwee")};
    if (o.requests[FourierRow].fourierStart && !o.asked[FourierRow])
        throw UsageError{QStringLiteral("--fourier-start goes with --fourier")};
    for (const std::unique_ptr<MeasureFeature>& feature : o.features) {
        feature->check();
        const QString format = feature->outputFormat();
        if (format == QLatin1String("json"))
            o.json = true;
        else if (!format.isEmpty() && o.json)
            throw UsageError{QStringLiteral("--json and --format %1 cannot be combined").arg(format)};
    }
    return o;
}

struct Row : MeasureRow {
    ReplayResult result;
};

std::vector<MeasureRow> measureRows(const std::vector<Row>& rows)
{
    return std::vector<MeasureRow>(rows.begin(), rows.end());
}

void printJson(std::FILE* out, const std::vector<Row>& rows, const Options& o)
{
    const Session& s = S();
    MainForm& form = mainForm();
    QStringList results;
    for (const Row& row : rows) {
        JsonObject result;
        result.add(QStringLiteral("method"), QString::number(row.method));
        if (row.result.trappedError != 0) {
            result.add(QStringLiteral("trapped_error"), QString::number(row.result.trappedError));
        } else {
            result.add(QStringLiteral("time"), jsonNumber(row.result.time));
            result.add(QStringLiteral("error"), jsonNumber(row.result.error));
        }
        result.add(QStringLiteral("time_text"), jsonString(form.text(row.method)));
        result.add(QStringLiteral("error_text"), jsonString(form.text(row.method + 6)));
        if (!row.result.extraTexts.isEmpty()) {
            QStringList boxes;
            for (const QString& box : row.result.extraTexts)
                boxes << jsonString(box);
            result.add(QStringLiteral("boxes"), QLatin1Char('[') + boxes.join(QLatin1String(", ")) + QLatin1Char(']'));
        }
        for (const std::unique_ptr<MeasureFeature>& feature : o.features)
            feature->addJson(result, row);
        results << result.text();
    }
    JsonObject means;
    means.add(QStringLiteral("simple"), jsonString(form.text(13)));
    means.add(QStringLiteral("weighted"), jsonString(form.text(14)));
    means.add(QStringLiteral("std_error"), jsonString(form.text(15)));
    means.add(QStringLiteral("std_dev"), jsonString(form.text(16)));
    for (const std::unique_ptr<MeasureFeature>& feature : o.features)
        feature->addMeansJson(means);

    JsonObject run;
    run.add(QStringLiteral("NumOrig"), QString::number(s.NumOrig));
    run.add(QStringLiteral("NumPts"), QString::number(s.NumPts));
    run.add(QStringLiteral("results"), QLatin1Char('[') + results.join(QLatin1String(", ")) + QLatin1Char(']'));
    run.add(QStringLiteral("means"), means.text());
    for (const std::unique_ptr<MeasureFeature>& feature : o.features)
        feature->addJson(run);
    print(out, run.text() + QLatin1Char('\n'));
}

void printTable(std::FILE* out, const std::vector<Row>& rows, const Options& o)
{
    MainForm& form = mainForm();
    QString t;
    t += form.title() + QLatin1Char('\n');
    t += QStringLiteral("%1%2\n").arg(QStringLiteral("Original # data points"), -30).arg(form.origCountLabel());
    t += QStringLiteral("%1%2\n").arg(QStringLiteral("Edited # data points"), -30).arg(form.editedCountLabel());
    t += QStringLiteral("%1\n\n").arg(form.magOption() == 1 ? QStringLiteral("-Mags (inverted)")
                                                            : QStringLiteral("+Mags"));
    t += QStringLiteral("%1%2%3%4\n")
             .arg(QString(), -30)
             .arg(QStringLiteral("Time of Minimum"), -18)
             .arg(QStringLiteral("Est'd Error"), -16)
             .arg(QStringLiteral("Use in Mean?"));
    for (int k = 1; k <= 6; ++k) {
        QString time = form.text(k);
        QString error = form.text(k + 6);
        for (const Row& row : rows)
            if (row.method == k && row.result.trappedError != 0)
                error = QStringLiteral("(trapped error %1)").arg(row.result.trappedError);
        t += QStringLiteral("%1%2%3%4\n")
                 .arg(QString::fromLatin1(MethodOfRow(k).title), -30)
                 .arg(time, -18)
                 .arg(error, -16)
                 .arg(form.checked(k) ? QStringLiteral("[x]") : QStringLiteral("[ ]"));
    }
    t += QLatin1Char('\n');
    const char* meanTitles[] = {"Simple Mean", "Weighted Mean", "Std. Error of  Weighted Mean",
                                "Std. Deviation of Means"};
    for (int k = 0; k < 4; ++k)
        t += QStringLiteral("%1%2\n").arg(QString::fromLatin1(meanTitles[k]), -30).arg(form.text(13 + k));
    // The boxes a method window rewrote, quoted so that their blanks show.
    for (const Row& row : rows) {
        if (row.result.extraTexts.isEmpty())
            continue;
        const char* title = MethodOfRow(row.method).title;
        t += QStringLiteral("\n%1 boxes\n").arg(QString::fromLatin1(title));
        const QStringList names = {"ToM, Xo",   "Const, C",  "A.Freq, W", "Const, A1",
                                   "Const, A2", "Const, A3", "Const, A4", "Const, A5"};
        for (int k = 0; k < row.result.extraTexts.size(); ++k)
            t += QStringLiteral("  %1\"%2\"\n").arg(names.value(k), -12).arg(row.result.extraTexts[k]);
    }
    for (const std::unique_ptr<MeasureFeature>& feature : o.features)
        t += feature->tableLines(measureRows(rows));
    print(out, t);
}

std::vector<Row> replayMethods(const Options& o)
{
    // In the order of the rows; a method that published nothing has no row.
    std::vector<Row> rows;
    for (const MethodEntry& method : Methods()) {
        if (!o.asked[method.row])
            continue;
        const ReplayResult r = ReplayMethod(method.row, o.requests[method.row]);
        if (r.published || r.trappedError != 0)
            rows.push_back(Row{{method.row}, r});
    }
    return rows;
}

} // namespace

int RunMeasure(const QStringList& arguments, std::FILE* out, std::FILE* err)
{
    Options options;
    try {
        options = parseOptions(arguments);
    } catch (const UsageError& e) {
        print(err, QStringLiteral("dipscope-measure: %1\n").arg(e.what));
        std::fputs(usageText, err);
        for (const std::unique_ptr<MeasureFeature>& feature : MeasureFeatures())
            print(err, feature->usage());
        return 64;
    }

    // Message boxes become one line each on standard error; the computation goes on as after OK.
    const rt::MsgBoxHook previousHook = rt::setMsgBoxHook([err](const QString& text, const QString&) {
        print(err, QString(text).replace(QLatin1Char('\n'), QLatin1Char(' ')) + QLatin1Char('\n'));
    });
    MainBoxes boxes;
    MainForm* previousForm = setMainForm(&boxes);
    resetSession();
    resetToolkit();

    int code = 0;
    try {
        StartUpSession();
        for (const std::unique_ptr<MeasureFeature>& feature : options.features)
            feature->beforeLoad();
        // A feature may read the file itself (an imported format); otherwise it is opened as the
        // Open dialog opens it.
        bool loadedByFeature = false;
        bool refusedByFeature = false;
        for (const std::unique_ptr<MeasureFeature>& feature : options.features) {
            if (!loadedByFeature && feature->load(options.file, err)) {
                loadedByFeature = true;
                refusedByFeature = feature->refused();
            }
        }
        const QFileInfo info(options.file);
        if (refusedByFeature) {
            code = 1;
        } else if (!loadedByFeature && !OpenDataFile(info.absolutePath(), info.fileName())) {
            if (options.json)
                print(out, QStringLiteral("{\"message\": %1}\n").arg(jsonString(csvFormatMessage())));
            else
                print(out, csvFormatMessage() + QLatin1Char('\n'));
            code = 1;
        } else {
            for (const std::unique_ptr<MeasureFeature>& feature : options.features)
                feature->afterLoad(err);
            if (options.inverted) {
                boxes.showMagOption(1);
                ApplyMagSense(1);
            }
            for (const long long index : options.deletes) {
                S().PickIdx = rt::i16(index);
                SetPickedDeleted(true);
            }
            const std::vector<Row> rows = replayMethods(options);
            CalcMeansOnMainForm();
            for (const std::unique_ptr<MeasureFeature>& feature : options.features)
                feature->afterMeans(measureRows(rows), err);
            // A feature may print the results in a format of its own (CSV, report lines).
            bool printed = false;
            for (const std::unique_ptr<MeasureFeature>& feature : options.features)
                printed = printed || feature->print(out, measureRows(rows));
            if (!printed && options.json)
                printJson(out, rows, options);
            else if (!printed)
                printTable(out, rows, options);
        }
    } catch (const rt::RuntimeError& e) {
        if (options.json)
            print(out, QStringLiteral("{\"runtime_error\": {\"number\": %1, \"text\": %2}}\n")
                           .arg(e.number())
                           .arg(jsonString(e.text())));
        else
            print(err, rt::reportText(e).replace(QStringLiteral("\n\n"), QStringLiteral(" ")) + QLatin1Char('\n'));
        code = 2;
    }

    setMainForm(previousForm);
    rt::setMsgBoxHook(previousHook);
    return code;
}

} // namespace dip
