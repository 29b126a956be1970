// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "support/TestSupport.h"

#include "mainwindow/StartUp.h"
#include "session/LoadDataFile.h"
#include "session/MainForm.h"
#include "session/Session.h"

#include <QDir>
#include <QFile>

#include <cmath>
#include <memory>

namespace dip::test {

bool closeTo(double actual, double expected, double rel)
{
    if (actual == expected)
        return true;
    return std::abs(actual - expected) <= rel * std::max(std::abs(actual), std::abs(expected));
}

MessageRecorder::MessageRecorder()
{
    m_previous = rt::setMsgBoxHook([this](const QString& text, const QString& title) {
        m_messages << text;
        m_titles << title;
    });
}

MessageRecorder::~MessageRecorder() { rt::setMsgBoxHook(m_previous); }

DataFolder::DataFolder() { Q_ASSERT(m_dir.isValid()); }

QString DataFolder::write(const QString& name, const QByteArray& content) const
{
    const QString full = m_dir.filePath(name);
    QFile f(full);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        qFatal("cannot write %s", qPrintable(full));
    f.write(content);
    return full;
}

namespace {
MainBoxes& testBoxes()
{
    static MainBoxes boxes;
    return boxes;
}
} // namespace

void freshSession()
{
    resetSession();
    testBoxes() = MainBoxes();
    setMainForm(&testBoxes());
    StartUpSession();
}

double standardDeviation(const std::vector<double>& values)
{
    double mean = 0;
    for (double x : values)
        mean += x;
    mean /= double(values.size());
    double q = 0;
    for (double x : values)
        q += (x - mean) * (x - mean);
    return std::sqrt(q / double(values.size() - 1));
}

void publishRow(int k, double time, double error, bool ticked)
{
    ResultRow& row = S().Results(k);
    row.published = true;
    row.time = time;
    row.methodTime = time - S().HJDOffset;
    row.error = error;
    row.ticked = ticked;
}

bool loadText(const QByteArray& content, const QString& name)
{
    static std::unique_ptr<DataFolder> folder;
    folder = std::make_unique<DataFolder>();
    freshSession();
    folder->write(name, content);
    return OpenDataFile(folder->path(), name);
}

TimesAndMags readCmDraCurve(const QString& name, double offset)
{
    TimesAndMags p;
    const QString path =
        qEnvironmentVariable("DIPSCOPE_SOURCE_DIR") + QStringLiteral("/tests/methods/data/cmdra/") + name;
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly | QIODevice::Text))
        qFatal("cannot read %s (is DIPSCOPE_SOURCE_DIR set?)", qPrintable(path));
    f.readLine();
    while (!f.atEnd()) {
        const QList<QByteArray> fields = f.readLine().trimmed().split(',');
        if (fields.size() < 2)
            continue;
        p.t.push_back(fields[0].toDouble() - offset);
        p.m.push_back(fields[1].toDouble());
    }
    return p;
}

} // namespace dip::test
