// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
// The autoregressions of the bootstrap's sieve: the order kept, and the persistence with its
// small-sample bias given back.
#include "analysis/Autoregression.h"

#include <QtTest>

#include <vector>

using namespace dip;

class TestAutoregression : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // The persistence of an autoregression fitted to n values gets (1 + 3 rho) / n back, up to
    // 0.98; noise that alternates is left as fitted.
    void persistenceGetsItsBiasBack_data()
    {
        QTest::addColumn<double>("fitted");
        QTest::addColumn<int>("n");
        QTest::addColumn<double>("expected");
        QTest::newRow("0.5 on 50") << 0.5 << 50 << 0.55;
        QTest::newRow("0.8 on 340") << 0.8 << 340 << 0.81;
        QTest::newRow("0.9 on 20: at most 0.98") << 0.9 << 20 << maximumPersistence;
        QTest::newRow("0 stays") << 0.0 << 30 << 0.0;
        QTest::newRow("-0.3 stays") << -0.3 << 30 << -0.3;
    }
    void persistenceGetsItsBiasBack()
    {
        QFETCH(double, fitted);
        QFETCH(int, n);
        QFETCH(double, expected);
        QCOMPARE(unbiasedPersistence(fitted, std::size_t(n)), expected);
    }

    // Levinson's recursion from the autocovariances of an AR(1) of coefficient 0.5 (1, 0.5,
    // 0.25): order 1 has a_1 = 0.5 and innovation variance 0.75, order 2 adds nothing (k = 0)
    // and costs 2 in Akaike's criterion, so order 1 is kept; a coefficient of 1 would leave no
    // innovation and is refused.
    void autoregressionByOrderKeepsTheBestOrder()
    {
        const double g[3] = {1, 0.5, 0.25};
        AutoregressionByOrder ar(g[0], 100);
        QVERIFY(ar.best().empty());
        QVERIFY(ar.extend(g[1] / ar.innovationVariance()));
        QCOMPARE(ar.coefficients(), std::vector<double>{0.5});
        QCOMPARE(ar.innovationVariance(), 0.75);
        const double k2 = (g[2] - ar.coefficients()[0] * g[1]) / ar.innovationVariance();
        QCOMPARE(k2, 0.0);
        QVERIFY(ar.extend(k2));
        QCOMPARE(ar.order(), 2);
        QCOMPARE(ar.coefficients(), (std::vector<double>{0.5, 0.0}));
        QCOMPARE(ar.best(), std::vector<double>{0.5});
        QCOMPARE(ar.bestInnovationVariance(), 0.75);
        QVERIFY(!ar.extend(1.0));
        QCOMPARE(ar.order(), 2);
        QCOMPARE(persistenceOf({0.5, 0.2, -0.1}), 0.6);
    }
};

QTEST_GUILESS_MAIN(TestAutoregression)
#include "tst_autoregression.moc"
