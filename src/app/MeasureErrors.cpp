// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/PublishedBootstrap.h"
#include "app/MeasureFeature.h"
#include "methods/MethodRegistry.h"

#include <cmath>
#include <optional>

namespace dip {

namespace {

// dipscope-measure's options for bootstrap errors and Deeg's error for Kwee and van Woerden.
class ErrorsFeature : public MeasureFeature {
public:
    QString usage() const override
    {
        return QStringLiteral(
            "         [--bootstrap N [--seed S] [--correlated-noise]]\n"
            "--bootstrap N repeats every published method but the tracing paper on N resampled copies\n"
            "of the curve (its range and parameters as given) and adds the spread of its times, Deeg's\n"
            "error for Kwee and van Woerden, and the weighted mean with those errors. --seed S (a whole\n"
            "number, default 1) fixes the draws: the same seed gives the same digits. --correlated-noise\n"
            "takes the noise as correlated (photometry from the ground): on a short curve the test\n"
            "between white and correlated noise often calls slow noise white, and the errors come out\n"
            "too small.\n");
    }

    bool parse(CommandLine& line) override
    {
        if (line.is("--bootstrap")) {
            m_options.replicates = line.whole(line.value(), 2);
            m_asked = true;
            return true;
        }
        if (line.is("--seed")) {
            const QString text = line.value();
            bool ok = false;
            m_options.seed = text.trimmed().toULongLong(&ok);
            if (!ok)
                throw UsageError{QStringLiteral("--seed: '%1' is not a whole number of at least 0").arg(text)};
            m_seedGiven = true;
            return true;
        }
        if (line.is("--correlated-noise")) {
            line.flag();
            m_options.correlatedNoise = true;
            return true;
        }
        return false;
    }

    void check() const override
    {
        if (m_seedGiven && !m_asked)
            throw UsageError{QStringLiteral("--seed goes with --bootstrap")};
        if (m_options.correlatedNoise && !m_asked)
            throw UsageError{QStringLiteral("--correlated-noise goes with --bootstrap")};
    }

    void afterMeans(const std::vector<MeasureRow>& /*rows*/, std::FILE* /*err*/) override
    {
        if (!m_asked)
            return;
        m_errors = BootstrapPublished(PublishedRowsJob(), m_options);
        StoreInToolkit(*m_errors);
    }

    void addJson(JsonObject& result, const MeasureRow& row) const override
    {
        const PublishedRowErrors* r = find(row.method);
        if (!r)
            return;
        if (r->hasBootstrap) {
            const BootstrapResult& b = r->bootstrap;
            const double offset = r->offset;
            JsonObject o;
            o.add(QStringLiteral("error"), jsonNumber(b.valid() ? b.error : NAN));
            // The percentiles where the published time is: with HJDOffset.
            o.add(QStringLiteral("p16"), jsonNumber(b.valid() ? b.p16 + offset : NAN));
            o.add(QStringLiteral("p84"), jsonNumber(b.valid() ? b.p84 + offset : NAN));
            o.add(QStringLiteral("n"), QString::number(b.successes));
            o.add(QStringLiteral("failures"), QString::number(b.failures));
            // The chords' error to believe: with the replicates' shift from the time.
            if (row.method == ChordsRow)
                o.add(QStringLiteral("error_with_shift"), jsonNumber(r->advisedError()));
            if (!b.problem.isEmpty())
                o.add(QStringLiteral("problem"), jsonString(b.problem));
            result.add(QStringLiteral("bootstrap"), o.text());
        }
        if (row.method == KweeRow && r->deeg) {
            // Deeg's error, or why his method gave none.
            result.add(QStringLiteral("deeg_error"),
                       r->deeg->ok() ? jsonNumber(r->deeg->error) : jsonString(deegKweeStatusText(r->deeg->status)));
        }
    }

    void addMeansJson(JsonObject& means) const override
    {
        if (!m_errors)
            return;
        const WeightedMean& w = m_errors->mean;
        means.add(QStringLiteral("bootstrap_weighted"), jsonNumber(w.valid ? w.mean : NAN));
        means.add(QStringLiteral("bootstrap_std_error"), jsonNumber(w.valid ? w.standardError : NAN));
    }

    QString tableLines(const std::vector<MeasureRow>& /*rows*/) const override
    {
        if (!m_errors)
            return QString();
        QString t = QStringLiteral("\nBootstrap errors (B = %1, seed %2%3)\n")
                        .arg(m_options.replicates)
                        .arg(m_options.seed)
                        .arg(m_options.correlatedNoise ? QStringLiteral(", noise taken as correlated") : QString());
        t += QStringLiteral("%1%2%3%4%5\n")
                 .arg(QString(), -30)
                 .arg(QStringLiteral("Error"), -12)
                 .arg(QStringLiteral("p16 - time"), -12)
                 .arg(QStringLiteral("p84 - time"), -12)
                 .arg(QStringLiteral("Runs"));
        for (const PublishedRowErrors& r : m_errors->rows) {
            if (!r.hasBootstrap)
                continue;
            const BootstrapResult& b = r.bootstrap;
            const QString title = QString::fromLatin1(MethodOfRow(r.row).title);
            if (!b.problem.isEmpty()) {
                t += QStringLiteral("%1none: %2\n").arg(title, -30).arg(b.problem);
                continue;
            }
            const bool valid = b.valid();
            t += QStringLiteral("%1%2%3%4%5\n")
                     .arg(title, -30)
                     .arg(valid ? errorBarText(b.error) : QStringLiteral("-"), -12)
                     .arg(valid ? signedErrorBarText(r.p16FromTime()) : QStringLiteral("-"), -12)
                     .arg(valid ? signedErrorBarText(r.p84FromTime()) : QStringLiteral("-"), -12)
                     .arg(replicatesText(b));
        }
        for (const PublishedRowErrors& r : m_errors->rows) {
            if (!r.deeg)
                continue;
            t += QStringLiteral("%1%2\n")
                     .arg(QStringLiteral("Deeg's error (row 4)"), -30)
                     .arg(r.deeg->ok() ? errorBarText(r.deeg->error) : deegKweeStatusText(r.deeg->status));
        }
        // A bias the errors above leave out.
        for (const PublishedRowErrors& r : m_errors->rows) {
            const QString caution = chordsCautionText(r);
            if (!caution.isEmpty())
                t += QStringLiteral("%1%2\n").arg(QStringLiteral("Caution (row %1)").arg(r.row), -30).arg(caution);
        }
        const WeightedMean& w = m_errors->mean;
        t += QStringLiteral("%1%2\n")
                 .arg(QStringLiteral("Weighted Mean (bootstrap)"), -30)
                 .arg(w.valid ? QString::number(w.mean, 'f', 7) : QStringLiteral("-"));
        t += QStringLiteral("%1%2\n")
                 .arg(QStringLiteral("Std. Error (bootstrap)"), -30)
                 .arg(w.valid ? errorBarText(w.standardError) : QStringLiteral("-"));
        return t;
    }

private:
    const PublishedRowErrors* find(int row) const
    {
        if (!m_errors)
            return nullptr;
        for (const PublishedRowErrors& r : m_errors->rows)
            if (r.row == row)
                return &r;
        return nullptr;
    }

    bool m_asked = false;
    bool m_seedGiven = false;
    MethodBootstrapOptions m_options;
    std::optional<PublishedErrors> m_errors;
};

} // namespace

std::unique_ptr<MeasureFeature> MakeErrorsFeature() { return std::make_unique<ErrorsFeature>(); }

} // namespace dip
