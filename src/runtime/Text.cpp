// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "runtime/Text.h"

#include "runtime/Numeric.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace rt {

namespace {

bool isBlank(QChar c) { return c == QLatin1Char(' ') || c == QLatin1Char('\t'); }

bool isDigit(QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); }

// Length of the longest numeric prefix of s starting at pos: [+-] digits [. digits]
// [(E|D) [+-] digits]. An exponent counts only when digits follow it. Sets *mantissaDigits to
// the number of digits before the exponent.
int numericPrefix(const QString& s, int pos, int* mantissaDigits)
{
    int i = pos;
    const int n = s.size();
    if (i < n && (s[i] == QLatin1Char('+') || s[i] == QLatin1Char('-')))
        ++i;
    int digits = 0;
    while (i < n && isDigit(s[i])) {
        ++i;
        ++digits;
    }
    if (i < n && s[i] == QLatin1Char('.')) {
        ++i;
        while (i < n && isDigit(s[i])) {
            ++i;
            ++digits;
        }
    }
    *mantissaDigits = digits;
    if (digits == 0)
        return 0;
    if (i < n && (s[i].toUpper() == QLatin1Char('E') || s[i].toUpper() == QLatin1Char('D'))) {
        int j = i + 1;
        if (j < n && (s[j] == QLatin1Char('+') || s[j] == QLatin1Char('-')))
            ++j;
        int expDigits = 0;
        while (j < n && isDigit(s[j])) {
            ++j;
            ++expDigits;
        }
        if (expDigits > 0)
            i = j;
    }
    return i - pos;
}

double toDouble(const QString& s, int pos, int len)
{
    std::string text = s.mid(pos, len).toStdString();
    for (char& c : text)
        if (c == 'd' || c == 'D')
            c = 'E';
    return fin(std::strtod(text.c_str(), nullptr));
}

} // namespace

QString NumText(double x)
{
    if (x == 0.0)
        x = 0.0; // no "-0"
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.15G", x);
    QString s = QString::fromLatin1(buffer);
    if (s.startsWith(QLatin1String("0.")))
        s.remove(0, 1);
    else if (s.startsWith(QLatin1String("-0.")))
        s.remove(1, 1);
    return s;
}

QString Str(double x)
{
    const QString s = NumText(x);
    return s.startsWith(QLatin1Char('-')) ? s : QLatin1Char(' ') + s;
}

double Val(const QString& text)
{
    int pos = 0;
    while (pos < text.size() && isBlank(text[pos]))
        ++pos;
    int digits = 0;
    const int len = numericPrefix(text, pos, &digits);
    return len == 0 ? 0.0 : toDouble(text, pos, len);
}

bool parseNumber(const QString& text, double* value)
{
    int pos = 0;
    while (pos < text.size() && isBlank(text[pos]))
        ++pos;
    int digits = 0;
    const int len = numericPrefix(text, pos, &digits);
    if (len == 0)
        return false;
    int end = pos + len;
    while (end < text.size() && isBlank(text[end]))
        ++end;
    if (end != text.size())
        return false;
    *value = toDouble(text, pos, len);
    return true;
}

double CDbl(const QString& text)
{
    double value = 0.0;
    if (!parseNumber(text, &value))
        raise(13);
    return value;
}

Integer CIntText(const QString& text) { return CInt(CDbl(text)); }

QString LTrim(const QString& s)
{
    int i = 0;
    while (i < s.size() && s[i] == QLatin1Char(' '))
        ++i;
    return s.mid(i);
}

QString Trim(const QString& s)
{
    int j = s.size();
    while (j > 0 && s[j - 1] == QLatin1Char(' '))
        --j;
    return LTrim(s.left(j));
}

} // namespace rt
