// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "app/MeasureFeature.h"

#include "analysis/ConvertedResults.h"
#include "analysis/FileLoading.h"
#include "analysis/ResultRow.h"
#include "analysis/Toolkit.h"
#include "import/Import.h"
#include "import/ImportError.h"
#include "methods/MethodRegistry.h"
#include "session/MainForm.h"
#include "session/Session.h"
#include "session/WholeDays.h"
#include "times/JulianDate.h"
#include "times/SkyPosition.h"
#include "times/TimeConversion.h"

#include <QRegularExpression>

#include <cmath>
#include <optional>
#include <utility>

namespace dip {

namespace {

const char* const timesUsage =
    "Times and other files: [--reduce] [--time-system jd|hjd|bjd]\n"
    "         [--report-in jd|hjd|bjd --ra RA --dec DEC [--site LAT,LON,HEIGHT]]\n"
    "         [--filter NAME] [--window T1,T2]\n"
    "  --reduce       subtract the whole day of the first row from every time before fitting;\n"
    "                 the times of the method options are then those of the plots (the file's\n"
    "                 times less \"offset\"), and every result has the day added back\n"
    "  --time-system  the system of the file's times (default: what an imported file says,\n"
    "                 else HJD(UTC), as the program calls its times)\n"
    "  --report-in    convert every result into this system for the star at RA, DEC (J2000:\n"
    "                 degrees, or 16:34:20.33 and +57:09:44.3), seen from the site (degrees\n"
    "                 north, degrees EAST, metres) or the Earth's centre; full Julian dates only\n"
    "  --filter       the band: the one to take from a file of several (default: the most\n"
    "                 frequent), or the one the observations were made in, for the reports\n"
    "  --window       the time window to take from a file of more than 1000 observations\n"
    "  FILE may also be an AAVSO extended file, an AstroImageJ table or a TESS/Kepler FITS\n"
    "  light curve: the kind is told by the content.\n";

TimeSystem systemValue(const CommandLine& line, const QString& value)
{
    TimeSystem system = TimeSystem::Unstated;
    if (!times::parseTimeSystemKey(value, &system))
        throw UsageError{QStringLiteral("%1 takes jd, hjd or bjd, not '%2'").arg(line.option(), value)};
    return system;
}

// A time of the file for messages, with the decimals a result is shown with.
QString timeText(double t) { return QString::number(t, 'f', 5); }

// dipscope-measure's options for full-precision times, time systems and imported files.
class TimesFeature : public MeasureFeature {
public:
    QString usage() const override { return QString::fromLatin1(timesUsage); }

    bool parse(CommandLine& line) override
    {
        if (line.is("--reduce")) {
            line.flag();
            m_reduce = true;
        } else if (line.is("--time-system")) {
            m_fileSystem = systemValue(line, line.value());
        } else if (line.is("--report-in")) {
            m_reportSystem = systemValue(line, line.value());
        } else if (line.is("--ra")) {
            const times::Angle ra = times::parseRightAscension(line.value());
            if (!ra.ok)
                throw UsageError{ra.error};
            m_ra = ra.degrees;
        } else if (line.is("--dec")) {
            const times::Angle dec = times::parseDeclination(line.value());
            if (!dec.ok)
                throw UsageError{dec.error};
            m_dec = dec.degrees;
        } else if (line.is("--site")) {
            const times::ParsedSite site = times::parseSite(line.value());
            if (!site.ok)
                throw UsageError{site.error};
            m_site = site.site;
        } else if (line.is("--filter")) {
            m_filter = line.value().trimmed();
            if (m_filter.isEmpty())
                throw UsageError{QStringLiteral("--filter needs the name of a band")};
        } else if (line.is("--window")) {
            const std::vector<double> ends = line.numbers(line.value(), 2);
            if (ends[0] > ends[1])
                throw UsageError{QStringLiteral("--window: the window %1,%2 ends before it begins")
                                     .arg(timeText(ends[0]), timeText(ends[1]))};
            m_window = import::TimeWindow{ends[0], ends[1]};
        } else {
            return false;
        }
        return true;
    }

    void check() const override
    {
        if (m_ra.has_value() != m_dec.has_value())
            throw UsageError{QStringLiteral("--ra and --dec go together")};
        if (m_reportSystem && !m_ra)
            throw UsageError{QStringLiteral("--report-in needs the star's --ra and --dec")};
        if (!m_reportSystem && (m_ra || m_site))
            throw UsageError{QStringLiteral("--ra, --dec and --site go with --report-in")};
    }

    void beforeLoad() override { S().SubtractWholeDays = m_reduce; }

    bool load(const QString& file, std::FILE* err) override
    {
        // The program's own files go the Open dialog's way unless a window is to be cut from them
        // (a filter is only the band they were observed in, for the reports).
        const bool choices = m_window.has_value();
        import::FileFormat format = import::FileFormat::Csv;
        try {
            format = import::detectFormat(file);
        } catch (const import::ImportError& e) {
            // Without a choice to make, a file that cannot be read is the Open dialog's to fail
            // on, as it always has.
            if (!choices)
                return false;
            return refuse(e, err);
        }
        if (format == import::FileFormat::Csv && !choices)
            return false;
        try {
            const PreparedFile prepared = PrepareLightCurveFile(file);
            const std::vector<import::FilterCount> filters = import::filtersIn(prepared.rows);
            if (filters.size() > 1 && m_filter.isEmpty()) {
                QStringList present;
                for (const import::FilterCount& f : filters)
                    present << QStringLiteral("%1 (%2)").arg(f.filter).arg(f.count);
                note(err, QStringLiteral("%1 holds the filters %2; %3 is taken (--filter chooses)")
                              .arg(file, present.join(QStringLiteral(", ")), import::defaultFilter(prepared.rows)));
            }
            import::ImportOptions options;
            // A band to choose among the file's; a file of one band (or none) is told below.
            if (!prepared.rows.rowFilters.empty())
                options.filter = m_filter;
            options.window = m_window;
            const LightCurve curve = ChooseLightCurveRows(prepared, options);
            InstallFileCurve(prepared, curve);
            for (const QString& line : prepared.rows.notes)
                note(err, QStringLiteral("%1: %2").arg(file, line));
            m_imported = format != import::FileFormat::Csv;
        } catch (const import::ImportError& e) {
            return refuse(e, err);
        }
        return true;
    }

    bool refused() const override { return m_refused; }

    void afterLoad(std::FILE* err) override
    {
        ToolkitState& t = Toolkit();
        if (m_fileSystem) {
            if (t.fileSystem != TimeSystem::Unstated && t.fileSystem != *m_fileSystem)
                note(err, QStringLiteral("warning: the file says its times are %1; they are taken as %2, as "
                                         "--time-system says")
                              .arg(times::timeSystemName(t.fileSystem), times::timeSystemName(*m_fileSystem)));
            StateFileSystem(*m_fileSystem);
        }
        if (!m_filter.isEmpty() && t.filter.compare(m_filter, Qt::CaseInsensitive) != 0) {
            // The band of a file that names none (or one other): the user's word, for the reports.
            if (!t.filter.isEmpty())
                note(err, QStringLiteral("warning: the file says its filter is %1; it is taken as %2, as --filter "
                                         "says")
                              .arg(t.filter, m_filter));
            t.filter = m_filter;
        }
        if (m_reportSystem) {
            t.reportSystem = *m_reportSystem;
            t.star = times::Star{*m_ra, *m_dec};
            t.site = m_site;
        }
        if (const std::optional<double> first = LargeTimesWithoutOffset()) {
            note(err, QStringLiteral("warning: the times exceed %1 days (%2): the methods lose digits on them; "
                                     "--reduce subtracts the whole days before fitting")
                          .arg(LargeTimeDays)
                          .arg(timeText(*first)));
        }
    }

    void afterMeans(const std::vector<MeasureRow>& /*rows*/, std::FILE* err) override
    {
        if (!m_reportSystem)
            return;
        // What could not be converted: each reason once, the other times it holds for named.
        std::vector<std::pair<QString, times::Converted>> failed;
        QString warning;
        for (const RowConversion& row : ConvertPublishedResults()) {
            if (!row.converted.ok)
                failed.emplace_back(rowTitle(row.method), row.converted);
            else if (!row.converted.warning.isEmpty())
                warning = row.converted.warning;
        }
        MainForm& form = mainForm();
        for (int m = 0; m < 2; ++m) {
            m_meansConverted[m].reset();
            times::JulianDate mean;
            if (!times::parseJulianDate(form.text(13 + m), &mean))
                continue;
            const times::Converted c = ConvertToReportSystem(mean);
            if (c.ok)
                m_meansConverted[m] = c.time;
            else
                failed.emplace_back(meanTitle(m), c);
        }
        static const QRegularExpression number(QStringLiteral("[0-9]+\\.[0-9]+"));
        std::vector<bool> told(failed.size(), false);
        for (std::size_t i = 0; i < failed.size(); ++i) {
            if (told[i])
                continue;
            const QString reason = QString(failed[i].second.error).remove(number);
            QStringList alike;
            for (std::size_t j = i + 1; j < failed.size(); ++j) {
                if (!told[j] && QString(failed[j].second.error).remove(number) == reason) {
                    told[j] = true;
                    alike << failed[j].first;
                }
            }
            note(err, QStringLiteral("%1 cannot be converted: %2").arg(failed[i].first, failed[i].second.error));
            if (!alike.isEmpty())
                note(err, QStringLiteral("neither, for the same reason: %1").arg(alike.join(QStringLiteral(", "))));
        }
        if (!warning.isEmpty())
            note(err, QStringLiteral("warning: %1").arg(warning));
    }

    void addJson(JsonObject& run) const override
    {
        if (!active())
            return;
        run.add(QStringLiteral("time_system"), jsonString(timeSystemWord(Toolkit().fileSystem)));
        run.add(QStringLiteral("offset"), QString::number(S().HJDOffset, 'f', 0));
        if (m_reportSystem)
            run.add(QStringLiteral("report_system"), jsonString(timeSystemWord(*m_reportSystem)));
    }

    void addJson(JsonObject& result, const MeasureRow& row) const override
    {
        if (m_reportSystem)
            result.add(QStringLiteral("time_converted"),
                       convertedJson(Toolkit().rows[static_cast<std::size_t>(row.method)].convertedTime));
    }

    void addMeansJson(JsonObject& means) const override
    {
        if (!m_reportSystem)
            return;
        means.add(QStringLiteral("simple_converted"), convertedJson(m_meansConverted[0]));
        means.add(QStringLiteral("weighted_converted"), convertedJson(m_meansConverted[1]));
    }

    QString tableLines(const std::vector<MeasureRow>& rows) const override
    {
        if (!active())
            return QString();
        const ToolkitState& t = Toolkit();
        QString lines = QLatin1String("\n");
        lines += QStringLiteral("%1%2\n")
                     .arg(QStringLiteral("Time system"), -30)
                     .arg(times::timeSystemName(t.fileSystem) +
                          (t.fileSystem == TimeSystem::Unstated ? QStringLiteral(" (not stated)") : QString()));
        lines += QStringLiteral("%1%2\n")
                     .arg(QStringLiteral("Whole days subtracted"), -30)
                     .arg(QString::number(S().HJDOffset, 'f', 0));
        if (!m_reportSystem)
            return lines;
        lines += QStringLiteral("\nIn %1\n").arg(times::timeSystemName(*m_reportSystem));
        for (const MeasureRow& row : rows)
            lines += QStringLiteral("%1%2\n")
                         .arg(rowTitle(row.method), -30)
                         .arg(convertedText(t.rows[static_cast<std::size_t>(row.method)].convertedTime));
        for (int m = 0; m < 2; ++m)
            lines += QStringLiteral("%1%2\n").arg(meanTitle(m), -30).arg(convertedText(m_meansConverted[m]));
        return lines;
    }

private:
    bool active() const
    {
        return m_reduce || m_fileSystem || m_reportSystem || m_imported || m_window || !m_filter.isEmpty();
    }

    static QString rowTitle(int method) { return QString::fromLatin1(MethodOfRow(method).title); }
    static QString meanTitle(int m) { return m == 0 ? QStringLiteral("Simple Mean") : QStringLiteral("Weighted Mean"); }

    // A converted time as a JSON number with 10 decimals (8.6 microseconds, finer than the
    // conversion's own accuracy), or null.
    static QString convertedJson(const std::optional<times::JulianDate>& t)
    {
        return t ? times::formatJulianDate(*t, 10) : QStringLiteral("null");
    }
    static QString convertedText(const std::optional<times::JulianDate>& t)
    {
        return t ? times::formatJulianDate(*t, 10) : QStringLiteral("(not converted)");
    }

    static void note(std::FILE* err, const QString& text)
    {
        dip::print(err, QStringLiteral("dipscope-measure: %1\n").arg(text));
    }

    bool refuse(const import::ImportError& e, std::FILE* err)
    {
        QString text = e.text();
        if (text.contains(QLatin1String("choose a time window")))
            text += QStringLiteral(" (--window T1,T2)");
        note(err, text);
        m_refused = true;
        return true;
    }

    bool m_reduce = false;
    std::optional<TimeSystem> m_fileSystem;
    std::optional<TimeSystem> m_reportSystem;
    std::optional<double> m_ra;
    std::optional<double> m_dec;
    std::optional<times::Site> m_site;
    QString m_filter;
    std::optional<import::TimeWindow> m_window;

    bool m_imported = false;
    bool m_refused = false;
    std::optional<times::JulianDate> m_meansConverted[2];
};

} // namespace

std::unique_ptr<MeasureFeature> MakeTimesFeature() { return std::make_unique<TimesFeature>(); }

} // namespace dip
