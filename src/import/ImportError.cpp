// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "import/ImportError.h"

namespace dip::import {

ImportError::ImportError(QString file, int line, QString message)
    : m_file(std::move(file)), m_line(line), m_message(std::move(message)), m_what(text().toStdString())
{}

QString ImportError::text() const
{
    if (m_line > 0)
        return QStringLiteral("%1, line %2: %3").arg(m_file).arg(m_line).arg(m_message);
    return QStringLiteral("%1: %2").arg(m_file, m_message);
}

} // namespace dip::import
