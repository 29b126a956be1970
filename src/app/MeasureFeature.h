// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// What the observer's toolkit adds to dipscope-measure, one feature a class: its options, what
// it does at each step of the replayed session, and what it adds to the output. Without its
// options a feature does nothing, so the tool's output stays as it always was.
//
// The steps of a run: parse every option (a feature takes the ones it knows), check the
// combinations, open the file (a feature may load it itself, e.g. an import), replay the
// deletions and the methods, press "Calc. Means", let each feature work on the results, then
// print: a feature may print the whole output itself (another format), or add members to the
// JSON object of the run, of each result and of the means.

#include "analysis/JsonText.h"
#include "app/CommandLine.h"

#include <QString>

#include <cstdio>
#include <memory>
#include <vector>

namespace dip {

// A result row of the run: the method's row k, as the console prints it.
struct MeasureRow {
    int method = 0;
};

class MeasureFeature {
public:
    virtual ~MeasureFeature();

    // The usage lines of the feature's options, each ending in a line break.
    virtual QString usage() const = 0;
    // Takes the option the command line stands on, when it is one of the feature's (the value
    // through line.value()); false otherwise.
    virtual bool parse(CommandLine& line) = 0;
    // After every option is read: combinations that make no sense raise UsageError.
    virtual void check() const {}

    // Before the file is opened (the session is fresh).
    virtual void beforeLoad() {}
    // Opens the file itself instead of the Open dialog's way: returns true when it did (and the
    // session holds the file), false to leave it to the tool. A refusal it reports itself and
    // answers through refused().
    virtual bool load(const QString& /*file*/, std::FILE* /*err*/) { return false; }
    virtual bool refused() const { return false; }
    // After the file is loaded, before the deletions and the methods.
    virtual void afterLoad(std::FILE* /*err*/) {}
    // After "Calc. Means", with the rows that were printed.
    virtual void afterMeans(const std::vector<MeasureRow>& /*rows*/, std::FILE* /*err*/) {}

    // The output format the feature asked for ("json" the tool's own JSON, as --json; another
    // name a format it prints itself), "" for none.
    virtual QString outputFormat() const { return QString(); }
    // Prints the whole output in another format and returns true; false for the tool's own.
    virtual bool print(std::FILE* /*out*/, const std::vector<MeasureRow>& /*rows*/) { return false; }
    // Members added to the JSON of the run, of a result row, and of the means.
    virtual void addJson(JsonObject& /*run*/) const {}
    virtual void addJson(JsonObject& /*result*/, const MeasureRow& /*row*/) const {}
    virtual void addMeansJson(JsonObject& /*means*/) const {}
    // Lines added to the table, after the means.
    virtual QString tableLines(const std::vector<MeasureRow>& /*rows*/) const { return QString(); }
};

// The features of dipscope-measure, in the order they act: times, errors, O-C and reports.
std::vector<std::unique_ptr<MeasureFeature>> MeasureFeatures();

// Each feature's own file makes it.
std::unique_ptr<MeasureFeature> MakeTimesFeature();
std::unique_ptr<MeasureFeature> MakeErrorsFeature();
std::unique_ptr<MeasureFeature> MakeReportsFeature();

} // namespace dip
