// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "app/Batch.h"

#include "app/CommandLine.h"

#include "analysis/BatchInput.h"
#include "analysis/BatchMethods.h"
#include "analysis/BatchOutput.h"
#include "analysis/InputError.h"
#include "session/WholeDays.h"

#include <QFile>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <optional>
#include <thread>

#include <unistd.h>

namespace dip {

namespace {

const char* const usageText =
    "usage: dipscope-batch --ephemeris T0,P [options] FILE...\n"
    "Times every eclipse that the ephemeris predicts in each light curve (CSV: time, magnitude;\n"
    "or an AAVSO, AstroImageJ or FITS file) and writes one row per eclipse and method.\n"
    "  --ephemeris T0,P      a primary minimum and the period, days, in the files' time system\n"
    "  --secondary           also the secondary eclipses, at phase 0.5\n"
    "  --half-width D|auto   half-width of the window about each predicted minimum, days; auto\n"
    "                        (the default) measures the eclipse on the folded light curve\n"
    "  --methods LIST        of 1 (parabola), 3 (bisectors of chords), 4 (Kwee and van Woerden),\n"
    "                        5 (Fourier), 6 (sliding integrations); default 4,5\n"
    "  --min-branch N        fewest points on each side of the minimum (default 5)\n"
    "  --output FILE         the rows into FILE instead of standard output\n"
    "  --format csv|jsonl    CSV with a header line (default), or one JSON object a line\n"
    "  --plot FILE           the O-C diagram of the first method into FILE (.png, .svg, .pdf)\n"
    "  --plot-against cycle|time   the diagram's horizontal axis (default cycle)\n"
    "  --threads N           worker threads (default: every core)\n"
    "  --bootstrap N         also the bootstrap error of each time from N resamples\n"
    "  --correlated-noise    the bootstrap takes the noise as correlated (photometry from the\n"
    "                        ground): on a short window slow noise often looks white\n"
    "Options take their value as the next argument or after '='.\n"
    "Exit status: 0 all files timed, 1 a file was skipped, 2 the output or plot could not be\n"
    "written, 64 a bad command line.\n";

enum class Format { Csv, Jsonl };

struct Options {
    QStringList files;
    BatchSettings settings;
    bool haveEphemeris = false;
    QString output;
    Format format = Format::Csv;
    QString plot;
    OcAxis plotAxis = OcAxis::Cycle;
};

Options parseOptions(const QStringList& arguments)
{
    Options o;
    o.settings.threads = static_cast<int>(std::max(1u, std::thread::hardware_concurrency()));
    std::optional<double> halfWidth;
    CommandLine line(arguments);
    while (line.next()) {
        if (line.isOperand()) {
            o.files << line.operand();
            continue;
        }
        const QString arg = line.option();
        EclipseSettings& e = o.settings.eclipses;
        if (arg == QLatin1String("--ephemeris")) {
            const bool secondary = e.ephemeris.secondaryAtHalf;
            e.ephemeris = line.ephemeris(line.value());
            e.ephemeris.secondaryAtHalf = secondary;
            o.haveEphemeris = true;
        } else if (arg == QLatin1String("--secondary")) {
            line.flag();
            e.secondaries = true;
            e.ephemeris.secondaryAtHalf = true;
        } else if (arg == QLatin1String("--half-width")) {
            const QString v = line.value();
            if (v == QLatin1String("auto"))
                halfWidth.reset();
            else if (!((halfWidth = line.number(v)) > 0.0))
                throw UsageError{QStringLiteral("--half-width must be positive or auto")};
        } else if (arg == QLatin1String("--methods")) {
            std::vector<int> methods;
            for (const QString& part : line.value().split(QLatin1Char(','))) {
                const int m = line.whole(part, 1);
                if (!isBatchMethod(m))
                    throw UsageError{QStringLiteral("--methods: %1 is not one of 1, 3, 4, 5, 6").arg(m)};
                if (std::find(methods.begin(), methods.end(), m) != methods.end())
                    throw UsageError{QStringLiteral("--methods: %1 is given twice").arg(m)};
                methods.push_back(m);
            }
            o.settings.methods = methods;
        } else if (arg == QLatin1String("--min-branch")) {
            e.minBranchPoints = line.whole(line.value(), 1);
        } else if (arg == QLatin1String("--output")) {
            o.output = line.value();
        } else if (arg == QLatin1String("--format")) {
            const QString v = line.value();
            if (v == QLatin1String("csv"))
                o.format = Format::Csv;
            else if (v == QLatin1String("jsonl"))
                o.format = Format::Jsonl;
            else
                throw UsageError{QStringLiteral("--format is csv or jsonl")};
        } else if (arg == QLatin1String("--plot")) {
            o.plot = line.value();
            if (!plotFormatFor(o.plot))
                throw UsageError{QStringLiteral("--plot: a plot is written as .png, .svg or .pdf")};
        } else if (arg == QLatin1String("--plot-against")) {
            const QString v = line.value();
            if (v == QLatin1String("cycle"))
                o.plotAxis = OcAxis::Cycle;
            else if (v == QLatin1String("time"))
                o.plotAxis = OcAxis::Time;
            else
                throw UsageError{QStringLiteral("--plot-against is cycle or time")};
        } else if (arg == QLatin1String("--threads")) {
            o.settings.threads = line.whole(line.value(), 1);
        } else if (arg == QLatin1String("--bootstrap")) {
            o.settings.bootstrap.replicates = line.whole(line.value(), 0);
        } else if (arg == QLatin1String("--correlated-noise")) {
            line.flag();
            o.settings.bootstrap.correlatedNoise = true;
        } else {
            line.unknown();
        }
    }
    if (!o.haveEphemeris)
        throw UsageError{QStringLiteral("--ephemeris T0,P is needed")};
    if (o.files.isEmpty())
        throw UsageError{QStringLiteral("no FILE given")};
    EclipseSettings& e = o.settings.eclipses;
    // A window may not reach the next eclipse: half the spacing of the eclipses timed.
    const double spacing = (e.secondaries ? 0.5 : 1.0) * e.ephemeris.period;
    if (halfWidth && !(*halfWidth < spacing / 2))
        throw UsageError{
            QStringLiteral("--half-width must be below %1 d, half the spacing of the eclipses").arg(spacing / 2)};
    e.halfWidth = halfWidth.value_or(0);
    if (o.settings.bootstrap.correlatedNoise && o.settings.bootstrap.replicates == 0)
        throw UsageError{QStringLiteral("--correlated-noise goes with --bootstrap")};
    return o;
}

// "[#####.....] 45/100 eclipses" on one line of a terminal, redrawn at most every 0.1 s.
class ProgressBar {
public:
    ProgressBar(std::FILE* err, bool shown) : m_err(err), m_shown(shown) {}
    void show(const QString& label, std::size_t done, std::size_t total)
    {
        if (!m_shown)
            return;
        const auto now = std::chrono::steady_clock::now();
        if (done < total && now - m_last < std::chrono::milliseconds(100))
            return;
        m_last = now;
        const int width = 30;
        const int filled = total == 0 ? width : static_cast<int>(width * done / total);
        const QString bar = QString(filled, QLatin1Char('#')) + QString(width - filled, QLatin1Char('.'));
        print(m_err, QStringLiteral("\r%1 [%2] %3/%4 eclipses\x1b[K").arg(label, bar).arg(done).arg(total));
        std::fflush(m_err);
    }
    void clear()
    {
        if (m_shown)
            print(m_err, QStringLiteral("\r\x1b[K"));
    }

private:
    std::FILE* m_err;
    bool m_shown;
    std::chrono::steady_clock::time_point m_last{};
};

} // namespace

bool BatchWantsPlot(const QStringList& arguments)
{
    for (const QString& a : arguments)
        if (a == QLatin1String("--plot") || a.startsWith(QLatin1String("--plot=")))
            return true;
    return false;
}

int RunBatch(const QStringList& arguments, std::FILE* out, std::FILE* err, const MethodRunner& runner,
             const PlotWriter& plot)
{
    Options o;
    try {
        o = parseOptions(arguments);
    } catch (const UsageError& e) {
        print(err, QStringLiteral("dipscope-batch: %1\n").arg(e.what));
        std::fputs(usageText, err);
        return 64;
    }

    std::FILE* rows = out;
    if (!o.output.isEmpty()) {
        rows = std::fopen(QFile::encodeName(o.output).constData(), "wb");
        if (!rows) {
            print(err, QStringLiteral("dipscope-batch: %1: cannot be written\n").arg(o.output));
            return 2;
        }
    }
    if (o.format == Format::Csv)
        print(rows, batchCsvHeader());

    OcDiagram diagram;
    diagram.ephemeris = o.settings.eclipses.ephemeris;
    diagram.axis = o.plotAxis;
    diagram.title = o.files.size() == 1 ? o.files.front() : QStringLiteral("%1 light curves").arg(o.files.size());
    const int plotMethod = o.settings.methods.front();

    ProgressBar progress(err, isatty(fileno(err)) != 0);
    bool skippedFile = false;
    for (int f = 0; f < o.files.size(); ++f) {
        const QString& file = o.files[f];
        const QString label =
            o.files.size() > 1 ? QStringLiteral("file %1/%2").arg(f + 1).arg(o.files.size()) : QStringLiteral("timing");
        try {
            const BatchCurve read = readBatchCurve(file);
            const LightCurve& curve = read.curve;
            diagram.timeName = TimeSystemShortName(curve.timeSystem);
            // What an importer read and left out, for the user to check.
            for (const QString& note : read.notes)
                print(err, QStringLiteral("dipscope-batch: ") + file + QStringLiteral(": ") + note + QLatin1Char('\n'));
            const FileTiming timing = timeEveryEclipse(
                curve, file, o.settings, runner,
                [&](const BatchRow& row) {
                    print(rows, o.format == Format::Csv ? batchCsvLine(row) : batchJsonLine(row));
                    if (!o.plot.isEmpty() && row.timed && row.method == plotMethod)
                        diagram.points.push_back(
                            {row.cycle, row.time, row.oc.days, std::isfinite(row.error) ? row.error : 0});
                },
                [&](std::size_t done, std::size_t total) { progress.show(label, done, total); });
            progress.clear();
            // One arg() call: a file name may hold "%1".
            print(err, QStringLiteral("dipscope-batch: %1: %2 eclipses predicted, %3 skipped; half-width %4 d%5\n")
                           .arg(file, QString::number(timing.eclipses), QString::number(timing.skipped),
                                QString::number(timing.halfWidth, 'f', 5),
                                o.settings.eclipses.halfWidth > 0 ? QString() : QStringLiteral(" (measured)")));
        } catch (const InputError& e) {
            progress.clear();
            print(err, QStringLiteral("dipscope-batch: %1; the file is skipped\n").arg(e.message()));
            skippedFile = true;
        }
        std::fflush(rows);
    }

    bool writeFailed = std::ferror(rows) != 0;
    if (rows != out && std::fclose(rows) != 0)
        writeFailed = true;
    if (writeFailed)
        print(err, QStringLiteral("dipscope-batch: %1: the rows could not all be written\n")
                       .arg(o.output.isEmpty() ? QStringLiteral("standard output") : o.output));
    if (!o.plot.isEmpty()) {
        fitLine(diagram);
        QString why;
        if (!plot(o.plot, diagram, &why)) {
            print(err, QStringLiteral("dipscope-batch: %1\n").arg(why));
            writeFailed = true;
        }
    }
    if (writeFailed)
        return 2;
    return skippedFile ? 1 : 0;
}

} // namespace dip
