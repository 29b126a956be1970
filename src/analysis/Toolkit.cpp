// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/Toolkit.h"

#include "analysis/ConvertedResults.h"
#include "methods/MethodRegistry.h"
#include "session/SessionEvents.h"

namespace dip {

namespace {

// The names the last loaded file carried, so that the next load drops them unless the user
// has typed others since.
struct FileNames {
    QString starName;
    QString filter;
    QString observerCode;
};

FileNames& fileNames()
{
    static FileNames names;
    return names;
}

void takeFileName(QString& field, QString& fromLastFile, const QString& fromFile)
{
    if (!fromFile.isEmpty())
        field = fromFile;
    else if (field == fromLastFile)
        field.clear();
    fromLastFile = fromFile;
}

// What the toolkit derives from the session follows it: a load brings the file's own time
// system and names and drops every result's derived values; a result published or cleared
// drops its own, and gets its converted time again when a conversion is set up.
void followSession(ToolkitState& t, const SessionChange& change)
{
    if (change.kind == SessionChange::Loaded) {
        t.fileSystem = change.curve ? change.curve->timeSystem : TimeSystem::Unstated;
        FileNames& names = fileNames();
        const LightCurve empty;
        const LightCurve& curve = change.curve ? *change.curve : empty;
        takeFileName(t.starName, names.starName, curve.starName);
        takeFileName(t.filter, names.filter, curve.filter);
        takeFileName(t.observerCode, names.observerCode, curve.observerCode);
        t.rows = {};
        t.deeg.reset();
        return;
    }
    for (int k = 1; k <= 6; ++k)
        if (change.method == 0 || change.method == k)
            t.rows[static_cast<std::size_t>(k)] = ToolkitRow{};
    if (change.method == 0 || change.method == KweeRow)
        t.deeg.reset();
    if (ConversionSetUp())
        ConvertPublishedResults(change.method);
}

ToolkitState& instance()
{
    static ToolkitState state;
    static const bool following = [] {
        addSessionListener([](const SessionChange& change) { followSession(state, change); });
        return true;
    }();
    (void)following;
    return state;
}

} // namespace

ToolkitState& Toolkit() { return instance(); }

void resetToolkit()
{
    instance() = ToolkitState();
    fileNames() = FileNames();
}

} // namespace dip
