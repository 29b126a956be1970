// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

#include <QString>

#include <exception>
#include <string>

namespace dip::import {

// What was wrong with a file an importer was given: the file, the line (0 when the problem is
// not one line's, or the file has no lines, as a FITS table) and what was wrong. Importers
// throw it; they never raise the runtime's errors and never touch the session, so a caller
// shows text() and keeps what it had.
class ImportError : public std::exception {
public:
    ImportError(QString file, int line, QString message);

    const QString& file() const { return m_file; }
    int line() const { return m_line; }
    const QString& message() const { return m_message; }

    // "FILE, line N: MESSAGE", or "FILE: MESSAGE" when no line is concerned.
    QString text() const;
    const char* what() const noexcept override { return m_what.c_str(); }

private:
    QString m_file;
    int m_line;
    QString m_message;
    std::string m_what;
};

} // namespace dip::import
