// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "session/LoadDataFile.h"
#include "session/MainForm.h"
#include "session/Results.h"
#include "session/Session.h"
#include "session/SessionEvents.h"
#include "session/WholeDays.h"
#include "support/TestSupport.h"

#include <QTest>

#include <cmath>
#include <vector>

using namespace dip;

namespace {

// The same eleven observations of a dip, their times written after a prefix of whole days.
QByteArray dipFile(const QByteArray& days)
{
    QByteArray text = "HJD,Mag\n";
    const char* const fractions[] = {"0.40000", "0.42000", "0.44000", "0.46000", "0.48000", "0.50000",
                                     "0.52000", "0.54000", "0.56000", "0.58000", "0.60000"};
    const char* const mags[] = {"11.00", "11.10", "11.30", "11.60", "11.90", "12.00",
                                "11.90", "11.60", "11.30", "11.10", "11.00"};
    for (int i = 0; i < 11; ++i)
        text += days + QByteArray(fractions[i]).mid(days.isEmpty() ? 0 : 1) + "," + mags[i] + "\n";
    return text;
}

bool loadWithSwitch(const QByteArray& text, bool on)
{
    static std::unique_ptr<test::DataFolder> folder;
    folder = std::make_unique<test::DataFolder>();
    test::freshSession();
    S().SubtractWholeDays = on;
    folder->write(QStringLiteral("curve.csv"), text);
    return OpenDataFile(folder->path(), QStringLiteral("curve.csv"));
}

} // namespace

class WholeDaysTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void splitTimeText_data();
    void splitTimeText();
    void fractionAsExactAsWrittenAlone();
    void switchOffLoadsAsAlways();
    void switchOnSetsTheWholeDayApart();
    void offsetIsTheFirstDataRowsWholeDay();
    void negativeFirstTime();
    void dayFractionsAreUnchangedBySwitch();
    void curveWithoutPartsIsReducedByValue();
    void flipTakesEffectAtTheNextLoad();
    void largeTimesWarning_data();
    void largeTimesWarning();
    void axisName_data();
    void axisName();
    void listenersHearLoadsAndResults();
};

void WholeDaysTest::splitTimeText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("value");
    QTest::addColumn<double>("whole");
    QTest::addColumn<double>("fraction");
    QTest::newRow("full JD") << "2459123.38000" << 2459123.38 << 2459123.0 << 0.38;
    QTest::newRow("blanks, five digits") << " 59123.5 " << 59123.5 << 59123.0 << 0.5;
    QTest::newRow("fraction only") << "0.51234" << 0.51234 << 0.0 << 0.51234;
    QTest::newRow("no leading digit") << ".75" << 0.75 << 0.0 << 0.75;
    QTest::newRow("whole number") << "12" << 12.0 << 12.0 << 0.0;
    QTest::newRow("plus sign") << "+3.25" << 3.25 << 3.0 << 0.25;
    QTest::newRow("negative") << "-2459123.75" << -2459123.75 << -2459123.0 << -0.75;
    // Not a plain decimal: the value's whole days toward zero and the rest.
    QTest::newRow("exponent form") << "2.4591235E6" << 2459123.5 << 2459123.0 << 0.5;
    QTest::newRow("sixteen whole digits") << "1234567890123456.5" << 1234567890123456.5 << 1234567890123456.0 << 0.5;
    QTest::newRow("empty") << "" << 0.0 << 0.0 << 0.0;
    QTest::newRow("point only") << "." << 0.0 << 0.0 << 0.0;
}

void WholeDaysTest::splitTimeText()
{
    QFETCH(QString, text);
    QFETCH(double, value);
    QFETCH(double, whole);
    QFETCH(double, fraction);
    const TimeParts parts = SplitTimeText(text, value);
    QCOMPARE(parts.whole, whole);
    QCOMPARE(parts.fraction, fraction);
    // Whatever the route, the parts are a whole number and the rest, of the value's sign.
    QCOMPARE(std::trunc(parts.whole), parts.whole);
    QVERIFY(std::abs(parts.fraction) < 1);
}

void WholeDaysTest::fractionAsExactAsWrittenAlone()
{
    // The whole point: the fraction of a full Julian date is the very double the fraction
    // written alone gives, which the full date in one double is not.
    const QStringList fractions = {"0.38123", "0.51234567", "0.9999999999", "0.1"};
    for (const QString& f : fractions) {
        const QString full = QStringLiteral("2459123") + f.mid(1);
        const TimeParts parts = SplitTimeText(full, full.toDouble());
        QCOMPARE(parts.whole, 2459123.0);
        QCOMPARE(parts.fraction, f.toDouble());
    }
}

void WholeDaysTest::switchOffLoadsAsAlways()
{
    QVERIFY(loadWithSwitch(dipFile("2459123"), false));
    const Session& s = S();
    QCOMPARE(s.HJDOffset, 0.0);
    QVERIFY(!s.WholeDaysSubtracted);
    QCOMPARE(s.ReadHJD(1), 2459123.4);
    QCOMPARE(s.HJD(6), 2459123.5);
    QCOMPARE(s.FoldHJD, 2459123.5);
    PublishResult(1, 2459123.51, 0.001);
    QCOMPARE(s.Results(1).time, 2459123.51);
    QCOMPARE(s.Results(1).methodTime, 2459123.51);
    QCOMPARE(mainForm().text(1), QStringLiteral("2459123.51000"));
    QCOMPARE(TimeAxisName(), QStringLiteral("HJD"));
}

void WholeDaysTest::switchOnSetsTheWholeDayApart()
{
    QVERIFY(loadWithSwitch(dipFile("2459123"), true));
    const Session& s = S();
    QCOMPARE(s.HJDOffset, 2459123.0);
    QVERIFY(s.WholeDaysSubtracted);
    // Every time less the day, exactly as the fraction written alone.
    QCOMPARE(s.ReadHJD(1), 0.4);
    QCOMPARE(s.OrigHJD(2), 0.42);
    QCOMPARE(s.HJD(11), 0.6);
    QCOMPARE(s.HJDMin, 0.4 - 0.002);
    // What is taken from the times at a load is reduced too.
    QCOMPARE(int(s.IdxMagMax), 6);
    QCOMPARE(s.FoldHJD, 0.5);
    QCOMPARE(s.Fourier.FourierPar(1), 0.4); // the brightest point of the still inverted magnitudes
    // A result is the day plus the method's time.
    PublishResult(4, 0.51234, 0.00012);
    QCOMPARE(s.Results(4).methodTime, 0.51234);
    QCOMPARE(s.Results(4).time, 2459123 + 0.51234);
    QCOMPARE(mainForm().text(4), QStringLiteral("2459123.51234"));
    QCOMPARE(TimeAxisName(), QStringLiteral("HJD \u2212 2459123"));
    QVERIFY(!LargeTimesWithoutOffset());
    QVERIFY(!WholeDaysSwitchPending());
}

void WholeDaysTest::offsetIsTheFirstDataRowsWholeDay()
{
    // The first data row in the file's order, not the earliest.
    QVERIFY(loadWithSwitch("HJD,Mag\n2459124.1,11\n2459123.9,12\n2459124.3,11\n", true));
    const Session& s = S();
    QCOMPARE(s.HJDOffset, 2459124.0);
    QCOMPARE(s.ReadHJD(1), 0.1);
    QCOMPARE(s.ReadHJD(2), -1.0 + 0.9);
    QCOMPARE(s.ReadHJD(3), 0.3);
}

void WholeDaysTest::negativeFirstTime()
{
    // Int rounds down: the whole day of -0.3 is -1.
    QVERIFY(loadWithSwitch("t,m\n-0.3,11\n0.2,12\n", true));
    QCOMPARE(S().HJDOffset, -1.0);
    QCOMPARE(S().ReadHJD(1), 1.0 - 0.3);
    QCOMPARE(S().ReadHJD(2), 1.0 + 0.2);
    QCOMPARE(TimeAxisName(), QStringLiteral("HJD + 1"));
}

void WholeDaysTest::dayFractionsAreUnchangedBySwitch()
{
    QVERIFY(loadWithSwitch(dipFile(""), false));
    const Session off = S();
    QVERIFY(loadWithSwitch(dipFile(""), true));
    const Session& on = S();
    QCOMPARE(on.HJDOffset, 0.0);
    QCOMPARE(on.NumOrig, off.NumOrig);
    for (int k = 1; k <= on.NumOrig; ++k) {
        QCOMPARE(on.ReadHJD(k), off.ReadHJD(k));
        QCOMPARE(on.Mag(k), off.Mag(k));
    }
    QCOMPARE(on.FoldHJD, off.FoldHJD);
    QCOMPARE(TimeAxisName(), QStringLiteral("HJD"));
}

void WholeDaysTest::curveWithoutPartsIsReducedByValue()
{
    test::freshSession();
    S().SubtractWholeDays = true;
    S().DataName = QStringLiteral("made.csv");
    LightCurve lc;
    lc.times = {2459500.25, 2459500.75};
    lc.mags = {10, 11};
    lc.rowCount = 2;
    lc.timeSystem = TimeSystem::BJD_TDB;
    InstallLightCurve(lc);
    QCOMPARE(S().HJDOffset, 2459500.0);
    QCOMPARE(S().ReadHJD(1), 0.25);
    QCOMPARE(S().ReadHJD(2), 0.75);
    QCOMPARE(S().TimesSystem, TimeSystem::BJD_TDB);
    QCOMPARE(TimeAxisName(), QStringLiteral("BJD \u2212 2459500"));
}

void WholeDaysTest::flipTakesEffectAtTheNextLoad()
{
    QVERIFY(loadWithSwitch(dipFile("2459123"), false));
    QVERIFY(LargeTimesWithoutOffset());
    QVERIFY(!WholeDaysSwitchPending());
    S().SubtractWholeDays = true;
    // The light curve keeps its times until it is loaded again.
    QVERIFY(WholeDaysSwitchPending());
    QCOMPARE(S().HJDOffset, 0.0);
    QCOMPARE(S().ReadHJD(1), 2459123.4);
    QVERIFY(LargeTimesWithoutOffset());
    QVERIFY(OpenDataFile(S().DataDir, S().DataName));
    QVERIFY(!WholeDaysSwitchPending());
    QVERIFY(!LargeTimesWithoutOffset());
    QCOMPARE(S().HJDOffset, 2459123.0);
    // And back.
    S().SubtractWholeDays = false;
    QVERIFY(WholeDaysSwitchPending());
    QVERIFY(OpenDataFile(S().DataDir, S().DataName));
    QCOMPARE(S().HJDOffset, 0.0);
    QCOMPARE(S().ReadHJD(1), 2459123.4);
}

void WholeDaysTest::largeTimesWarning_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("warned");
    QTest::newRow("day fractions") << QByteArray("t,m\n0.4,11\n0.6,12\n") << false;
    QTest::newRow("ten days is not above") << QByteArray("t,m\n9.5,11\n10,12\n") << false;
    QTest::newRow("a later row above") << QByteArray("t,m\n9.5,11\n10.01,12\n") << true;
    QTest::newRow("below minus ten") << QByteArray("t,m\n-10.5,11\n0,12\n") << true;
    QTest::newRow("five digits") << QByteArray("t,m\n59123.4,11\n59123.6,12\n") << true;
}

void WholeDaysTest::largeTimesWarning()
{
    QFETCH(QByteArray, text);
    QFETCH(bool, warned);
    QVERIFY(loadWithSwitch(text, false));
    QCOMPARE(LargeTimesWithoutOffset().has_value(), warned);
    QVERIFY(loadWithSwitch(text, true));
    QVERIFY(!LargeTimesWithoutOffset());
}

void WholeDaysTest::axisName_data()
{
    QTest::addColumn<int>("system");
    QTest::addColumn<double>("offset");
    QTest::addColumn<QString>("name");
    QTest::newRow("unstated") << int(TimeSystem::Unstated) << 0.0 << "HJD";
    QTest::newRow("HJD") << int(TimeSystem::HJD_UTC) << 0.0 << "HJD";
    QTest::newRow("BJD") << int(TimeSystem::BJD_TDB) << 0.0 << "BJD";
    QTest::newRow("JD with offset") << int(TimeSystem::JD_UTC) << 2459123.0 << "JD \u2212 2459123";
    QTest::newRow("five-digit offset") << int(TimeSystem::Unstated) << 59123.0 << "HJD \u2212 59123";
}

void WholeDaysTest::axisName()
{
    QFETCH(int, system);
    QFETCH(double, offset);
    QFETCH(QString, name);
    test::freshSession();
    S().TimesSystem = static_cast<TimeSystem>(system);
    S().HJDOffset = offset;
    QCOMPARE(TimeAxisName(), name);
    QCOMPARE(TimeSystemShortName(static_cast<TimeSystem>(system)), name.section(QLatin1Char(' '), 0, 0));
}

void WholeDaysTest::listenersHearLoadsAndResults()
{
    struct Heard {
        SessionChange::Kind kind;
        int method;
        int rows;
    };
    static std::vector<Heard> heard;
    static bool listening = false;
    if (!listening) {
        addSessionListener([](const SessionChange& c) {
            heard.push_back({c.kind, c.method, c.curve ? c.curve->rowCount : -99});
        });
        listening = true;
    }
    heard.clear();
    QVERIFY(loadWithSwitch(dipFile(""), false));
    // The load, then the open dialog's emptying of the boxes.
    QCOMPARE(int(heard.size()), 2);
    QCOMPARE(heard[0].kind, SessionChange::Loaded);
    QCOMPARE(heard[0].rows, 11);
    QCOMPARE(heard[1].kind, SessionChange::ResultChanged);
    QCOMPARE(heard[1].method, 0);
    heard.clear();
    PublishResult(3, 0.5, 0.001);
    ClearResult(5, true);
    QCOMPARE(int(heard.size()), 2);
    QCOMPARE(heard[0].kind, SessionChange::ResultChanged);
    QCOMPARE(heard[0].method, 3);
    QCOMPARE(heard[0].rows, -99);
    QCOMPARE(heard[1].method, 5);
}

QTEST_GUILESS_MAIN(WholeDaysTest)
#include "tst_wholedays.moc"
