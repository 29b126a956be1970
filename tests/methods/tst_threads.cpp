// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/MethodRegistry.h"
#include "methods/sliding/SlidingIntegrations.h"
#include "runtime/Numeric.h"
#include "session/Curve.h"
#include "session/LoadDataFile.h"
#include "session/Session.h"
#include "support/TestSupport.h"

#include <QDir>

#include <atomic>
#include <cstring>
#include <thread>
#include <vector>

using namespace dip;

namespace {

// A curve and what every method is asked to do on it: one stretch about the minimum for the
// parabola, Kwee and the Fourier fit, a stretch on each branch for the chords.
struct Case {
    CurveData curve;
    MethodRequest request;
    MethodRequest chords;
};

// The sample light curves as the reader gives them, with the signed magnitudes the methods
// work on (the second is written inverted and is used as "-Mags (inverted)" would).
Case sampleCase(const QString& name, double sign)
{
    const QString path = QDir(qEnvironmentVariable("DIPSCOPE_SOURCE_DIR")).filePath(QStringLiteral("examples/") + name);
    const LightCurve lc = readCsv(path);
    std::vector<double> mags;
    for (const double m : lc.mags)
        mags.push_back(m * sign);
    Case c{CurveData::from(lc.times, mags), {}, {}};

    // Ranges around the deepest point, as a user picks them.
    const Curve v = c.curve.view();
    const int d = DeepestPoint(v);
    auto at = [&](int i) { return rt::Integer(std::max(1, std::min(int(v.n), i))); };
    MethodRequest& r = c.request;
    r.first = at(d - 18);
    r.last = at(d + 18);
    r.kweeStep = 1;
    r.kweeFraction = 0.9;
    r.fourierStart = {0, v.t(d), v.m(d), 25, 0.2, 0.1, 0.05, 0.01, 0.005};
    r.fold = v.t(d);
    c.chords.first = at(d - 24);
    c.chords.last = at(d - 6);
    c.chords.first2 = at(d + 6);
    c.chords.last2 = at(d + 24);
    return c;
}

// What a run gave, bit for bit.
bool same(const MethodResult& a, const MethodResult& b)
{
    auto bits = [](double x, double y) { return std::memcmp(&x, &y, sizeof x) == 0; };
    return a.ok == b.ok && bits(a.time, b.time) && bits(a.error, b.error) && a.runtimeError == b.runtimeError &&
           a.messages == b.messages && a.fourierLoopCalls == b.fourierLoopCalls && bits(a.parabolaC, b.parabolaC) &&
           bits(a.kweeSZero, b.kweeSZero) && a.slideFirst == b.slideFirst;
}

// Every method of the table on one case, in row order.
std::vector<MethodResult> runAll(const Case& c)
{
    std::vector<MethodResult> results;
    for (const MethodEntry& m : Methods())
        results.push_back(m.compute(c.curve.view(), m.row == 3 ? c.chords : c.request));
    return results;
}

} // namespace

class ThreadsTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void everyMethodComputes();
    void twoCurvesInTwoThreadsGiveTheSameDigits();
    void computeMatchesTheWindowsOnTheSessionCurve();
    void failuresAreReportedNotThrown();
    void messagesStayWithTheirThread();
};

void ThreadsTest::everyMethodComputes()
{
    for (const Case& c : {sampleCase(QStringLiteral("single-minimum.csv"), 1),
                          sampleCase(QStringLiteral("inverted-minimum.csv"), -1)}) {
        QVERIFY(c.curve.n > 100);
        const std::vector<MethodResult> results = runAll(c);
        QCOMPARE(int(results.size()), 6);
        for (std::size_t k = 0; k < results.size(); ++k) {
            QVERIFY2(results[k].ok,
                     qPrintable(QStringLiteral("row %1: error %2").arg(k + 1).arg(results[k].runtimeError)));
            // Every method times the same minimum to within a few minutes.
            QVERIFY2(std::abs(results[k].time - results[1].time) < 0.01, qPrintable(QString::number(k + 1)));
        }
    }
}

void ThreadsTest::twoCurvesInTwoThreadsGiveTheSameDigits()
{
    const Case a = sampleCase(QStringLiteral("single-minimum.csv"), 1);
    const Case b = sampleCase(QStringLiteral("inverted-minimum.csv"), -1);
    // One at a time first.
    const std::vector<MethodResult> expectedA = runAll(a);
    const std::vector<MethodResult> expectedB = runAll(b);

    std::atomic<int> mismatches{0};
    std::atomic<int> runs{0};
    auto work = [&](const Case& c, const std::vector<MethodResult>& expected) {
        for (int i = 0; i < 200; ++i) {
            const std::vector<MethodResult> got = runAll(c);
            for (std::size_t k = 0; k < got.size(); ++k)
                if (!same(got[k], expected[k]))
                    ++mismatches;
            ++runs;
        }
    };
    std::thread first(work, std::cref(a), std::cref(expectedA));
    std::thread second(work, std::cref(b), std::cref(expectedB));
    first.join();
    second.join();
    QCOMPARE(runs.load(), 400);
    QCOMPARE(mismatches.load(), 0);
}

void ThreadsTest::computeMatchesTheWindowsOnTheSessionCurve()
{
    // The console tool replays the windows on the session; compute on the same points with the
    // same range gives the same digits.
    test::DataFolder folder;
    const QString source = QDir(qEnvironmentVariable("DIPSCOPE_SOURCE_DIR")).filePath(QStringLiteral("examples"));
    test::freshSession();
    QVERIFY(OpenDataFile(source, QStringLiteral("single-minimum.csv")));
    const Session& s = S();

    ReplayRequest clicks;
    clicks.clicks = {0.47, 0.55};
    const ReplayResult parabola = ReplayMethod(1, clicks);
    const ReplayResult kwee = ReplayMethod(4, clicks);
    const ReplayResult sliding = ReplayMethod(6, ReplayRequest{});
    QVERIFY(parabola.published && kwee.published && sliding.published);

    MethodRequest r;
    r.first = s.ParabolaPick.LeftIdx;
    r.last = s.ParabolaPick.RightIdx;
    const MethodResult p = MethodOfRow(1).compute(SessionCurve(), r);
    QCOMPARE(p.time, parabola.time);
    QCOMPARE(p.error, parabola.error);
    r.first = s.KweePick.LeftIdx;
    r.last = s.KweePick.RightIdx;
    const MethodResult k = MethodOfRow(4).compute(SessionCurve(), r);
    QCOMPARE(k.time, kwee.time);
    QCOMPARE(k.error, kwee.error);
    const MethodResult sl = MethodOfRow(6).compute(SessionCurve(), MethodRequest{});
    QCOMPARE(sl.time, sliding.time);
    QCOMPARE(sl.error, sliding.error);
    // The window's fit window is what the session keeps in RangeFirst / RangeLast.
    QCOMPARE(sl.slideFirst, s.RangeFirst);
    QCOMPARE(sl.slideLast, s.RangeLast);
}

void ThreadsTest::failuresAreReportedNotThrown()
{
    // Three points: the parabola's RMS divides by n - 3 = 0.
    const CurveData c = CurveData::from({0.1, 0.2, 0.3}, {11.0, 11.5, 11.1});
    MethodRequest r;
    r.first = 1;
    r.last = 3;
    const MethodResult p = MethodOfRow(1).compute(c.view(), r);
    QVERIFY(!p.ok);
    QCOMPARE(p.runtimeError, 11);
    // A range past the arrays: the subscript error.
    r.last = 1001;
    const MethodResult q = MethodOfRow(3).compute(c.view(), r);
    QVERIFY(!q.ok);
    QCOMPARE(q.runtimeError, 9);
}

void ThreadsTest::messagesStayWithTheirThread()
{
    // All amplitudes 0: every solver call reports "Singular matrix 2"; the messages are the
    // result's, and no message box is shown.
    std::vector<double> t, m;
    for (int i = 1; i <= 20; ++i) {
        t.push_back(i);
        m.push_back(12.0 + 0.01 * ((i * 7) % 5));
    }
    const CurveData c = CurveData::from(t, m);
    MethodRequest r;
    r.first = 2;
    r.last = 19;
    r.fourierStart = {0, 10, 12, 6.283185307179586, 0, 0, 0, 0, 0};
    test::MessageRecorder shown;
    MethodResult inThread;
    std::thread worker([&] { inThread = MethodOfRow(5).compute(c.view(), r); });
    worker.join();
    QVERIFY(shown.messages().isEmpty());
    QVERIFY(inThread.ok);
    QCOMPARE(inThread.messages.size(), 1 + inThread.fourierLoopCalls + 1);
    QCOMPARE(inThread.messages.count(QStringLiteral("Singular matrix 2")), inThread.messages.size());
}

QTEST_GUILESS_MAIN(ThreadsTest)
#include "tst_threads.moc"
