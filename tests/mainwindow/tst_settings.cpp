// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "mainwindow/Settings.h"
#include "session/Session.h"
#include "support/TestSupport.h"

#include <QDir>
#include <QFile>

using namespace dip;
using namespace dip::test;

namespace {

using Placements = QList<QList<int>>; // seven lines of four values

Placements winPos()
{
    Placements all;
    for (int line = 1; line <= 7; ++line) {
        QList<int> values;
        for (int v = 1; v <= 4; ++v)
            values << S().WinPos(line, v);
        all << values;
    }
    return all;
}

Placements zeros() { return Placements(7, QList<int>(4, 0)); }

// Zeros with the given lines replaced.
Placements with(std::initializer_list<std::pair<int, QList<int>>> lines)
{
    Placements p = zeros();
    for (const auto& [line, values] : lines)
        p[line - 1] = values;
    return p;
}

QByteArray readFile(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

} // namespace

class SettingsTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { resetSession(); }
    void fileName();
    void read_data();
    void read();
    void readMissingFile();
    void write();
    void writeUnwritableRaises();
    void roundTrip();
};

void SettingsTest::fileName() { QCOMPARE(settingsFileName(), QStringLiteral("zzzdip.ini")); }

void SettingsTest::read_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<Placements>("expected");

    const QByteArray full = "1,2,3,4\n5,6,7,8\n9,10,11,12\n13,14,15,16\n17,18,19,20\n21,22,23,24\n25,26,27,28\n";
    Placements all;
    for (int line = 0; line < 7; ++line)
        all << QList<int>{4 * line + 1, 4 * line + 2, 4 * line + 3, 4 * line + 4};
    QTest::newRow("seven lines") << full << all;
    QTest::newRow("CRLF line ends") << QByteArray(full).replace("\n", "\r\n") << all;
    QTest::newRow("negative and extreme values")
        << QByteArray("-32768,32767,0,-1\n0,0,0,0\n0,0,0,0\n0,0,0,0\n0,0,0,0\n0,0,0,0\n0,0,0,0\n")
        << with({{1, {-32768, 32767, 0, -1}}});
    QTest::newRow("blanks around values and blank lines") << QByteArray(" 120 , 240 ,3000, 2000\n\n  \n5,6,7,8\n")
                                                          << with({{1, {120, 240, 3000, 2000}}, {2, {5, 6, 7, 8}}});
    QTest::newRow("short file: the rest stays 0") << QByteArray("1,2,3,4\n5,6,7,8\n9,10,11,12\n")
                                                  << with({{1, {1, 2, 3, 4}}, {2, {5, 6, 7, 8}}, {3, {9, 10, 11, 12}}});
    QTest::newRow("empty file") << QByteArray() << zeros();
    QTest::newRow("bad number: values before it kept, the rest stays 0")
        << QByteArray("1,2,3,4\n5,6,x,8\n9,10,11,12\n") << with({{1, {1, 2, 3, 4}}, {2, {5, 6, 0, 0}}});
    QTest::newRow("beyond 16 bits stops the reading")
        << QByteArray("1,2,3,4\n40000,6,7,8\n") << with({{1, {1, 2, 3, 4}}});
    QTest::newRow("fractions round halves to even") << QByteArray("1.5,2.5,-0.5,3.4\n") << with({{1, {2, 2, 0, 3}}});
    QTest::newRow("empty fields read as 0")
        << QByteArray(",7,,9\n1,2,3,4\n") << with({{1, {0, 7, 0, 9}}, {2, {1, 2, 3, 4}}});
    QTest::newRow("quoted number") << QByteArray("\"12\",2,3,4\n") << with({{1, {12, 2, 3, 4}}});
    // Values are read one after the other across line ends, so a line with five values shifts
    // every later one.
    QTest::newRow("five values on a line")
        << QByteArray("1,2,3,4,5\n6,7,8\n") << with({{1, {1, 2, 3, 4}}, {2, {5, 6, 7, 8}}});
}

void SettingsTest::read()
{
    QFETCH(QByteArray, content);
    QFETCH(Placements, expected);
    DataFolder folder;
    const QString path = folder.write(QStringLiteral("zzzdip.ini"), content);
    ReadSettings(path);
    QCOMPARE(winPos(), expected);
}

void SettingsTest::readMissingFile()
{
    DataFolder folder;
    ReadSettings(folder.path() + QStringLiteral("/zzzdip.ini"));
    QCOMPARE(winPos(), zeros());
    ReadSettings(folder.path() + QStringLiteral("/no such folder/zzzdip.ini"));
    QCOMPARE(winPos(), zeros());
}

void SettingsTest::write()
{
    DataFolder folder;
    const QString path =
        folder.write(QStringLiteral("zzzdip.ini"), "old content that is replaced entirely\n1\n2\n3\n4\n5\n6\n7\n8\n");
    for (int line = 1; line <= 7; ++line)
        for (int v = 1; v <= 4; ++v)
            S().WinPos(line, v) = rt::Integer((line % 2 ? 1 : -1) * (line * 1000 + v));
    S().WinPos(6, 1) = -32768;
    S().WinPos(6, 2) = 32767;
    WriteSettings(path);
    QByteArray expected;
    for (int line = 1; line <= 7; ++line) {
        QStringList values;
        for (int v = 1; v <= 4; ++v)
            values << QString::number(S().WinPos(line, v));
        expected += values.join(QLatin1Char(',')).toLatin1() + '\n';
    }
    QVERIFY(expected.startsWith("1001,1002,1003,1004\n-2001,-2002,-2003,-2004\n"));
    QVERIFY(expected.contains("\n-32768,32767,-6003,-6004\n"));
    QCOMPARE(readFile(path), expected);
}

void SettingsTest::writeUnwritableRaises()
{
    DataFolder folder;
    DIP_EXPECT_RUNTIME_ERROR(WriteSettings(folder.path() + QStringLiteral("/missing/zzzdip.ini")), 75);
    DIP_EXPECT_RUNTIME_ERROR(WriteSettings(folder.path()), 75); // a folder, not a file
}

void SettingsTest::roundTrip()
{
    DataFolder folder;
    const QString path = folder.path() + QStringLiteral("/zzzdip.ini");
    for (int line = 1; line <= 7; ++line)
        for (int v = 1; v <= 4; ++v)
            S().WinPos(line, v) = rt::Integer(line * 37 - v * 501);
    const Placements written = winPos();
    WriteSettings(path);
    resetSession();
    QCOMPARE(winPos(), zeros());
    ReadSettings(path);
    QCOMPARE(winPos(), written);
}

QTEST_GUILESS_MAIN(SettingsTest)
#include "tst_settings.moc"
