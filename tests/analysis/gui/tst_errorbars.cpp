// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
// "Analysis" > "Error bars…" driven offscreen: the menu entry, a run to its end with its
// progress and table, the same digits as the bootstrap called directly, Cancel, and the event
// loop turning while the replicates run.
#include "analysis/PublishedBootstrap.h"
#include "analysis/Toolkit.h"
#include "analysis/gui/ErrorBarsEntry.h"
#include "analysis/gui/ErrorBarsWindow.h"
#include "mainwindow/Means.h"
#include "methods/MethodRegistry.h"
#include "session/MainForm.h"
#include "session/Session.h"
#include "support/DipCurves.h"
#include "support/SimulatedEclipse.h"
#include "support/TestSupport.h"

#include <QAction>
#include <QCheckBox>
#include <QFile>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTimer>

#include <algorithm>
#include <random>

using namespace dip;

namespace {

// The example light curve, loaded.
void loadTheExample()
{
    QFile file(qEnvironmentVariable("DIPSCOPE_SOURCE_DIR") + QStringLiteral("/examples/single-minimum.csv"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(test::loadText(file.readAll()));
}

// The example light curve, timed by the parabola, Kwee and van Woerden and the sliding
// integrations, and "Calc. Means" pressed.
void publishThreeMethods()
{
    loadTheExample();
    ReplayRequest parabola;
    parabola.clicks = {0.49, 0.535};
    QVERIFY(ReplayMethod(1, parabola).published);
    ReplayRequest kwee;
    kwee.clicks = {0.47, 0.55};
    QVERIFY(ReplayMethod(4, kwee).published);
    QVERIFY(ReplayMethod(6, ReplayRequest()).published);
    CalcMeansOnMainForm();
    resetToolkit();
}

// The loaded curve timed by one method, "Calc. Means" pressed.
void publishOne(int row, const ReplayRequest& request)
{
    QVERIFY(ReplayMethod(row, request).published);
    CalcMeansOnMainForm();
    resetToolkit();
}

// A dip at 0.5 of 60 points from `from` to 0.6 with noise of 0.02 mag drawn from seed, timed
// by the parabola.
void publishAShortCurve(unsigned seed, double from = 0.4)
{
    const double a[5] = {0.3, 0.1, 0.02, 0, 0};
    QVERIFY(test::loadText(test::csv(test::fourierDip(0.5, 11.0, 25, a, 60, from, 0.6, 0.02, seed))));
    ReplayRequest parabola;
    parabola.clicks = {std::max(0.47, from), 0.53};
    publishOne(1, parabola);
}

// A run of B replicates, started with the window's button and waited for.
void runToTheEnd(ErrorBarsWindow& w, int replicates)
{
    w.show();
    w.setReplicates(replicates);
    QSignalSpy finished(&w, &ErrorBarsWindow::finished);
    QTest::mouseClick(w.startButton(), Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 60000);
}

QString cell(const QTableWidget* t, int row, int column)
{
    const QTableWidgetItem* item = t->item(row, column);
    return item ? item->text() : QString();
}

} // namespace

class ErrorBarsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theMenuEntryOpensOneWindow()
    {
        QWidget main;
        QMenu menu;
        AddErrorBarsActions(main, menu);
        QCOMPARE(menu.actions().size(), 1);
        QAction* action = menu.actions().first();
        QCOMPARE(action->text(), QStringLiteral("Error bars…"));
        action->trigger();
        const QList<ErrorBarsWindow*> windows = main.findChildren<ErrorBarsWindow*>();
        QCOMPARE(windows.size(), 1);
        QVERIFY(windows.first()->isVisible());
        QCOMPARE(windows.first()->windowTitle(), QStringLiteral("Error bars"));
        action->trigger();
        QCOMPARE(main.findChildren<ErrorBarsWindow*>().size(), 1);
    }

    void withNothingPublishedItSaysSo()
    {
        test::freshSession();
        ErrorBarsWindow w;
        QVERIFY(!w.start());
        QVERIFY(!w.isRunning());
        QVERIFY(w.statusText().startsWith(QLatin1String("No result is published")));
    }

    void aRunFillsTheTable()
    {
        publishThreeMethods();
        ErrorBarsWindow w;
        w.show();
        const int B = 120;
        w.setReplicates(B);
        w.setSeed(9);
        QSignalSpy progress(&w, &ErrorBarsWindow::progressed);
        QSignalSpy finished(&w, &ErrorBarsWindow::finished);
        QTest::mouseClick(w.startButton(), Qt::LeftButton);
        QVERIFY(w.isRunning());
        QVERIFY(!w.startButton()->isEnabled());
        QVERIFY(w.cancelButton()->isEnabled());
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 60000);
        QVERIFY(!w.isRunning());

        // Progress: counted over the three methods, never backwards, ending at the total.
        QVERIFY(progress.count() >= 1);
        int last = -1;
        for (const QList<QVariant>& p : progress) {
            QVERIFY(p.at(0).toInt() >= last);
            last = p.at(0).toInt();
            QCOMPARE(p.at(1).toInt(), 3 * B);
        }
        QCOMPARE(last, 3 * B);
        QCOMPARE(w.progressBar()->maximum(), 3 * B);
        QCOMPARE(w.progressBar()->value(), 3 * B);
        QVERIFY(w.statusText().startsWith(QStringLiteral("Done: %1 replicates").arg(3 * B)));

        // The table: a row a published method, its own error as the main window's box shows it
        // at more digits, the bootstrap, Deeg's error on Kwee's row only.
        const QTableWidget* t = w.table();
        QCOMPARE(t->rowCount(), 3);
        const int rows[] = {1, 4, 6};
        const char* const noises[] = {"autoregression", "autoregression", "white"};
        QVERIFY(w.result());
        for (int i = 0; i < 3; ++i) {
            const int k = rows[i];
            const PublishedRowErrors& r = w.result()->rows[std::size_t(i)];
            QCOMPARE(r.row, k);
            QCOMPARE(cell(t, i, 0), QString::fromLatin1(MethodOfRow(k).title));
            QCOMPARE(cell(t, i, 1), QString::number(S().Results(k).time, 'f', 7));
            QCOMPARE(cell(t, i, 2), QString::number(S().Results(k).error, 'g', 3));
            QCOMPARE(cell(t, i, 3), QString::number(r.bootstrap.error, 'g', 3));
            QVERIFY(r.bootstrap.error > 0);
            QCOMPARE(cell(t, i, 6), QStringLiteral("%1 of %1, 0 failed").arg(B));
            QCOMPARE(cell(t, i, 7).isEmpty(), k != 4);
            // How the noise was drawn, with no warning: 171 points are enough to judge it on.
            QCOMPARE(r.bootstrap.points, 171);
            QCOMPARE(cell(t, i, 8), QLatin1String(noises[i]));
            // No chords among them: nothing to caution about.
            QVERIFY(cell(t, i, 9).isEmpty());
            // Kept for the reports.
            QVERIFY(Toolkit().rows[std::size_t(k)].bootstrap);
            QCOMPARE(Toolkit().rows[std::size_t(k)].bootstrap->error, r.bootstrap.error);

            // The same digits as the bootstrap called directly on the session's points.
            const MethodRequest request = PublishedRequest(k);
            const MethodResult fitted = MethodOfRow(k).compute(SessionCurve(), request);
            MethodBootstrapOptions o;
            o.replicates = B;
            o.seed = 9;
            o.threads = 1;
            const BootstrapResult direct = BootstrapMethod(k, SessionCurve(), request, fitted, o);
            QCOMPARE(direct.error, r.bootstrap.error);
            QCOMPARE(direct.p16, r.bootstrap.p16);
        }
        QVERIFY(Toolkit().deeg && Toolkit().deeg->ok());
        QCOMPARE(cell(t, 1, 7), QString::number(Toolkit().deeg->error, 'g', 3));

        // Both weighted means, side by side.
        QVERIFY(w.meansText().contains(QStringLiteral("Calc. Means: weighted mean %1, std. error %2")
                                           .arg(mainForm().text(14), mainForm().text(15))));
        QVERIFY(w.result()->mean.valid);
        QVERIFY(w.meansText().contains(QStringLiteral("With the bootstrap errors: weighted mean %1")
                                           .arg(QString::number(w.result()->mean.mean, 'f', 7))));
        QVERIFY(w.startButton()->isEnabled());
        QVERIFY(!w.cancelButton()->isEnabled());
    }

    // The Fourier row is repeated from the values its fit started from, not from the fitted
    // ones its boxes show: the same request gives the published time to the last digit.
    void theFourierRowStartsWhereThePublishedFitStarted()
    {
        loadTheExample();
        ReplayRequest fourier;
        fourier.clicks = {0.43, 0.595};
        fourier.fourierStart = QStringList{QStringLiteral("0.512"), QStringLiteral("2.03"), QStringLiteral("25"),
                                           QStringLiteral("0.4"),   QStringLiteral("0.2"),  QStringLiteral("0.1"),
                                           QStringLiteral("0.05"),  QStringLiteral("0.02")};
        QVERIFY(ReplayMethod(5, fourier).published);

        const MethodRequest request = PublishedRequest(5);
        const double typed[9] = {0, 0.512, 2.03, 25, 0.4, 0.2, 0.1, 0.05, 0.02};
        for (int k = 1; k <= 8; ++k)
            QCOMPARE(request.fourierStart[std::size_t(k)], typed[k]);
        QVERIFY(S().Fourier.FourierPar(1) != 0.512);
        const MethodResult again = MethodOfRow(5).compute(SessionCurve(), request);
        QVERIFY(again.ok);
        QCOMPARE(again.time, S().Results(5).methodTime);
        QCOMPARE(again.error, S().Results(5).error);
    }

    // On a short curve whose noise was not found correlated, the noise column warns that slow
    // noise could not be seen, and its tip says by how much the error may then be too small;
    // where correlated noise was found, it says so and does not warn.
    void aShortCurveWarnsWhereItsNoiseWasNotFoundCorrelated_data()
    {
        QTest::addColumn<unsigned>("seed");
        QTest::addColumn<bool>("correlated");
        QTest::newRow("white") << 1u << false;
        QTest::newRow("correlated by chance") << 7u << true;
    }

    void aShortCurveWarnsWhereItsNoiseWasNotFoundCorrelated()
    {
        QFETCH(unsigned, seed);
        QFETCH(bool, correlated);
        publishAShortCurve(seed);
        ErrorBarsWindow w;
        runToTheEnd(w, 60);
        QVERIFY(w.result());
        const BootstrapResult& b = w.result()->rows.front().bootstrap;
        QCOMPARE(b.points, 60);
        QCOMPARE(b.modelled(), correlated);
        const QTableWidget* t = w.table();
        QCOMPARE(t->rowCount(), 1);
        const QString text = cell(t, 0, 8);
        const QString tip = t->item(0, 8)->toolTip();
        QVERIFY2(text.endsWith(QLatin1String(" (few points)")) != correlated, qPrintable(text));
        QCOMPARE(text.startsWith(QLatin1String("correlated, tau ")), correlated);
        QCOMPARE(tip.contains(QLatin1String("The noise was judged on 60 points")), !correlated);
        QCOMPARE(tip.contains(QLatin1String("1.3 to 2.3 times the bootstrap's")), !correlated);
        QCOMPARE(tip.contains(QLatin1String("tick \"Correlated noise\" and start again")), !correlated);
    }

    // The same short curve whose noise looked white, with "Correlated noise" ticked: the noise
    // is drawn from a correlated model, the warning gives way to the model's tip, the error
    // grows, and the box is locked while the run lasts.
    void correlatedNoiseTickedTakesTheNoiseAsCorrelated()
    {
        publishAShortCurve(1u);
        ErrorBarsWindow w;
        runToTheEnd(w, 60);
        QVERIFY(w.result());
        const BootstrapResult found = w.result()->rows.front().bootstrap;
        QVERIFY(!found.modelled());
        QVERIFY(!found.correlatedNoise);

        QCOMPARE(w.correlatedNoiseBox()->text(), QStringLiteral("Correlated noise"));
        QVERIFY(w.correlatedNoiseBox()->toolTip().contains(QLatin1String("photometry from the ground")));
        QTest::mouseClick(w.correlatedNoiseBox(), Qt::LeftButton);
        QVERIFY(w.correlatedNoiseBox()->isChecked());
        QSignalSpy finished(&w, &ErrorBarsWindow::finished);
        QTest::mouseClick(w.startButton(), Qt::LeftButton);
        QVERIFY(!w.correlatedNoiseBox()->isEnabled());
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 60000);
        QVERIFY(w.correlatedNoiseBox()->isEnabled());
        const BootstrapResult& told = w.result()->rows.front().bootstrap;
        QVERIFY(told.correlatedNoise);
        QVERIFY(told.modelled());
        QVERIFY2(told.error > found.error,
                 qPrintable(QStringLiteral("%1 against %2").arg(told.error).arg(found.error)));
        const QTableWidget* t = w.table();
        QVERIFY2(cell(t, 0, 8).startsWith(QLatin1String("correlated, tau ")), qPrintable(cell(t, 0, 8)));
        QVERIFY(t->item(0, 8)->toolTip().contains(QLatin1String("Taken as correlated, as \"Correlated noise\" says.")));
    }

    // "Correlated noise" ticked on a curve that starts just before the minimum: its branches
    // face each other over a few points only, too few to fit any noise, so the result stays
    // "(few points)", and the tip says why ticking did not help instead of advising it.
    void correlatedNoiseTickedOnBranchesThatHardlyFaceEachOther()
    {
        publishAShortCurve(1u, 0.485);
        ErrorBarsWindow w;
        w.correlatedNoiseBox()->setChecked(true);
        runToTheEnd(w, 40);
        QVERIFY(w.result());
        const BootstrapResult& b = w.result()->rows.front().bootstrap;
        QVERIFY2(b.valid(), qPrintable(b.problem));
        QVERIFY(b.correlatedNoise);
        QVERIFY(!b.modelled());
        const QTableWidget* t = w.table();
        QVERIFY2(cell(t, 0, 8).endsWith(QLatin1String(" (few points)")), qPrintable(cell(t, 0, 8)));
        const QString tip = t->item(0, 8)->toolTip();
        QVERIFY2(tip.contains(QLatin1String("too few points facing each other")), qPrintable(tip));
        QVERIFY(!tip.contains(QLatin1String("tick \"Correlated noise\"")));
    }

    // A curve whose light beside the dip drifts slowly (noise correlated over ten points, four
    // times the white part), timed by Kwee and van Woerden over the whole dip: the baseline
    // beside it is judged, found correlated, and the noise taken so without the box ticked; the
    // noise column says where that came from. Ticked, the observer's word is the reason.
    void aCorrelatedBaselineTakesTheNoiseAsCorrelated()
    {
        std::mt19937_64 rng(5);
        test::Dip dip;
        dip.depth = 0.8;
        dip.width = 0.1 / 1.5; // over [0.4, 0.6]
        dip.shape = test::DipShape::FlatBottomed;
        const std::vector<double> t = test::evenTimes(0, 1, 151);
        const std::vector<double> noise = test::correlatedNoise(151, 0.005, 0.02, 10, rng);
        QByteArray csv = "HJD,Mag\n";
        for (std::size_t i = 0; i < t.size(); ++i)
            csv += QByteArray::number(t[i], 'f', 6) + ',' +
                   QByteArray::number(10 + dip.magnitude(t[i]) + noise[i], 'f', 5) + '\n';
        QVERIFY(test::loadText(csv));
        ReplayRequest kwee;
        kwee.clicks = {0.38, 0.62};
        publishOne(4, kwee);

        ErrorBarsWindow w;
        runToTheEnd(w, 40);
        QVERIFY(w.result());
        QVERIFY(w.result()->baseline.judged);
        QVERIFY2(w.result()->baseline.correlated, qPrintable(QString::number(w.result()->baseline.lag1)));
        const BootstrapResult found = w.result()->rows.front().bootstrap;
        QVERIFY(found.correlatedNoise);
        QVERIFY(found.correlatedByBaseline);
        const QTableWidget* table = w.table();
        QVERIFY2(cell(table, 0, 8).endsWith(QLatin1String(" (baseline)")), qPrintable(cell(table, 0, 8)));
        QVERIFY(table->item(0, 8)->toolTip().contains(QLatin1String("the light beside the dip")));
        QVERIFY(!table->item(0, 8)->toolTip().contains(QLatin1String("as \"Correlated noise\" says")));

        w.correlatedNoiseBox()->setChecked(true);
        QSignalSpy finished(&w, &ErrorBarsWindow::finished);
        QTest::mouseClick(w.startButton(), Qt::LeftButton);
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 60000);
        const BootstrapResult& told = w.result()->rows.front().bootstrap;
        QVERIFY(told.correlatedNoise);
        QVERIFY(!told.correlatedByBaseline);
        QVERIFY(!cell(table, 0, 8).contains(QLatin1String("(baseline)")));
        QVERIFY(table->item(0, 8)->toolTip().contains(QLatin1String("as \"Correlated noise\" says")));
        // The same noise taken as correlated either way: the same digits.
        QCOMPARE(told.error, found.error);
    }

    // The bisectors of chords on a noiseless dip whose right branch lacks the nine points
    // 34..42 (of 61, one every 1/64 d): the chords of the five left points 22..26 end in the
    // gap, between points ten spacings apart, and the Caution column says so; the bootstrap's
    // spread cannot.
    void chordsReadAcrossAGapAreCautioned()
    {
        const double h = 1.0 / 64;
        QVERIFY(test::loadText(test::csv(test::sixtyFourthsDip(34, 42))));
        ReplayRequest chords;
        chords.clicks = {21.5 * h, 26.5 * h, 42.5 * h, 46.5 * h};
        publishOne(3, chords);
        ErrorBarsWindow w;
        runToTheEnd(w, 20);
        QVERIFY(w.result());
        const PublishedRowErrors& r = w.result()->rows.front();
        QCOMPARE(r.row, 3);
        QVERIFY(r.chordGaps);
        QCOMPARE(r.chordGaps->acrossAGap, 5);
        const QTableWidget* t = w.table();
        QCOMPARE(t->horizontalHeaderItem(9)->text(), QStringLiteral("Caution"));
        // The error with the replicates' shift from the time beside it, three digits.
        const double withShift = r.advisedError();
        const double shift = r.bootstrap.mean - r.fitted.time;
        QCOMPARE(r.bootstrap.shift(r.fitted.time), shift);
        QVERIFY(std::abs(shift) > 0);
        QCOMPARE(withShift, std::sqrt(r.bootstrap.error * r.bootstrap.error + shift * shift));
        QCOMPARE(cell(t, 0, 9),
                 QStringLiteral("5 of 9 chords across a gap; error with the shift ") + errorBarText(withShift));
        const QString tip = t->item(0, 9)->toolTip();
        QVERIFY2(tip.contains(QLatin1String("two points up to 10 median spacings apart")), qPrintable(tip));
        QVERIFY2(tip.contains(QStringLiteral("their mean lies %1 d from the time").arg(signedErrorBarText(shift))),
                 qPrintable(tip));
        QVERIFY(tip.contains(
            QLatin1String("pick the stretches so that their chords end where the other branch has points.")));

        // The gap filled and the chords published again: a second run in the same window
        // names no gap, nothing kept from the first, and gives the error to believe alone.
        QVERIFY(test::loadText(test::csv(test::sixtyFourthsDip(99, 99))));
        publishOne(3, chords);
        runToTheEnd(w, 20);
        QVERIFY(w.result());
        QVERIFY(w.result()->rows.front().chordGaps);
        QCOMPARE(w.result()->rows.front().chordGaps->acrossAGap, 0);
        QCOMPARE(t->rowCount(), 1);
        QVERIFY(cell(t, 0, 3) != QLatin1String("none"));
        const PublishedRowErrors& filled = w.result()->rows.front();
        QCOMPARE(cell(t, 0, 9), QStringLiteral("error with the shift ") + errorBarText(filled.advisedError()));
        QVERIFY(!t->item(0, 9)->toolTip().contains(QLatin1String("median spacings apart")));
        QVERIFY(t->item(0, 9)->toolTip().contains(QLatin1String("every resampled curve has the same sampling")));
    }

    void cancelStopsTheRunAndTheEventLoopTurnsMeanwhile()
    {
        publishThreeMethods();
        ErrorBarsWindow w;
        w.show();
        w.setReplicates(100000);
        QSignalSpy finished(&w, &ErrorBarsWindow::finished);
        QVERIFY(w.start());
        // The window's thread keeps serving events while the replicates run.
        bool served = false;
        QTimer::singleShot(0, &w, [&served] { served = true; });
        QTRY_VERIFY(served);
        QVERIFY(w.isRunning());
        QTest::mouseClick(w.cancelButton(), Qt::LeftButton);
        QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 60000);
        QVERIFY(w.result());
        QVERIFY(w.result()->cancelled);
        for (const PublishedRowErrors& r : w.result()->rows)
            QVERIFY(r.bootstrap.done < r.bootstrap.requested);
        QVERIFY2(w.statusText().startsWith(QLatin1String("Cancelled after")), qPrintable(w.statusText()));
        // A cancelled run's errors are shown, not kept for the reports.
        QVERIFY(!Toolkit().rows[1].bootstrap);
        QVERIFY(!Toolkit().deeg);
        QVERIFY(w.startButton()->isEnabled());
    }

    void closingTheWindowWhileItRunsStopsIt()
    {
        publishThreeMethods();
        auto* w = new ErrorBarsWindow;
        w->setReplicates(100000);
        QVERIFY(w->start());
        delete w; // cancels and waits; nothing is left running
    }
};

QTEST_MAIN(ErrorBarsTest)
#include "tst_errorbars.moc"
