// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "session/CsvInput.h"

#include "runtime/RuntimeError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace dip {

namespace {

bool isBlank(QChar c) { return c == QLatin1Char(' ') || c == QLatin1Char('\t'); }

bool isBlankLine(const QString& line)
{
    for (const QChar c : line)
        if (!isBlank(c))
            return false;
    return true;
}

} // namespace

CsvInput::CsvInput(const QString& path)
{
    const QFileInfo info(path);
    if (!info.dir().exists())
        rt::raise(76);
    QFile file(path);
    if (info.isDir() || !file.open(QIODevice::ReadOnly))
        rt::raise(53);
    splitLines(file.readAll());
}

void CsvInput::splitLines(const QByteArray& data)
{
    // Bytes are taken as Latin-1, one character each, so that any file can be read.
    const QString text = QString::fromLatin1(data);
    int start = 0;
    const int n = text.size();
    for (int i = 0; i <= n; ++i) {
        const bool end = i == n;
        if (!end && text[i] != QLatin1Char('\n') && text[i] != QLatin1Char('\r'))
            continue;
        const QString line = text.mid(start, i - start);
        if (!end || !line.isEmpty())
            ++m_lineCount;
        if (!isBlankLine(line)) {
            m_lines.push_back(line);
            m_numbers.push_back(m_lineCount);
        }
        if (!end && text[i] == QLatin1Char('\r') && i + 1 < n && text[i + 1] == QLatin1Char('\n'))
            ++i;
        start = i + 1;
    }
}

QString CsvInput::lineInput()
{
    if (m_pos > 0 || m_fieldPending) {
        // The rest of a line partly read by field input is dropped.
        ++m_line;
        m_pos = 0;
        m_fieldPending = false;
    }
    if (m_line >= m_lines.size())
        rt::raise(62);
    return m_lines[m_line++];
}

int CsvInput::lineNumber() const { return m_line < m_numbers.size() ? m_numbers[m_line] : m_lineCount; }

bool CsvInput::eof() { return !m_fieldPending && m_line >= m_lines.size(); }

CsvInput::Field CsvInput::input()
{
    if (m_line >= m_lines.size())
        rt::raise(62);
    const QString& line = m_lines[m_line];
    const int n = line.size();
    int i = m_pos;
    while (i < n && isBlank(line[i]))
        ++i;

    Field field;
    if (i < n && line[i] == QLatin1Char('"')) {
        field.quoted = true;
        const int close = line.indexOf(QLatin1Char('"'), i + 1);
        const int stop = close < 0 ? n : close;
        field.text = line.mid(i + 1, stop - i - 1);
        i = close < 0 ? n : close + 1;
        while (i < n && line[i] != QLatin1Char(','))
            ++i;
    } else {
        const int comma = line.indexOf(QLatin1Char(','), i);
        const int stop = comma < 0 ? n : comma;
        int end = stop;
        while (end > i && isBlank(line[end - 1]))
            --end;
        field.text = line.mid(i, end - i);
        i = stop;
    }

    if (i < n) {
        // A comma ends this field; another one follows on the same line, even if empty.
        m_pos = i + 1;
        m_fieldPending = true;
    } else {
        m_fieldPending = false;
        ++m_line;
        m_pos = 0;
    }
    return field;
}

} // namespace dip
