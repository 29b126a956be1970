// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers

#include "MeasureRun.h"

#include "analysis/BatchMethods.h"
#include "app/Batch.h"
#include "support/TestSupport.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QtTest>

#include <atomic>
#include <cmath>

using namespace dip;

namespace {

// Three primaries of T0 = 0.3, P = 0.8 (reduced times), at a 2-minute cadence from 0 to 2 d.
QByteArray threeEclipses()
{
    QByteArray out = "HJD,Mag\n";
    for (int i = 0; i * 2.0 / 1440 <= 2; ++i) {
        const double t = i * 2.0 / 1440;
        const double phase = (t - 0.3) / 0.8 - std::round((t - 0.3) / 0.8);
        const double x = phase * 0.8 / 0.05;
        const double m = 10 + (std::abs(x) < 1 ? 0.5 * std::pow(1 - x * x, 1.5) : 0) + 0.002 * std::sin(i * 12.9898);
        out += QByteArray::number(t, 'f', 6) + "," + QByteArray::number(m, 'f', 4) + "\n";
    }
    return out;
}

struct Plotted {
    int calls = 0;
    QString path;
    OcDiagram diagram;
    bool succeed = true;
};

test::Run batch(const QStringList& arguments, Plotted* plotted = nullptr, const MethodRunner& runner = runBatchMethod)
{
    std::FILE* out = std::tmpfile();
    std::FILE* err = std::tmpfile();
    test::Run r;
    r.code = RunBatch(arguments, out, err, runner, [plotted](const QString& path, const OcDiagram& d, QString* error) {
        if (!plotted)
            return false;
        ++plotted->calls;
        plotted->path = path;
        plotted->diagram = d;
        if (!plotted->succeed)
            *error = QStringLiteral("%1: cannot be written (test)").arg(path);
        return plotted->succeed;
    });
    r.out = test::readAll(out);
    r.err = test::readAll(err);
    return r;
}

const QStringList ephemeris = {QStringLiteral("--ephemeris"), QStringLiteral("0.3,0.8")};

} // namespace

class TestBatch : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void badCommandLines_data();
    void badCommandLines();
    void timesEveryEclipse();
    void defaultMethodsAreKweeAndFourier();
    void everyMethodOfTheBatch();
    void badFileIsSkippedTheOthersDone();
    void missingFile();
    void jsonLines();
    void outputFile();
    void unwritableOutput();
    void plotOfTheFirstMethod();
    void diagramTimeNameFromTheFile();
    void plotThatCannotBeWritten();
    void bootstrapErrors();
    void bootstrapColumnFromTheRunner();
    void wantsPlot();
    void installedToolOnTheExample();

private:
    test::DataFolder m_folder;
    QString m_good;
};

void TestBatch::init() { m_good = m_folder.write(QStringLiteral("good.csv"), threeEclipses()); }

void TestBatch::badCommandLines_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("message");
    const QString f = QStringLiteral("x.csv");
    QTest::newRow("no ephemeris") << QStringList{f} << "--ephemeris T0,P is needed";
    QTest::newRow("no file") << ephemeris << "no FILE given";
    QTest::newRow("one number") << QStringList{f, "--ephemeris", "0.3"} << "--ephemeris takes 2 comma-separated times";
    QTest::newRow("not a number") << QStringList{f, "--ephemeris=0.3,abc"} << "--ephemeris: 'abc' is not a number";
    QTest::newRow("zero period") << QStringList{f, "--ephemeris", "0.3,0"} << "--ephemeris: the period must be above 0";
    QTest::newRow("tracing paper") << (QStringList{f, "--methods", "1,2"} + ephemeris)
                                   << "--methods: 2 is not one of 1, 3, 4, 5, 6";
    QTest::newRow("method twice") << (QStringList{f, "--methods=4,4"} + ephemeris) << "--methods: 4 is given twice";
    QTest::newRow("method 7") << (QStringList{f, "--methods=7"} + ephemeris)
                              << "--methods: 7 is not one of 1, 3, 4, 5, 6";
    QTest::newRow("format") << (QStringList{f, "--format", "xml"} + ephemeris) << "--format is csv or jsonl";
    QTest::newRow("plot suffix") << (QStringList{f, "--plot", "oc.gif"} + ephemeris)
                                 << "--plot: a plot is written as .png, .svg or .pdf";
    QTest::newRow("plot axis") << (QStringList{f, "--plot-against", "phase"} + ephemeris)
                               << "--plot-against is cycle or time";
    QTest::newRow("half-width negative") << (QStringList{f, "--half-width", "-0.1"} + ephemeris)
                                         << "--half-width must be positive or auto";
    QTest::newRow("half-width reaches the next eclipse")
        << (QStringList{f, "--half-width", "0.4"} + ephemeris) << "--half-width must be below 0.4 d";
    QTest::newRow("half-width with secondaries")
        << (QStringList{f, "--secondary", "--half-width=0.2"} + ephemeris) << "--half-width must be below 0.2 d";
    QTest::newRow("threads") << (QStringList{f, "--threads", "0"} + ephemeris)
                             << "--threads: '0' is not a whole number of at least 1";
    QTest::newRow("min branch") << (QStringList{f, "--min-branch", "two"} + ephemeris)
                                << "--min-branch: 'two' is not a whole number of at least 1";
    QTest::newRow("flag with a value") << (QStringList{f, "--secondary=yes"} + ephemeris)
                                       << "--secondary takes no value";
    QTest::newRow("missing value") << (QStringList{f} + ephemeris + QStringList{"--output"})
                                   << "--output needs a value";
    QTest::newRow("unknown") << (QStringList{f, "--fast"} + ephemeris) << "unknown option --fast";
    QTest::newRow("correlated noise alone")
        << (QStringList{f, "--correlated-noise"} + ephemeris) << "--correlated-noise goes with --bootstrap";
    QTest::newRow("correlated noise with a value")
        << (QStringList{f, "--bootstrap=5", "--correlated-noise=1"} + ephemeris) << "--correlated-noise takes no value";
}

void TestBatch::badCommandLines()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, message);
    const test::Run r = batch(arguments);
    QCOMPARE(r.code, 64);
    QCOMPARE(r.out, QString());
    QVERIFY2(r.err.startsWith(QStringLiteral("dipscope-batch: ") + message), qPrintable(r.err));
    QVERIFY(r.err.contains(QStringLiteral("usage: dipscope-batch")));
}

void TestBatch::timesEveryEclipse()
{
    const test::Run r =
        batch(QStringList{m_good, "--methods", "1,4", "--half-width", "0.07", "--threads", "2"} + ephemeris);
    QCOMPARE(r.code, 0);
    const QStringList lines = r.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 1 + 3 * 2);
    QCOMPARE(lines[0], QStringLiteral("file,E,type,method,time,error,bootstrap_error,o_c,o_c_min,points,status"));
    for (int i = 1; i < lines.size(); ++i) {
        const int cycle = (i - 1) / 2;
        const int method = i % 2 == 1 ? 1 : 4;
        QVERIFY2(lines[i].startsWith(m_good + QStringLiteral(",%1,p,%2,").arg(cycle).arg(method)),
                 qPrintable(lines[i]));
        QVERIFY2(lines[i].endsWith(QStringLiteral(",ok")), qPrintable(lines[i]));
        // Each method finds each noiseless-shaped eclipse within a cadence of its prediction.
        const QStringList fields = lines[i].split(QLatin1Char(','));
        QVERIFY(std::abs(fields[7].toDouble()) < 2.0 / 1440);
        QVERIFY(std::abs(fields[8].toDouble() - fields[7].toDouble() * 1440) < 0.5e-5 + 1440 * 0.5e-8);
        QVERIFY(fields[9].toInt() > 50);
    }
    QCOMPARE(r.err, QStringLiteral("dipscope-batch: ") + m_good +
                        QStringLiteral(": 3 eclipses predicted, 0 skipped; half-width 0.07000 d\n"));
}

void TestBatch::defaultMethodsAreKweeAndFourier()
{
    const test::Run r = batch(QStringList{m_good, "--half-width=0.07"} + ephemeris);
    QCOMPARE(r.code, 0);
    const QStringList lines = r.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 1 + 3 * 2);
    for (int i = 1; i < lines.size(); ++i) {
        const QStringList fields = lines[i].split(QLatin1Char(','));
        QCOMPARE(fields[3], i % 2 == 1 ? QStringLiteral("4") : QStringLiteral("5"));
        QCOMPARE(fields[10], QStringLiteral("ok"));
        QVERIFY(std::abs(fields[7].toDouble()) < 2.0 / 1440);
    }
}

void TestBatch::everyMethodOfTheBatch()
{
    const test::Run r = batch(QStringList{m_good, "--methods=6,5,4,3,1", "--half-width=0.07"} + ephemeris);
    QCOMPARE(r.code, 0);
    const QStringList lines = r.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 1 + 3 * 5);
    const int order[] = {6, 5, 4, 3, 1}; // as given
    for (int i = 1; i < lines.size(); ++i) {
        const QStringList fields = lines[i].split(QLatin1Char(','));
        QCOMPARE(fields[3].toInt(), order[(i - 1) % 5]);
        QVERIFY2(fields[10] == QStringLiteral("ok"), qPrintable(lines[i]));
        QVERIFY2(std::abs(fields[7].toDouble()) < 2.0 / 1440, qPrintable(lines[i]));
        QVERIFY2(!fields[5].isEmpty() && fields[5].toDouble() > 0, qPrintable(lines[i]));
    }
}

void TestBatch::badFileIsSkippedTheOthersDone()
{
    const QString bad = m_folder.write(QStringLiteral("bad.csv"), "HJD,Mag\n0.1,10\n0.2,x\n");
    const test::Run r = batch(QStringList{bad, m_good, "--methods=1", "--half-width=0.07"} + ephemeris);
    QCOMPARE(r.code, 1);
    QVERIFY2(r.err.contains(bad + QStringLiteral(":3: the magnitude \"x\" is not a number; the file is skipped\n")),
             qPrintable(r.err));
    const QStringList lines = r.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 1 + 3);
    for (int i = 1; i < lines.size(); ++i)
        QVERIFY(lines[i].startsWith(m_good + QLatin1Char(',')));

    // With the default methods, the bad file between two good ones: both good files are timed.
    const QString other = m_folder.write(QStringLiteral("other.csv"), threeEclipses());
    const QString cut = m_folder.write(QStringLiteral("cut.csv"), "HJD,Mag\n0.1,10\n0.2,10\n0.3\n");
    const test::Run d = batch(QStringList{m_good, cut, other, "--half-width=0.07"} + ephemeris);
    QCOMPARE(d.code, 1);
    QVERIFY2(
        d.err.contains(cut + QStringLiteral(":4: the file ends before the row is complete; the file is skipped\n")),
        qPrintable(d.err));
    const QStringList rows = d.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(rows.size(), 1 + 2 * 3 * 2);
    for (int i = 1; i < rows.size(); ++i) {
        QVERIFY2(rows[i].startsWith((i <= 6 ? m_good : other) + QLatin1Char(',')), qPrintable(rows[i]));
        QVERIFY2(rows[i].endsWith(QLatin1String(",ok")), qPrintable(rows[i]));
    }
}

void TestBatch::missingFile()
{
    const QString none = m_folder.path() + QStringLiteral("/none.csv");
    const test::Run r = batch(QStringList{m_good, none, "--methods=1"} + ephemeris);
    QCOMPARE(r.code, 1);
    QVERIFY2(r.err.contains(QStringLiteral("dipscope-batch: ") + none + QStringLiteral(": cannot be read")),
             qPrintable(r.err));
    // The measured half-width of the good file's three eclipses: no eclipse is skipped.
    QVERIFY(r.err.contains(QStringLiteral(": 3 eclipses predicted, 0 skipped; half-width ")));
    QVERIFY(r.err.contains(QStringLiteral(" d (measured)\n")));
}

void TestBatch::jsonLines()
{
    const test::Run r = batch(QStringList{m_good, "--methods=1", "--format=jsonl", "--half-width=0.07"} + ephemeris);
    QCOMPARE(r.code, 0);
    const QStringList lines = r.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 3);
    for (int i = 0; i < 3; ++i) {
        QJsonParseError error;
        const QJsonObject o = QJsonDocument::fromJson(lines[i].toUtf8(), &error).object();
        QCOMPARE(error.error, QJsonParseError::NoError);
        QCOMPARE(o.value(QStringLiteral("cycle")).toDouble(), double(i));
        QCOMPARE(o.value(QStringLiteral("status")).toString(), QStringLiteral("ok"));
        QVERIFY(std::abs(o.value(QStringLiteral("time")).toDouble() - (0.3 + 0.8 * i)) < 2.0 / 1440);
    }
}

void TestBatch::outputFile()
{
    const QString path = m_folder.path() + QStringLiteral("/rows.csv");
    const test::Run r = batch(QStringList{m_good, "--methods=1", "--half-width=0.07", "--output", path} + ephemeris);
    QCOMPARE(r.code, 0);
    QCOMPARE(r.out, QString());
    QFile f(path);
    QVERIFY(f.open(QIODevice::ReadOnly));
    const QByteArray rows = f.readAll();
    QVERIFY(rows.startsWith("file,E,type,"));
    QCOMPARE(rows.count('\n'), 4);
}

void TestBatch::unwritableOutput()
{
    const QString path = m_folder.path() + QStringLiteral("/no/such/folder/rows.csv");
    const test::Run r = batch(QStringList{m_good, "--output", path} + ephemeris);
    QCOMPARE(r.code, 2);
    QCOMPARE(r.err, QStringLiteral("dipscope-batch: %1: cannot be written\n").arg(path));
}

void TestBatch::plotOfTheFirstMethod()
{
    Plotted plotted;
    const test::Run r =
        batch(QStringList{m_good, "--methods=1,5", "--half-width=0.07", "--plot", "oc.svg", "--plot-against", "time"} +
                  ephemeris,
              &plotted);
    QCOMPARE(r.code, 0);
    QCOMPARE(plotted.calls, 1);
    QCOMPARE(plotted.path, QStringLiteral("oc.svg"));
    const OcDiagram& d = plotted.diagram;
    QCOMPARE(d.title, m_good);
    QCOMPARE(d.axis, OcAxis::Time);
    QCOMPARE(d.timeName, QStringLiteral("HJD"));
    QCOMPARE(d.ephemeris.t0, 0.3);
    QCOMPARE(d.points.size(), std::size_t(3)); // the first method's (1), one an eclipse
    for (std::size_t i = 0; i < 3; ++i) {
        QCOMPARE(d.points[i].cycle, double(i));
        QVERIFY(std::abs(d.points[i].time - (0.3 + 0.8 * double(i)) - d.points[i].oc) < 1e-12);
        QVERIFY(d.points[i].error > 0);
    }
    QVERIFY(d.fit.has_value());
    QCOMPARE(d.fit->count, 3);
}

void TestBatch::diagramTimeNameFromTheFile()
{
    // A header naming BJD_TDB (an AstroImageJ table): the diagram's times are BJD.
    QByteArray text = threeEclipses();
    text.replace("HJD,Mag", "BJD_TDB,Mag");
    const QString path = m_folder.write(QStringLiteral("bjd.csv"), text);
    Plotted plotted;
    const test::Run r = batch(QStringList{path, "--half-width=0.07", "--plot", "oc.pdf"} + ephemeris, &plotted);
    QCOMPARE(r.code, 0);
    QCOMPARE(plotted.diagram.timeName, QStringLiteral("BJD"));
    QCOMPARE(plotted.diagram.points.size(), std::size_t(3));
}

void TestBatch::plotThatCannotBeWritten()
{
    Plotted plotted;
    plotted.succeed = false;
    const test::Run r =
        batch(QStringList{m_good, "--methods=1", "--half-width=0.07", "--plot=oc.png"} + ephemeris, &plotted);
    QCOMPARE(r.code, 2);
    QVERIFY(r.err.endsWith(QStringLiteral("dipscope-batch: oc.png: cannot be written (test)\n")));
    QCOMPARE(r.out.count(QLatin1Char('\n')), 4); // the rows are written all the same
}

void TestBatch::bootstrapErrors()
{
    const test::Run r = batch(QStringList{m_good, "--methods=1", "--half-width=0.07", "--bootstrap", "40"} + ephemeris);
    QCOMPARE(r.code, 0);
    const QStringList lines = r.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 4);
    for (int i = 1; i < lines.size(); ++i) {
        const QStringList fields = lines[i].split(QLatin1Char(','));
        QVERIFY2(fields[6].toDouble() > 0, qPrintable(lines[i]));
        QCOMPARE(fields[10], QStringLiteral("ok"));
    }
    QVERIFY2(!r.err.contains(QStringLiteral("bootstrap")), qPrintable(r.err));
}

void TestBatch::bootstrapColumnFromTheRunner()
{
    // The runner's bootstrap error goes into its column; the runner is asked for the count given.
    std::atomic<int> asked{0};
    std::atomic<bool> correlated{false};
    const MethodRunner runner = [&](const BatchWindow& w, int method, const BatchBootstrap& bootstrap) {
        asked = bootstrap.replicates;
        correlated = bootstrap.correlatedNoise;
        MethodOutcome out = runBatchMethod(w, method);
        out.bootstrapError = 0.000125;
        return out;
    };
    const test::Run r =
        batch(QStringList{m_good, "--methods=4", "--half-width=0.07", "--bootstrap=25"} + ephemeris, nullptr, runner);
    QCOMPARE(r.code, 0);
    QCOMPARE(asked.load(), 25);
    QVERIFY(!correlated.load());
    const QStringList lines = r.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 4);
    for (int i = 1; i < lines.size(); ++i)
        QCOMPARE(lines[i].split(QLatin1Char(','))[6], QStringLiteral("0.00012500"));
    // Without --bootstrap the runner is asked for none, and the column stays empty.
    const test::Run none = batch(QStringList{m_good, "--methods=4", "--half-width=0.07"} + ephemeris, nullptr, runner);
    QCOMPARE(asked.load(), 0);
    // --correlated-noise is passed on to the runner.
    const test::Run told = batch(
        QStringList{m_good, "--methods=4", "--half-width=0.07", "--bootstrap=25", "--correlated-noise"} + ephemeris,
        nullptr, runner);
    QCOMPARE(told.code, 0);
    QCOMPARE(asked.load(), 25);
    QVERIFY(correlated.load());
    QCOMPARE(none.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts)[1].split(QLatin1Char(','))[6], QString());
}

void TestBatch::wantsPlot()
{
    QVERIFY(BatchWantsPlot({"a.csv", "--plot", "oc.png"}));
    QVERIFY(BatchWantsPlot({"--plot=oc.pdf"}));
    QVERIFY(!BatchWantsPlot({"a.csv", "--plot-against", "time"}));
    QVERIFY(!BatchWantsPlot({"a.csv"}));
}

void TestBatch::installedToolOnTheExample()
{
    // The console tool itself, as the README runs it, with a real picture.
    const QString png = m_folder.path() + QStringLiteral("/oc.png");
    QProcess tool;
    tool.start(QStringLiteral(DIPSCOPE_BATCH),
               {qEnvironmentVariable("DIPSCOPE_SOURCE_DIR") + QStringLiteral("/examples/long-light-curve.csv"),
                "--ephemeris", "2459500.31250,0.547231", "--secondary", "--threads", "2", "--plot", png});
    QVERIFY(tool.waitForFinished(60000));
    QCOMPARE(tool.exitCode(), 0);
    const QStringList lines = QString::fromUtf8(tool.readAllStandardOutput()).split(QLatin1Char('\n'));
    // The header, one row per eclipse and method (4 and 5), the empty rest after the last line end.
    QCOMPARE(lines.size(), 1 + 2 * 103 + 1);
    QCOMPARE(lines.filter(QStringLiteral(",skipped: ")).size(), 2 * 4);
    QCOMPARE(lines.filter(QRegularExpression(QStringLiteral(",ok$"))).size(), 2 * 99);
    QVERIFY(
        QString::fromUtf8(tool.readAllStandardError()).contains(QStringLiteral("103 eclipses predicted, 4 skipped")));
    QFile f(png);
    QVERIFY(f.open(QIODevice::ReadOnly));
    const QByteArray head = f.read(24);
    QVERIFY(head.startsWith("\x89PNG\r\n\x1a\n"));
    // The header chunk: width and height, big-endian, after its length and name.
    auto word = [&](int at) {
        return (quint32(quint8(head[at])) << 24) | (quint32(quint8(head[at + 1])) << 16) |
               (quint32(quint8(head[at + 2])) << 8) | quint32(quint8(head[at + 3]));
    };
    QCOMPARE(head.mid(12, 4), QByteArray("IHDR"));
    QCOMPARE(word(16), quint32(1200));
    QCOMPARE(word(20), quint32(800));
}

QTEST_GUILESS_MAIN(TestBatch)
#include "tst_batch.moc"
