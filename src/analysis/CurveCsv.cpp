// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/CurveCsv.h"

#include "analysis/InputError.h"

#include <QFile>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace dip {

namespace {

bool isHeader(const QByteArray& line)
{
    for (const char c : line)
        if (!(c == ' ' || c == '+' || c == '-' || c == '.' || c == ',' || (c >= '0' && c <= '9')))
            return true;
    return false;
}

bool isBlank(const QByteArray& line)
{
    for (const char c : line)
        if (c != ' ' && c != '\t')
            return false;
    return true;
}

double number(const QByteArray& field, const QString& name, int line, const char* what)
{
    bool ok = false;
    // QByteArray::toDouble reads the C locale's numbers, whatever the process's locale is.
    const double x = field.trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(x))
        throw InputError(name, line,
                         QStringLiteral("the %1 \"%2\" is not a number")
                             .arg(QLatin1String(what), QString::fromUtf8(field.trimmed())));
    return x;
}

} // namespace

LightCurve parseCurveCsv(const QByteArray& text, const QString& name)
{
    LightCurve curve;
    curve.source = name;
    std::vector<double> times, mags;
    int lineNumber = 0;
    bool firstLine = true;
    qsizetype pos = 0;
    while (pos < text.size()) {
        qsizetype end = text.indexOf('\n', pos);
        if (end < 0)
            end = text.size();
        QByteArray line = text.mid(pos, end - pos);
        pos = end + 1;
        ++lineNumber;
        if (line.endsWith('\r'))
            line.chop(1);
        if (isBlank(line) || line.trimmed().startsWith('#'))
            continue;
        if (firstLine) {
            firstLine = false;
            if (isHeader(line)) {
                curve.firstLineSkipped = true;
                continue;
            }
        }
        const qsizetype comma = line.indexOf(',');
        if (comma < 0)
            throw InputError(name, lineNumber,
                             QStringLiteral("a data line needs a time and a magnitude, "
                                            "separated by a comma"));
        qsizetype magEnd = line.indexOf(',', comma + 1);
        if (magEnd < 0)
            magEnd = line.size();
        times.push_back(number(line.left(comma), name, lineNumber, "time"));
        mags.push_back(number(line.mid(comma + 1, magEnd - comma - 1), name, lineNumber, "magnitude"));
    }
    if (times.empty())
        throw InputError(name, 0, QStringLiteral("no data rows"));

    std::vector<std::size_t> order(times.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return times[a] < times[b]; });
    curve.times.reserve(order.size());
    curve.mags.reserve(order.size());
    for (const std::size_t i : order) {
        curve.times.push_back(times[i]);
        curve.mags.push_back(mags[i]);
    }
    curve.rowCount = static_cast<int>(curve.times.size());
    return curve;
}

LightCurve readCurveCsv(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw InputError(path, 0, QStringLiteral("cannot be read (%1)").arg(file.errorString()));
    return parseCurveCsv(file.readAll(), path);
}

} // namespace dip
