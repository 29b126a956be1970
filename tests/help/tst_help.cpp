// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "ExactEstimate.h"
#include "ExpectedHelpTexts.h"
#include "help/AboutTexts.h"
#include "help/HelpLayout.h"
#include "help/HelpTexts.h"
#include "support/TestSupport.h"

#include <vector>

using namespace dip::test;

namespace {

struct ExactLayout {
    std::vector<long long> tops;
    std::vector<long long> heights;
    long long windowHeight = 1000;
};

ExactLayout exactLayout(long long innerWidth, long long windowWidth, const std::vector<int>& chars)
{
    ExactLayout layout;
    long long top = 500;
    for (int c : chars) {
        layout.tops.push_back(top);
        layout.heights.push_back(exactEstimate(c, innerWidth - 500));
        top += layout.heights.back();
        layout.windowHeight += exactEstimate(c, windowWidth);
    }
    return layout;
}

std::vector<int> charCounts(const QStringList& paragraphs)
{
    std::vector<int> counts;
    for (const QString& text : paragraphs)
        counts.push_back(static_cast<int>(text.size()));
    return counts;
}

using Counts = std::vector<int>;
using Values = std::vector<long long>;

} // namespace

Q_DECLARE_METATYPE(Counts)
Q_DECLARE_METATYPE(Values)

class HelpTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void titles();
    void introductionParagraphs_data();
    void introductionParagraphs();
    void inputFilesParagraphs_data();
    void inputFilesParagraphs();
    void keptSpellings_data();
    void keptSpellings();
    void layoutByHand_data();
    void layoutByHand();
    void layoutSecondWay_data();
    void layoutSecondWay();
    void narrowerWindowMakesEveryParagraphTaller();
    void emptyParagraphKeepsItsSpacing();
    void overflowRaises_data();
    void overflowRaises();
    void labelWidthZeroRaisesDivisionByZero();
    void aboutTexts_data();
    void aboutTexts();
};

void HelpTest::titles()
{
    QCOMPARE(dip::helpIntroductionPage().title, expectedIntroductionTitle);
    QCOMPARE(dip::helpInputFilesPage().title, expectedInputFilesTitle);
}

void HelpTest::introductionParagraphs_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("expected");
    const QStringList expected = expectedIntroduction();
    QCOMPARE(expected.size(), 9);
    for (int k = 0; k < expected.size(); ++k)
        QTest::addRow("paragraph %d", k + 1) << k << expected.at(k);
}

void HelpTest::introductionParagraphs()
{
    QFETCH(int, index);
    QFETCH(QString, expected);
    const QStringList& paragraphs = dip::helpIntroductionPage().paragraphs;
    QCOMPARE(paragraphs.size(), 9);
    DIP_COMPARE_TEXT(paragraphs.at(index), expected);
}

void HelpTest::inputFilesParagraphs_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("expected");
    const QStringList expected = expectedInputFiles();
    QCOMPARE(expected.size(), 5);
    for (int k = 0; k < expected.size(); ++k)
        QTest::addRow("paragraph %d", k + 1) << k << expected.at(k);
}

void HelpTest::inputFilesParagraphs()
{
    QFETCH(int, index);
    QFETCH(QString, expected);
    const QStringList& paragraphs = dip::helpInputFilesPage().paragraphs;
    QCOMPARE(paragraphs.size(), 5);
    DIP_COMPARE_TEXT(paragraphs.at(index), expected);
}

void HelpTest::keptSpellings_data()
{
    QTest::addColumn<bool>("introduction");
    QTest::addColumn<QString>("words");
    QTest::newRow("alorithms") << true << QStringLiteral("six different alorithms,");
    QTest::newRow("Levenberg-Marquart") << true << QStringLiteral("the Levenberg-Marquart algorithm");
    QTest::newRow("do select") << true << QStringLiteral("you don't need to do select a range");
    QTest::newRow("compatable") << false << QStringLiteral("data files compatable with");
}

void HelpTest::keptSpellings()
{
    QFETCH(bool, introduction);
    QFETCH(QString, words);
    const dip::HelpPage& page = introduction ? dip::helpIntroductionPage() : dip::helpInputFilesPage();
    QVERIFY(page.paragraphs.join(QString()).contains(words));
}

void HelpTest::layoutByHand_data()
{
    QTest::addColumn<double>("innerWidth");
    QTest::addColumn<double>("windowWidth");
    QTest::addColumn<Counts>("chars");
    QTest::addColumn<Values>("tops");
    QTest::addColumn<Values>("heights");
    QTest::addColumn<int>("windowHeight");

    // 15000*178/8500 + 400 = 714.12 -> 714; 15000*18/8500 + 400 = 431.76 -> 432;
    // window: 692.76 -> 693 and 429.61 -> 430, 1000 + 693 + 430 = 2123.
    QTest::newRow("two paragraphs") << 9000.0 << 9120.0 << Counts{178, 18} << Values{500, 1214} << Values{714, 432}
                                    << 2123;
    // Labels 8000 wide: 407.5 -> 408, 422.5 -> 422, 401.875 -> 402, 405.625 -> 406; window 6000 wide:
    // 410, 430, 402.5 -> 402, 407.5 -> 408.
    QTest::newRow("halves to even") << 8500.0 << 6000.0 << Counts{4, 12, 1, 3} << Values{500, 908, 1330, 1732}
                                    << Values{408, 422, 402, 406} << 2650;
    QTest::newRow("no paragraphs") << 9000.0 << 9000.0 << Counts{} << Values{} << Values{} << 1000;
}

void HelpTest::layoutByHand()
{
    QFETCH(double, innerWidth);
    QFETCH(double, windowWidth);
    QFETCH(Counts, chars);
    QFETCH(Values, tops);
    QFETCH(Values, heights);
    QFETCH(int, windowHeight);

    const dip::HelpLayout layout = dip::layOutHelpParagraphs(innerWidth, windowWidth, chars);
    QCOMPARE(layout.labelWidth, innerWidth - 500);
    QCOMPARE(layout.tops.size(), tops.size());
    for (std::size_t k = 0; k < tops.size(); ++k) {
        QCOMPARE(static_cast<long long>(layout.tops[k]), tops[k]);
        QCOMPARE(static_cast<long long>(layout.heights[k]), heights[k]);
    }
    QCOMPARE(int(layout.windowHeight), windowHeight);
}

void HelpTest::layoutSecondWay_data()
{
    QTest::addColumn<int>("innerWidth");
    QTest::addColumn<int>("windowWidth");
    QTest::addColumn<Counts>("chars");

    const Counts introduction = charCounts(expectedIntroduction());
    const Counts inputFiles = charCounts(expectedInputFiles());
    QTest::newRow("introduction, 9600 wide") << 9600 << 9600 << introduction;
    QTest::newRow("introduction, framed") << 9600 << 9720 << introduction;
    QTest::newRow("introduction, 3000 wide") << 3000 << 3000 << introduction;
    QTest::newRow("introduction, 20000 wide") << 20000 << 20120 << introduction;
    QTest::newRow("input files, 9600 wide") << 9600 << 9600 << inputFiles;
    QTest::newRow("input files, 4515 wide") << 4515 << 4635 << inputFiles;
}

// The same rule worked out in whole numbers instead of through doubles and CInt.
void HelpTest::layoutSecondWay()
{
    QFETCH(int, innerWidth);
    QFETCH(int, windowWidth);
    QFETCH(Counts, chars);

    const dip::HelpLayout layout = dip::layOutHelpParagraphs(innerWidth, windowWidth, chars);
    const ExactLayout expected = exactLayout(innerWidth, windowWidth, chars);
    QCOMPARE(layout.tops.size(), chars.size());
    for (std::size_t k = 0; k < chars.size(); ++k) {
        QCOMPARE(static_cast<long long>(layout.tops[k]), expected.tops[k]);
        QCOMPARE(static_cast<long long>(layout.heights[k]), expected.heights[k]);
    }
    QCOMPARE(static_cast<long long>(layout.windowHeight), expected.windowHeight);
    // The window's estimate uses the wider window, so it comes out shorter than the stacked labels.
    const long long stackBottom = expected.tops.back() + expected.heights.back();
    QVERIFY(layout.windowHeight - 1000 < stackBottom - 500);
}

void HelpTest::narrowerWindowMakesEveryParagraphTaller()
{
    const Counts chars = charCounts(expectedIntroduction());
    const dip::HelpLayout wide = dip::layOutHelpParagraphs(9600, 9600, chars);
    const dip::HelpLayout narrow = dip::layOutHelpParagraphs(4800, 4800, chars);
    for (std::size_t k = 0; k < chars.size(); ++k) {
        QVERIFY2(narrow.heights[k] > wide.heights[k], qPrintable(QStringLiteral("paragraph %1").arg(k + 1)));
        if (k > 0)
            QVERIFY(narrow.tops[k] > wide.tops[k]);
    }
    QVERIFY(narrow.windowHeight > wide.windowHeight);
}

void HelpTest::emptyParagraphKeepsItsSpacing()
{
    const dip::HelpLayout wide = dip::layOutHelpParagraphs(9600, 9600, Counts{0});
    const dip::HelpLayout narrow = dip::layOutHelpParagraphs(3000, 3000, Counts{0});
    QCOMPARE(int(wide.heights[0]), 400);
    QCOMPARE(int(narrow.heights[0]), 400);
    QCOMPARE(int(wide.windowHeight), 1400);
}

void HelpTest::overflowRaises_data()
{
    QTest::addColumn<double>("innerWidth");
    QTest::addColumn<double>("windowWidth");
    QTest::addColumn<Counts>("chars");
    // 15000 * 735 / 100 + 400 = 110650 does not fit in 16 bits.
    QTest::newRow("one paragraph's estimate") << 600.0 << 60000.0 << Counts{735};
    // 19900 each; 500 + 19900 + 19900 = 40300.
    QTest::newRow("stacked tops") << 1500.0 << 60000.0 << Counts{1300, 1300};
    // 15400 each, each fits, but 1000 + 3 * 15400 = 47200 does not.
    QTest::newRow("window height") << 60000.0 << 600.0 << Counts{600, 600, 600};
}

void HelpTest::overflowRaises()
{
    QFETCH(double, innerWidth);
    QFETCH(double, windowWidth);
    QFETCH(Counts, chars);
    DIP_EXPECT_RUNTIME_ERROR(dip::layOutHelpParagraphs(innerWidth, windowWidth, chars), 6);
}

void HelpTest::labelWidthZeroRaisesDivisionByZero()
{
    DIP_EXPECT_RUNTIME_ERROR(dip::layOutHelpParagraphs(500, 500, Counts{10}), 11);
}

void HelpTest::aboutTexts_data()
{
    QTest::addColumn<QString>("actual");
    QTest::addColumn<QString>("expected");
    QTest::newRow("Label1") << dip::about::product() << QStringLiteral("Dipscope");
    QTest::newRow("Label6") << dip::about::version() << QStringLiteral("This is version 25d of 2009-02-12");
    QTest::newRow("Label8") << dip::about::rule() << QString(30, QLatin1Char('-'));
    QTest::newRow("Label2") << dip::about::credits() << QStringLiteral("Written by the Dipscope developers.");
    QTest::newRow("Label3") << dip::about::licence() << QStringLiteral("Free software under the MIT licence:");
    QTest::newRow("Label4") << dip::about::licenceTerms()
                            << QStringLiteral("use, copy, modify and distribute it freely, without warranty.");
    QTest::newRow("Label5") << dip::about::licenceFile()
                            << QStringLiteral("The full terms are in the LICENSE file that comes with it.");
    QTest::newRow("Label9") << dip::about::bugReports()
                            << QStringLiteral("Please report bugs on the project's issue tracker.");
}

void HelpTest::aboutTexts()
{
    QFETCH(QString, actual);
    QFETCH(QString, expected);
    DIP_COMPARE_TEXT(actual, expected);
}

QTEST_GUILESS_MAIN(HelpTest)
#include "tst_help.moc"
