// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "session/LoadDataFile.h"
#include "session/MainForm.h"
#include "session/Procedures.h"
#include "session/Session.h"
#include "support/TestSupport.h"

#include <QDir>

using namespace dip;

class ReaderTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void headerLineSkipped();
    void numericFirstLineWithMoreCommasSkipped();
    void exponentFirstLineIsHeader();
    void numericFirstLineRead();
    void thousandRowsLoad();
    void thousandAndOneRowsFail();
    void sixCommasGiveMinusOne();
    void noCommaOnLineTwo();
    void plusMagsAfterEveryLoad();
    void fourierStartFromInvertedMagnitudes();
    void windowEffects();
    void lineEnds_data();
    void lineEnds();
    void blankLinesSkipped();
    void blankLinesDoNotCountTowardTheLimit();
    void fieldsAsAStream();
    void rowCutShortByEndOfFile();
    void emptyFieldReadsZero();
    void quotedFields();
    void textFieldsRaiseTypeMismatch_data();
    void textFieldsRaiseTypeMismatch();
    void extraColumnsDiscarded();
    void missingFileAndFolder();
    void fewerThanTwoLines();
    void pathJoinedWithSeparator();
    void readCsvIsAValue_data();
    void readCsvIsAValue();
    void readCsvWithoutLimit();
    void installingMoreThanThousandRowsFails();
    void installedValueLoadsAsTheReaderDoes();
};

void ReaderTest::headerLineSkipped()
{
    QVERIFY(test::loadText("HJD,Mag\n2451234.5678,12.34\n2451234.5778,12.54\n2451234.5878,12.44\n"));
    QCOMPARE(int(S().NumOrig), 3);
    QCOMPARE(S().HJD(1), 2451234.5678);
    QCOMPARE(S().Mag(3), 12.44);
}

void ReaderTest::numericFirstLineWithMoreCommasSkipped()
{
    QVERIFY(test::loadText("2451234.5678,12.34,0.01\n2451234.5778,12.54\n2451234.5878,12.44\n"));
    QCOMPARE(int(S().NumOrig), 2);
    QCOMPARE(S().HJD(1), 2451234.5778);
}

void ReaderTest::exponentFirstLineIsHeader()
{
    QVERIFY(test::loadText("2.4512345678E+06,12.34\n2451234.5778,12.54\n2451234.5878,12.44\n"));
    QCOMPARE(int(S().NumOrig), 2);
    QCOMPARE(S().HJD(1), 2451234.5778);
}

void ReaderTest::numericFirstLineRead()
{
    QVERIFY(test::loadText(" +0.5, -1.25\n0.6,2\n"));
    QCOMPARE(int(S().NumOrig), 2);
    QCOMPARE(S().ReadHJD(1), 0.5);
    QCOMPARE(S().ReadMag(1), -1.25);
}

namespace {
QByteArray rows(int n)
{
    QByteArray out;
    for (int i = 1; i <= n; ++i)
        out += QByteArray::number(0.001 * i, 'f', 3) + ',' + QByteArray::number(10 + (i % 7) * 0.1, 'f', 2) + '\n';
    return out;
}
} // namespace

void ReaderTest::thousandRowsLoad()
{
    QVERIFY(test::loadText(rows(1000)));
    QCOMPARE(int(S().NumOrig), 1000);
    QCOMPARE(int(S().NumPts), 1000);
    QCOMPARE(S().HJD(1000), 1.0);
}

void ReaderTest::thousandAndOneRowsFail() { DIP_EXPECT_RUNTIME_ERROR(test::loadText(rows(1001)), 9); }

void ReaderTest::sixCommasGiveMinusOne()
{
    QVERIFY(test::loadText("1,2,3,4,5,6,7\n1,2,3,4,5,6,7\n1,2,3,4,5,6,7\n"));
    QCOMPARE(int(S().NumOrig), -1);
    QCOMPARE(mainForm().origCountLabel(), QStringLiteral("-1"));
    // The sign change at the end of the load compacts zero points.
    QCOMPARE(int(S().NumPts), 0);
    QCOMPARE(mainForm().editedCountLabel(), QStringLiteral("0"));
}

void ReaderTest::noCommaOnLineTwo()
{
    QVERIFY(test::loadText("0.1,10\n0.2,11\n0.3,10.5\n", QStringLiteral("first.csv")));
    mainForm().setText(1, QStringLiteral("0.2"));
    const QString title = mainForm().title();
    test::MessageRecorder recorder;
    test::DataFolder folder;
    folder.write(QStringLiteral("bad.txt"), "0.1 10\n0.2 11\n");
    const double hjdBefore = S().HJD(2);
    QVERIFY(!OpenDataFile(folder.path(), QStringLiteral("bad.txt")));
    QCOMPARE(recorder.messages(),
             QStringList{QStringLiteral("Sorry - your data file needs to be in the Comma Separated Variables format.  "
                                        "See [menu] Help > Help - Data Files for details.")});
    QCOMPARE(recorder.titles(), QStringList{QStringLiteral("Dipscope")});
    QCOMPARE(int(S().NumOrig), 3);
    QCOMPARE(S().HJD(2), hjdBefore);
    QCOMPARE(mainForm().title(), title);
    // The open dialog still empties the result boxes.
    QCOMPARE(mainForm().text(1), QString());
}

void ReaderTest::plusMagsAfterEveryLoad()
{
    QVERIFY(test::loadText("0.1,10\n0.2,12\n0.3,11\n"));
    mainForm().showMagOption(1);
    ApplyMagSense(1);
    QCOMPARE(int(S().MagSign), -1);
    test::DataFolder folder;
    folder.write(QStringLiteral("again.csv"), "0.1,10\n0.2,12\n0.3,11\n");
    QVERIFY(OpenDataFile(folder.path(), QStringLiteral("again.csv")));
    QCOMPARE(int(S().MagSign), 1);
    QCOMPARE(mainForm().magOption(), 0);
    QCOMPARE(S().Mag(2), 12.0);
    QCOMPARE(S().OrigMag(2), 12.0);
    QCOMPARE(int(S().IdxMagMax), 2);
    QCOMPARE(S().FoldHJD, 0.2);
    QCOMPARE(S().MagMax, 12.0);
    QCOMPARE(S().FullMagMin, 10.0);
}

void ReaderTest::fourierStartFromInvertedMagnitudes()
{
    // The start values are set while the magnitudes are still inverted: parameter 1 is the
    // time of the brightest point and parameter 2 its negated magnitude.
    QVERIFY(test::loadText("0.1,10.5\n0.2,12\n0.3,10\n0.4,11\n"));
    const FourierState& f = S().Fourier;
    QCOMPARE(f.FourierPar(1), 0.3);
    QCOMPARE(f.FourierPar(2), -10.0);
    QCOMPARE(f.FourierPar(3), 25.0);
    QCOMPARE(f.FourierPar(4), 0.2);
    QCOMPARE(f.FourierPar(5), 0.1);
    QCOMPARE(f.FourierPar(6), 0.05);
    QCOMPARE(f.FourierPar(7), 0.01);
    QCOMPARE(f.FourierPar(8), 0.005);
    QCOMPARE(f.FitSig(4), 0.01);
    QCOMPARE(f.FitSig(5), 0.0);
    QCOMPARE(f.Alamda, -1.0);
    QCOMPARE(int(f.ParEdited(8)), int(rt::True));
    // The session itself is put right by "+Mags".
    QCOMPARE(int(S().IdxMagMax), 2);
    QCOMPARE(S().FoldHJD, 0.2);
}

void ReaderTest::windowEffects()
{
    test::freshSession();
    MainForm& form = mainForm();
    for (int k = 1; k <= 16; ++k)
        form.setText(k, QStringLiteral("x"));
    for (int k = 1; k <= 6; ++k)
        form.setChecked(k, true);
    S().ParabolaPick.RangeSet = rt::True;
    S().ParabolaPick.LeftIdx = 7;
    S().AvgPoints = 5;
    test::DataFolder folder;
    folder.write(QStringLiteral("w.csv"), "0.1,10\n0.2,12\n0.3,11\n");
    QVERIFY(OpenDataFile(folder.path(), QStringLiteral("w.csv")));
    QCOMPARE(form.title(), QStringLiteral("Dipscope - w.csv"));
    for (int k = 1; k <= 16; ++k)
        QCOMPARE(form.text(k), QString());
    for (int k = 1; k <= 6; ++k)
        QVERIFY(!form.checked(k));
    QCOMPARE(form.origCountLabel(), QStringLiteral("3"));
    QCOMPARE(form.editedCountLabel(), QStringLiteral("3"));
    QCOMPARE(int(S().ParabolaPick.RangeSet), 0);
    QCOMPARE(int(S().ParabolaPick.LeftIdx), 7); // indexes are never reset
    QCOMPARE(int(S().AvgPoints), 1);
    QCOMPARE(S().DataName, QStringLiteral("w.csv"));
}

void ReaderTest::lineEnds_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("LF") << QByteArray("0.1,10\n0.2,12\n0.3,11\n");
    QTest::newRow("CRLF") << QByteArray("0.1,10\r\n0.2,12\r\n0.3,11\r\n");
    QTest::newRow("CR") << QByteArray("0.1,10\r0.2,12\r0.3,11\r");
    QTest::newRow("no final line end") << QByteArray("0.1,10\n0.2,12\n0.3,11");
}

void ReaderTest::lineEnds()
{
    QFETCH(QByteArray, content);
    QVERIFY(test::loadText(content));
    // A trailing CR never makes line 1 a header, so all three rows are read.
    QCOMPARE(int(S().NumOrig), 3);
    QCOMPARE(S().HJD(3), 0.3);
    QCOMPARE(S().Mag(3), 11.0);
}

void ReaderTest::blankLinesSkipped()
{
    QVERIFY(test::loadText("\n  \nHJD,Mag\n\n0.1,10\n \t \n0.2,12\n\n0.3,11\n\n\n  \n"));
    QCOMPARE(int(S().NumOrig), 3);
    QCOMPARE(S().HJD(2), 0.2);
}

void ReaderTest::blankLinesDoNotCountTowardTheLimit()
{
    QByteArray content;
    for (int i = 1; i <= 1000; ++i)
        content += QByteArray::number(i) + ",10\n\n";
    QVERIFY(test::loadText(content));
    QCOMPARE(int(S().NumOrig), 1000);
}

void ReaderTest::fieldsAsAStream()
{
    // Line 2 has two commas, so every row is read as three fields: a short row takes its
    // missing field from the next line.
    QVERIFY(test::loadText("0.1,10,1\n0.2,12,2\n0.3,11\n0.4\n0.5,13,5\n"));
    QCOMPARE(int(S().NumOrig), 4);
    QCOMPARE(S().ReadHJD(3), 0.3);
    QCOMPARE(S().ReadMag(3), 11.0);
    QCOMPARE(S().ReadHJD(4), 0.5); // 0.4 was the third field of row 3
    QCOMPARE(S().ReadMag(4), 13.0);
}

void ReaderTest::rowCutShortByEndOfFile()
{
    DIP_EXPECT_RUNTIME_ERROR(test::loadText("0.1,10,1\n0.2,12,2\n0.3,11\n"), 62);
}

void ReaderTest::emptyFieldReadsZero()
{
    QVERIFY(test::loadText("0.1,10\n0.2,\n,11\n"));
    QCOMPARE(S().ReadMag(2), 0.0);
    QCOMPARE(S().ReadHJD(3), 0.0);
    QCOMPARE(S().ReadMag(3), 11.0);
}

void ReaderTest::quotedFields()
{
    // A comma inside quotes does not end the field.
    QVERIFY(test::loadText("HJD,Mag,Note\n\"0.1\",\"10\",\"x\"\n0.2,12,\"note, with comma\"\n"));
    QCOMPARE(int(S().NumOrig), 2);
    QCOMPARE(S().ReadHJD(1), 0.1);
    QCOMPARE(S().ReadMag(1), 10.0);
    QCOMPARE(S().ReadHJD(2), 0.2);
}

void ReaderTest::textFieldsRaiseTypeMismatch_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("quoted text time") << QByteArray("0.1,10\n\"abc\",12\n");
    QTest::newRow("unquoted text magnitude") << QByteArray("0.1,10\n0.2,bad\n");
    QTest::newRow("number with trailing text") << QByteArray("0.1,10\n0.2,12x\n");
}

void ReaderTest::textFieldsRaiseTypeMismatch()
{
    QFETCH(QByteArray, content);
    DIP_EXPECT_RUNTIME_ERROR(test::loadText(content), 13);
}

void ReaderTest::extraColumnsDiscarded()
{
    // Text in columns 3 to 6 is read and thrown away.
    QVERIFY(test::loadText("0.1,10,1,2,3,4\n0.2,12,e,f,g,h\n0.3,11,1,2,3,4\n"));
    QCOMPARE(int(S().NumOrig), 3);
    QCOMPARE(S().Mag(3), 11.0);
}

void ReaderTest::missingFileAndFolder()
{
    test::freshSession();
    test::DataFolder folder;
    DIP_EXPECT_RUNTIME_ERROR(OpenDataFile(folder.path(), QStringLiteral("nothing.csv")), 53);
    DIP_EXPECT_RUNTIME_ERROR(OpenDataFile(folder.path() + QStringLiteral("/no/such"), QStringLiteral("x.csv")), 76);
}

void ReaderTest::fewerThanTwoLines()
{
    DIP_EXPECT_RUNTIME_ERROR(test::loadText("0.1,10\n"), 62);
    DIP_EXPECT_RUNTIME_ERROR(test::loadText(""), 62);
    DIP_EXPECT_RUNTIME_ERROR(test::loadText("0.1,10\n\n   \n"), 62);
}

void ReaderTest::pathJoinedWithSeparator()
{
    QVERIFY(test::loadText("0.1,10\n0.2,12\n", QStringLiteral("p.csv")));
    QCOMPARE(S().DataPath, S().DataDir + QDir::separator() + QStringLiteral("p.csv"));
}

void ReaderTest::readCsvIsAValue_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("commas");
    QTest::addColumn<bool>("skipped");
    QTest::addColumn<int>("rowCount");
    QTest::addColumn<double>("firstTime");
    QTest::newRow("header") << QByteArray("HJD,Mag\n0.5,12.3\n0.6,12.4\n") << 1 << true << 2 << 0.5;
    QTest::newRow("first line shaped unlike the second")
        << QByteArray("0.4,1,2\n0.5,12.3\n0.6,12.4\n") << 1 << true << 2 << 0.5;
    QTest::newRow("no header") << QByteArray("0.4,12.2\n0.5,12.3\n") << 1 << false << 2 << 0.4;
    QTest::newRow("three columns") << QByteArray("0.4,12.2,0.01\n0.5,12.3,0.01\n") << 2 << false << 2 << 0.4;
    QTest::newRow("six commas") << QByteArray("1,2,3,4,5,6,7\n1,2,3,4,5,6,7\n") << 6 << false << -1 << 0.0;
    QTest::newRow("no comma on line 2") << QByteArray("0.4,12.2\n0.5 12.3\n") << 0 << false << 0 << 0.0;
}

void ReaderTest::readCsvIsAValue()
{
    QFETCH(QByteArray, text);
    QFETCH(int, commas);
    QFETCH(bool, skipped);
    QFETCH(int, rowCount);
    QFETCH(double, firstTime);
    test::freshSession();
    const int before = S().NumOrig;
    test::DataFolder folder;
    const QString path = folder.write(QStringLiteral("curve.csv"), text);
    const LightCurve lc = readCsv(path);
    QCOMPARE(lc.commas, commas);
    QCOMPARE(lc.firstLineSkipped, skipped);
    QCOMPARE(lc.rowCount, rowCount);
    QCOMPARE(int(lc.times.size()), std::max(rowCount, 0));
    QCOMPARE(lc.times.size(), lc.mags.size());
    QCOMPARE(lc.source, path);
    if (rowCount > 0)
        QCOMPARE(lc.times.front(), firstTime);
    // Reading changes nothing of the session.
    QCOMPARE(int(S().NumOrig), before);
}

void ReaderTest::readCsvWithoutLimit()
{
    test::DataFolder folder;
    const QString path = folder.write(QStringLiteral("long.csv"), rows(1500));
    DIP_EXPECT_RUNTIME_ERROR(readCsv(path), 9);
    DIP_EXPECT_RUNTIME_ERROR(readCsv(path, 1499), 9);
    const LightCurve lc = readCsv(path, -1);
    QCOMPARE(lc.rowCount, 1500);
    QCOMPARE(lc.times.back(), 1.5);
    QCOMPARE(readCsv(path, 1500).rowCount, 1500);
}

void ReaderTest::installingMoreThanThousandRowsFails()
{
    test::freshSession();
    LightCurve lc;
    for (int i = 1; i <= 1001; ++i) {
        lc.times.push_back(0.001 * i);
        lc.mags.push_back(11.0);
    }
    lc.commas = 1;
    lc.rowCount = 1001;
    DIP_EXPECT_RUNTIME_ERROR(InstallLightCurve(lc), 9);
    lc.times.pop_back();
    lc.mags.pop_back();
    lc.rowCount = 1000;
    InstallLightCurve(lc);
    QCOMPARE(int(S().NumOrig), 1000);
}

void ReaderTest::installedValueLoadsAsTheReaderDoes()
{
    // Reading the file as a value and installing it gives the session that loading gives.
    const QByteArray text = "HJD,Mag\n0.5,12.3\n0.6,12.9\n0.7,12.4\n";
    QVERIFY(test::loadText(text));
    const Session loaded = S();
    const QString title = mainForm().title();

    test::freshSession();
    test::DataFolder folder;
    S().DataName = QStringLiteral("curve.csv");
    InstallLightCurve(readCsv(folder.write(QStringLiteral("curve.csv"), text)));
    const Session& s = S();
    QCOMPARE(mainForm().title(), title);
    QCOMPARE(s.NumOrig, loaded.NumOrig);
    QCOMPARE(s.NumPts, loaded.NumPts);
    QCOMPARE(s.MagSign, loaded.MagSign);
    QCOMPARE(s.IdxMagMax, loaded.IdxMagMax);
    QCOMPARE(s.FoldHJD, loaded.FoldHJD);
    QCOMPARE(s.HJDMin, loaded.HJDMin);
    QCOMPARE(s.MagRange, loaded.MagRange);
    for (int i = 1; i <= 3; ++i) {
        QCOMPARE(s.HJD(i), loaded.HJD(i));
        QCOMPARE(s.Mag(i), loaded.Mag(i));
        QCOMPARE(s.ReadMag(i), loaded.ReadMag(i));
    }
    // The Fourier start values come from the still inverted magnitudes, as loading gives them.
    for (int k = 1; k <= 8; ++k)
        QCOMPARE(s.Fourier.FourierPar(k), loaded.Fourier.FourierPar(k));
}

QTEST_GUILESS_MAIN(ReaderTest)
#include "tst_reader.moc"
