// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "session/MainForm.h"
#include "session/Procedures.h"
#include "session/Session.h"
#include "support/TestSupport.h"

using namespace dip;

class SessionTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { test::freshSession(); }
    void compactSkipsDeleted();
    void allPointsDeleted();
    void equalFaintestFirstWins();
    void extentsStrictAndPadded();
    void deletionsSurviveSignChanges();
    void signChangeSnapshots();
    void roundTo_data();
    void roundTo();
    void formatFixed_data();
    void formatFixed();
    void formatResultTrims();
    void publishResult();
};

namespace {
void setPoints(const std::vector<std::pair<double, double>>& points)
{
    Session& s = S();
    s.NumOrig = rt::i16(static_cast<long long>(points.size()));
    for (int i = 1; i <= s.NumOrig; ++i) {
        s.OrigHJD(i) = points[static_cast<std::size_t>(i - 1)].first;
        s.ReadMag(i) = points[static_cast<std::size_t>(i - 1)].second;
        s.OrigMag(i) = s.ReadMag(i);
        s.Deleted(i) = 0;
    }
    CompactPoints();
    UpdateExtents();
    SnapshotExtents();
}
} // namespace

void SessionTest::compactSkipsDeleted()
{
    setPoints({{0.1, 10}, {0.2, 11}, {0.3, 12}, {0.4, 11}});
    Session& s = S();
    s.Deleted(2) = rt::True;
    CompactPoints();
    QCOMPARE(int(s.NumPts), 3);
    QCOMPARE(s.HJD(2), 0.3);
    QCOMPARE(s.Mag(2), 12.0);
    // Entries above the new count keep their old values.
    QCOMPARE(s.HJD(4), 0.4);
    QCOMPARE(mainForm().editedCountLabel(), QStringLiteral("3"));
}

void SessionTest::allPointsDeleted()
{
    setPoints({{0.1, 10}, {0.2, 12}, {0.3, 9}});
    Session& s = S();
    QCOMPARE(int(s.IdxMagMax), 2);
    QCOMPARE(int(s.IdxMagMin), 3);
    for (int i = 1; i <= 3; ++i)
        s.Deleted(i) = rt::True;
    CompactPoints();
    UpdateExtents();
    QCOMPARE(int(s.NumPts), 0);
    QCOMPARE(mainForm().editedCountLabel(), QStringLiteral("0"));
    QCOMPARE(s.HJDMin, 99999999 - 0.002);
    QCOMPARE(s.HJDMax, -99999999 + 0.002);
    QCOMPARE(s.MagMin, 99.0);
    QCOMPARE(s.MagMax, -99.0);
    QCOMPARE(int(s.IdxMagMax), 2);
    QCOMPARE(int(s.IdxMagMin), 3);
}

void SessionTest::equalFaintestFirstWins()
{
    setPoints({{0.1, 10}, {0.2, 12.5}, {0.3, 11}, {0.4, 12.5}, {0.5, 10}});
    QCOMPARE(int(S().IdxMagMax), 2);
    QCOMPARE(int(S().IdxMagMin), 1);
}

void SessionTest::extentsStrictAndPadded()
{
    setPoints({{0.5, 10}, {0.25, 11}, {0.75, 12}});
    const Session& s = S();
    QCOMPARE(s.HJDMin, 0.25 - 0.002);
    QCOMPARE(s.HJDMax, 0.75 + 0.002);
    QCOMPARE(s.HJDRange, (0.75 + 0.002) - (0.25 - 0.002));
    QCOMPARE(s.MagMin, 10.0);
    QCOMPARE(s.MagMax, 12.0);
    QCOMPARE(s.MagRange, 2.0);
    QCOMPARE(s.FullHJDMin, s.HJDMin);
    QCOMPARE(int(s.FullIdxMagMax), 3);
    QCOMPARE(s.FoldHJD, 0.75);
}

void SessionTest::deletionsSurviveSignChanges()
{
    setPoints({{0.1, 10}, {0.2, 12}, {0.3, 11}});
    Session& s = S();
    s.PickIdx = 3;
    SetPickedDeleted(true);
    ApplyMagSense(1);
    QCOMPARE(int(s.NumPts), 2);
    QCOMPARE(s.Mag(2), -12.0);
    QCOMPARE(int(s.Deleted(3)), int(rt::True));
    ApplyMagSense(0);
    QCOMPARE(int(s.NumPts), 2);
    QCOMPARE(s.Mag(2), 12.0);
    QCOMPARE(int(s.Deleted(3)), int(rt::True));
}

void SessionTest::signChangeSnapshots()
{
    setPoints({{0.1, 10}, {0.2, 12}, {0.3, 11}});
    Session& s = S();
    s.PickIdx = 2;
    SetPickedDeleted(true);
    // Deleting does not refresh the Full copies or the fold.
    QCOMPARE(int(s.FullIdxMagMax), 2);
    QCOMPARE(s.FoldHJD, 0.2);
    QCOMPARE(int(s.IdxMagMax), 2); // the 2nd used point (0.3, 11) is now the faintest
    ApplyMagSense(1);
    QCOMPARE(int(s.MagSign), -1);
    // Inverted: IdxMagMax names the brightest point (10 becomes -10, the largest).
    QCOMPARE(int(s.IdxMagMax), 1);
    QCOMPARE(int(s.FullIdxMagMax), 1);
    QCOMPARE(s.FoldHJD, 0.1);
}

void SessionTest::roundTo_data()
{
    QTest::addColumn<double>("x");
    QTest::addColumn<int>("n");
    QTest::addColumn<double>("expected");
    QTest::newRow("2.50005") << 2.50005 << 4 << 2.5001;
    QTest::newRow("-2.50005") << -2.50005 << 4 << -2.5001;
    QTest::newRow("-0.00005") << -0.00005 << 4 << -0.0001;
    QTest::newRow("zero") << 0.0 << 4 << 0.0;
    QTest::newRow("hjd") << 0.48765 << 4 << 0.4877;
    QTest::newRow("down") << 0.12344 << 4 << 0.1234;
}

void SessionTest::roundTo()
{
    QFETCH(double, x);
    QFETCH(int, n);
    QFETCH(double, expected);
    QCOMPARE(RoundTo(x, rt::i16(n)), expected);
}

void SessionTest::formatFixed_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("decimals");
    QTest::addColumn<QString>("text");
    QTest::newRow("pad decimals") << 2.5 << 14 << 5 << "       2.50000";
    QTest::newRow("round") << 2459123.456789 << 14 << 5 << " 2459123.45679";
    QTest::newRow("dropped zeros stay dropped") << 2.30001 << 8 << 2 << "     2.3";
    QTest::newRow("below one gets a zero") << 0.00089442719 << 14 << 5 << "       0.00089";
    QTest::newRow("negative below one") << -0.5 << 8 << 3 << "  -0.500";
    QTest::newRow("integer") << 12.0 << 8 << 3 << "  12.000";
    QTest::newRow("exponent text padded") << 0.00003 << 14 << 5 << "  03E-05.00000";
    QTest::newRow("zero") << 0.0 << 14 << 5 << "      00.00000";
    QTest::newRow("cut not rounded") << 123.4567 << 7 << 4 << "123.456";
    QTest::newRow("rounds to whole") << 2.99999 << 6 << 2 << "     3";
    QTest::newRow("exponent text fits") << 1234567800000000.0 << 14 << 5 << " 1.2345678E+15";
    QTest::newRow("exponent fallback") << 12345678000000.0 << 14 << 5 << "1.23456780E+13";
    QTest::newRow("exponent fallback negative") << -12345678000000.0 << 14 << 5 << "-1.2345678E+13";
    QTest::newRow("a little too long is cut") << 123456789012.5 << 14 << 5 << "123456789012.5";
    QTest::newRow("width 9") << 25.0 << 9 << 5 << " 25.00000";
    QTest::newRow("width 8 too narrow for 5 decimals") << 25.0 << 8 << 5 << "25.00000";
    QTest::newRow("width 8 rounds") << 0.4567891 << 8 << 5 << " 0.45679";
    QTest::newRow("rms") << 0.0123456 << 8 << 3 << "   0.012";
}

void SessionTest::formatFixed()
{
    QFETCH(double, value);
    QFETCH(int, width);
    QFETCH(int, decimals);
    QFETCH(QString, text);
    QCOMPARE(FormatFixed(value, rt::i16(width), rt::i16(decimals)), text);
}

void SessionTest::formatResultTrims()
{
    QCOMPARE(FormatResult(2459123.40050), QStringLiteral("2459123.40050"));
    QCOMPARE(FormatResult(0.0001), QStringLiteral("0.00010"));
}

void SessionTest::publishResult()
{
    PublishResult(4, 0.512345678, 0.00012);
    QCOMPARE(mainForm().text(4), QStringLiteral("0.51235"));
    QCOMPARE(mainForm().text(10), QStringLiteral("0.00012"));
    QVERIFY(mainForm().checked(4));
}

QTEST_GUILESS_MAIN(SessionTest)
#include "tst_session.moc"
