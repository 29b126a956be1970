// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "import/TextFile.h"

#include "import/ImportError.h"

#include <QFile>
#include <QFileInfo>

#include <cmath>
#include <limits>

namespace dip::import {

QString fileLabel(const QString& path) { return path; }

std::vector<QString> readTextLines(const QString& path)
{
    QFile file(path);
    if (QFileInfo(path).isDir())
        throw ImportError(fileLabel(path), 0, QStringLiteral("is a folder, not a file"));
    if (!file.open(QIODevice::ReadOnly))
        throw ImportError(fileLabel(path), 0, QStringLiteral("cannot be read (%1)").arg(file.errorString()));
    QByteArray data = file.readAll();
    if (data.startsWith("\xEF\xBB\xBF"))
        data.remove(0, 3);
    const QString text = QString::fromUtf8(data);
    std::vector<QString> lines;
    int start = 0;
    const int n = text.size();
    for (int i = 0; i < n; ++i) {
        if (text[i] != QLatin1Char('\n') && text[i] != QLatin1Char('\r'))
            continue;
        lines.push_back(text.mid(start, i - start));
        if (text[i] == QLatin1Char('\r') && i + 1 < n && text[i + 1] == QLatin1Char('\n'))
            ++i;
        start = i + 1;
    }
    if (start < n)
        lines.push_back(text.mid(start));
    return lines;
}

std::optional<double> numberField(const QString& text)
{
    const QString s = text.trimmed();
    if (s.compare(QLatin1String("nan"), Qt::CaseInsensitive) == 0)
        return std::numeric_limits<double>::quiet_NaN();
    // Digits, one point, an optional sign in front and an optional exponent: nothing that
    // Qt's own reading would take beyond that ("inf", "0x1p3").
    int i = 0;
    const int n = s.size();
    if (i < n && (s[i] == QLatin1Char('+') || s[i] == QLatin1Char('-')))
        ++i;
    int digits = 0;
    while (i < n && s[i].isDigit() && s[i].unicode() < 128) {
        ++i;
        ++digits;
    }
    if (i < n && s[i] == QLatin1Char('.')) {
        ++i;
        while (i < n && s[i].isDigit() && s[i].unicode() < 128) {
            ++i;
            ++digits;
        }
    }
    if (digits == 0)
        return std::nullopt;
    if (i < n && (s[i] == QLatin1Char('e') || s[i] == QLatin1Char('E'))) {
        ++i;
        if (i < n && (s[i] == QLatin1Char('+') || s[i] == QLatin1Char('-')))
            ++i;
        int expDigits = 0;
        while (i < n && s[i].isDigit() && s[i].unicode() < 128) {
            ++i;
            ++expDigits;
        }
        if (expDigits == 0)
            return std::nullopt;
    }
    if (i != n)
        return std::nullopt;
    bool ok = false;
    const double value = s.toLatin1().toDouble(&ok);
    if (!ok || !std::isfinite(value))
        return std::nullopt;
    return value;
}

} // namespace dip::import
