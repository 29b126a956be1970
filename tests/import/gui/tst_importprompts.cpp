// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "import/gui/ImportPrompts.h"

#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <algorithm>
#include <random>

using namespace dip;
using namespace dip::import;

namespace {

// n times two minutes apart from 0.3 d, in a shuffled order.
std::vector<double> shuffledTimes(int n)
{
    std::vector<double> times;
    for (int i = 0; i < n; ++i)
        times.push_back(0.3 + i / 720.0);
    std::mt19937_64 random(13);
    std::shuffle(times.begin(), times.end(), random);
    return times;
}

QPushButton* okButton(const QDialog& dialog)
{
    return dialog.findChild<QDialogButtonBox*>(QStringLiteral("buttons"))->button(QDialogButtonBox::Ok);
}

void type(const QDialog& dialog, const char* name, const QString& text)
{
    dialog.findChild<QLineEdit*>(QLatin1String(name))->setText(text);
}

} // namespace

class ImportPromptsTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void filterChoice();
    void windowStartsOnTheFirstThousand();
    void windowCounts_data();
    void windowCounts();
    void realPromptsAreSet();
};

void ImportPromptsTest::filterChoice()
{
    const std::vector<FilterCount> filters = {
        {QStringLiteral("V"), 120}, {QStringLiteral("B"), 80}, {QStringLiteral("Ic"), 3}};
    FilterChoiceDialog dialog(QStringLiteral("/data/v404.txt"), filters, QStringLiteral("b"));
    QComboBox* box = dialog.findChild<QComboBox*>(QStringLiteral("cboFilter"));
    QCOMPARE(box->count(), 3);
    QCOMPARE(box->itemText(0), QStringLiteral("V (120 observations)"));
    QCOMPARE(box->itemText(2), QStringLiteral("Ic (3 observations)"));
    // The preferred one is chosen, whatever its case.
    QCOMPARE(box->currentIndex(), 1);
    QCOMPARE(dialog.filter(), QStringLiteral("B"));
    box->setCurrentIndex(2);
    QCOMPARE(dialog.filter(), QStringLiteral("Ic"));
    const QList<QLabel*> labels = dialog.findChildren<QLabel*>();
    QVERIFY(std::any_of(labels.begin(), labels.end(), [](const QLabel* l) {
        return l->text().startsWith(QStringLiteral("v404.txt holds observations in 3 filters"));
    }));
    QVERIFY(okButton(dialog)->isEnabled());
}

void ImportPromptsTest::windowStartsOnTheFirstThousand()
{
    TimeWindowDialog dialog(QStringLiteral("long.xls"), shuffledTimes(1500));
    // From the first time to half-way between the 1000th and the 1001st.
    QCOMPARE(dialog.findChild<QLineEdit*>(QStringLiteral("txtFrom"))->text(), QStringLiteral("0.300000"));
    const double to = (0.3 + 999 / 720.0 + 0.3 + 1000 / 720.0) / 2;
    QCOMPARE(dialog.findChild<QLineEdit*>(QStringLiteral("txtTo"))->text(),
             QString::number(std::floor(to * 1e6) / 1e6, 'f', 6));
    QCOMPARE(dialog.status(), QStringLiteral("1000 observations in the window"));
    QVERIFY(okButton(dialog)->isEnabled());
    QVERIFY(dialog.window());
    QCOMPARE(dialog.window()->first, 0.3);
}

void ImportPromptsTest::windowCounts_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addColumn<QString>("status");
    QTest::addColumn<bool>("ok");
    // Two minutes a row: 0.4 is row 72, 0.6 row 216 (from 0), both ends included.
    QTest::newRow("a night's part") << "0.4"
                                    << "0.6"
                                    << "145 observations in the window" << true;
    QTest::newRow("one observation") << "0.4"
                                     << "0.4"
                                     << "1 observations in the window" << true;
    QTest::newRow("too many") << "0"
                              << "9"
                              << "1500 observations in the window: at most 1000 can be loaded" << false;
    QTest::newRow("none") << "5"
                          << "6"
                          << "0 observations in the window: choose one that holds some" << false;
    QTest::newRow("backwards") << "0.6"
                               << "0.4"
                               << "The window ends before it begins" << false;
    QTest::newRow("not a time") << "0,4"
                                << "0.6"
                                << "From: \"0,4\" is not a time" << false;
    QTest::newRow("empty end") << "0.4"
                               << " "
                               << "To: \"\" is not a time" << false;
}

void ImportPromptsTest::windowCounts()
{
    QFETCH(QString, from);
    QFETCH(QString, to);
    QFETCH(QString, status);
    QFETCH(bool, ok);
    TimeWindowDialog dialog(QStringLiteral("long.xls"), shuffledTimes(1500));
    type(dialog, "txtFrom", from);
    type(dialog, "txtTo", to);
    QCOMPARE(dialog.status(), status);
    QCOMPARE(dialog.findChild<QLabel*>(QStringLiteral("lblCount"))->text(), status);
    QCOMPARE(okButton(dialog)->isEnabled(), ok);
    QCOMPARE(dialog.window().has_value(), ok);
    if (ok) {
        QCOMPARE(dialog.window()->first, from.toDouble());
        QCOMPARE(dialog.window()->last, to.toDouble());
    }
}

void ImportPromptsTest::realPromptsAreSet()
{
    const ImportPrompts& prompts = importPrompts();
    QVERIFY(prompts.chooseFile);
    QVERIFY(prompts.chooseFilter);
    QVERIFY(prompts.chooseWindow);
}

QTEST_MAIN(ImportPromptsTest)
#include "tst_importprompts.moc"
