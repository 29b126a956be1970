// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "times/TimeConversion.h"
#include "times/gui/TimeSystemDialog.h"

#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTest>

using namespace dip;
using namespace dip::times;

namespace {

struct Dialog {
    TimeSystemDialog dialog;
    std::vector<TimeToConvert> times;
    std::vector<std::optional<JulianDate>> converted;
    std::optional<TimeSystemChoice> choice;
    int emitted = 0;

    Dialog()
    {
        dialog.setTimesSource([this] { return times; });
        QObject::connect(&dialog, &TimeSystemDialog::converted, &dialog,
                         [this](const TimeSystemChoice& c, const std::vector<std::optional<JulianDate>>& t) {
                             choice = c;
                             converted = t;
                             ++emitted;
                         });
    }
    template <typename T>
    T* child(const char* name) const
    {
        return dialog.findChild<T*>(QLatin1String(name));
    }
    void type(const char* name, const QString& text) { child<QLineEdit>(name)->setText(text); }
    void pick(const char* name, const QString& system)
    {
        QComboBox* box = child<QComboBox>(name);
        box->setCurrentIndex(box->findText(system));
    }
    void press() { QTest::mouseClick(child<QPushButton>("cmdConvert"), Qt::LeftButton); }
    QString cell(int row, int column) const
    {
        const QTableWidgetItem* item = child<QTableWidget>("tblConverted")->item(row, column);
        return item ? item->text() : QString();
    }
};

JulianDate jd(const char* text)
{
    JulianDate t;
    parseJulianDate(QLatin1String(text), &t);
    return t;
}

} // namespace

class TimeSystemDialogTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void fieldsAndDefaults();
    void convertsEveryTime();
    void fieldProblems_data();
    void fieldProblems();
    void timesThatCannotBeConverted();
    void nothingPublishedYet();
    void closeOnlyHides();
};

void TimeSystemDialogTest::fieldsAndDefaults()
{
    Dialog d;
    QCOMPARE(d.dialog.windowTitle(), QStringLiteral("Time system"));
    QCOMPARE(d.child<QComboBox>("cboFileSystem")->currentText(), QStringLiteral("HJD(UTC)"));
    QCOMPARE(d.child<QComboBox>("cboReportSystem")->currentText(), QStringLiteral("BJD_TDB"));
    QCOMPARE(d.child<QComboBox>("cboFileSystem")->count(), 3);
    d.dialog.setFileSystem(TimeSystem::BJD_TDB);
    QCOMPARE(d.child<QComboBox>("cboFileSystem")->currentText(), QStringLiteral("BJD_TDB"));
    d.dialog.setFileSystem(TimeSystem::Unstated);
    QCOMPARE(d.child<QComboBox>("cboFileSystem")->currentText(), QStringLiteral("HJD(UTC)"));
    d.dialog.setReportSystem(TimeSystem::JD_UTC);
    QCOMPARE(d.child<QComboBox>("cboReportSystem")->currentText(), QStringLiteral("JD(UTC)"));
    QVERIFY(d.child<QPushButton>("cmdConvert")->isDefault());
    QVERIFY(d.child<QLabel>("lblProblem")->isHidden());
}

void TimeSystemDialogTest::convertsEveryTime()
{
    Dialog d;
    d.times = {{QStringLiteral("4. Kwee and van Woerden"), jd("2458739.9291169")},
               {QStringLiteral("Simple Mean"), jd("2458739.92912")}};
    d.dialog.show();
    d.type("txtRa", QStringLiteral("16:34:20.33"));
    d.type("txtDec", QStringLiteral("+57:09:44.3"));
    d.pick("cboFileSystem", QStringLiteral("BJD_TDB"));
    d.pick("cboReportSystem", QStringLiteral("HJD(UTC)"));
    d.press();
    QCOMPARE(d.emitted, 1);
    QCOMPARE(d.dialog.problem(), QString());
    QVERIFY(d.dialog.isVisible());
    // The README's example: CM Dra's minimum of 2019 in BJD_TDB is HJD(UTC) 2458739.9283185587.
    QCOMPARE(formatJulianDate(*d.converted[0], 10), QStringLiteral("2458739.9283185587"));
    QCOMPARE(d.cell(0, 0), QStringLiteral("4. Kwee and van Woerden"));
    QCOMPARE(d.cell(0, 1), QStringLiteral("2458739.92912"));
    QCOMPARE(d.cell(0, 2), QStringLiteral("2458739.92832"));
    QCOMPARE(d.cell(0, 3), QString::number(daysBetween(*d.converted[0], d.times[0].time.value()) * 86400, 'f', 3));
    QVERIFY(d.cell(0, 3).startsWith(QStringLiteral("-68.")));
    QCOMPARE(d.cell(1, 0), QStringLiteral("Simple Mean"));
    const QTableWidget* table = d.child<QTableWidget>("tblConverted");
    QCOMPARE(table->horizontalHeaderItem(1)->text(), QStringLiteral("BJD_TDB"));
    QCOMPARE(table->horizontalHeaderItem(2)->text(), QStringLiteral("HJD(UTC)"));
    // What was stated.
    QCOMPARE(d.choice->fileSystem, TimeSystem::BJD_TDB);
    QCOMPARE(d.choice->reportSystem, TimeSystem::HJD_UTC);
    QVERIFY(std::abs(d.choice->star.ra - (16 + 34 / 60.0 + 20.33 / 3600) * 15) < 1e-9);
    QVERIFY(!d.choice->site);
    // With a site, and the degrees form; Enter in a field converts.
    d.type("txtRa", QStringLiteral("248.5847083"));
    d.type("txtSite", QStringLiteral("49.398,8.720,570"));
    QTest::keyClick(d.child<QLineEdit>("txtSite"), Qt::Key_Return);
    QCOMPARE(d.emitted, 2);
    QVERIFY(d.choice->site);
    QCOMPARE(d.choice->site->height, 570.0);
    const TimeConverter converter(d.choice->star, d.choice->site);
    const Converted expected = converter.convert(d.times[1].time.value(), TimeSystem::BJD_TDB, TimeSystem::HJD_UTC);
    QCOMPARE(d.converted[1]->fraction, expected.time.fraction);
    // A field gone wrong takes the table away: it was for another star.
    d.type("txtDec", QStringLiteral("+97:09:44.3"));
    d.press();
    QCOMPARE(d.emitted, 2);
    QCOMPARE(d.child<QTableWidget>("tblConverted")->rowCount(), 0);
    QCOMPARE(d.dialog.problem(), QStringLiteral("Dec \"+97:09:44.3\": must not exceed 90"));
}

void TimeSystemDialogTest::fieldProblems_data()
{
    QTest::addColumn<QString>("ra");
    QTest::addColumn<QString>("dec");
    QTest::addColumn<QString>("site");
    QTest::addColumn<QString>("problem");
    QTest::addColumn<QString>("focus");
    QTest::newRow("no RA") << ""
                           << "57"
                           << ""
                           << "Give the star's right ascension and declination (J2000): the conversion depends on "
                              "where the star stands."
                           << "txtRa";
    QTest::newRow("no Dec") << "248"
                            << " "
                            << ""
                            << "Give the star's right ascension"
                            << "txtDec";
    QTest::newRow("RA beyond 24 h") << "25:00:00"
                                    << "57"
                                    << ""
                                    << "RA \"25:00:00\": must be below 24"
                                    << "txtRa";
    QTest::newRow("Dec beyond the pole") << "248"
                                         << "+91:00:00"
                                         << ""
                                         << "Dec \"+91:00:00\": must not exceed 90"
                                         << "txtDec";
    QTest::newRow("site of two numbers") << "248"
                                         << "57"
                                         << "49.4,8.7"
                                         << "Site \"49.4,8.7\": give LAT,LON,HEIGHT"
                                         << "txtSite";
}

void TimeSystemDialogTest::fieldProblems()
{
    QFETCH(QString, ra);
    QFETCH(QString, dec);
    QFETCH(QString, site);
    QFETCH(QString, problem);
    QFETCH(QString, focus);
    Dialog d;
    d.times = {{QStringLiteral("1. Parabolic Fit"), jd("2458739.9")}};
    d.dialog.show();
    QApplication::setActiveWindow(&d.dialog);
    d.type("txtRa", ra);
    d.type("txtDec", dec);
    d.type("txtSite", site);
    d.press();
    // Said in the dialog, which stays open; nothing converted, nothing stated.
    QVERIFY2(d.dialog.problem().startsWith(problem), qPrintable(d.dialog.problem()));
    QVERIFY(d.child<QLabel>("lblProblem")->isVisible());
    QVERIFY(d.dialog.isVisible());
    QCOMPARE(d.emitted, 0);
    QCOMPARE(d.child<QTableWidget>("tblConverted")->rowCount(), 0);
    QCOMPARE(QApplication::focusWidget(), d.child<QWidget>(qPrintable(focus)));
    // Put right, the problem goes.
    d.type("txtRa", QStringLiteral("248"));
    d.type("txtDec", QStringLiteral("57"));
    d.type("txtSite", QString());
    d.press();
    QCOMPARE(d.emitted, 1);
    QCOMPARE(d.dialog.problem(), QString());
    QVERIFY(d.child<QLabel>("lblProblem")->isHidden());
}

void TimeSystemDialogTest::timesThatCannotBeConverted()
{
    Dialog d;
    d.times = {{QStringLiteral("1. Parabolic Fit"), jd("59123.51258")},
               {QStringLiteral("4. Kwee and van Woerden"), jd("2459123.51235")},
               {QStringLiteral("Simple Mean"), std::nullopt}};
    d.type("txtRa", QStringLiteral("248"));
    d.type("txtDec", QStringLiteral("57"));
    QVERIFY(d.dialog.convert());
    QCOMPARE(d.emitted, 1);
    QVERIFY(!d.converted[0]);
    QVERIFY(d.converted[1]);
    QVERIFY(!d.converted[2]);
    QCOMPARE(d.cell(0, 2), QStringLiteral("\u2014"));
    QCOMPARE(d.cell(2, 1), QString());
    QCOMPARE(d.dialog.problem(),
             QStringLiteral("1. Parabolic Fit: 59123.51258 is not a full Julian date; a five-digit or reduced time "
                            "needs its days added back (59123.5 is 2459123.5)"));
}

void TimeSystemDialogTest::nothingPublishedYet()
{
    Dialog d;
    d.type("txtRa", QStringLiteral("248"));
    d.type("txtDec", QStringLiteral("57"));
    QVERIFY(d.dialog.convert());
    QCOMPARE(d.emitted, 1);
    QVERIFY(d.converted.empty());
    QVERIFY(d.dialog.problem().startsWith(QStringLiteral("No result is published yet")));
}

void TimeSystemDialogTest::closeOnlyHides()
{
    Dialog d;
    d.dialog.show();
    d.type("txtRa", QStringLiteral("248"));
    QTest::mouseClick(d.child<QPushButton>("cmdClose"), Qt::LeftButton);
    QVERIFY(!d.dialog.isVisible());
    // What was typed is there the next time.
    d.dialog.show();
    QCOMPARE(d.child<QLineEdit>("txtRa")->text(), QStringLiteral("248"));
}

QTEST_MAIN(TimeSystemDialogTest)
#include "tst_timesystemdialog.moc"
