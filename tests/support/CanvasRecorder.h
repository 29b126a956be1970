// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// A form that records what is drawn on it, with the colour of each line, circle and text, for
// tests of drawing procedures without a window. The form size and the text extents are those
// of FormMemory (9000 x 6000 twips, 105 twips a character, 210 a line).

#include "plotting/FormPort.h"

#include <QList>

namespace dip::test {

class CanvasRecorder : public FormMemory {
public:
    struct Line {
        Rgb colour;
        double x1, y1, x2, y2;
    };
    struct Circle {
        Rgb colour;
        double x, y, r;
    };
    struct Text {
        QString text;
        double left, top, right, bottom; // the area it covers
        bool up;                         // reads upwards
    };

    QList<Line> lines;
    QList<Circle> circles;
    QList<Text> texts;
    int clears = 0;

    void cls() override
    {
        ++clears;
        lines.clear();
        circles.clear();
        texts.clear();
    }
    void setForeColor(Rgb c) override { m_colour = c; }
    void line(double x1, double y1, double x2, double y2) override { lines << Line{m_colour, x1, y1, x2, y2}; }
    void circle(double x, double y, double r) override { circles << Circle{m_colour, x, y, r}; }
    void text(double x, double y, const QString& t) override
    {
        texts << Text{t, x, y, x + textWidth(t), y + textHeight(), false};
    }
    void textUp(double x, double y, const QString& t) override
    {
        texts << Text{t, x, y - textWidth(t), x + textHeight(), y, true};
    }

    QList<Line> linesIn(Rgb colour) const
    {
        QList<Line> found;
        for (const Line& l : lines)
            if (l.colour == colour)
                found << l;
        return found;
    }

private:
    Rgb m_colour;
};

} // namespace dip::test
