// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The pieces of JSON the console tools write, by hand so that the order of the keys and the
// digits of the numbers are ours.

#include <QString>
#include <QStringList>

namespace dip {

// A JSON string: quotes, backslashes and control characters escaped.
QString jsonString(const QString& s);

// A number with 17 significant digits (it reads back to the same double); null when it is not
// finite, which JSON cannot say.
QString jsonNumber(double x);

// A JSON object written in the order its members are added, each value already JSON text
// (jsonString, jsonNumber, a nested object's text ...).
class JsonObject {
public:
    JsonObject& add(const QString& key, const QString& json);
    QString text() const;
    bool isEmpty() const { return m_members.isEmpty(); }

private:
    QStringList m_members;
};

} // namespace dip
