// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// A plot window as its procedures see it: drawing on the form in twips, its caption, and the
// texts of its labels and text boxes by control name ("Label8", "Text1"). The windows implement
// it over their widgets and drawing surface; FormMemory keeps the texts in memory and draws
// nothing, for the console tool and for tests of the procedures. No widget header here: the
// procedures that use it are core code.

#include "plotting/PlotTransform.h"

#include <QHash>
#include <QString>

namespace dip {

struct Rgb {
    int r = 0;
    int g = 0;
    int b = 0;
    friend bool operator==(Rgb a, Rgb b) { return a.r == b.r && a.g == b.g && a.b == b.b; }
};

namespace colours {
constexpr Rgb black{0, 0, 0};
constexpr Rgb white{255, 255, 255};
constexpr Rgb red{255, 0, 0};           // data points
constexpr Rgb blue{0, 0, 255};          // reflected branch, picked point, fitted curves
constexpr Rgb purple{150, 0, 150};      // range markers and method overlays
constexpr Rgb lightGrey{192, 192, 192}; // grid
constexpr Rgb curveGrey{200, 200, 200}; // the parabola outside the picked times
} // namespace colours

// Drawing in twips on a form. What is drawn stays until cls(); drawing in white over a line
// erases it by overpainting.
class Canvas {
public:
    virtual ~Canvas();
    // False for a form that draws nothing (the console tool's): whatever only a drawing
    // computes, and could fail on, is skipped there.
    virtual bool drawsAnything() const { return true; }
    virtual void cls() = 0;
    virtual void setForeColor(Rgb colour) = 0;
    // A line between two points; the pen ends at (x2, y2).
    virtual void line(double x1, double y1, double x2, double y2) = 0;
    // A line from the pen position to (x, y).
    virtual void lineTo(double x, double y) = 0;
    // Sets one point in the current colour and moves the pen there.
    virtual void pset(double x, double y) = 0;
    virtual void circle(double x, double y, double radius) = 0;
    // Text with its top left corner at (x, y).
    virtual void text(double x, double y, const QString& text) = 0;
    // Text reading upwards (turned a quarter turn anticlockwise), as beside a vertical axis:
    // (x, y) is the bottom left corner of the turned text, which covers x .. x + textHeight()
    // across and y - textWidth(text) .. y along. Surfaces that cannot turn text write it level.
    virtual void textUp(double x, double y, const QString& text) { this->text(x, y - textHeight(), text); }
    // The extent of a text in the surface's font, in twips: its advance and its line height.
    // The defaults estimate a 9-point font for surfaces without one.
    virtual double textWidth(const QString& text) const { return 105.0 * text.size(); }
    virtual double textHeight() const { return 210.0; }
    // The form's size in twips (W, H) that layout rules use.
    virtual double formWidth() const = 0;
    virtual double formHeight() const = 0;

    // From clipToPlotBox() until clearClip() or cls(), what is drawn shows only strictly inside
    // the frame of the box the transform holds at the call: method curves, markers and mirrored
    // branches may run off the scale, and the frame, the axes and their numbers stay clean. The
    // scale and the coordinates are untouched; a surface that keeps its drawing keeps the clip
    // with it, so a print clips the same. Surfaces without pixels ignore it.
    virtual void clipToPlotBox() {}
    virtual void clearClip() {}

    // The form's plot box and scale, as its last drawing set them.
    PlotTransform& transform() { return m_transform; }
    const PlotTransform& transform() const { return m_transform; }

private:
    PlotTransform m_transform;
};

// Drawing clipped to the canvas' plot box for the life of the guard (a run-time error that
// ends a drawing ends the clip too).
class PlotBoxClip {
public:
    explicit PlotBoxClip(Canvas& canvas) : m_canvas(canvas) { canvas.clipToPlotBox(); }
    ~PlotBoxClip() { m_canvas.clearClip(); }
    PlotBoxClip(const PlotBoxClip&) = delete;
    PlotBoxClip& operator=(const PlotBoxClip&) = delete;

private:
    Canvas& m_canvas;
};

class FormPort : public Canvas {
public:
    virtual QString caption() const = 0;
    virtual void setCaption(const QString& caption) = 0;
    virtual QString controlText(const QString& name) const = 0;
    virtual void setControlText(const QString& name, const QString& text) = 0;
};

// Texts in memory, no drawing. The form size defaults to a plot window of 9000 x 6000 twips.
class FormMemory : public FormPort {
public:
    bool drawsAnything() const override { return false; }
    void cls() override {}
    void setForeColor(Rgb) override {}
    void line(double, double, double, double) override {}
    void lineTo(double, double) override {}
    void pset(double, double) override {}
    void circle(double, double, double) override {}
    void text(double, double, const QString&) override {}
    double formWidth() const override { return m_width; }
    double formHeight() const override { return m_height; }
    void setFormSize(double width, double height)
    {
        m_width = width;
        m_height = height;
    }

    QString caption() const override { return m_caption; }
    void setCaption(const QString& caption) override { m_caption = caption; }
    QString controlText(const QString& name) const override { return m_texts.value(name); }
    void setControlText(const QString& name, const QString& text) override { m_texts.insert(name, text); }

private:
    QString m_caption;
    QHash<QString, QString> m_texts;
    double m_width = 9000;
    double m_height = 6000;
};

} // namespace dip
