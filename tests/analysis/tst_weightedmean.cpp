// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers

#include "analysis/WeightedMean.h"
#include "support/TestSupport.h"

#include <QtTest>

#include <cmath>
#include <limits>

using namespace dip;

namespace {

using Pairs = std::vector<std::pair<double, double>>;

// The same sums a second way, in long double on offsets from a fixed day.
struct Reference {
    double mean, standardError, reducedChiSquare;
};
Reference reference(const Pairs& pairs)
{
    long double sw = 0, swt = 0;
    const long double day = 2459123;
    for (const auto& [t, e] : pairs) {
        const long double w = 1.0L / ((long double)e * e);
        sw += w;
        swt += w * ((long double)t - day);
    }
    const long double mean = swt / sw;
    long double chi2 = 0;
    for (const auto& [t, e] : pairs) {
        const long double d = ((long double)t - day - mean) / e;
        chi2 += d * d;
    }
    return {double(day + mean), double(1 / std::sqrt(sw)), pairs.size() > 1 ? double(chi2 / (pairs.size() - 1)) : 0};
}

} // namespace

class TestWeightedMean : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void againstReference_data()
    {
        QTest::addColumn<Pairs>("pairs");
        QTest::newRow("two methods") << Pairs{{2459123.40000, 0.001}, {2459123.40100, 0.002}};
        QTest::newRow("five methods, full digits") << Pairs{{2459123.5123412, 0.00012},
                                                            {2459123.5123398, 0.00009},
                                                            {2459123.5123501, 0.00031},
                                                            {2459123.5123377, 0.00015},
                                                            {2459123.5123456, 0.00020}};
        QTest::newRow("one method") << Pairs{{2459123.51234, 0.0005}};
    }
    void againstReference()
    {
        QFETCH(Pairs, pairs);
        const WeightedMean w = weightedMean(pairs);
        const Reference r = reference(pairs);
        QVERIFY(w.valid);
        QCOMPARE(w.used, int(pairs.size()));
        QVERIFY2(std::abs(w.mean - r.mean) < 1e-9, qPrintable(QString::number(w.mean - r.mean)));
        DIP_COMPARE_REL(w.standardError, r.standardError, 1e-12);
        DIP_COMPARE_REL(w.reducedChiSquare, r.reducedChiSquare, 1e-6);
    }

    // The example of "Calc. Means": 2459123.40000 +- 0.001 and 2459123.40100 +- 0.002 give the
    // weighted mean 2459123.40020 and the standard error sqrt(1 / 1250000).
    void calcMeansExample()
    {
        const WeightedMean w = weightedMean({{2459123.40000, 0.001}, {2459123.40100, 0.002}});
        QVERIFY(std::abs(w.mean - 2459123.40020) < 1e-9);
        QCOMPARE(w.standardError, std::sqrt(1 / 1250000.0));
    }

    // Pairs without a finite positive error carry no weight and are left out.
    void unusablePairsLeftOut()
    {
        const double nan = std::numeric_limits<double>::quiet_NaN();
        const WeightedMean w = weightedMean(
            {{2459123.40000, 0.001}, {2459123.9, 0.0}, {2459123.9, -0.001}, {2459123.9, nan}, {nan, 0.001}});
        QVERIFY(w.valid);
        QCOMPARE(w.used, 1);
        QCOMPARE(w.mean, 2459123.40000);
        QCOMPARE(w.standardError, 0.001);
        QCOMPARE(w.reducedChiSquare, 0.0);

        QVERIFY(!weightedMean({}).valid);
        QVERIFY(!weightedMean({{2459123.4, 0.0}}).valid);
    }
};

QTEST_GUILESS_MAIN(TestWeightedMean)
#include "tst_weightedmean.moc"
