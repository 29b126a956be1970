// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "app/CommandLine.h"

#include "runtime/Text.h"

#include <cmath>

namespace dip {

bool CommandLine::next()
{
    if (m_index + 1 >= m_arguments.size())
        return false;
    m_current = m_arguments[++m_index];
    m_option = m_current;
    m_inlineValue.reset();
    const int eq = m_current.indexOf(QLatin1Char('='));
    if (m_current.startsWith(QLatin1String("--")) && eq >= 0) {
        m_inlineValue = m_current.mid(eq + 1);
        m_option = m_current.left(eq);
    }
    return true;
}

bool CommandLine::isOperand(bool dashDashIsOperand) const
{
    if (dashDashIsOperand && m_current == QLatin1String("--"))
        return true;
    return !m_current.startsWith(QLatin1String("--"));
}

void CommandLine::flag() const
{
    if (m_inlineValue)
        throw UsageError{QStringLiteral("%1 takes no value").arg(m_option)};
}

QString CommandLine::value()
{
    if (m_inlineValue)
        return *m_inlineValue;
    if (m_index + 1 >= m_arguments.size())
        throw UsageError{QStringLiteral("%1 needs a value").arg(m_option)};
    return m_arguments[++m_index];
}

double CommandLine::number(const QString& text) const
{
    double x = 0;
    if (!rt::parseNumber(text, &x) || !std::isfinite(x))
        throw UsageError{QStringLiteral("%1: '%2' is not a number").arg(m_option, text)};
    return x;
}

int CommandLine::whole(const QString& text, int least) const
{
    bool ok = false;
    const int n = text.trimmed().toInt(&ok);
    if (!ok || n < least)
        throw UsageError{QStringLiteral("%1: '%2' is not a whole number of at least %3")
                             .arg(m_option, text, QString::number(least))};
    return n;
}

std::vector<double> CommandLine::numbers(const QString& text, int count) const
{
    const QStringList parts = text.split(QLatin1Char(','));
    if (count > 0 && parts.size() != count)
        throw UsageError{QStringLiteral("%1 takes %2 comma-separated times").arg(m_option).arg(count)};
    std::vector<double> values;
    for (const QString& part : parts)
        values.push_back(number(part));
    return values;
}

Ephemeris CommandLine::ephemeris(const QString& text) const
{
    const std::vector<double> v = numbers(text, 2);
    if (!(v[1] > 0))
        throw UsageError{QStringLiteral("%1: the period must be above 0").arg(m_option)};
    return Ephemeris{v[0], v[1], false};
}

void CommandLine::unknown() const { throw UsageError{QStringLiteral("unknown option %1").arg(m_option)}; }

void print(std::FILE* f, const QString& s) { std::fputs(s.toUtf8().constData(), f); }

} // namespace dip
