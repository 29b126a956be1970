// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "mainwindow/ErrorTable.h"
#include "mainwindow/Means.h"
#include "session/Session.h"
#include "support/TestSupport.h"

#include <cmath>

using namespace dip;

namespace {
MeansBoxes boxesWith(std::initializer_list<std::tuple<int, const char*, const char*>> rows)
{
    MeansBoxes b;
    for (const auto& [k, time, error] : rows) {
        b.times[static_cast<std::size_t>(k - 1)] = QString::fromLatin1(time);
        b.errors[static_cast<std::size_t>(k - 1)] = QString::fromLatin1(error);
        b.ticked[static_cast<std::size_t>(k - 1)] = true;
    }
    return b;
}
} // namespace

class MeansTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void nothingTickedLeavesBoxes();
    void oneBox();
    void zeroOrEmptyErrorUnticks_data();
    void zeroOrEmptyErrorUnticks();
    void twoMethods();
    void baseFromFirstTickedEvenIfDropped();
    void negativeErrorAccepted();
    void untickedBoxesIgnored();
    void nonNumericTimeCountsAsZeroMinusBase();
    void errorTable();
};

void MeansTest::nothingTickedLeavesBoxes()
{
    MeansBoxes b;
    b.times[0] = QStringLiteral("2459123.4");
    b.errors[0] = QStringLiteral("0.001");
    b.means = {QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"), QStringLiteral("d")};
    const MeansBoxes r = CalcMeans(b);
    QCOMPARE(r.means, b.means);
}

void MeansTest::oneBox()
{
    MeansBoxes b = boxesWith({{3, "2459123.45678", "0.0005"}});
    b.means[3] = QStringLiteral("old");
    const MeansBoxes r = CalcMeans(b);
    QCOMPARE(r.means[0], QStringLiteral("2459123.45678"));
    QCOMPARE(r.means[1], QStringLiteral("2459123.45678"));
    QCOMPARE(r.means[2], QStringLiteral("0.00050"));
    QCOMPARE(r.means[3], QString());
    QVERIFY(r.ticked[2]);
}

void MeansTest::zeroOrEmptyErrorUnticks_data()
{
    QTest::addColumn<QString>("error");
    QTest::newRow("empty") << QString();
    QTest::newRow("zero") << QStringLiteral("0");
    QTest::newRow("below 1e-6") << QStringLiteral("0.0000009");
}

void MeansTest::zeroOrEmptyErrorUnticks()
{
    QFETCH(QString, error);
    MeansBoxes b = boxesWith({{2, "2459123.4", "0.001"}, {5, "2459123.5", ""}});
    b.errors[4] = error;
    const MeansBoxes r = CalcMeans(b);
    QVERIFY(!r.ticked[4]);
    QVERIFY(r.ticked[1]);
    QCOMPARE(r.means[0], QStringLiteral("2459123.40000"));
    QCOMPARE(r.means[3], QString());

    // The only ticked box dropped: the outputs stay as they were.
    MeansBoxes only = boxesWith({{1, "2459123.4", ""}});
    only.errors[0] = error;
    only.means = {QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3"), QStringLiteral("4")};
    const MeansBoxes r2 = CalcMeans(only);
    QVERIFY(!r2.ticked[0]);
    QCOMPARE(r2.means, only.means);
}

void MeansTest::twoMethods()
{
    const MeansBoxes r = CalcMeans(boxesWith({{1, "2459123.40000", "0.001"}, {4, "2459123.40100", "0.002"}}));
    QCOMPARE(r.means[0], QStringLiteral("2459123.40050"));
    QCOMPARE(r.means[1], QStringLiteral("2459123.40020"));
    // sqrt(1 / (1/0.001^2 + 1/0.002^2)) = sqrt(1 / 1250000) = 0.000894...
    QCOMPARE(r.means[2], QStringLiteral("0.00089"));
    // sample standard deviation of 0 and 0.001 = 0.000707...
    QCOMPARE(r.means[3], QStringLiteral("0.00071"));
}

void MeansTest::baseFromFirstTickedEvenIfDropped()
{
    // The base 2459100 comes from box 1 although box 1 is dropped; box 2 is far from it but
    // the mean comes out the same, since the base is added back.
    const MeansBoxes r = CalcMeans(boxesWith({{1, "2459123.4", "0"}, {2, "2459250.12345", "0.001"}}));
    QVERIFY(!r.ticked[0]);
    QCOMPARE(r.means[0], QStringLiteral("2459250.12345"));
}

void MeansTest::negativeErrorAccepted()
{
    const MeansBoxes r = CalcMeans(boxesWith({{6, "0.5", "-0.002"}}));
    QCOMPARE(r.means[2], QStringLiteral("0.00200"));
}

void MeansTest::untickedBoxesIgnored()
{
    MeansBoxes b = boxesWith({{1, "0.5", "0.001"}});
    b.times[1] = QStringLiteral("0.9");
    b.errors[1] = QStringLiteral("0.001");
    const MeansBoxes r = CalcMeans(b);
    QCOMPARE(r.means[0], QStringLiteral("0.50000"));
}

void MeansTest::nonNumericTimeCountsAsZeroMinusBase()
{
    // base = 0 from "0.5"; "abc" reads as 0: mean of 0.5 and 0 is 0.25.
    const MeansBoxes r = CalcMeans(boxesWith({{1, "0.5", "0.001"}, {2, "abc", "0.001"}}));
    QCOMPARE(r.means[0], QStringLiteral("0.25000"));
}

void MeansTest::errorTable()
{
    resetSession();
    FillErrorText();
    const Session& s = S();
    QCOMPARE(s.ErrorText(9), QStringLiteral("Error 9: Subscript out of range."));
    QCOMPARE(s.ErrorText(72), QStringLiteral("Error 72: Disk media error"));
    QCOMPARE(s.ErrorText(74), QStringLiteral("Error 74: Rename across disks"));
    QCOMPARE(s.ErrorText(731), QStringLiteral("Error 731: Path not found."));
    QCOMPARE(s.ErrorText(5), QString());
    int filled = 0, withoutStop = 0;
    for (int i = 0; i <= 1000; ++i) {
        if (s.ErrorText(i).isEmpty())
            continue;
        ++filled;
        QVERIFY(s.ErrorText(i).startsWith(QStringLiteral("Error %1: ").arg(i)));
        if (!s.ErrorText(i).endsWith(QLatin1Char('.')))
            ++withoutStop;
    }
    QCOMPARE(filled, 32);
    QCOMPARE(withoutStop, 2);
}

QTEST_GUILESS_MAIN(MeansTest)
#include "tst_means.moc"
