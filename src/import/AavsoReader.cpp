// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "import/AavsoReader.h"

#include "import/ImportError.h"
#include "import/TextFile.h"
#include "session/WholeDays.h"

#include <cmath>

namespace dip::import {

namespace {

struct Parameter {
    QString key;
    QString value;
};

// "#KEY=VALUE" (blanks around both allowed); anything else starting with "#" is a comment.
bool parameter(const QString& line, Parameter* p)
{
    const int eq = line.indexOf(QLatin1Char('='));
    if (eq < 0)
        return false;
    const QString key = line.mid(1, eq - 1).trimmed().toUpper();
    if (key.isEmpty() || key.contains(QLatin1Char(' ')) || key.contains(QLatin1Char(',')))
        return false;
    p->key = key;
    p->value = line.mid(eq + 1).trimmed();
    return true;
}

} // namespace

ImportedRows readAavsoExtended(const QString& path)
{
    const QString file = fileLabel(path);
    const std::vector<QString> lines = readTextLines(path);
    ImportedRows rows;
    rows.format = FileFormat::AavsoExtended;
    rows.curve.source = file;
    bool haveType = false, haveDate = false;
    QChar delimiter = QLatin1Char(',');
    int fainterThan = 0;
    int nameLine = 0;

    for (std::size_t i = 0; i < lines.size(); ++i) {
        const int lineNo = static_cast<int>(i) + 1;
        const QString line = lines[i].trimmed();
        if (line.isEmpty())
            continue;
        if (line.startsWith(QLatin1Char('#'))) {
            Parameter p;
            if (!parameter(line, &p))
                continue;
            if (p.key == QLatin1String("TYPE")) {
                if (p.value.compare(QLatin1String("EXTENDED"), Qt::CaseInsensitive) != 0)
                    throw ImportError(
                        file, lineNo,
                        QStringLiteral("#TYPE=%1: only the AAVSO extended format (#TYPE=EXTENDED) is read")
                            .arg(p.value));
                haveType = true;
            } else if (p.key == QLatin1String("DELIM")) {
                const QString v = p.value;
                if (v.compare(QLatin1String("tab"), Qt::CaseInsensitive) == 0 || lines[i].contains(QLatin1Char('\t')))
                    delimiter = QLatin1Char('\t');
                else if (v.compare(QLatin1String("comma"), Qt::CaseInsensitive) == 0)
                    delimiter = QLatin1Char(',');
                else if (v.size() == 1 && v[0] != QLatin1Char('#') && v[0] != QLatin1Char(' '))
                    delimiter = v[0];
                else
                    throw ImportError(
                        file, lineNo,
                        QStringLiteral("#DELIM=%1: the delimiter must be one character, \"tab\" or \"comma\"").arg(v));
            } else if (p.key == QLatin1String("DATE")) {
                const QString v = p.value.toUpper();
                if (v == QLatin1String("JD"))
                    rows.curve.timeSystem = TimeSystem::JD_UTC;
                else if (v == QLatin1String("HJD"))
                    rows.curve.timeSystem = TimeSystem::HJD_UTC;
                else if (v == QLatin1String("BJD"))
                    rows.curve.timeSystem = TimeSystem::BJD_TDB;
                else if (v == QLatin1String("EXCEL"))
                    throw ImportError(file, lineNo,
                                      QStringLiteral("#DATE=EXCEL: Excel dates are not read; export the times as JD"));
                else
                    throw ImportError(file, lineNo,
                                      QStringLiteral("#DATE=%1: the date must be JD, HJD or BJD").arg(p.value));
                haveDate = true;
            } else if (p.key == QLatin1String("OBSCODE")) {
                rows.curve.observerCode = p.value;
            }
            continue;
        }

        // An observation.
        if (!haveType)
            throw ImportError(file, lineNo, QStringLiteral("an observation before the #TYPE=EXTENDED line"));
        if (!haveDate)
            throw ImportError(file, lineNo, QStringLiteral("an observation before the #DATE= line (JD, HJD or BJD)"));
        const QStringList f = lines[i].split(delimiter);
        if (f.size() < 5)
            throw ImportError(file, lineNo,
                              QStringLiteral("%1 fields; an observation has at least 5 (NAME, DATE, MAG, MERR, FILT) "
                                             "separated by \"%2\"")
                                  .arg(f.size())
                                  .arg(delimiter == QLatin1Char('\t') ? QStringLiteral("tab") : QString(delimiter)));
        const QString name = f[0].trimmed();
        if (name.isEmpty())
            throw ImportError(file, lineNo, QStringLiteral("NAME is empty"));
        if (rows.curve.starName.isEmpty()) {
            rows.curve.starName = name;
            nameLine = lineNo;
        } else if (name.compare(rows.curve.starName, Qt::CaseInsensitive) != 0) {
            throw ImportError(file, lineNo,
                              QStringLiteral("NAME \"%1\" differs from \"%2\" of line %3: one star a file")
                                  .arg(name, rows.curve.starName)
                                  .arg(nameLine));
        }
        const std::optional<double> date = numberField(f[1]);
        if (!date || std::isnan(*date))
            throw ImportError(file, lineNo, QStringLiteral("DATE \"%1\" is not a number").arg(f[1].trimmed()));
        const QString magText = f[2].trimmed();
        const QString filter = f[4].trimmed();
        if (filter.isEmpty())
            throw ImportError(file, lineNo, QStringLiteral("FILT is empty"));
        if (magText.startsWith(QLatin1Char('<'))) {
            if (!numberField(magText.mid(1)))
                throw ImportError(file, lineNo, QStringLiteral("MAG \"%1\" is not a number").arg(magText));
            ++fainterThan;
            continue;
        }
        const std::optional<double> mag = numberField(magText);
        if (!mag || std::isnan(*mag))
            throw ImportError(file, lineNo, QStringLiteral("MAG \"%1\" is not a number").arg(magText));
        const TimeParts parts = SplitTimeText(f[1], *date);
        rows.curve.addRow(parts.whole, parts.fraction, *mag);
        rows.curve.times.back() = *date;
        rows.rowFilters.push_back(filter);
    }

    if (!haveType)
        throw ImportError(file, 0, QStringLiteral("no #TYPE=EXTENDED line: not an AAVSO extended file"));
    if (rows.curve.times.empty())
        throw ImportError(file, 0, QStringLiteral("holds no observation with a magnitude"));
    sortByTime(rows);
    const std::vector<FilterCount> filters = filtersIn(rows);
    if (filters.size() == 1)
        rows.curve.filter = filters.front().filter;
    rows.notes << QStringLiteral("times: #DATE in the file");
    if (fainterThan > 0) {
        rows.droppedRows += fainterThan;
        rows.notes << QStringLiteral("%1 fainter-than observations (\"<\") left out").arg(fainterThan);
    }
    return rows;
}

} // namespace dip::import
