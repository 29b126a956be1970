// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// A form port that remembers every drawing call with the colour it was made in, so tests of
// window procedures can check what was drawn where without a window.

#include "plotting/FormPort.h"

#include <QHash>
#include <QString>

#include <vector>

namespace dip::test {

class RecordingForm : public FormPort {
public:
    enum class Op { Cls, Line, LineTo, PSet, Circle, Text };
    struct Call {
        Op op;
        Rgb colour;
        double x1, y1, x2, y2;
    };

    void cls() override { m_calls.push_back({Op::Cls, m_colour, 0, 0, 0, 0}); }
    void setForeColor(Rgb colour) override { m_colour = colour; }
    void line(double x1, double y1, double x2, double y2) override
    {
        m_calls.push_back({Op::Line, m_colour, x1, y1, x2, y2});
    }
    void lineTo(double x, double y) override { m_calls.push_back({Op::LineTo, m_colour, x, y, x, y}); }
    void pset(double x, double y) override { m_calls.push_back({Op::PSet, m_colour, x, y, x, y}); }
    void circle(double x, double y, double r) override { m_calls.push_back({Op::Circle, m_colour, x, y, r, r}); }
    void text(double x, double y, const QString&) override { m_calls.push_back({Op::Text, m_colour, x, y, x, y}); }
    double formWidth() const override { return 9000; }
    double formHeight() const override { return 6000; }

    QString caption() const override { return m_caption; }
    void setCaption(const QString& caption) override { m_caption = caption; }
    QString controlText(const QString& name) const override { return m_texts.value(name); }
    void setControlText(const QString& name, const QString& text) override { m_texts.insert(name, text); }

    const std::vector<Call>& calls() const { return m_calls; }
    void clearCalls() { m_calls.clear(); }
    // The vertical lines drawn, in order, as (x, colour).
    std::vector<std::pair<double, Rgb>> verticalLines() const
    {
        std::vector<std::pair<double, Rgb>> out;
        for (const Call& c : m_calls)
            if (c.op == Op::Line && c.x1 == c.x2)
                out.emplace_back(c.x1, c.colour);
        return out;
    }

private:
    Rgb m_colour;
    QString m_caption;
    QHash<QString, QString> m_texts;
    std::vector<Call> m_calls;
};

} // namespace dip::test
