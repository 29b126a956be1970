// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

#include "runtime/MsgBox.h"
#include "runtime/RuntimeError.h"
#include "support/DipCurves.h"

#include <QStringList>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <vector>

namespace dip::test {

// The sample standard deviation (divisor n - 1) of at least two values.
double standardDeviation(const std::vector<double>& values);

// Relative comparison that also handles zero: |a - b| <= rel * max(|a|, |b|), or both zero.
bool closeTo(double actual, double expected, double rel);

#define DIP_COMPARE_REL(actual, expected, rel)                                                                         \
    do {                                                                                                               \
        const double a_ = (actual), e_ = (expected);                                                                   \
        if (!dip::test::closeTo(a_, e_, (rel)))                                                                        \
            QFAIL(qPrintable(QStringLiteral("%1 = %2, expected %3 (rel %4)")                                           \
                                 .arg(QStringLiteral(#actual))                                                         \
                                 .arg(a_, 0, 'g', 17)                                                                  \
                                 .arg(e_, 0, 'g', 17)                                                                  \
                                 .arg(double(rel))));                                                                  \
    } while (false)

// Expects fn to raise runtime error number.
#define DIP_EXPECT_RUNTIME_ERROR(statement, errorNumber)                                                               \
    do {                                                                                                               \
        int got_ = 0;                                                                                                  \
        try {                                                                                                          \
            statement;                                                                                                 \
        } catch (const rt::RuntimeError& e_) {                                                                         \
            got_ = e_.number();                                                                                        \
        }                                                                                                              \
        QCOMPARE(got_, (errorNumber));                                                                                 \
    } while (false)

// Records every message box shown while it lives, instead of showing it.
class MessageRecorder {
public:
    MessageRecorder();
    ~MessageRecorder();
    const QStringList& messages() const { return m_messages; }
    const QStringList& titles() const { return m_titles; }
    void clear()
    {
        m_messages.clear();
        m_titles.clear();
    }

private:
    QStringList m_messages;
    QStringList m_titles;
    rt::MsgBoxHook m_previous;
};

// A temporary folder with helpers to write data files into it.
class DataFolder {
public:
    DataFolder();
    QString path() const { return m_dir.path(); }
    // Writes text (bytes as given) to name and returns the full path.
    QString write(const QString& name, const QByteArray& content) const;

private:
    QTemporaryDir m_dir;
};

// A published CM Dra eclipse of the source tree's test data (tests/methods/data/cmdra/): its
// "HJD,Mag" lines after the header, times less offset. Ends the test program when the file
// cannot be read (DIPSCOPE_SOURCE_DIR names the source tree).
struct TimesAndMags {
    std::vector<double> t;
    std::vector<double> m;
};
TimesAndMags readCmDraCurve(const QString& name, double offset);

// Resets the session and the main window to the state after start-up, with an in-memory main
// window, and loads the given text as a data file; returns whether it loaded.
bool loadText(const QByteArray& content, const QString& name = QStringLiteral("curve.csv"));

// Resets the session and runs start-up with an in-memory main window.
void freshSession();

// Puts a result into the session's row k as a method would have published it (time with the
// offset), ticked or not, without its box texts.
void publishRow(int k, double time, double error, bool ticked);

} // namespace dip::test
