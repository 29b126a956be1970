// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "../ExactEstimate.h"
#include "../ExpectedHelpTexts.h"
#include "help/gui/HelpEntries.h"
#include "help/gui/frmAbout.h"
#include "help/gui/frmHelp.h"
#include "support/TestSupport.h"

#include <QApplication>
#include <QFontInfo>
#include <QLabel>
#include <QLocale>
#include <QPushButton>

#include <cmath>

using namespace dip::test;

namespace {

constexpr int TwipsPerPixel = 15;

int pixels(long long twips) { return static_cast<int>(std::lround(double(twips) / TwipsPerPixel)); }

void closeAll()
{
    if (dip::frmHelp* help = dip::frmHelp::loaded())
        help->close();
    if (dip::frmAbout* box = dip::frmAbout::loaded())
        box->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// Checks the page on show: title, paragraph count, texts, which labels show.
void checkPage(const QString& title, const QStringList& paragraphs)
{
    dip::frmHelp* help = dip::frmHelp::loaded();
    QVERIFY(help);
    QVERIFY(help->isVisible());
    QCOMPARE(help->windowTitle(), QStringLiteral("Help"));
    QCOMPARE(help->findChild<QLabel*>(QStringLiteral("Label0"))->text(), title);
    QCOMPARE(help->paragraphCount(), int(paragraphs.size()));
    for (int k = 1; k <= dip::frmHelp::LabelCount; ++k) {
        auto* label = help->findChild<QLabel*>(QStringLiteral("Label1_%1").arg(k));
        QVERIFY(label);
        QCOMPARE(label, help->Label1(k));
        if (k <= paragraphs.size()) {
            QVERIFY2(label->isVisibleTo(help), qPrintable(label->objectName()));
            DIP_COMPARE_TEXT(label->text(), paragraphs.at(k - 1));
        } else {
            QVERIFY2(!label->isVisibleTo(help), qPrintable(label->objectName()));
            QCOMPARE(label->text(), QString());
        }
    }
}

// Checks label places and window height against the rule worked out in whole numbers from the
// window's present width.
void checkLayout(const QStringList& paragraphs)
{
    dip::frmHelp* help = dip::frmHelp::loaded();
    const long long inner = static_cast<long long>(help->width()) * TwipsPerPixel;
    const long long outer = static_cast<long long>(help->frameGeometry().width()) * TwipsPerPixel;
    const int labelWidth = pixels(inner - 500);
    QCOMPARE(help->Label0()->width(), labelWidth);
    long long top = 500;
    long long windowHeight = 1000;
    for (int k = 1; k <= paragraphs.size(); ++k) {
        const long long chars = paragraphs.at(k - 1).size();
        QLabel* label = help->Label1(k);
        QCOMPARE(label->y(), pixels(top));
        QCOMPARE(label->width(), labelWidth);
        QVERIFY(label->wordWrap());
        QCOMPARE(label->height(), std::max(0, label->heightForWidth(labelWidth)));
        top += exactEstimate(chars, inner - 500);
        windowHeight += exactEstimate(chars, outer);
    }
    QCOMPARE(help->frameGeometry().height(), pixels(windowHeight));
}

} // namespace

class HelpWindowsTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void introduction();
    void inputFiles();
    void pageSwitch_data();
    void pageSwitch();
    void layoutOnShow_data();
    void layoutOnShow();
    void layoutOnResize_data();
    void layoutOnResize();
    void narrowWindowMakesEveryParagraphTaller();
    void reopensWhereLastClosed();
    void positionLivesInTwips();
    void aboutBox();
    void aboutBoxComesBackToTopLeft();
};

void HelpWindowsTest::init()
{
    closeAll();
    dip::helpPlace() = dip::HelpPlace{};
}

void HelpWindowsTest::cleanup() { closeAll(); }

void HelpWindowsTest::introduction()
{
    dip::ShowHelpIntroduction();
    checkPage(expectedIntroductionTitle, expectedIntroduction());
}

void HelpWindowsTest::inputFiles()
{
    dip::ShowHelpDataFiles();
    checkPage(expectedInputFilesTitle, expectedInputFiles());
    QCOMPARE(dip::frmHelp::loaded()->Label1(5)->text(), QString());
}

void HelpWindowsTest::pageSwitch_data()
{
    QTest::addColumn<bool>("introductionLast");
    QTest::newRow("input files, then introduction") << true;
    QTest::newRow("introduction, then input files") << false;
}

void HelpWindowsTest::pageSwitch()
{
    QFETCH(bool, introductionLast);
    if (introductionLast) {
        dip::ShowHelpDataFiles();
        dip::ShowHelpIntroduction();
        checkPage(expectedIntroductionTitle, expectedIntroduction());
        QCOMPARE(dip::frmHelp::loaded()->paragraphCount(), 9);
        checkLayout(expectedIntroduction());
    } else {
        dip::ShowHelpIntroduction();
        dip::ShowHelpDataFiles();
        checkPage(expectedInputFilesTitle, expectedInputFiles());
        QCOMPARE(dip::frmHelp::loaded()->paragraphCount(), 5);
        QCOMPARE(dip::frmHelp::loaded()->Label1(5)->text(), QString());
        checkLayout(expectedInputFiles());
    }
}

void HelpWindowsTest::layoutOnShow_data()
{
    QTest::addColumn<bool>("introduction");
    QTest::newRow("introduction") << true;
    QTest::newRow("input files") << false;
}

void HelpWindowsTest::layoutOnShow()
{
    QFETCH(bool, introduction);
    if (introduction)
        dip::ShowHelpIntroduction();
    else
        dip::ShowHelpDataFiles();
    checkLayout(introduction ? expectedIntroduction() : expectedInputFiles());
}

void HelpWindowsTest::layoutOnResize_data()
{
    QTest::addColumn<int>("width");
    QTest::newRow("wide") << 1100;
    QTest::newRow("narrow") << 300;
    QTest::newRow("odd width") << 457;
}

void HelpWindowsTest::layoutOnResize()
{
    QFETCH(int, width);
    dip::ShowHelpIntroduction();
    dip::frmHelp* help = dip::frmHelp::loaded();
    help->resize(width, 100); // the height is the rule's, not the user's
    QCOMPARE(help->width(), width);
    checkLayout(expectedIntroduction());
}

void HelpWindowsTest::narrowWindowMakesEveryParagraphTaller()
{
    dip::ShowHelpIntroduction();
    dip::frmHelp* help = dip::frmHelp::loaded();
    help->resize(800, help->height());
    const dip::HelpLayout wide = help->layout();
    const int wideHeight = help->height();
    std::vector<int> wideGaps;
    for (int k = 1; k < 9; ++k)
        wideGaps.push_back(help->Label1(k + 1)->y() - help->Label1(k)->y());

    help->resize(400, help->height());
    const dip::HelpLayout narrow = help->layout();
    QCOMPARE(narrow.heights.size(), std::size_t(9));
    for (std::size_t k = 0; k < 9; ++k)
        QVERIFY2(narrow.heights[k] > wide.heights[k], qPrintable(QStringLiteral("paragraph %1").arg(k + 1)));
    for (int k = 1; k < 9; ++k) {
        const int gap = help->Label1(k + 1)->y() - help->Label1(k)->y();
        QVERIFY2(gap > wideGaps[std::size_t(k - 1)], qPrintable(QStringLiteral("paragraph %1").arg(k)));
    }
    QVERIFY(help->height() > wideHeight);
    QVERIFY(narrow.windowHeight > wide.windowHeight);
}

void HelpWindowsTest::reopensWhereLastClosed()
{
    dip::ShowHelpIntroduction();
    dip::frmHelp* first = dip::frmHelp::loaded();
    QCOMPARE(first->pos(), QPoint(0, 0)); // nothing remembered yet in this session
    first->move(123, 77);
    QCOMPARE(first->pos(), QPoint(123, 77));
    first->close();
    QVERIFY(!dip::frmHelp::loaded());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

    dip::ShowHelpDataFiles();
    dip::frmHelp* second = dip::frmHelp::loaded();
    QVERIFY(second);
    QCOMPARE(second->pos(), QPoint(123, 77));
    checkPage(expectedInputFilesTitle, expectedInputFiles());

    // Switching pages in the open window does not move it.
    second->move(40, 30);
    dip::ShowHelpIntroduction();
    QCOMPARE(dip::frmHelp::loaded(), second);
    QCOMPARE(second->pos(), QPoint(40, 30));
}

void HelpWindowsTest::positionLivesInTwips()
{
    dip::ShowHelpIntroduction();
    dip::frmHelp::loaded()->move(123, 77);
    dip::frmHelp::loaded()->close();
    QCOMPARE(int(dip::helpPlace().left), 123 * TwipsPerPixel);
    QCOMPARE(int(dip::helpPlace().top), 77 * TwipsPerPixel);

    // A window beyond 32767 twips is remembered at the edge of the 16-bit range.
    dip::ShowHelpIntroduction();
    dip::frmHelp::loaded()->move(3000, -3000);
    dip::frmHelp::loaded()->close();
    QCOMPARE(int(dip::helpPlace().left), 32767);
    QCOMPARE(int(dip::helpPlace().top), -32768);
}

void HelpWindowsTest::aboutBox()
{
    dip::ShowAbout();
    dip::frmAbout* box = dip::frmAbout::loaded();
    QVERIFY(box);
    QVERIFY(box->isVisible());
    QVERIFY(!box->isModal());
    QCOMPARE(box->windowTitle(), QStringLiteral("About"));
    QCOMPARE(box->frameGeometry().topLeft(), QPoint(0, 0));

    const QList<std::pair<QString, QString>> labels = {
        {QStringLiteral("Label1"), QStringLiteral("Dipscope")},
        {QStringLiteral("Label6"), QStringLiteral("This is version 25d of 2009-02-12")},
        {QStringLiteral("Label8"), QStringLiteral("------------------------------")},
        {QStringLiteral("Label2"), QStringLiteral("Written by the Dipscope developers.")},
        {QStringLiteral("Label3"), QStringLiteral("Free software under the MIT licence:")},
        {QStringLiteral("Label4"), QStringLiteral("use, copy, modify and distribute it freely, without warranty.")},
        {QStringLiteral("Label5"), QStringLiteral("The full terms are in the LICENSE file that comes with it.")},
        {QStringLiteral("Label9"), QStringLiteral("Please report bugs on the project's issue tracker.")},
    };
    for (const auto& [name, text] : labels) {
        auto* label = box->findChild<QLabel*>(name);
        QVERIFY2(label, qPrintable(name));
        QVERIFY(label->isVisible());
        DIP_COMPARE_TEXT(label->text(), text);
    }
    QCOMPARE(box->findChild<QLabel*>(QStringLiteral("Label8"))->text().size(), 30);

    auto* product = box->findChild<QLabel*>(QStringLiteral("Label1"));
    auto* version = box->findChild<QLabel*>(QStringLiteral("Label6"));
    QCOMPARE(product->font().family(), QStringLiteral("Arial"));
    QCOMPARE(product->font().styleHint(), QFont::SansSerif);
    QVERIFY(QFontInfo(product->font()).pixelSize() > QFontInfo(version->font()).pixelSize());

    auto* ok = box->findChild<QPushButton*>(QStringLiteral("cmdOK"));
    QVERIFY(ok);
    ok->click();
    QVERIFY(!dip::frmAbout::loaded());
}

void HelpWindowsTest::aboutBoxComesBackToTopLeft()
{
    dip::ShowAbout();
    dip::frmAbout::loaded()->move(200, 150);
    dip::frmAbout::loaded()->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    dip::ShowAbout();
    QCOMPARE(dip::frmAbout::loaded()->frameGeometry().topLeft(), QPoint(0, 0));
}

QTEST_MAIN(HelpWindowsTest)
#include "tst_helpwindows.moc"
