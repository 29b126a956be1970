// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
// The console tool's --parabola, --kwee (with --stepp, --frac) and --chords.
#include "MeasureRun.h"

#include "app/Measure.h"
#include "methods/chords/BisectChords.h"
#include "methods/kwee/KweeVanWoerden.h"
#include "methods/parabola/FitParabola.h"
#include "runtime/Numeric.h"
#include "session/Procedures.h"
#include "session/Session.h"
#include "support/TestSupport.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>
#include <cstdio>

using namespace dip;
using dip::test::json;
using dip::test::measure;
using dip::test::Run;

namespace {

// 61 points at 0.005-day steps from 0.30, a skewed dip near 0.4537 with a little scatter.
std::vector<std::pair<double, double>> curvePoints()
{
    std::vector<std::pair<double, double>> p;
    for (int i = 0; i < 61; ++i) {
        const double t = 0.30 + 0.005 * i;
        const double x = t - 0.4537;
        const double m = 11.2 - 25 * x * x - (x > 0 ? 40 * x * x * x : 0) + 0.003 * std::sin(i * 2.7);
        p.emplace_back(std::round(t * 1e5) / 1e5, std::round(m * 1e4) / 1e4);
    }
    return p;
}

// The first point strictly after t and the last strictly before, found by a plain scan.
int firstAfter(const std::vector<std::pair<double, double>>& p, double t)
{
    for (std::size_t i = 0; i < p.size(); ++i)
        if (p[i].first > t)
            return int(i + 1);
    return 0;
}
int lastBefore(const std::vector<std::pair<double, double>>& p, double t)
{
    for (std::size_t i = p.size(); i >= 1; --i)
        if (p[i - 1].first < t)
            return int(i);
    return 0;
}

QString times(std::initializer_list<double> ts)
{
    QStringList parts;
    for (double t : ts)
        parts << QString::number(t, 'g', 17);
    return parts.join(QLatin1Char(','));
}

QJsonObject onlyRow(const QJsonObject& o, int method)
{
    const QJsonArray rows = o.value(QStringLiteral("results")).toArray();
    for (const QJsonValue& v : rows)
        if (v.toObject().value(QStringLiteral("method")).toInt() == method)
            return v.toObject();
    return {};
}

} // namespace

class MeasureMethodsTest : public QObject {
    Q_OBJECT

private:
    test::DataFolder m_folder;
    QString m_file;

private Q_SLOTS:
    void initTestCase()
    {
        m_file = m_folder.write(QStringLiteral("dip.csv"), "HJD,Mag\n" + test::csv(curvePoints()));
        // The session the expectations are computed on.
        QVERIFY(test::loadText(test::csv(curvePoints())));
    }

    void parabola()
    {
        const auto p = curvePoints();
        const Run r =
            measure({m_file, QStringLiteral("--json"), QStringLiteral("--parabola"), times({0.3777, 0.5213})});
        QCOMPARE(r.code, 0);
        const QJsonObject row = onlyRow(json(r), 1);
        const ParabolaFitResult fit = FitParabola(S().HJD, S().Mag, S().NumPts, rt::Integer(firstAfter(p, 0.3777)),
                                                  rt::Integer(lastBefore(p, 0.5213)));
        QCOMPARE(row.value(QStringLiteral("time")).toDouble(), fit.time);
        QCOMPARE(row.value(QStringLiteral("error")).toDouble(), ParabolaError(fit));
        QCOMPARE(row.value(QStringLiteral("time_text")).toString(), FormatResult(fit.time));
        QCOMPARE(row.value(QStringLiteral("error_text")).toString(), FormatResult(ParabolaError(fit)));
        QVERIFY(std::abs(fit.time - 0.4537) < 0.005);
    }

    void kwee_data()
    {
        QTest::addColumn<QStringList>("extra");
        QTest::addColumn<int>("s");
        QTest::addColumn<double>("f");
        QTest::newRow("design values") << QStringList{} << 1 << 0.9;
        QTest::newRow("Stepp 2, Frac .8") << QStringList{"--stepp", "2", "--frac", ".8"} << 2 << 0.8;
        QTest::newRow("after equals") << QStringList{"--stepp=1.5", "--frac= .7 "} << 2 << 0.7;
    }
    void kwee()
    {
        QFETCH(QStringList, extra);
        QFETCH(int, s);
        QFETCH(double, f);
        const auto p = curvePoints();
        const Run r = measure(QStringList{m_file, "--json", "--kwee", times({0.3777, 0.5213})} + extra);
        QCOMPARE(r.code, 0);
        const QJsonObject row = onlyRow(json(r), 4);
        const int a = firstAfter(p, 0.3777), b = lastBefore(p, 0.5213);
        const KweeResult k = KweeVanWoerden(S(), S().HJD, S().Mag, S().NumPts, rt::Integer(a), rt::Integer(b),
                                            rt::CInt((b - a + 1) * 0.9), rt::Integer(s), f);
        QCOMPARE(row.value(QStringLiteral("time")).toDouble(), k.time);
        QCOMPARE(row.value(QStringLiteral("error")).toDouble(), k.error);
        QCOMPARE(row.value(QStringLiteral("time_text")).toString(), FormatResult(k.time));
        QCOMPARE(row.value(QStringLiteral("error_text")).toString(), FormatResult(k.error));
    }

    void chords()
    {
        const auto p = curvePoints();
        const Run r = measure({m_file, "--json", "--chords", times({0.3777, 0.4203, 0.4911, 0.5213})});
        QCOMPARE(r.code, 0);
        const QJsonObject row = onlyRow(json(r), 3);
        const ChordsResult c = BisectChords(S().HJD, S().Mag, S().NumPts, rt::Integer(firstAfter(p, 0.3777)),
                                            rt::Integer(lastBefore(p, 0.4203)), rt::Integer(firstAfter(p, 0.4911)),
                                            rt::Integer(lastBefore(p, 0.5213)));
        QCOMPARE(row.value(QStringLiteral("time")).toDouble(), c.time);
        QCOMPARE(row.value(QStringLiteral("error")).toDouble(), c.error);
        QCOMPARE(row.value(QStringLiteral("time_text")).toString(), FormatResult(c.time));
    }

    void allThreeAndTheMeans()
    {
        const Run r = measure({m_file, "--json", "--parabola", times({0.3777, 0.5213}), "--kwee",
                               times({0.3777, 0.5213}), "--chords", times({0.3777, 0.4203, 0.4911, 0.5213})});
        QCOMPARE(r.code, 0);
        const QJsonObject o = json(r);
        const QJsonArray rows = o.value(QStringLiteral("results")).toArray();
        QCOMPARE(rows.size(), 3);
        QCOMPARE(rows[0].toObject().value(QStringLiteral("method")).toInt(), 1);
        QCOMPARE(rows[1].toObject().value(QStringLiteral("method")).toInt(), 3);
        QCOMPARE(rows[2].toObject().value(QStringLiteral("method")).toInt(), 4);
        QVERIFY(!o.value(QStringLiteral("means")).toObject().value(QStringLiteral("simple")).toString().isEmpty());
    }

    void rightEndFirst()
    {
        const Run a = measure({m_file, "--json", "--parabola", times({0.5213, 0.3777})});
        const Run b = measure({m_file, "--json", "--parabola", times({0.3777, 0.5213})});
        QCOMPARE(a.code, 0);
        QCOMPARE(onlyRow(json(a), 1), onlyRow(json(b), 1));
    }

    void incompleteRangesPublishNothing_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("parabola, both clicks on the left") << QStringList{"--parabola", "0.35,0.40"};
        QTest::newRow("parabola, a click outside the box") << QStringList{"--parabola", "0.29,0.50"};
        QTest::newRow("kwee, both clicks on the right") << QStringList{"--kwee", "0.50,0.55"};
        QTest::newRow("chords, three clicks on the left") << QStringList{"--chords", "0.35,0.37,0.40,0.50"};
    }
    void incompleteRangesPublishNothing()
    {
        QFETCH(QStringList, arguments);
        const Run r = measure(QStringList{m_file, "--json"} + arguments);
        QCOMPARE(r.code, 0);
        QVERIFY(json(r).value(QStringLiteral("results")).toArray().isEmpty());
    }

    void runtimeFailures_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("number");
        QTest::newRow("Stepp not a number") << QStringList{"--kwee", "0.3777,0.5213", "--stepp", "abc"} << 13;
        QTest::newRow("Stepp beyond 16 bits") << QStringList{"--kwee", "0.3777,0.5213", "--stepp", "99999"} << 6;
        QTest::newRow("Frac not a number") << QStringList{"--kwee", "0.3777,0.5213", "--frac", "x"} << 13;
        // No pair of grid points within Frac of the distance to the nearer end: the search stalls
        // on sums of 0, and -B / (2A) is 0/0.
        QTest::newRow("Frac too small") << QStringList{"--kwee", "0.3777,0.5213", "--frac", "0.01"} << 6;
    }
    void runtimeFailures()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, number);
        const Run r = measure(QStringList{m_file, "--json"} + arguments);
        QCOMPARE(r.code, 2);
        QCOMPARE(json(r).value(QStringLiteral("runtime_error")).toObject().value(QStringLiteral("number")).toInt(),
                 number);
        const Run plain = measure(QStringList{m_file} + arguments);
        QCOMPARE(plain.code, 2);
        QVERIFY(plain.err.contains(QString::number(number)));
    }

    void kweeGridBeyondTheArrays()
    {
        // 600 points picked whole: 2M = 1080 grid slots do not fit 0..1000.
        test::DataFolder folder;
        std::vector<std::pair<double, double>> p;
        for (int i = 0; i < 600; ++i)
            p.emplace_back(10 + 0.001 * i, 12 - 0.00001 * (i - 300) * (i - 300));
        const QString file = folder.write(QStringLiteral("long.csv"), test::csv(p));
        const Run r = measure({file, "--json", "--kwee", "9.999,10.6"});
        QCOMPARE(r.code, 2);
        QCOMPARE(json(r).value(QStringLiteral("runtime_error")).toObject().value(QStringLiteral("number")).toInt(), 9);
    }

    void tableShowsTheRows()
    {
        const Run r = measure({m_file, "--parabola", times({0.3777, 0.5213})});
        QCOMPARE(r.code, 0);
        const QString line = r.out.split(QLatin1Char('\n')).filter(QStringLiteral("1. Parabolic Fit")).value(0);
        QVERIFY(line.contains(QStringLiteral("[x]")));
        QVERIFY(line.contains(QStringLiteral("0.45")));
    }
};

QTEST_GUILESS_MAIN(MeasureMethodsTest)
#include "tst_measure_methods.moc"
