// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "plotting/AxisLabels.h"
#include "plotting/PlotBox.h"
#include "session/Session.h"
#include "session/WholeDays.h"
#include "support/CanvasRecorder.h"
#include "support/TestSupport.h"

using namespace dip;

using Recorder = test::CanvasRecorder;

// The time axis named with the whole days set apart, laid out as every axis text is: on the
// form, beside the plot, clear of the numbers.
class TimeAxisNameTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { test::freshSession(); }
    void nameWithOffset_data();
    void nameWithOffset();
};

void TimeAxisNameTest::nameWithOffset_data()
{
    QTest::addColumn<int>("system");
    QTest::addColumn<double>("offset");
    QTest::addColumn<double>("width");
    QTest::addColumn<QString>("name");
    QTest::newRow("HJD, small window") << int(TimeSystem::Unstated) << 2459123.0 << 9600.0 << "HJD \u2212 2459123";
    QTest::newRow("BJD, large window") << int(TimeSystem::BJD_TDB) << 2458739.0 << 18000.0 << "BJD \u2212 2458739";
    QTest::newRow("JD, five digits") << int(TimeSystem::JD_UTC) << 59123.0 << 9600.0 << "JD \u2212 59123";
    QTest::newRow("no offset") << int(TimeSystem::Unstated) << 0.0 << 9600.0 << "HJD";
}

void TimeAxisNameTest::nameWithOffset()
{
    QFETCH(int, system);
    QFETCH(double, offset);
    QFETCH(double, width);
    QFETCH(QString, name);
    S().TimesSystem = static_cast<TimeSystem>(system);
    S().HJDOffset = offset;
    Recorder rec;
    const double height = width * 0.72;
    rec.setFormSize(width, height);
    SetStandardPlotBox(rec, width, height);
    // The reduced times of one night.
    const PlotScale scale{0.398, 0.204, 11.2, 0.8};
    DrawAxes(rec, scale, scale.tr, scale.t0 + scale.tr);
    const PlotTransform& s = rec.transform();
    QStringList names;
    int timeNumbers = 0;
    for (const Recorder::Text& t : rec.texts) {
        QVERIFY2(t.left >= 0 && t.right <= width && t.top >= 0, qPrintable(t.text));
        const bool inside =
            t.left < s.PlotRight && t.right > s.PlotLeft && t.top < s.PlotBottom && t.bottom > s.PlotTop;
        QVERIFY2(!inside, qPrintable(t.text));
        bool number = false;
        t.text.toDouble(&number);
        if (!number)
            names << t.text;
        else if (!t.up)
            ++timeNumbers;
    }
    QCOMPARE(names, (QStringList{name, QStringLiteral("Magnitude")}));
    QVERIFY(timeNumbers >= 3);
    for (int i = 0; i < rec.texts.size(); ++i)
        for (int j = i + 1; j < rec.texts.size(); ++j)
            QVERIFY2(!rec.texts[i].overlaps(rec.texts[j]), qPrintable(rec.texts[i].text + " / " + rec.texts[j].text));
}

QTEST_GUILESS_MAIN(TimeAxisNameTest)
#include "tst_timeaxisname.moc"
