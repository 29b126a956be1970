// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/gui/ErrorBarsWindow.h"

#include "methods/MethodRegistry.h"
#include "runtime/Twips.h"
#include "session/MainForm.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QElapsedTimer>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSpinBox>
#include <QStringList>
#include <QTableWidget>
#include <QThread>
#include <QTimer>
#include <QVBoxLayout>

#include <climits>
#include <mutex>

namespace dip {

namespace {

// Layout in twips.
constexpr int windowWidth = 18600;
constexpr int windowHeight = 5400;
// The progress bar is brought up to date this often while the replicates run.
constexpr int pollMs = 50;

// The tip of "Correlated noise": when to tick it, and what it costs.
const QString correlatedNoiseAdvice =
    QStringLiteral("Take the noise as correlated (photometry from the ground, drifts, seeing). On a short curve "
                   "the fit and the time take up most of the slow noise, and the test between white and correlated "
                   "noise then often calls it white: the bootstrap's error comes out too small. On simulated "
                   "curves with correlated noise, ticked, every method's error was right (the chords' with the "
                   "Caution's error). On white noise it makes the errors up to half as large again "
                   "as they are.");

// Why a row's noise was taken as correlated without "Correlated noise" ticked.
const QString baselineTip =
    QStringLiteral(" Taken as correlated: the light beside the dip, where a straight line leaves slow noise in its "
                   "residuals, showed it.");

enum Column {
    MethodColumn,
    TimeColumn,
    OwnColumn,
    BootstrapColumn,
    P16Column,
    P84Column,
    RunsColumn,
    DeegColumn,
    NoiseColumn,
    CautionColumn,
    ColumnCount
};

QString timeText(double t) { return QString::number(t, 'f', 7); }

QString failuresTip(const BootstrapResult& b)
{
    QStringList parts;
    for (const auto& [number, count] : b.failuresByError) {
        const QString what = number == noResultFailure ? QStringLiteral("no result")
                             : number == otherFailure  ? QStringLiteral("other")
                                                       : QStringLiteral("runtime error %1").arg(number);
        parts << QStringLiteral("%1: %2").arg(what).arg(count);
    }
    return parts.join(QLatin1String(", "));
}

// A cell of the table: a few words, and what they mean for its tip.
struct CellText {
    QString text;
    QString tip;
};

// How the replicates' noise was drawn, with the warning where the error may be too small.
CellText describeNoise(const BootstrapResult& b)
{
    CellText d;
    if (b.modelled()) {
        d.text = QStringLiteral("correlated, tau %1 d").arg(b.noiseCovariance.tau, 0, 'g', 2);
        d.tip = QStringLiteral("Drawn from white noise plus noise correlated over tau, fitted to the differences "
                               "between the branches.");
    } else if (b.sieve) {
        d.text = QStringLiteral("autoregression");
        d.tip = QStringLiteral("Drawn from an autoregression fitted to the differences between the branches.");
    } else if (b.blockLength > 1) {
        d.text = QStringLiteral("blocks of %1").arg(b.blockLength);
        d.tip =
            QStringLiteral("The residuals about a smooth model, resampled in blocks of %1 points.").arg(b.blockLength);
    } else {
        d.text = QStringLiteral("white");
        d.tip = QStringLiteral("The residuals about a smooth model, resampled one by one.");
    }
    // Why it was taken as correlated, whether or not a correlated model could be fitted.
    if (b.correlatedByBaseline) {
        d.text += QStringLiteral(" (baseline)");
        d.tip += baselineTip;
    } else if (b.correlatedNoise) {
        d.tip += QStringLiteral(" Taken as correlated, as \"Correlated noise\" says.");
    }
    if (b.unmodelledOnFewPoints()) {
        d.text += QStringLiteral(" (few points)");
        d.tip += QStringLiteral(" The noise was judged on %1 points, too few to see slow noise: on simulated curves "
                                "of fewer than %2 points with correlated noise that was not found, the true errors "
                                "were 1.3 to 2.3 times the bootstrap's; with white noise, 0.8 to 1.1 times.")
                     .arg(b.points)
                     .arg(BootstrapResult::fewPointsForTheNoise);
        // Taken as correlated (ticked, or by the baseline), that did what it could: too few
        // differences between the branches to fit any model of the noise.
        d.tip += b.correlatedNoise ? QStringLiteral(" The branches have too few points facing each other to fit a "
                                                    "correlated noise: widen the error, or time a longer curve.")
                                   : QStringLiteral(" Where the noise is correlated (photometry from the ground), "
                                                    "tick \"Correlated noise\" and start again, or time a longer "
                                                    "curve.");
    }
    return d;
}

// The chords' caution: the chords whose crossing was read across a gap, how many, and the error
// to believe, with the replicates' shift from the time (AdvisedBootstrapError), and why.
CellText describeChordsCaution(const PublishedRowErrors& r)
{
    CellText d;
    if (r.row != ChordsRow)
        return d;
    d.text = chordsCautionText(r);
    QStringList tip;
    if (r.chordGaps && r.chordGaps->any())
        tip << QStringLiteral("These chords end on a crossing read by a straight line between two points up to %1 "
                              "median spacings apart, across the curved branch: the time is off by more than the "
                              "bootstrap's spread says, since every resampled curve has the same gap. On simulated "
                              "eclipses such times were off by 1.7 times their bootstrap error.")
                   .arg(r.chordGaps->widest, 0, 'f', 0);
    if (std::isfinite(r.advisedError()))
        tip << QStringLiteral("Every chord ends on a crossing read by a straight line between two points, which cuts "
                              "the curved branch: the crossing is off by an amount the sampling sets, differently on "
                              "the two branches, and every resampled curve has the same sampling. The resampled "
                              "times repeat that bias: their mean lies %1 d from the time. The error with that shift "
                              "added (in quadrature) was right on simulated eclipses, where the bootstrap error "
                              "alone was too small; use it. The weighted mean with the bootstrap errors does.")
                   .arg(signedErrorBarText(r.bootstrap.shift(r.fitted.time)));
    if (r.chordGaps && r.chordGaps->any())
        tip << QStringLiteral("Better still, pick the stretches so that their chords end where the other branch has "
                              "points.");
    d.tip = tip.join(QLatin1Char(' '));
    return d;
}

} // namespace

// What the worker and the window share.
struct ErrorBarsWindow::Run {
    PublishedJob job;
    MethodBootstrapOptions options;
    std::atomic<bool> cancel{false};
    std::atomic<int> done{0};
    std::atomic<int> total{0};
    std::mutex mutex;
    std::optional<PublishedErrors> result;
    QElapsedTimer clock;
};

ErrorBarsWindow::ErrorBarsWindow(QWidget* parent) : QWidget(parent, Qt::Window)
{
    setWindowTitle(QStringLiteral("Error bars"));
    resize(windowWidth / TwipsPerPixel, windowHeight / TwipsPerPixel);

    m_replicates = new QSpinBox(this);
    m_replicates->setRange(2, 100000);
    m_replicates->setValue(MethodBootstrapOptions().replicates);
    m_replicates->setToolTip(QStringLiteral("Resampled light curves each method is repeated on"));
    m_seed = new QSpinBox(this);
    m_seed->setRange(0, INT_MAX);
    m_seed->setValue(int(MethodBootstrapOptions().seed));
    m_seed->setToolTip(QStringLiteral("The same seed gives the same digits"));
    m_correlated = new QCheckBox(QStringLiteral("Correlated noise"), this);
    m_correlated->setToolTip(correlatedNoiseAdvice);
    m_start = new QPushButton(QStringLiteral("Start"), this);
    m_cancel = new QPushButton(QStringLiteral("Cancel"), this);
    m_cancel->setEnabled(false);
    m_progress = new QProgressBar(this);
    m_progress->setRange(0, 1);
    m_progress->setValue(0);
    m_status = new QLabel(this);
    m_status->setText(QStringLiteral("Start repeats each published method on B resampled light curves."));
    m_means = new QLabel(this);
    m_means->setTextInteractionFlags(Qt::TextSelectableByMouse);

    m_table = new QTableWidget(0, ColumnCount, this);
    m_table->setHorizontalHeaderLabels(
        {QStringLiteral("Method"), QStringLiteral("Time of Minimum"), QStringLiteral("Own error"),
         QStringLiteral("Bootstrap error"), QStringLiteral("p16 - time"), QStringLiteral("p84 - time"),
         QStringLiteral("Runs"), QStringLiteral("Deeg's error"), QStringLiteral("Noise"), QStringLiteral("Caution")});
    m_table->verticalHeader()->hide();
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);

    auto* settings = new QHBoxLayout;
    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Replicates B"), m_replicates);
    settings->addLayout(form);
    auto* seedForm = new QFormLayout;
    seedForm->addRow(QStringLiteral("Seed"), m_seed);
    settings->addLayout(seedForm);
    settings->addWidget(m_correlated);
    settings->addStretch();
    settings->addWidget(m_start);
    settings->addWidget(m_cancel);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(settings);
    layout->addWidget(m_progress);
    layout->addWidget(m_status);
    layout->addWidget(m_table, 1);
    layout->addWidget(m_means);

    m_timer = new QTimer(this);
    m_timer->setInterval(pollMs);
    connect(m_timer, &QTimer::timeout, this, &ErrorBarsWindow::poll);
    connect(m_start, &QPushButton::clicked, this, [this] { start(); });
    connect(m_cancel, &QPushButton::clicked, this, &ErrorBarsWindow::cancel);
}

ErrorBarsWindow::~ErrorBarsWindow()
{
    if (m_thread) {
        m_run->cancel = true;
        m_thread->wait();
    }
}

bool ErrorBarsWindow::isRunning() const { return m_thread != nullptr; }

void ErrorBarsWindow::setReplicates(int b) { m_replicates->setValue(b); }
void ErrorBarsWindow::setSeed(int seed) { m_seed->setValue(seed); }
QString ErrorBarsWindow::statusText() const { return m_status->text(); }
QString ErrorBarsWindow::meansText() const { return m_means->text(); }

bool ErrorBarsWindow::start()
{
    if (m_thread)
        return false;
    auto run = std::make_shared<Run>();
    run->job = PublishedRowsJob();
    if (run->job.rows.empty()) {
        m_status->setText(QStringLiteral("No result is published: time the minimum with a method first."));
        return false;
    }
    run->options.replicates = m_replicates->value();
    run->options.seed = std::uint64_t(m_seed->value());
    run->options.correlatedNoise = m_correlated->isChecked();
    run->total = PublishedReplicates(run->job, run->options.replicates);
    run->clock.start();

    m_run = run;
    m_lastDone = -1;
    m_progress->setRange(0, std::max(1, run->total.load()));
    m_progress->setValue(0);
    m_status->setText(QStringLiteral("Running %1 replicates of %2 methods…")
                          .arg(run->options.replicates)
                          .arg(run->total / run->options.replicates));
    m_start->setEnabled(false);
    m_cancel->setEnabled(true);
    m_replicates->setEnabled(false);
    m_seed->setEnabled(false);
    m_correlated->setEnabled(false);

    m_thread.reset(QThread::create([run] {
        PublishedErrors errors = BootstrapPublished(
            run->job, run->options,
            [&run](int done, int total) {
                run->done = done;
                run->total = total;
            },
            &run->cancel);
        const std::lock_guard<std::mutex> lock(run->mutex);
        run->result = std::move(errors);
    }));
    connect(m_thread.get(), &QThread::finished, this, &ErrorBarsWindow::done);
    m_thread->start();
    m_timer->start();
    return true;
}

void ErrorBarsWindow::cancel()
{
    if (!m_run || !m_thread)
        return;
    m_run->cancel = true;
    m_cancel->setEnabled(false);
    m_status->setText(QStringLiteral("Cancelling…"));
}

void ErrorBarsWindow::poll()
{
    if (!m_run)
        return;
    const int done = m_run->done;
    const int total = std::max(1, m_run->total.load());
    if (done == m_lastDone)
        return;
    m_lastDone = done;
    m_progress->setRange(0, total);
    m_progress->setValue(std::min(done, total));
    Q_EMIT progressed(done, total);
}

void ErrorBarsWindow::done()
{
    m_timer->stop();
    poll();
    m_thread->wait();
    m_thread.reset();
    std::optional<PublishedErrors> errors;
    {
        const std::lock_guard<std::mutex> lock(m_run->mutex);
        errors = std::move(m_run->result);
    }
    const double seconds = double(m_run->clock.elapsed()) / 1000;
    const int total = m_run->total;
    m_start->setEnabled(true);
    m_cancel->setEnabled(false);
    m_replicates->setEnabled(true);
    m_seed->setEnabled(true);
    m_correlated->setEnabled(true);
    if (errors) {
        if (errors->cancelled)
            m_status->setText(QStringLiteral("Cancelled after %1 of %2 replicates; the errors are of those done.")
                                  .arg(m_run->done.load())
                                  .arg(total));
        else
            m_status->setText(QStringLiteral("Done: %1 replicates in %2 s.").arg(total).arg(seconds, 0, 'f', 1));
        // What the toolkit knows of the published rows, for the reports: a finished run only.
        if (!errors->cancelled)
            StoreInToolkit(*errors);
        showResult(*errors);
    }
    m_result = std::move(errors);
    m_run.reset();
    Q_EMIT finished();
}

void ErrorBarsWindow::showResult(const PublishedErrors& errors)
{
    // A cell this run leaves empty must not keep what an earlier run wrote there.
    m_table->clearContents();
    m_table->setRowCount(int(errors.rows.size()));
    int i = 0;
    for (const PublishedRowErrors& r : errors.rows) {
        auto set = [&](int column, const QString& text, const QString& tip = QString()) {
            auto* item = new QTableWidgetItem(text);
            item->setToolTip(tip);
            m_table->setItem(i, column, item);
        };
        set(MethodColumn, QString::fromLatin1(MethodOfRow(r.row).title));
        set(TimeColumn, timeText(r.time));
        set(OwnColumn, errorBarText(r.error));
        const BootstrapResult& b = r.bootstrap;
        if (!r.hasBootstrap) {
            set(BootstrapColumn, QStringLiteral("no fit to repeat"));
        } else if (!b.problem.isEmpty()) {
            set(BootstrapColumn, QStringLiteral("none"), b.problem);
        } else if (!b.valid()) {
            set(BootstrapColumn, QStringLiteral("-"));
            set(RunsColumn, replicatesText(b), failuresTip(b));
        } else {
            set(BootstrapColumn, errorBarText(b.error));
            set(P16Column, signedErrorBarText(r.p16FromTime()));
            set(P84Column, signedErrorBarText(r.p84FromTime()));
            set(RunsColumn, replicatesText(b), failuresTip(b));
            const CellText noise = describeNoise(b);
            set(NoiseColumn, noise.text, noise.tip);
        }
        const CellText caution = describeChordsCaution(r);
        if (!caution.text.isEmpty())
            set(CautionColumn, caution.text, caution.tip);
        if (r.deeg)
            set(DeegColumn, r.deeg->ok() ? errorBarText(r.deeg->error) : deegKweeStatusText(r.deeg->status));
        ++i;
    }

    const MainForm& form = mainForm();
    QString text = QStringLiteral("Calc. Means: weighted mean %1, std. error %2").arg(form.text(14), form.text(15));
    if (errors.mean.valid)
        text += QStringLiteral("\nWith the bootstrap errors: weighted mean %1, std. error %2 (%3 results)")
                    .arg(timeText(errors.mean.mean), errorBarText(errors.mean.standardError))
                    .arg(errors.mean.used);
    else
        text += QStringLiteral("\nWith the bootstrap errors: no weighted mean (no ticked result with an error)");
    m_means->setText(text);
}

void ErrorBarsWindow::closeEvent(QCloseEvent* event)
{
    cancel();
    QWidget::closeEvent(event);
}

} // namespace dip
