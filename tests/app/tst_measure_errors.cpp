// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
// The console tool's --bootstrap N [--seed S]: the members it adds to the JSON and the table,
// what it leaves in the toolkit's state, its digits under a seed, and the command lines it
// refuses.
#include "MeasureRun.h"

#include "analysis/Toolkit.h"
#include "analysis/WeightedMean.h"
#include "support/DipCurves.h"
#include "support/TestSupport.h"

#include <QJsonArray>
#include <QJsonObject>

#include <cmath>

using namespace dip;
using dip::test::example;
using dip::test::json;
using dip::test::measure;
using dip::test::Run;

namespace {

// Every method on the example, as the README drives it.
QStringList allMethods()
{
    return QStringList{example(),
                       QStringLiteral("--parabola"),
                       QStringLiteral("0.49,0.535"),
                       QStringLiteral("--fold"),
                       QStringLiteral("0.5123"),
                       QStringLiteral("--chords"),
                       QStringLiteral("0.46,0.49,0.53,0.56")} +
           test::kweeAndFourier() + QStringList{QStringLiteral("--sliding")};
}

QJsonObject resultOf(const QJsonObject& run, int method)
{
    for (const QJsonValue& v : run.value(QStringLiteral("results")).toArray())
        if (v.toObject().value(QStringLiteral("method")).toInt() == method)
            return v.toObject();
    return QJsonObject();
}

} // namespace

class MeasureErrorsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void withoutTheOptionNothingIsAdded()
    {
        const Run r = measure(allMethods() << QStringLiteral("--json"));
        QCOMPARE(r.code, 0);
        QVERIFY(!r.out.contains(QLatin1String("bootstrap")));
        QVERIFY(!r.out.contains(QLatin1String("deeg_error")));
        QVERIFY(!Toolkit().rows[1].bootstrap);
        QVERIFY(!Toolkit().deeg);
    }

    void everyMethodWithAFitGainsItsBootstrap()
    {
        const int B = 60;
        const Run r = measure(allMethods() << QStringLiteral("--json") << QStringLiteral("--bootstrap")
                                           << QString::number(B) << QStringLiteral("--seed") << QStringLiteral("5"));
        QCOMPARE(r.code, 0);
        const QJsonObject run = json(r);
        for (int k = 1; k <= 6; ++k) {
            const QJsonObject result = resultOf(run, k);
            QVERIFY2(!result.isEmpty(), qPrintable(QStringLiteral("row %1 missing").arg(k)));
            if (k == 2) {
                // The tracing paper has no fit to repeat.
                QVERIFY(!result.contains(QStringLiteral("bootstrap")));
                continue;
            }
            const QJsonObject b = result.value(QStringLiteral("bootstrap")).toObject();
            // The chords also give the error to believe, with the replicates' shift from the time.
            QCOMPARE(b.keys(), k == 3 ? (QStringList{"error", "error_with_shift", "failures", "n", "p16", "p84"})
                                      : (QStringList{"error", "failures", "n", "p16", "p84"}));
            const double time = result.value(QStringLiteral("time")).toDouble();
            const double error = b.value(QStringLiteral("error")).toDouble();
            const double p16 = b.value(QStringLiteral("p16")).toDouble();
            const double p84 = b.value(QStringLiteral("p84")).toDouble();
            QVERIFY2(error > 0 && error < 0.002, qPrintable(QString::number(error)));
            QVERIFY(p16 < p84);
            // The percentiles lie about the published time (with HJDOffset), within a few errors.
            QVERIFY(std::abs(p16 - time) < 4 * error && std::abs(p84 - time) < 4 * error);
            QCOMPARE(b.value(QStringLiteral("n")).toInt() + b.value(QStringLiteral("failures")).toInt(), B);

            // The toolkit holds the same bootstrap for the other features.
            const std::optional<BootstrapResult>& kept = Toolkit().rows[std::size_t(k)].bootstrap;
            QVERIFY(kept);
            QCOMPARE(QString::number(kept->error, 'g', 17), QString::number(error, 'g', 17));
            QCOMPARE(kept->requested, B);
            QCOMPARE(result.contains(QStringLiteral("deeg_error")), k == 4);
            if (k == 3) {
                const double withShift = b.value(QStringLiteral("error_with_shift")).toDouble();
                // The replicates' mean from the method's time (the published one less the offset
                // the percentiles carry).
                const double offset = p16 - kept->p16;
                const double shift = kept->mean - (time - offset);
                DIP_COMPARE_REL(withShift, std::hypot(error, shift), 1e-6);
                QVERIFY(withShift > error);
            }
        }
        const double deeg = resultOf(run, 4).value(QStringLiteral("deeg_error")).toDouble();
        QVERIFY(Toolkit().deeg && Toolkit().deeg->ok());
        QCOMPARE(deeg, Toolkit().deeg->error);
        QVERIFY(deeg > 0 && deeg < 0.002);

        // The means: numbers, the weighted mean of the ticked rows' times with the bootstrap
        // errors to believe (the chords' with the shift, the tracing paper's own 0.0001) as
        // weights, worked out here again.
        const QJsonObject means = run.value(QStringLiteral("means")).toObject();
        QVERIFY(means.value(QStringLiteral("bootstrap_weighted")).isDouble());
        QVERIFY(means.value(QStringLiteral("bootstrap_std_error")).isDouble());
        double sw = 0, swt = 0;
        for (int k = 1; k <= 6; ++k) {
            const QJsonObject result = resultOf(run, k);
            const QJsonObject b = result.value(QStringLiteral("bootstrap")).toObject();
            const double e = k == 2   ? result.value(QStringLiteral("error")).toDouble()
                             : k == 3 ? b.value(QStringLiteral("error_with_shift")).toDouble()
                                      : b.value(QStringLiteral("error")).toDouble();
            sw += 1 / (e * e);
            swt += result.value(QStringLiteral("time")).toDouble() / (e * e);
        }
        DIP_COMPARE_REL(means.value(QStringLiteral("bootstrap_weighted")).toDouble(), swt / sw, 1e-12);
        DIP_COMPARE_REL(means.value(QStringLiteral("bootstrap_std_error")).toDouble(), 1 / std::sqrt(sw), 1e-12);
    }

    void aSeedGivesTheSameDigits()
    {
        auto run = [](const QString& seed) {
            return measure(allMethods() << QStringLiteral("--json") << QStringLiteral("--bootstrap")
                                        << QStringLiteral("40") << QStringLiteral("--seed") << seed)
                .out;
        };
        const QString first = run(QStringLiteral("11"));
        QCOMPARE(run(QStringLiteral("11")), first);
        QVERIFY(run(QStringLiteral("12")) != first);
        // Without --seed the seed is 1.
        QCOMPARE(measure(allMethods() << QStringLiteral("--json") << QStringLiteral("--bootstrap=40")).out,
                 run(QStringLiteral("1")));
    }

    void theTableGainsLinesAfterTheMeans()
    {
        const Run r = measure({example(), QStringLiteral("--parabola"), QStringLiteral("0.49,0.535"),
                               QStringLiteral("--kwee"), QStringLiteral("0.47,0.55"), QStringLiteral("--bootstrap"),
                               QStringLiteral("30"), QStringLiteral("--seed"), QStringLiteral("2")});
        QCOMPARE(r.code, 0);
        const QStringList lines = r.out.split(QLatin1Char('\n'));
        const int means = int(lines.indexOf(QRegularExpression(QStringLiteral("^Std. Deviation of Means.*"))));
        const int title = int(lines.indexOf(QStringLiteral("Bootstrap errors (B = 30, seed 2)")));
        QVERIFY(means > 0);
        QVERIFY(title > means);
        QVERIFY(lines.value(title + 2).startsWith(QLatin1String("1. Parabolic Fit")));
        QVERIFY(lines.value(title + 2).endsWith(QLatin1String("30 of 30, 0 failed")));
        QVERIFY(lines.value(title + 3).startsWith(QLatin1String("4. Kwee and van Woerden")));
        QVERIFY(lines.value(title + 4).startsWith(QLatin1String("Deeg's error (row 4)")));
        QVERIFY(lines.value(title + 5).startsWith(QLatin1String("Weighted Mean (bootstrap)     0.512")));
        QVERIFY(lines.value(title + 6).startsWith(QLatin1String("Std. Error (bootstrap)")));
    }

    // Chords read across a gap: a caution after Deeg's line, with the window's words; on the
    // example, whose branches have no gap, the caution gives the error to believe alone.
    void theTableCautionsAboutChordsAcrossAGap()
    {
        const test::DataFolder folder;
        const QString file = folder.write(QStringLiteral("gap.csv"), test::csv(test::sixtyFourthsDip(34, 42)));
        const double h = 1.0 / 64;
        const QString clicks = QStringLiteral("%1,%2,%3,%4")
                                   .arg(21.5 * h, 0, 'g', 17)
                                   .arg(26.5 * h, 0, 'g', 17)
                                   .arg(42.5 * h, 0, 'g', 17)
                                   .arg(46.5 * h, 0, 'g', 17);
        const Run r =
            measure({file, QStringLiteral("--chords"), clicks, QStringLiteral("--bootstrap"), QStringLiteral("20")});
        QCOMPARE(r.code, 0);
        QVERIFY2(r.out.contains(QRegularExpression(
                     QStringLiteral("\nCaution \\(row 3\\)               5 of 9 chords across a gap; error with the "
                                    "shift [0-9.e-]+\n"))),
                 qPrintable(r.out));
        const Run example = measure(allMethods() << QStringLiteral("--bootstrap") << QStringLiteral("20"));
        QCOMPARE(example.code, 0);
        QVERIFY(example.out.contains(QLatin1String("Bootstrap errors (B = 20, seed 1)")));
        QVERIFY2(example.out.contains(QRegularExpression(
                     QStringLiteral("\nCaution \\(row 3\\)               error with the shift [0-9.e-]+\n"))),
                 qPrintable(example.out));
        QVERIFY(!example.out.contains(QLatin1String("across a gap")));
    }

    // --correlated-noise on a short curve whose noise looks white: the title says so, and the
    // parabola's bootstrap error grows; the JSON keys stay the same.
    void correlatedNoiseTakesTheNoiseAsCorrelated()
    {
        const test::DataFolder folder;
        const double a[5] = {0.3, 0.1, 0.02, 0, 0};
        const QString file = folder.write(QStringLiteral("short.csv"),
                                          test::csv(test::fourierDip(0.5, 11.0, 25, a, 60, 0.4, 0.6, 0.02, 1u)));
        const QStringList found{file, QStringLiteral("--parabola"), QStringLiteral("0.47,0.53"),
                                QStringLiteral("--bootstrap"), QStringLiteral("60")};
        const QStringList told = found + QStringList{QStringLiteral("--correlated-noise")};
        const Run table = measure(told);
        QCOMPARE(table.code, 0);
        QVERIFY2(table.out.contains(QLatin1String("\nBootstrap errors (B = 60, seed 1, noise taken as correlated)\n")),
                 qPrintable(table.out));
        QVERIFY(measure(found).out.contains(QLatin1String("\nBootstrap errors (B = 60, seed 1)\n")));

        auto bootstrap = [](const QStringList& options) {
            const Run r = measure(options + QStringList{QStringLiteral("--json")});
            return resultOf(json(r), 1).value(QStringLiteral("bootstrap")).toObject();
        };
        const QJsonObject plain = bootstrap(found);
        const QJsonObject correlated = bootstrap(told);
        QCOMPARE(correlated.keys(), plain.keys());
        const double e0 = plain.value(QStringLiteral("error")).toDouble();
        const double e1 = correlated.value(QStringLiteral("error")).toDouble();
        QVERIFY2(e0 > 0 && e1 > e0, qPrintable(QStringLiteral("%1 against %2").arg(e1).arg(e0)));
    }

    void badCommandLines_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QString>("message");
        QTest::newRow("N missing") << QStringList{"--bootstrap"} << "--bootstrap needs a value";
        QTest::newRow("N negative") << QStringList{"--bootstrap", "-5"} << "--bootstrap: '-5' is not a whole number";
        QTest::newRow("N zero") << QStringList{"--bootstrap", "0"} << "--bootstrap: '0' is not a whole number";
        QTest::newRow("N not a number") << QStringList{"--bootstrap", "many"} << "--bootstrap: 'many' is not a whole";
        QTest::newRow("N a fraction") << QStringList{"--bootstrap=2.5"} << "--bootstrap: '2.5' is not a whole";
        QTest::newRow("seed not a number")
            << QStringList{"--bootstrap", "10", "--seed", "x"} << "--seed: 'x' is not a whole number";
        QTest::newRow("seed negative") << QStringList{"--bootstrap", "10", "--seed", "-1"}
                                       << "--seed: '-1' is not a whole number";
        QTest::newRow("seed alone") << QStringList{"--seed", "3"} << "--seed goes with --bootstrap";
        QTest::newRow("correlated noise alone")
            << QStringList{"--correlated-noise"} << "--correlated-noise goes with --bootstrap";
        QTest::newRow("correlated noise with a value")
            << QStringList{"--bootstrap", "10", "--correlated-noise=yes"} << "--correlated-noise takes no value";
    }
    void badCommandLines()
    {
        QFETCH(QStringList, options);
        QFETCH(QString, message);
        const Run r = measure(QStringList{example(), QStringLiteral("--sliding")} + options);
        // As every other usage error of the tool.
        QCOMPARE(r.code, measure({example(), QStringLiteral("--no-such-option")}).code);
        QCOMPARE(r.code, 64);
        QVERIFY(r.out.isEmpty());
        QVERIFY2(r.err.startsWith(QStringLiteral("dipscope-measure: ") + message), qPrintable(r.err));
        QVERIFY(r.err.contains(QLatin1String("[--bootstrap N [--seed S] [--correlated-noise]]")));
    }
};

QTEST_GUILESS_MAIN(MeasureErrorsTest)
#include "tst_measure_errors.moc"
