// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers

#include "analysis/paint/OcPainter.h"
#include "analysis/paint/OcPlotFile.h"
#include "support/TestSupport.h"

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QtTest>

#include <cmath>

using namespace dip;

namespace {

// Twelve primaries and eleven secondaries on a sine of 3 minutes over a slow drift, errors of
// 20 s to 50 s; far enough apart that no two discs touch.
OcDiagram sampleDiagram(OcAxis axis = OcAxis::Cycle)
{
    OcDiagram d;
    d.ephemeris = {2459500.3125, 0.547231, true};
    d.axis = axis;
    d.title = QStringLiteral("long-light-curve.csv");
    for (int i = 0; i < 23; ++i) {
        OcPoint p;
        p.cycle = 2.0 * i + (i % 2 == 1 ? 0.5 : 0);
        p.time = d.ephemeris.t0 + p.cycle * d.ephemeris.period;
        p.oc = 0.002 * std::sin(2 * M_PI * p.cycle / 20) + 2e-5 * p.cycle;
        p.error = (20 + 30 * (i % 3) / 2.0) / 86400;
        d.points.push_back(p);
    }
    fitLine(d);
    return d;
}

QRgb rgb(const QColor& c) { return c.rgb(); }

} // namespace

class TestOcPlot : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void formatBySuffix_data();
    void formatBySuffix();
    void frameInMinutesOrDays();
    void frameSpansEveryBar();
    void pngHasTheMarkersWhereTheFrameSays_data();
    void pngHasTheMarkersWhereTheFrameSays();
    void pngDrawsTheFittedLine();
    void svgHasOneDiscPerMinimum();
    void pdfHasOnePage();
    void refusesUnknownSuffixAndUnwritablePath();
    void emptyDiagramDraws();

private:
    QTemporaryDir m_dir;
};

void TestOcPlot::formatBySuffix_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("format"); // -1: none
    QTest::newRow("png") << "a/b/oc.png" << int(PlotFormat::Png);
    QTest::newRow("upper case") << "OC.PNG" << int(PlotFormat::Png);
    QTest::newRow("svg") << "oc.svg" << int(PlotFormat::Svg);
    QTest::newRow("pdf") << "oc.pdf" << int(PlotFormat::Pdf);
    QTest::newRow("jpeg") << "oc.jpg" << -1;
    QTest::newRow("none") << "oc" << -1;
}

void TestOcPlot::formatBySuffix()
{
    QFETCH(QString, path);
    QFETCH(int, format);
    const auto f = plotFormatFor(path);
    QCOMPARE(f.has_value() ? int(*f) : -1, format);
}

void TestOcPlot::frameInMinutesOrDays()
{
    const QRectF area(0, 0, 1200, 800);
    OcDiagram d = sampleDiagram();
    QCOMPARE(ocPlotFrame(d, area).yScale, 1440.0); // within 3 min of zero
    d.points[3].oc = 0.05;
    QCOMPARE(ocPlotFrame(d, area).yScale, 1.0);
}

void TestOcPlot::frameSpansEveryBar()
{
    const QRectF area(0, 0, 1200, 800);
    for (const OcAxis axis : {OcAxis::Cycle, OcAxis::Time}) {
        const OcDiagram d = sampleDiagram(axis);
        const OcPlotFrame f = ocPlotFrame(d, area);
        QVERIFY(area.contains(f.box));
        for (const OcPoint& p : d.points) {
            QVERIFY(f.box.contains(f.map(f.xOf(p, axis), p.oc + p.error)));
            QVERIFY(f.box.contains(f.map(f.xOf(p, axis), p.oc - p.error)));
        }
        // Larger O - C is higher on the picture, later is further right.
        QVERIFY(f.yToDevice(0.001) < f.yToDevice(0));
        QVERIFY(f.xToDevice(f.xOf(d.points[1], axis)) > f.xToDevice(f.xOf(d.points[0], axis)));
    }
}

void TestOcPlot::pngHasTheMarkersWhereTheFrameSays_data()
{
    QTest::addColumn<int>("axis");
    QTest::newRow("against the cycle") << int(OcAxis::Cycle);
    QTest::newRow("against the time") << int(OcAxis::Time);
}

void TestOcPlot::pngHasTheMarkersWhereTheFrameSays()
{
    QFETCH(int, axis);
    const OcDiagram d = sampleDiagram(OcAxis(axis));
    const QString path = m_dir.filePath(QStringLiteral("oc%1.png").arg(axis));
    QString error;
    QVERIFY2(saveOcDiagram(path, d, &error), qPrintable(error));
    QImage image(path);
    QCOMPARE(image.size(), ocPlotSize());
    const OcPlotFrame f = ocPlotFrame(d, QRectF(QPointF(0, 0), QSizeF(image.size())));
    int primaries = 0, secondaries = 0;
    for (const OcPoint& p : d.points) {
        const QPointF c = f.map(f.xOf(p, d.axis), p.oc);
        const QRgb pixel = image.pixel(int(c.x()), int(c.y()));
        const QColor want = p.secondary() ? occolours::secondary : occolours::primary;
        QCOMPARE(QColor(pixel), want);
        (p.secondary() ? secondaries : primaries) += 1;
    }
    QCOMPARE(primaries, 12);
    QCOMPARE(secondaries, 11);
    // Away from the points the picture is white.
    QCOMPARE(image.pixel(int(f.box.right() - 3), int(f.box.bottom() - 3)), qRgb(255, 255, 255));
}

void TestOcPlot::pngDrawsTheFittedLine()
{
    // One primary far above a line set by the others, so the line runs alone between them.
    OcDiagram d;
    d.ephemeris = {0, 1, false};
    for (int i = 0; i <= 10; ++i)
        d.points.push_back({double(i * 10), 0, 0.001 * i, 0});
    d.fit = EphemerisFit();
    d.fit->intercept = 0;
    d.fit->slope = 0.0001;
    QImage image(ocPlotSize(), QImage::Format_RGB32);
    {
        QPainter painter(&image);
        paintOcDiagram(painter, QRectF(QPointF(0, 0), QSizeF(image.size())), d);
    }
    const OcPlotFrame f = ocPlotFrame(d, QRectF(QPointF(0, 0), QSizeF(image.size())));
    // Half-way between two points, some pixel of the column beside the line is its purple.
    const QPointF mid = f.map(45, 0.0045);
    bool found = false;
    for (int dy = -2; dy <= 2; ++dy)
        found = found || image.pixel(int(mid.x()), int(mid.y()) + dy) == rgb(occolours::line);
    QVERIFY(found);
    // And far from it there is none.
    const QPointF off = f.map(45, 0.0085);
    QVERIFY(image.pixel(int(off.x()), int(off.y())) != rgb(occolours::line));
}

void TestOcPlot::svgHasOneDiscPerMinimum()
{
    const OcDiagram d = sampleDiagram();
    const QString path = m_dir.filePath(QStringLiteral("oc.svg"));
    QString error;
    QVERIFY2(saveOcDiagram(path, d, &error), qPrintable(error));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QXmlStreamReader xml(&file);
    int red = 0, blue = 0;
    // Each disc is an ellipse inside a group that carries its fill.
    QStringList fills;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement()) {
            const QString fill = xml.attributes().value(QLatin1String("fill")).toString();
            fills.push_back(fill.isEmpty() ? (fills.isEmpty() ? QString() : fills.back()) : fill);
            if (xml.name() == QLatin1String("ellipse") || xml.name() == QLatin1String("circle")) {
                red += fills.back() == QLatin1String("#ff0000");
                blue += fills.back() == QLatin1String("#0000ff");
            }
        } else if (xml.isEndElement()) {
            fills.pop_back();
        }
    }
    QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
    QCOMPARE(red, 12);
    QCOMPARE(blue, 11);
}

void TestOcPlot::pdfHasOnePage()
{
    const QString path = m_dir.filePath(QStringLiteral("oc.pdf"));
    QString error;
    QVERIFY2(saveOcDiagram(path, sampleDiagram(), &error), qPrintable(error));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray pdf = file.readAll();
    QVERIFY(pdf.startsWith("%PDF-"));
    const QRegularExpression page(QStringLiteral("/Type\\s*/Page(?![a-zA-Z])"));
    QCOMPARE(QString::fromLatin1(pdf).count(page), 1);
}

void TestOcPlot::refusesUnknownSuffixAndUnwritablePath()
{
    QString error;
    QVERIFY(!saveOcDiagram(m_dir.filePath(QStringLiteral("oc.gif")), sampleDiagram(), &error));
    QVERIFY(error.contains(QStringLiteral(".png, .svg or .pdf")));
    QVERIFY(!QFile::exists(m_dir.filePath(QStringLiteral("oc.gif"))));
    error.clear();
    QVERIFY(!saveOcDiagram(m_dir.filePath(QStringLiteral("no/such/folder/oc.png")), sampleDiagram(), &error));
    QVERIFY(error.contains(QStringLiteral("cannot be written")));
}

void TestOcPlot::emptyDiagramDraws()
{
    OcDiagram d;
    const QString path = m_dir.filePath(QStringLiteral("empty.png"));
    QString error;
    QVERIFY2(saveOcDiagram(path, d, &error), qPrintable(error));
    QCOMPARE(QImage(path).size(), ocPlotSize());
}

QTEST_MAIN(TestOcPlot)
#include "tst_ocplot.moc"
