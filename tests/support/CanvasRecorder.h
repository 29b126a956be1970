// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// A form that records what is drawn on it, with the colour of each line, circle and text, for
// tests of drawing procedures without a window. The form size and the text extents are those
// of FormMemory (9000 x 6000 twips, 105 twips a character, 210 a line). Every drawing call is
// also kept in order in calls, strokes from the pen and set points included, for procedures
// whose order matters (an erase before a marker, the strokes of a fitted curve), each with
// whether it was drawn clipped to the plot box. A window in memory with more than FormMemory's texts records the same
// way through CanvasRecorderOn.

#include "plotting/FormPort.h"

#include <QList>

namespace dip::test {

template <typename Form>
class CanvasRecorderOn : public Form {
public:
    using Form::textHeight;
    using Form::textWidth;

    bool drawsAnything() const override { return true; }

    struct Line {
        Rgb colour;
        double x1, y1, x2, y2;
        bool clipped = false;
    };
    struct Circle {
        Rgb colour;
        double x, y, r;
        bool clipped = false;
    };
    struct Text {
        QString text;
        double left, top, right, bottom; // the area it covers
        bool up;                         // reads upwards

        bool overlaps(const Text& other) const
        {
            return left < other.right && other.left < right && top < other.bottom && other.top < bottom;
        }
    };

    enum class Op { Line, LineTo, PSet, Circle };
    struct Call {
        Op op;
        Rgb colour;
        double x1, y1, x2, y2; // a point: (x1, y1); a circle: centre and radius in x2
        bool clipped = false;
    };

    QList<Line> lines;
    QList<Circle> circles;
    QList<Text> texts;
    QList<Call> calls;
    int clears = 0;
    // The boxes drawing was clipped to, in order, as the transform held them.
    QList<PlotTransform> clips;

    void cls() override
    {
        ++clears;
        lines.clear();
        circles.clear();
        texts.clear();
        calls.clear();
        clips.clear();
        m_clipped = false;
        m_penX = m_penY = 0;
    }
    void clipToPlotBox() override
    {
        clips << this->transform();
        m_clipped = true;
    }
    void clearClip() override { m_clipped = false; }
    void setForeColor(Rgb c) override { m_colour = c; }
    void line(double x1, double y1, double x2, double y2) override
    {
        lines << Line{m_colour, x1, y1, x2, y2, m_clipped};
        calls << Call{Op::Line, m_colour, x1, y1, x2, y2, m_clipped};
        m_penX = x2;
        m_penY = y2;
    }
    void lineTo(double x, double y) override
    {
        calls << Call{Op::LineTo, m_colour, m_penX, m_penY, x, y, m_clipped};
        m_penX = x;
        m_penY = y;
    }
    void pset(double x, double y) override
    {
        calls << Call{Op::PSet, m_colour, x, y, x, y, m_clipped};
        m_penX = x;
        m_penY = y;
    }
    void circle(double x, double y, double r) override
    {
        circles << Circle{m_colour, x, y, r, m_clipped};
        calls << Call{Op::Circle, m_colour, x, y, r, r, m_clipped};
    }
    void text(double x, double y, const QString& t) override
    {
        texts << Text{t, x, y, x + textWidth(t), y + textHeight(), false};
    }
    void textUp(double x, double y, const QString& t) override
    {
        texts << Text{t, x, y - textWidth(t), x + textHeight(), y, true};
    }

    // The vertical lines drawn with line(), in order.
    QList<Line> verticalLines() const
    {
        QList<Line> found;
        for (const Line& l : lines)
            if (l.x1 == l.x2)
                found << l;
        return found;
    }

    QList<Line> linesIn(Rgb colour) const
    {
        QList<Line> found;
        for (const Line& l : lines)
            if (l.colour == colour)
                found << l;
        return found;
    }

    // The points' discs in a colour, each found by its outer circle (radius 15).
    QList<Circle> dotsIn(Rgb colour) const
    {
        QList<Circle> found;
        for (const Circle& c : circles)
            if (c.colour == colour && c.r == 15)
                found << c;
        return found;
    }

private:
    Rgb m_colour;
    bool m_clipped = false;
    double m_penX = 0;
    double m_penY = 0;
};

using CanvasRecorder = CanvasRecorderOn<FormMemory>;

} // namespace dip::test
