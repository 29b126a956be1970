// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
// "Analysis" > "O–C…" and "Export results…": the table, the ephemeris fields, the plot in its
// three formats, each export format and what the user is told when a file cannot be written.
#include "analysis/ResultExport.h"
#include "analysis/Toolkit.h"
#include "analysis/gui/ExportDialog.h"
#include "analysis/gui/OcEntry.h"
#include "analysis/gui/OcWindow.h"
#include "analysis/gui/SaveFileChooser.h"
#include "session/Session.h"
#include "support/TestSupport.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>
#include <QXmlStreamReader>

#include <cmath>
#include <memory>

using namespace dip;

namespace {

const double T0 = 2459000.3;
const double P = 0.8;

// Three results near cycle 10; the parabola's is not ticked.
void threeResults()
{
    test::publishRow(1, T0 + 8 + 0.0031, 0.0004, false);
    test::publishRow(4, T0 + 8 + 0.0012, 0.00016, true);
    test::publishRow(5, T0 + 8 + 0.0015, 0.00015, true);
}

// Answers the next file dialog with a path (or "" for Cancel) and counts the questions.
class Chooser {
public:
    explicit Chooser(QString answer)
        : m_answer(std::move(answer)),
          m_previous(
              setSaveFileChooser([this](QWidget*, const QString&, const QString& suggested, const QString& filter) {
                  ++asked;
                  lastSuggested = suggested;
                  lastFilter = filter;
                  return m_answer;
              }))
    {}
    ~Chooser() { setSaveFileChooser(m_previous); }
    int asked = 0;
    QString lastSuggested;
    QString lastFilter;

private:
    QString m_answer;
    SaveFileChooser m_previous;
};

QString cell(const QTableWidget* t, int row, int column)
{
    const QTableWidgetItem* item = t->item(row, column);
    return item ? item->text() : QStringLiteral("<none>");
}

QByteArray fileBytes(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

} // namespace

class TestOcWindow : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<test::DataFolder> m_folder;

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<test::DataFolder>();
        resetSession();
        resetToolkit();
    }

    void tableOfTheTickedResults()
    {
        threeResults();
        Toolkit().ephemeris = Ephemeris{T0, P, false};
        OcWindow w;
        const auto* table = w.findChild<QTableWidget*>(QStringLiteral("table"));
        QCOMPARE(table->rowCount(), 2);
        QCOMPARE(cell(table, 0, 0), QStringLiteral("4. Kwee and van Woerden"));
        QCOMPARE(cell(table, 1, 0).left(2), QStringLiteral("5."));
        // Cycle 10 (8 days / 0.8); C = T0 + 10 P; O - C in days and minutes.
        QCOMPARE(cell(table, 0, 1), QString::number(T0 + 8.0012, 'f', 6));
        QCOMPARE(cell(table, 0, 2), QStringLiteral("0.00016"));
        QCOMPARE(cell(table, 0, 3), QStringLiteral("10"));
        QCOMPARE(cell(table, 0, 4), QString::number(T0 + 10 * P, 'f', 6));
        QCOMPARE(cell(table, 0, 5), QString::number((T0 + 8.0012) - (T0 + 10 * P), 'f', 6));
        QCOMPARE(cell(table, 0, 6), QStringLiteral("1.73")); // 0.0012 d = 1.728 min
        QCOMPARE(cell(table, 1, 6), QStringLiteral("2.16"));
        // The fields show the session's ephemeris.
        QCOMPARE(w.findChild<QLineEdit*>(QStringLiteral("t0"))->text(), QStringLiteral("2459000.300000"));
        QCOMPARE(w.findChild<QLineEdit*>(QStringLiteral("period"))->text(), QStringLiteral("0.8"));
        QVERIFY(w.findChild<QLabel*>(QStringLiteral("status"))->text().isEmpty());
    }

    void noTickedResult()
    {
        test::publishRow(1, T0 + 8, 0.0004, false);
        OcWindow w;
        QCOMPARE(w.findChild<QTableWidget*>(QStringLiteral("table"))->rowCount(), 0);
        QCOMPARE(w.findChild<QLabel*>(QStringLiteral("status"))->text(),
                 QStringLiteral("No result is ticked \"Use in Mean?\" in the main window."));
    }

    void ephemerisEdits()
    {
        threeResults();
        OcWindow w;
        w.show();
        auto* t0 = w.findChild<QLineEdit*>(QStringLiteral("t0"));
        auto* period = w.findChild<QLineEdit*>(QStringLiteral("period"));
        auto* secondary = w.findChild<QCheckBox*>(QStringLiteral("secondary"));
        auto* status = w.findChild<QLabel*>(QStringLiteral("status"));
        const auto* table = w.findChild<QTableWidget*>(QStringLiteral("table"));
        // Nothing typed: no E yet.
        QCOMPARE(status->text(), QStringLiteral("Type the epoch T0 and the period P."));
        QVERIFY(cell(table, 0, 3).isEmpty());
        QTest::keyClicks(t0, QStringLiteral("2459000.3"));
        QCOMPARE(status->text(), QStringLiteral("Type the period P."));
        QVERIFY(!Toolkit().ephemeris);
        QTest::keyClicks(period, QStringLiteral("0.8"));
        QVERIFY(Toolkit().ephemeris);
        QCOMPARE(Toolkit().ephemeris->t0, T0);
        QCOMPARE(Toolkit().ephemeris->period, P);
        QVERIFY(status->text().isEmpty());
        QCOMPARE(cell(table, 0, 3), QStringLiteral("10"));
        // A period of 1.6 days: 8.0012 / 1.6 = 5.0008, cycle 5.
        period->clear();
        QTest::keyClicks(period, QStringLiteral("1.6"));
        QCOMPARE(cell(table, 0, 3), QStringLiteral("5"));
        // Secondaries at phase 0.5 with P = 3.2: 2.5004 cycles, E = 2.5.
        period->clear();
        QTest::keyClicks(period, QStringLiteral("3.2"));
        QCOMPARE(cell(table, 0, 3), QStringLiteral("3"));
        QTest::mouseClick(secondary, Qt::LeftButton, {}, QPoint(4, secondary->height() / 2));
        QVERIFY(secondary->isChecked());
        QVERIFY(Toolkit().ephemeris->secondaryAtHalf);
        QCOMPARE(cell(table, 0, 3), QStringLiteral("2.5"));
        QCOMPARE(cell(table, 0, 5), QString::number((T0 + 8.0012) - (T0 + 2.5 * 3.2), 'f', 6));
        // A period that is no number of days: said, and no E.
        period->clear();
        QTest::keyClicks(period, QStringLiteral("-2"));
        QCOMPARE(status->text(), QStringLiteral("P must be a number of days above 0: \"-2\"."));
        QVERIFY(!Toolkit().ephemeris);
        QVERIFY(cell(table, 0, 3).isEmpty());
        t0->clear();
        QTest::keyClicks(t0, QStringLiteral("x1"));
        QCOMPARE(status->text(), QStringLiteral("T0 is not a number: \"x1\"."));
    }

    void activationReadsTheResultsAgain()
    {
        threeResults();
        Toolkit().ephemeris = Ephemeris{T0, P, false};
        OcWindow w;
        w.show();
        const auto* table = w.findChild<QTableWidget*>(QStringLiteral("table"));
        QCOMPARE(table->rowCount(), 2);
        // The parabola's row is ticked in the main window meanwhile.
        S().Results(1).ticked = true;
        QEvent activate(QEvent::WindowActivate);
        QApplication::sendEvent(&w, &activate);
        QCOMPARE(table->rowCount(), 3);
        QCOMPARE(cell(table, 0, 0).left(2), QStringLiteral("1."));
    }

    void savePlot_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("PNG") << QStringLiteral("oc.png");
        QTest::newRow("SVG") << QStringLiteral("oc.svg");
        QTest::newRow("PDF") << QStringLiteral("oc.pdf");
    }
    void savePlot()
    {
        QFETCH(QString, name);
        threeResults();
        Toolkit().ephemeris = Ephemeris{T0, P, false};
        test::MessageRecorder messages;
        const QString path = m_folder->path() + QLatin1Char('/') + name;
        Chooser chooser(path);
        OcWindow w;
        w.show();
        QTest::mouseClick(w.findChild<QPushButton*>(QStringLiteral("savePlot")), Qt::LeftButton);
        QCOMPARE(chooser.asked, 1);
        QVERIFY(chooser.lastFilter.contains(QLatin1String("*.svg")));
        QVERIFY2(messages.messages().isEmpty(), qPrintable(messages.messages().join(QLatin1Char('|'))));
        const QByteArray bytes = fileBytes(path);
        QVERIFY(!bytes.isEmpty());
        if (name.endsWith(QLatin1String(".png"))) {
            QImage image;
            QVERIFY(image.loadFromData(bytes, "PNG"));
            QCOMPARE(image.size(), QSize(1200, 800));
        } else if (name.endsWith(QLatin1String(".svg"))) {
            QXmlStreamReader xml(bytes);
            bool svg = false;
            while (!xml.atEnd())
                if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == QLatin1String("svg"))
                    svg = true;
            QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
            QVERIFY(svg);
        } else {
            QVERIFY(bytes.startsWith("%PDF"));
            QCOMPARE(bytes.count("/Type /Page\n") + bytes.count("/Type /Page "), 1);
        }
        // The diagram holds the two ticked results.
        const OcDiagram d = w.diagram();
        QCOMPARE(d.points.size(), std::size_t(2));
        QCOMPARE(d.points[0].cycle, 10.0);
        QCOMPARE(d.timeName, QStringLiteral("HJD"));
    }

    void savePlotCancelled()
    {
        threeResults();
        Toolkit().ephemeris = Ephemeris{T0, P, false};
        test::MessageRecorder messages;
        Chooser chooser{QString()};
        OcWindow w;
        QTest::mouseClick(w.findChild<QPushButton*>(QStringLiteral("savePlot")), Qt::LeftButton);
        QCOMPARE(chooser.asked, 1);
        QVERIFY(messages.messages().isEmpty());
    }

    void savePlotFailures_data()
    {
        QTest::addColumn<bool>("ephemeris");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("message");
        QTest::newRow("no ephemeris") << false << QStringLiteral("oc.png")
                                      << QStringLiteral("Nothing to plot: the O–C diagram needs an ephemeris and at "
                                                        "least one ticked result.");
        QTest::newRow("no such folder") << true << QStringLiteral("missing/oc.png")
                                        << QStringLiteral(
                                               "The plot was not saved.\n%1/missing/oc.png: cannot be written");
        QTest::newRow("unknown suffix") << true << QStringLiteral("oc.gif")
                                        << QStringLiteral("The plot was not saved.\n%1/oc.gif: a plot is written as "
                                                          ".png, .svg or .pdf");
    }
    void savePlotFailures()
    {
        QFETCH(bool, ephemeris);
        QFETCH(QString, name);
        QFETCH(QString, message);
        threeResults();
        if (ephemeris)
            Toolkit().ephemeris = Ephemeris{T0, P, false};
        test::MessageRecorder messages;
        OcWindow w;
        const QString path = m_folder->path() + QLatin1Char('/') + name;
        QVERIFY(!w.savePlot(path));
        QCOMPARE(messages.messages().size(), 1);
        const QString expected = message.contains(QLatin1String("%1")) ? message.arg(m_folder->path()) : message;
        QVERIFY2(messages.messages()[0].startsWith(expected), qPrintable(messages.messages()[0]));
        QVERIFY(!QFile::exists(path));
    }

    void exportPrefilledFromTheSession()
    {
        Toolkit().starName = QStringLiteral("CM Dra");
        Toolkit().filter = QStringLiteral("TESS");
        Toolkit().observerCode = QStringLiteral("XYZ");
        ExportDialog d;
        QCOMPARE(d.findChild<QLineEdit*>(QStringLiteral("star"))->text(), QStringLiteral("CM Dra"));
        QCOMPARE(d.findChild<QLineEdit*>(QStringLiteral("filter"))->text(), QStringLiteral("TESS"));
        QCOMPARE(d.findChild<QLineEdit*>(QStringLiteral("observer"))->text(), QStringLiteral("XYZ"));
    }

    void exportEachFormat_data()
    {
        QTest::addColumn<int>("format");
        QTest::addColumn<QString>("suggested");
        QTest::newRow("CSV") << 0 << QStringLiteral("minima.csv");
        QTest::newRow("JSON") << 1 << QStringLiteral("minima.json");
        QTest::newRow("report lines") << 2 << QStringLiteral("minima.txt");
    }
    void exportEachFormat()
    {
        QFETCH(int, format);
        QFETCH(QString, suggested);
        threeResults();
        Toolkit().ephemeris = Ephemeris{T0, P, false};
        Toolkit().filter = QStringLiteral("V");
        test::MessageRecorder messages;
        const QString path = m_folder->path() + QStringLiteral("/out");
        Chooser chooser(path);
        ExportDialog d;
        d.show();
        d.findChild<QComboBox*>(QStringLiteral("format"))->setCurrentIndex(format);
        QTest::keyClicks(d.findChild<QLineEdit*>(QStringLiteral("star")), QStringLiteral("V0001 Test"));
        QTest::keyClicks(d.findChild<QLineEdit*>(QStringLiteral("observer")), QStringLiteral("ABC"));
        QTest::mouseClick(d.findChild<QPushButton*>(QStringLiteral("export")), Qt::LeftButton);
        QCOMPARE(chooser.asked, 1);
        QCOMPARE(chooser.lastSuggested, suggested);
        QVERIFY2(messages.messages().isEmpty(), qPrintable(messages.messages().join(QLatin1Char('|'))));
        QCOMPARE(d.result(), int(QDialog::Accepted));
        const QString text = QString::fromUtf8(fileBytes(path));
        QStringList lines = text.split(QLatin1Char('\n'));
        QCOMPARE(lines.takeLast(), QString()); // ended by a line end
        switch (format) {
        case 0: {
            QCOMPARE(lines.size(), 4); // the header and every result, ticked or not
            QCOMPARE(lines[0], resultsCsvHeader().trimmed());
            const QStringList f = lines[2].split(QLatin1Char(','));
            QCOMPARE(f[0], QStringLiteral("4"));
            QCOMPARE(f[2], QString::number(T0 + 8.0012, 'f', 8));
            QCOMPARE(f[6], QStringLiteral("10"));
            QCOMPARE(lines[1].split(QLatin1Char(','))[4], QStringLiteral("0")); // the parabola's, not ticked
            break;
        }
        case 1: {
            QJsonParseError e;
            const QJsonObject o = QJsonDocument::fromJson(text.toUtf8(), &e).object();
            QCOMPARE(e.error, QJsonParseError::NoError);
            QCOMPARE(o.value(QStringLiteral("star")).toString(), QStringLiteral("V0001 Test"));
            QCOMPARE(o.value(QStringLiteral("filter")).toString(), QStringLiteral("V"));
            QCOMPARE(o.value(QStringLiteral("observer")).toString(), QStringLiteral("ABC"));
            QCOMPARE(o.value(QStringLiteral("ephemeris")).toObject().value(QStringLiteral("period")).toDouble(), P);
            const QJsonArray rows = o.value(QStringLiteral("results")).toArray();
            QCOMPARE(rows.size(), 3);
            const QJsonObject kwee = rows[1].toObject();
            QCOMPARE(kwee.value(QStringLiteral("name")).toString(), QStringLiteral("KvW"));
            QCOMPARE(kwee.value(QStringLiteral("cycle")).toDouble(), 10.0);
            QVERIFY(std::abs(kwee.value(QStringLiteral("o_c")).toDouble() - 0.0012) < 1e-9);
            QCOMPARE(kwee.value(QStringLiteral("ticked")).toBool(), true);
            break;
        }
        default:
            QCOMPARE(lines.size(), 3);
            for (const QString& line : lines) {
                QCOMPARE(line.size(), 94);
                QCOMPARE(line.left(20), QStringLiteral("V0001 Test").leftJustified(20));
                QCOMPARE(line.mid(66, 6), QStringLiteral("V     "));
                QCOMPARE(line.mid(73, 6), QStringLiteral("ABC   "));
            }
            QCOMPARE(lines[1].mid(47, 9).trimmed(), QStringLiteral("10"));
            QCOMPARE(lines[1].mid(57, 8), QStringLiteral("+0.00120"));
        }
        // What was typed is kept for the session.
        QCOMPARE(Toolkit().starName, QStringLiteral("V0001 Test"));
        QCOMPARE(Toolkit().observerCode, QStringLiteral("ABC"));
    }

    void exportTickedOnly()
    {
        threeResults();
        ExportDialog d;
        d.findChild<QCheckBox*>(QStringLiteral("tickedOnly"))->setChecked(true);
        const QStringList lines = d.text().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), 3); // header, rows 4 and 5
        QVERIFY(lines[1].startsWith(QLatin1String("4,")));
        QVERIFY(lines[2].startsWith(QLatin1String("5,")));
    }

    void exportFailures()
    {
        test::MessageRecorder messages;
        {
            ExportDialog d;
            QVERIFY(!d.exportTo(m_folder->path() + QStringLiteral("/a.csv")));
            QCOMPARE(messages.messages(),
                     QStringList{QStringLiteral("No method has given a time of minimum: nothing to export.")});
        }
        messages.clear();
        threeResults();
        Toolkit().starName = QStringLiteral("kept");
        ExportDialog d;
        d.show();
        d.findChild<QLineEdit*>(QStringLiteral("star"))->setText(QStringLiteral("typed"));
        const QString path = m_folder->path() + QStringLiteral("/no/such/folder/a.csv");
        QVERIFY(!d.exportTo(path));
        QCOMPARE(messages.messages().size(), 1);
        QVERIFY2(messages.messages()[0].startsWith(QStringLiteral("The results were not exported.\nCannot write ") +
                                                   path + QStringLiteral(": ")),
                 qPrintable(messages.messages()[0]));
        // The dialog stays open for another try; nothing was kept.
        QVERIFY(d.isVisible());
        QCOMPARE(Toolkit().starName, QStringLiteral("kept"));
    }

    void menuOpensTheWindows()
    {
        threeResults();
        QWidget main;
        QMenu menu;
        AddOcActions(main, menu);
        const QList<QAction*> actions = menu.actions();
        QCOMPARE(actions.size(), 2);
        QCOMPARE(actions[0]->text(), QStringLiteral("O–C…"));
        QCOMPARE(actions[1]->text(), QStringLiteral("Export results…"));
        actions[0]->trigger();
        auto* oc = main.findChild<OcWindow*>();
        QVERIFY(oc && oc->isVisible());
        QCOMPARE(oc->findChild<QTableWidget*>(QStringLiteral("table"))->rowCount(), 2);
        // Again: the same window.
        actions[0]->trigger();
        QCOMPARE(main.findChildren<OcWindow*>().size(), 1);
        actions[1]->trigger();
        auto* dialog = main.findChild<ExportDialog*>();
        QVERIFY(dialog && dialog->isVisible());
        QVERIFY(!dialog->isModal());
        dialog->close();
        oc->close();
    }
};

QTEST_MAIN(TestOcWindow)
#include "tst_ocwindow.moc"
