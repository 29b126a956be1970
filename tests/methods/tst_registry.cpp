// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/MethodRegistry.h"
#include "session/MainForm.h"
#include "session/Results.h"
#include "session/Session.h"
#include "support/TestSupport.h"

#include <QSet>

using namespace dip;

class RegistryTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void sixRowsInOrder_data();
    void sixRowsInOrder();
    void optionsAreDistinct();
    void otherRowsRaise();
    void preludeDoesNothingWithoutAFile();
    void preludeSetsTheRangeOfThePickingMethods();
    void publishingAddsTheOffsetOnce();
    void clearingGoesThroughTheRows();
    void replayTellsWhetherItPublished();
};

void RegistryTest::sixRowsInOrder_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("option");
    QTest::addColumn<bool>("picksRange");
    QTest::newRow("parabola") << 1 << "1. Parabolic Fit"
                              << "--parabola" << true;
    QTest::newRow("tracing paper") << 2 << "2. Tracing Paper"
                                   << "--fold" << false;
    QTest::newRow("chords") << 3 << "3. Bisectors of Chords"
                            << "--chords" << true;
    QTest::newRow("Kwee") << 4 << "4. Kwee and van Woerden"
                          << "--kwee" << true;
    QTest::newRow("Fourier") << 5 << "5. Fourier Fit"
                             << "--fourier" << true;
    QTest::newRow("sliding") << 6 << "6. Sliding Integrations"
                             << "--sliding" << false;
}

void RegistryTest::sixRowsInOrder()
{
    QFETCH(int, row);
    QCOMPARE(int(Methods().size()), 6);
    const MethodEntry& m = MethodOfRow(row);
    QCOMPARE(m.row, row);
    QCOMPARE(&Methods()[std::size_t(row - 1)], &m);
    QTEST(QString::fromLatin1(m.title), "title");
    QTEST(QString::fromLatin1(m.option), "option");
    QTEST(m.picksRange, "picksRange");
    QVERIFY(m.replay);
    QVERIFY(m.compute);
}

void RegistryTest::optionsAreDistinct()
{
    QSet<QString> options, names;
    for (const MethodEntry& m : Methods()) {
        options << QString::fromLatin1(m.option);
        names << QString::fromLatin1(m.name);
    }
    QCOMPARE(options.size(), 6);
    QCOMPARE(names.size(), 6);
}

void RegistryTest::otherRowsRaise()
{
    DIP_EXPECT_RUNTIME_ERROR(MethodOfRow(0), 9);
    DIP_EXPECT_RUNTIME_ERROR(MethodOfRow(7), 9);
}

void RegistryTest::preludeDoesNothingWithoutAFile()
{
    test::freshSession();
    S().RangeFirst = 3;
    S().RangeLast = 4;
    for (const MethodEntry& m : Methods())
        QVERIFY(!MethodButtonPrelude(m));
    QCOMPARE(int(S().RangeFirst), 3);
    QCOMPARE(int(S().RangeLast), 4);
}

void RegistryTest::preludeSetsTheRangeOfThePickingMethods()
{
    QVERIFY(test::loadText(test::csv(test::gaussianDip(41, 0.3, 0.005, 0.4, 0.03))));
    for (const MethodEntry& m : Methods()) {
        S().RangeFirst = 7;
        S().RangeLast = 9;
        QVERIFY(MethodButtonPrelude(m));
        QCOMPARE(int(S().RangeFirst), m.picksRange ? 1 : 7);
        QCOMPARE(int(S().RangeLast), m.picksRange ? 41 : 9);
    }
}

void RegistryTest::publishingAddsTheOffsetOnce()
{
    test::freshSession();
    S().HJDOffset = 2450000;
    PublishResult(4, 1234.567891, 0.000123);
    const ResultRow& row = S().Results(4);
    QVERIFY(row.published);
    QVERIFY(row.ticked);
    QCOMPARE(row.time, 2450000 + 1234.567891);
    QCOMPARE(row.error, 0.000123);
    QCOMPARE(row.timeText, QStringLiteral("2451234.56789"));
    QCOMPARE(row.errorText, QStringLiteral("0.00012"));
    // The main window's boxes show the row.
    QCOMPARE(mainForm().text(4), row.timeText);
    QCOMPARE(mainForm().text(10), row.errorText);
    QVERIFY(mainForm().checked(4));
    // A text of its own for the error.
    PublishResult(2, 0.5, 0.0001, QStringLiteral("0.0001"));
    QCOMPARE(mainForm().text(8), QStringLiteral("0.0001"));
    QCOMPARE(S().Results(2).error, 0.0001);
}

void RegistryTest::clearingGoesThroughTheRows()
{
    test::freshSession();
    PublishResult(1, 0.5, 0.001);
    PublishResult(5, 0.6, 0.002);
    ClearResult(1, true);
    ClearResult(5, false);
    QVERIFY(!S().Results(1).published && !S().Results(1).ticked);
    QVERIFY(!mainForm().checked(1));
    QVERIFY(mainForm().text(1).isEmpty() && mainForm().text(7).isEmpty());
    // The Fourier window's Undo keeps the tick.
    QVERIFY(!S().Results(5).published && S().Results(5).ticked);
    QVERIFY(mainForm().checked(5));
    QVERIFY(mainForm().text(5).isEmpty());
    UntickResults();
    QVERIFY(!mainForm().checked(5));
    QVERIFY(!S().Results(5).ticked);
}

void RegistryTest::replayTellsWhetherItPublished()
{
    QVERIFY(test::loadText(test::csv(test::gaussianDip(41, 0.3, 0.005, 0.4, 0.03))));
    ReplayRequest r;
    r.clicks = {0.33, 0.47};
    const ReplayResult first = ReplayMethod(4, r);
    QVERIFY(first.published);
    QCOMPARE(first.timeText, mainForm().text(4));
    // The Kwee window's load clears its range: one click leaves it incomplete, and "Fit Kwee"
    // publishes nothing, whatever the row held.
    r.clicks = {0.33};
    QVERIFY(!ReplayMethod(4, r).published);
    QCOMPARE(mainForm().text(4), first.timeText);
}

QTEST_GUILESS_MAIN(RegistryTest)
#include "tst_registry.moc"
