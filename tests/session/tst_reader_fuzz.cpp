// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "session/LoadDataFile.h"
#include "session/MainForm.h"
#include "session/Session.h"
#include "support/TestSupport.h"

#include <QRandomGenerator>

#include <set>

using namespace dip;

namespace {

// Small files of every kind a user might feed the reader by mistake, or on purpose.
QByteArray randomFile(QRandomGenerator& rng)
{
    static const char* const pieces[] = {
        "0",           "1",        "2.5",          "-",     "+",  ".",   ",",       ",,",      "\"",  "\"x\"", "E",
        "e+9",         "1E999",    "-1e-400",      " ",     "\t", "\n",  "\r",      "\r\n",    "HJD", "Mag",   "abc",
        "0.123456789", "99999999", "2459123.4567", "12.34", "&H", "1D3", "\"2.5\"", "\"a,b\"", "nan", "inf"};
    QByteArray out;
    const int kind = static_cast<int>(rng.bounded(6));
    const int length = static_cast<int>(rng.bounded(kind == 5 ? 5000 : 300));
    switch (kind) {
    case 0: // random bytes, NULs included
        for (int i = 0; i < length; ++i)
            out += static_cast<char>(rng.bounded(256));
        break;
    case 1: // pieces of CSV
    case 5: // long ones
        while (out.size() < length)
            out += pieces[rng.bounded(static_cast<quint32>(std::size(pieces)))];
        break;
    case 2: { // well-formed rows with a random number of columns
        const int columns = 1 + static_cast<int>(rng.bounded(8));
        const int rows = static_cast<int>(rng.bounded(40));
        for (int r = 0; r < rows; ++r) {
            for (int c = 0; c < columns; ++c) {
                if (c)
                    out += ',';
                out += QByteArray::number(rng.generateDouble() * 10 - 2, 'g', 1 + static_cast<int>(rng.bounded(16)));
            }
            out += rng.bounded(5) == 0 ? "\r\n" : "\n";
        }
        break;
    }
    case 3: // many commas and quotes on a few lines
        for (int i = 0; i < length; ++i)
            out += ",\"\n 1"[rng.bounded(5)];
        break;
    case 4: // rows that almost parse
        for (int i = 0; i < length / 10; ++i)
            out += QByteArray::number(static_cast<int>(rng.bounded(100))) + (rng.bounded(2) ? "," : ";") +
                   pieces[rng.bounded(static_cast<quint32>(std::size(pieces)))] + '\n';
        break;
    }
    return out;
}

} // namespace

class ReaderFuzzTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void randomFilesLoadOrFailCleanly();
};

void ReaderFuzzTest::randomFilesLoadOrFailCleanly()
{
    QRandomGenerator rng(20261121);
    test::DataFolder folder;
    test::MessageRecorder recorder;
    const std::set<int> allowed = {6, 9, 13, 62};
    int loaded = 0, refused = 0, failed = 0;
    for (int i = 0; i < 10000; ++i) {
        test::freshSession();
        const QByteArray content = randomFile(rng);
        folder.write(QStringLiteral("f.csv"), content);
        try {
            if (OpenDataFile(folder.path(), QStringLiteral("f.csv"))) {
                ++loaded;
                const Session& s = S();
                QVERIFY(s.NumOrig >= -1 && s.NumOrig <= 1000);
                QVERIFY(s.NumPts >= 0 && s.NumPts <= 1000);
                QCOMPARE(int(s.MagSign), 1);
            } else {
                ++refused;
            }
        } catch (const rt::RuntimeError& e) {
            ++failed;
            if (!allowed.count(e.number()))
                QFAIL(qPrintable(QStringLiteral("file %1 raised %2: %3")
                                     .arg(i)
                                     .arg(e.number())
                                     .arg(QString::fromLatin1(content.toHex()))));
        }
    }
    // Every outcome occurs, so the generator reaches all the reader's paths.
    QVERIFY(loaded > 100);
    QVERIFY(refused > 100);
    QVERIFY(failed > 100);
}

QTEST_GUILESS_MAIN(ReaderFuzzTest)
#include "tst_reader_fuzz.moc"
