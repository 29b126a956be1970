// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers

#include "analysis/JsonText.h"
#include "analysis/ReportLine.h"
#include "analysis/ResultExport.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <cmath>
#include <limits>

using namespace dip;

namespace {

const double none = std::numeric_limits<double>::quiet_NaN();

ExportRow kweeRow()
{
    // CM Dra, E = 7024 of TESS sector 16, against T0 = 2458738.6607358 - 7023 P, P = 1.26838965.
    ExportRow r;
    r.method = 4;
    r.time = 2458739.9291169;
    r.error = 0.0000125;
    r.ticked = true;
    r.system = TimeSystem::BJD_TDB;
    r.oc = OcValue{7024, 2458739.92912545, -0.00000855};
    r.points = 30;
    return r;
}

} // namespace

class TestExport : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void csvHeader();
    void csvLine_data();
    void csvLine();
    void csvWholeTable();
    void cycleText_data();
    void cycleText();
    void jsonFieldsParse();
    void jsonNumbersAndStrings_data();
    void jsonNumbersAndStrings();
    void reportLineColumns();
    void reportLine_data();
    void reportLine();
    void reportLongNameKeepsWhole();
    void reportLinesEndEachLine();
    void names();
};

void TestExport::csvHeader()
{
    QCOMPARE(resultsCsvHeader(),
             QStringLiteral("method,name,time,error,ticked,system,E,o_c,o_c_min,bootstrap_error,points\n"));
}

void TestExport::csvLine_data()
{
    QTest::addColumn<int>("which");
    QTest::addColumn<QString>("expected");
    QTest::newRow("Kwee with O-C") << 0
                                   << "4,KvW,2458739.92911690,0.00001250,1,BJD_TDB,7024,-0.00000855,-0.01231,,30\n";
    QTest::newRow("secondary, bootstrap")
        << 1 << "5,Fourier,0.51234000,0.00012000,0,unstated,12.5,0.00781250,11.25000,0.00020000,\n";
    QTest::newRow("no error, no ephemeris") << 2 << "6,sliding,0.73410000,,0,HJD_UTC,,,,,171\n";
}

void TestExport::csvLine()
{
    QFETCH(int, which);
    QFETCH(QString, expected);
    ExportRow r = kweeRow();
    if (which == 1) {
        r = ExportRow();
        r.method = 5;
        r.time = 0.51234;
        r.error = 0.00012;
        r.oc = OcValue{12.5, 0.5045275, 0.0078125}; // 2^-7 d = 11.25 min
        r.bootstrapError = 0.0002;
    } else if (which == 2) {
        r = ExportRow();
        r.method = 6;
        r.time = 0.7341;
        r.error = none;
        r.system = TimeSystem::HJD_UTC;
        r.points = 171;
    }
    QCOMPARE(resultCsvLine(r), expected);
}

void TestExport::csvWholeTable()
{
    const QString table = resultsCsv({kweeRow(), kweeRow()});
    const QStringList lines = table.split(QLatin1Char('\n'));
    QCOMPARE(lines.size(), 4); // header, two rows, and the empty text after the last line end
    QCOMPARE(lines[0] + QLatin1Char('\n'), resultsCsvHeader());
    QCOMPARE(lines[1] + QLatin1Char('\n'), resultCsvLine(kweeRow()));
    QCOMPARE(lines[3], QString());
    // Every line has as many fields as the header.
    QCOMPARE(lines[1].count(QLatin1Char(',')), lines[0].count(QLatin1Char(',')));
}

void TestExport::cycleText_data()
{
    QTest::addColumn<double>("cycle");
    QTest::addColumn<QString>("text");
    QTest::newRow("primary") << 7024.0 << "7024";
    QTest::newRow("secondary") << 7024.5 << "7024.5";
    QTest::newRow("negative secondary") << -3.5 << "-3.5";
    QTest::newRow("zero") << 0.0 << "0";
    QTest::newRow("large") << 1234567.0 << "1234567";
}

void TestExport::cycleText()
{
    QFETCH(double, cycle);
    QFETCH(QString, text);
    QCOMPARE(dip::cycleText(cycle), text);
}

void TestExport::jsonFieldsParse()
{
    JsonObject half;
    addOcFields(half, OcValue{7024.5, 0, -0.0078125});
    QCOMPARE(half.text(), QStringLiteral("{\"cycle\": 7024.5, \"o_c\": -0.0078125}"));
    // After other fields, they read back as the values.
    JsonObject kwee;
    kwee.add(QStringLiteral("method"), QStringLiteral("4"));
    addOcFields(kwee, kweeRow().oc.value());
    const QString object = kwee.text();
    QJsonParseError error;
    const QJsonDocument doc = QJsonDocument::fromJson(object.toUtf8(), &error);
    QCOMPARE(error.error, QJsonParseError::NoError);
    QCOMPARE(doc.object().value(QStringLiteral("cycle")).toDouble(), 7024.0);
    QCOMPARE(doc.object().value(QStringLiteral("o_c")).toDouble(), -0.00000855);
}

void TestExport::jsonNumbersAndStrings_data()
{
    QTest::addColumn<QString>("actual");
    QTest::addColumn<QString>("expected");
    QTest::newRow("whole") << jsonNumber(7024) << "7024";
    QTest::newRow("binary fraction") << jsonNumber(-0.0078125) << "-0.0078125";
    QTest::newRow("17 digits") << jsonNumber(0.1) << "0.10000000000000001";
    QTest::newRow("not finite") << jsonNumber(none) << "null";
    QTest::newRow("infinite") << jsonNumber(INFINITY) << "null";
    QTest::newRow("plain string") << jsonString(QStringLiteral("CM Dra")) << "\"CM Dra\"";
    QTest::newRow("escapes") << jsonString(QStringLiteral("a\"b\\c\nd\te\x01")) << "\"a\\\"b\\\\c\\nd\\te\\u0001\"";
}

void TestExport::jsonNumbersAndStrings()
{
    QFETCH(QString, actual);
    QFETCH(QString, expected);
    QCOMPARE(actual, expected);
}

void TestExport::reportLineColumns()
{
    const QString line =
        dip::reportLine(kweeRow(), {QStringLiteral("CM Dra"), QStringLiteral("TESS"), QStringLiteral("TES")});
    QCOMPARE(line.size(), 94);
    // Columns counted from 1, as the header of the layout documents them.
    auto col = [&](int from, int to) { return line.mid(from - 1, to - from + 1); };
    QCOMPARE(col(1, 20), QStringLiteral("CM Dra              "));
    QCOMPARE(col(22, 34), QStringLiteral("2458739.92912"));
    QCOMPARE(col(36, 38), QStringLiteral("BJD"));
    QCOMPARE(col(40, 46), QStringLiteral("0.00001"));
    QCOMPARE(col(48, 56), QStringLiteral("     7024"));
    QCOMPARE(col(58, 65), QStringLiteral("-0.00001"));
    QCOMPARE(col(67, 72), QStringLiteral("TESS  "));
    QCOMPARE(col(74, 79), QStringLiteral("TES   "));
    QCOMPARE(col(81, 88), QStringLiteral("KvW     "));
    QCOMPARE(col(90, 94), QStringLiteral("   30"));
    for (const int blank : {21, 35, 39, 47, 57, 66, 73, 80, 89})
        QCOMPARE(line.at(blank - 1), QLatin1Char(' '));
}

void TestExport::reportLine_data()
{
    QTest::addColumn<int>("which");
    QTest::addColumn<QString>("expected");
    QTest::newRow("secondary, late, HJD")
        << 1 << "V566 Oph             2456789.41235 HJD 0.00021    1234.5 +0.00345 V      ABC    Fourier    120";
    QTest::newRow("no ephemeris, no error, unstated system")
        << 2 << "                           0.51234 HJD                                          parabola      ";
    QTest::newRow("geocentric JD")
        << 3 << "X                    2456789.41235 JD  0.00021       -12 -0.01000 Ic            bisector    40";
}

void TestExport::reportLine()
{
    QFETCH(int, which);
    QFETCH(QString, expected);
    ExportRow r;
    ReportInfo info;
    if (which == 1 || which == 3) {
        r.method = 5;
        r.time = 2456789.412345;
        r.error = 0.000206;
        r.system = TimeSystem::HJD_UTC;
        r.oc = OcValue{1234.5, 0, 0.003451};
        r.points = 120;
        info = {QStringLiteral("V566 Oph"), QStringLiteral("V"), QStringLiteral("ABC")};
    }
    if (which == 2) {
        r.method = 1;
        r.time = 0.51234;
    }
    if (which == 3) {
        r.method = 3;
        r.system = TimeSystem::JD_UTC;
        r.oc = OcValue{-12, 0, -0.01};
        r.points = 40;
        info = {QStringLiteral("X"), QStringLiteral("Ic"), QString()};
    }
    QCOMPARE(dip::reportLine(r, info), expected);
}

void TestExport::reportLongNameKeepsWhole()
{
    const QString name = QStringLiteral("TIC 123456789 = ASASSN-V J0000");
    const QString line = dip::reportLine(kweeRow(), {name, QString(), QString()});
    QVERIFY(line.startsWith(name + QLatin1Char(' ')));
    QCOMPARE(line.size(), 94 + name.size() - 20);
}

void TestExport::reportLinesEndEachLine()
{
    const ReportInfo info{QStringLiteral("CM Dra"), QStringLiteral("TESS"), QString()};
    const QString text = reportLines({kweeRow(), kweeRow()}, info);
    QCOMPARE(text, dip::reportLine(kweeRow(), info) + "\n" + dip::reportLine(kweeRow(), info) + "\n");
}

void TestExport::names()
{
    QCOMPARE(methodName(1), QStringLiteral("parabola"));
    QCOMPARE(methodName(3), QStringLiteral("bisector"));
    QCOMPARE(methodName(4), QStringLiteral("KvW"));
    QCOMPARE(methodName(6), QStringLiteral("sliding"));
    QCOMPARE(methodName(0), QString());
    QCOMPARE(methodName(7), QString());
    QCOMPARE(timeSystemWord(TimeSystem::Unstated), QStringLiteral("unstated"));
    QCOMPARE(timeSystemWord(TimeSystem::JD_UTC), QStringLiteral("JD_UTC"));
    QCOMPARE(reportSystem(TimeSystem::Unstated), QStringLiteral("HJD"));
    QCOMPARE(reportSystem(TimeSystem::BJD_TDB), QStringLiteral("BJD"));
}

QTEST_APPLESS_MAIN(TestExport)
#include "tst_export.moc"
