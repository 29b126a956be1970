// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "runtime/Array.h"
#include "runtime/Integer.h"
#include "runtime/MsgBox.h"
#include "runtime/Numeric.h"
#include "runtime/RuntimeError.h"
#include "runtime/Text.h"
#include "support/TestSupport.h"

#include <cmath>
#include <limits>

using namespace dip::test;

class RuntimeTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void standardTexts_data();
    void standardTexts();
    void reportText();
    void fatalReportShowsBoxAndEnds();
    void i16Overflow();
    void arrayBounds();
    void division();
    void squareRoot();
    void intFixSgn();
    void singlePrecision();
    void cintHalvesToEven_data();
    void cintHalvesToEven();
    void numText_data();
    void numText();
    void str_data();
    void str();
    void val_data();
    void val();
    void cdbl_data();
    void cdbl();
    void cdblRejects_data();
    void cdblRejects();
    void messageHook();
    void questionHook();
};

void RuntimeTest::standardTexts_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("text");
    QTest::newRow("5") << 5 << "Invalid procedure call or argument";
    QTest::newRow("6") << 6 << "Overflow";
    QTest::newRow("9") << 9 << "Subscript out of range";
    QTest::newRow("11") << 11 << "Division by zero";
    QTest::newRow("13") << 13 << "Type mismatch";
    QTest::newRow("53") << 53 << "File not found";
    QTest::newRow("62") << 62 << "Input past end of file";
    QTest::newRow("76") << 76 << "Path not found";
    QTest::newRow("380") << 380 << "Invalid property value";
}

void RuntimeTest::standardTexts()
{
    QFETCH(int, number);
    QFETCH(QString, text);
    QCOMPARE(rt::standardErrorText(number), text);
    QCOMPARE(rt::RuntimeError(number).text(), text);
    QCOMPARE(rt::RuntimeError(number).number(), number);
}

void RuntimeTest::reportText()
{
    QCOMPARE(rt::reportText(rt::RuntimeError(6)), QStringLiteral("Run-time error '6':\n\nOverflow"));
}

void RuntimeTest::fatalReportShowsBoxAndEnds()
{
    MessageRecorder recorder;
    int exitCode = -1;
    const rt::ExitHook previous = rt::setExitHook([&](int code) { exitCode = code; });
    rt::reportFatal(rt::RuntimeError(9));
    rt::setExitHook(previous);
    QCOMPARE(recorder.messages(), QStringList{QStringLiteral("Run-time error '9':\n\nSubscript out of range")});
    QCOMPARE(recorder.titles(), QStringList{QStringLiteral("Dipscope")});
    QVERIFY(exitCode != -1);
}

void RuntimeTest::i16Overflow()
{
    QCOMPARE(rt::i16(32767), rt::Integer(32767));
    QCOMPARE(rt::i16(-32768), rt::Integer(-32768));
    DIP_EXPECT_RUNTIME_ERROR(rt::i16(32768), 6);
    DIP_EXPECT_RUNTIME_ERROR(rt::i16(-32769), 6);
    const rt::Integer big = 32000;
    DIP_EXPECT_RUNTIME_ERROR(rt::i16(big + big), 6);
}

void RuntimeTest::arrayBounds()
{
    rt::ObsArray a;
    QCOMPARE(a(0), 0.0);
    QCOMPARE(a(1000), 0.0);
    a(1000) = 2.5;
    QCOMPARE(a(1000), 2.5);
    DIP_EXPECT_RUNTIME_ERROR(a(1001), 9);
    DIP_EXPECT_RUNTIME_ERROR(a(-1), 9);
    rt::Matrix<double, 0, 8> m;
    m(8, 8) = 1;
    DIP_EXPECT_RUNTIME_ERROR(m(9, 1), 9);
    DIP_EXPECT_RUNTIME_ERROR(m(1, -1), 9);
}

void RuntimeTest::division()
{
    QCOMPARE(rt::div(1, 4), 0.25);
    DIP_EXPECT_RUNTIME_ERROR(rt::div(1, 0), 11);
    DIP_EXPECT_RUNTIME_ERROR(rt::div(-3, 0), 11);
    DIP_EXPECT_RUNTIME_ERROR(rt::div(0, 0), 6);
    DIP_EXPECT_RUNTIME_ERROR(rt::div(1e300, 1e-300), 6);
    DIP_EXPECT_RUNTIME_ERROR(rt::fin(std::numeric_limits<double>::infinity()), 6);
    DIP_EXPECT_RUNTIME_ERROR(rt::fin(std::nan("")), 6);
}

void RuntimeTest::squareRoot()
{
    QCOMPARE(rt::sqrt(2.25), 1.5);
    QCOMPARE(rt::sqrt(0), 0.0);
    DIP_EXPECT_RUNTIME_ERROR(rt::sqrt(-1e-300), 5);
}

void RuntimeTest::intFixSgn()
{
    QCOMPARE(rt::Int(2.7), 2.0);
    QCOMPARE(rt::Int(-2.5), -3.0);
    QCOMPARE(rt::Fix(-2.5), -2.0);
    QCOMPARE(rt::Fix(2.7), 2.0);
    QCOMPARE(rt::Int(24591.234567), 24591.0);
    QCOMPARE(rt::Sgn(-0.1), -1);
    QCOMPARE(rt::Sgn(0), 0);
    QCOMPARE(rt::Sgn(3), 1);
}

namespace {
struct Position {
    double x, y;
};
// Two round trips side by side: the shape an optimiser once folded away.
Position singlePosition(double x, double y) { return {rt::Single(x), rt::Single(y)}; }
} // namespace

void RuntimeTest::singlePrecision()
{
    const Position p = singlePosition(6799.0789473684163, 1.1);
    QCOMPARE(p.x, 6799.0791015625);
    QCOMPARE(p.y, double(1.1f));
    QCOMPARE(rt::Single(0.5), 0.5);
}

void RuntimeTest::cintHalvesToEven_data()
{
    QTest::addColumn<double>("x");
    QTest::addColumn<int>("expected");
    QTest::newRow("0.5") << 0.5 << 0;
    QTest::newRow("1.5") << 1.5 << 2;
    QTest::newRow("2.5") << 2.5 << 2;
    QTest::newRow("3.5") << 3.5 << 4;
    QTest::newRow("-2.5") << -2.5 << -2;
    QTest::newRow("2.6") << 2.6 << 3;
    QTest::newRow("27") << 30 * 0.9 << 27;
    QTest::newRow("32767.4") << 32767.4 << 32767;
}

void RuntimeTest::cintHalvesToEven()
{
    QFETCH(double, x);
    QFETCH(int, expected);
    QCOMPARE(int(rt::CInt(x)), expected);
}

void RuntimeTest::numText_data()
{
    QTest::addColumn<double>("x");
    QTest::addColumn<QString>("text");
    QTest::newRow("half") << 0.5 << ".5";
    QTest::newRow("minus half") << -0.5 << "-.5";
    QTest::newRow("zero") << 0.0 << "0";
    QTest::newRow("negative zero") << -0.0 << "0";
    QTest::newRow("integer") << 12.0 << "12";
    QTest::newRow("hjd") << 2459123.4567 << "2459123.4567";
    QTest::newRow("small") << 0.00003 << "3E-05";
    QTest::newRow("1e-4") << 0.0001 << ".0001";
    QTest::newRow("large") << 1e15 << "1E+15";
    QTest::newRow("below 1e15") << 999999999999999.0 << "999999999999999";
    QTest::newRow("15 digits") << 1.0 / 3.0 << ".333333333333333";
    QTest::newRow("2.30001") << 2.30001 << "2.30001";
}

void RuntimeTest::numText()
{
    QFETCH(double, x);
    QFETCH(QString, text);
    QCOMPARE(rt::NumText(x), text);
}

void RuntimeTest::str_data()
{
    QTest::addColumn<double>("x");
    QTest::addColumn<QString>("text");
    QTest::newRow("12") << 12.0 << " 12";
    QTest::newRow("-12") << -12.0 << "-12";
    QTest::newRow("0") << 0.0 << " 0";
    QTest::newRow(".5") << 0.5 << " .5";
}

void RuntimeTest::str()
{
    QFETCH(double, x);
    QFETCH(QString, text);
    QCOMPARE(rt::Str(x), text);
}

void RuntimeTest::val_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("value");
    QTest::newRow("plain") << "2459123.4567" << 2459123.4567;
    QTest::newRow("leading blanks") << "   1.25" << 1.25;
    QTest::newRow("leading tab") << "\t7" << 7.0;
    QTest::newRow("prefix") << "12abc" << 12.0;
    QTest::newRow("no prefix") << "abc" << 0.0;
    QTest::newRow("empty") << "" << 0.0;
    QTest::newRow("sign only") << "-" << 0.0;
    QTest::newRow("point only") << "." << 0.0;
    QTest::newRow("negative") << "-0.0005" << -0.0005;
    QTest::newRow("leading point") << ".9" << 0.9;
    QTest::newRow("exponent") << "1.5E3x" << 1500.0;
    QTest::newRow("D exponent") << "2D2" << 200.0;
    QTest::newRow("bare E") << "3E" << 3.0;
    QTest::newRow("E with sign only") << "3E+" << 3.0;
    QTest::newRow("second point") << "1.2.3" << 1.2;
    QTest::newRow("blank inside") << "1 2" << 1.0;
}

void RuntimeTest::val()
{
    QFETCH(QString, text);
    QFETCH(double, value);
    QCOMPARE(rt::Val(text), value);
}

void RuntimeTest::cdbl_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("value");
    QTest::newRow("plain") << "1" << 1.0;
    QTest::newRow("blanks around") << "  .9  " << 0.9;
    QTest::newRow("exponent") << "2.4512345678E+06" << 2451234.5678;
    QTest::newRow("sign") << "+3" << 3.0;
}

void RuntimeTest::cdbl()
{
    QFETCH(QString, text);
    QFETCH(double, value);
    QCOMPARE(rt::CDbl(text), value);
}

void RuntimeTest::cdblRejects_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("error");
    QTest::newRow("letters") << "abc" << 13;
    QTest::newRow("trailing text") << "1x" << 13;
    QTest::newRow("empty") << "" << 13;
    QTest::newRow("too large") << "1E999" << 6;
}

void RuntimeTest::cdblRejects()
{
    QFETCH(QString, text);
    QFETCH(int, error);
    DIP_EXPECT_RUNTIME_ERROR(rt::CDbl(text), error);
    DIP_EXPECT_RUNTIME_ERROR(rt::CIntText(QStringLiteral("40000")), 6);
    QCOMPARE(int(rt::CIntText(QStringLiteral(" 2.5 "))), 2);
}

void RuntimeTest::messageHook()
{
    MessageRecorder recorder;
    rt::MsgBox(QStringLiteral("Singular matrix 2"));
    QCOMPARE(recorder.messages(), QStringList{QStringLiteral("Singular matrix 2")});
    QCOMPARE(recorder.titles(), QStringList{QStringLiteral("Dipscope")});
}

void RuntimeTest::questionHook()
{
    // Without a window nobody answers: "No".
    QVERIFY(!rt::AskYesNo(QStringLiteral("Restore?")));
    QStringList asked;
    const rt::QuestionHook previous = rt::setQuestionHook([&](const QString& text, const QString& title) {
        asked << text << title;
        return true;
    });
    QVERIFY(rt::AskYesNo(QStringLiteral("Restore that session?")));
    QVERIFY(rt::AskYesNo(QStringLiteral("Again?"), QStringLiteral("Other")));
    rt::setQuestionHook(previous);
    QCOMPARE(asked, (QStringList{"Restore that session?", "Dipscope", "Again?", "Other"}));
    QVERIFY(!rt::AskYesNo(QStringLiteral("Restore?")));
}

QTEST_GUILESS_MAIN(RuntimeTest)
#include "tst_runtime.moc"
