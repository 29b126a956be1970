// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "app/MeasureFeature.h"

#include "analysis/ReportLine.h"
#include "analysis/ResultExport.h"
#include "analysis/SessionResults.h"
#include "analysis/Toolkit.h"
#include "methods/MethodRegistry.h"

#include <optional>

namespace dip {

namespace {

// dipscope-measure's options for O-C from an ephemeris, and the results as CSV or report lines.
class ReportsFeature : public MeasureFeature {
public:
    QString usage() const override
    {
        return QStringLiteral("  --ephemeris T0,P      E and O - C of each result from a primary minimum T0 and the\n"
                              "                        period P, days, in the time system of the results\n"
                              "  --secondary           with --ephemeris: secondaries at phase 0.5 (E ends in .5)\n"
                              "  --format json|csv|report   the results as JSON (as --json), a CSV table or report\n"
                              "                        lines for a minima database\n"
                              "  --star NAME           with --format report: the star's name (an imported file's\n"
                              "                        otherwise)\n"
                              "  --observer CODE       with --format report: the observer's code\n");
    }

    bool parse(CommandLine& line) override
    {
        if (line.is("--ephemeris")) {
            m_ephemeris = line.ephemeris(line.value());
        } else if (line.is("--secondary")) {
            line.flag();
            m_secondary = true;
        } else if (line.is("--format")) {
            const QString f = line.value();
            if (f != QLatin1String("json") && f != QLatin1String("csv") && f != QLatin1String("report"))
                throw UsageError{QStringLiteral("--format: '%1' is none of json, csv, report").arg(f)};
            m_format = f;
        } else if (line.is("--star")) {
            m_star = line.value();
        } else if (line.is("--observer")) {
            m_observer = line.value();
        } else {
            return false;
        }
        return true;
    }

    void check() const override
    {
        if (m_secondary && !m_ephemeris)
            throw UsageError{QStringLiteral("--secondary goes with --ephemeris")};
        // Only a report line carries the star and the observer.
        if ((m_star || m_observer) && m_format != QLatin1String("report"))
            throw UsageError{QStringLiteral("--star and --observer go with --format report")};
    }

    QString outputFormat() const override { return m_format; }

    void beforeLoad() override
    {
        if (m_ephemeris) {
            Ephemeris e = *m_ephemeris;
            e.secondaryAtHalf = m_secondary;
            Toolkit().ephemeris = e;
        }
    }

    void afterMeans(const std::vector<MeasureRow>& /*rows*/, std::FILE* /*err*/) override
    {
        // What the user types wins over what an imported file said, as an edit of the export
        // dialog's prefilled fields does.
        if (m_star)
            Toolkit().starName = *m_star;
        if (m_observer)
            Toolkit().observerCode = *m_observer;
    }

    bool print(std::FILE* out, const std::vector<MeasureRow>& /*rows*/) override
    {
        if (m_format == QLatin1String("csv")) {
            dip::print(out, resultsCsv(sessionResults(Toolkit())));
            return true;
        }
        if (m_format == QLatin1String("report")) {
            dip::print(out, reportLines(sessionResults(Toolkit()), toolkitReportInfo(Toolkit())));
            return true;
        }
        return false;
    }

    void addJson(JsonObject& run) const override
    {
        if (!m_ephemeris)
            return;
        JsonObject e;
        e.add(QStringLiteral("t0"), jsonNumber(m_ephemeris->t0));
        e.add(QStringLiteral("period"), jsonNumber(m_ephemeris->period));
        e.add(QStringLiteral("secondary"), m_secondary ? QStringLiteral("true") : QStringLiteral("false"));
        run.add(QStringLiteral("ephemeris"), e.text());
    }

    void addJson(JsonObject& result, const MeasureRow& row) const override
    {
        if (!m_ephemeris)
            return;
        const std::optional<ExportRow> r = sessionResult(row.method, Toolkit());
        if (!r || !r->oc)
            return;
        addOcFields(result, *r->oc);
    }

    QString tableLines(const std::vector<MeasureRow>& rows) const override
    {
        if (!m_ephemeris)
            return QString();
        QString t = QStringLiteral("\nO - C from T0 = %1, P = %2%3\n")
                        .arg(QString::number(m_ephemeris->t0, 'f', 6), QString::number(m_ephemeris->period, 'f', 7),
                             m_secondary ? QStringLiteral(", secondaries at phase 0.5") : QString());
        t += QStringLiteral("%1%2%3%4\n")
                 .arg(QString(), -30)
                 .arg(QStringLiteral("E"), -12)
                 .arg(QStringLiteral("O - C (d)"), -14)
                 .arg(QStringLiteral("O - C (min)"));
        for (const MeasureRow& row : rows) {
            const std::optional<ExportRow> r = sessionResult(row.method, Toolkit());
            if (!r || !r->oc)
                continue;
            t += QStringLiteral("%1%2%3%4\n")
                     .arg(QString::fromLatin1(MethodOfRow(row.method).title), -30)
                     .arg(cycleText(r->oc->cycle), -12)
                     .arg(fixedText(r->oc->days, 6), -14)
                     .arg(fixedText(r->oc->minutes(), 3));
        }
        return t;
    }

private:
    std::optional<Ephemeris> m_ephemeris;
    bool m_secondary = false;
    QString m_format;
    std::optional<QString> m_star;
    std::optional<QString> m_observer;
};

} // namespace

std::unique_ptr<MeasureFeature> MakeReportsFeature() { return std::make_unique<ReportsFeature>(); }

} // namespace dip
