// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "plotting/RangePicking.h"

#include "plotting/PlotBox.h"
#include "runtime/Numeric.h"
#include "runtime/Text.h"

namespace dip {

using rt::i16;

Click Click::atTwips(double x, double y, Integer button)
{
    // The mouse position arrives in single precision.
    Click c;
    c.X = rt::Single(x);
    c.Y = rt::Single(y);
    c.Button = button;
    return c;
}

Click Click::atTime(const PlotTransform& box, double t, Integer button)
{
    const Session& s = S();
    Click c;
    c.exactTime = true;
    c.time = t;
    c.Button = button;
    // Only the marker line uses X; a replayed click never fails for the sake of a drawing.
    const double fraction = s.HJDRange != 0 ? (t - s.HJDMin) / s.HJDRange : 0.0;
    c.X = box.PlotLeft + box.PlotWidth * fraction;
    c.Y = (box.PlotTop + box.PlotBottom) / 2;
    return c;
}

bool clickInsideBox(const PlotTransform& box, const Click& click)
{
    const Session& s = S();
    if (click.exactTime)
        return s.HJDMin <= click.time && click.time <= s.HJDMin + s.HJDRange;
    // The edges themselves count as inside.
    return !(click.X < box.PlotLeft || click.X > box.PlotRight || click.Y < box.PlotTop || click.Y > box.PlotBottom);
}

double clickTime(const PlotTransform& box, const Click& click, ClickTimeForm form)
{
    if (click.exactTime)
        return click.time;
    const Session& s = S();
    if (form == ClickTimeForm::GroupedFraction)
        return rt::fin(s.HJDMin + s.HJDRange * rt::div(click.X - box.PlotLeft, box.PlotWidth));
    return rt::fin(s.HJDMin + rt::div(s.HJDRange * (click.X - box.PlotLeft), box.PlotWidth));
}

Integer searchFirstAfter(double t)
{
    const Session& s = S();
    Integer i = 1;
    for (; i <= s.NumPts; i = i16(i + 1))
        if (s.HJD(i) > t)
            break;
    return i;
}

Integer searchLastBefore(double t)
{
    const Session& s = S();
    Integer i = s.NumPts;
    for (; i >= 1; i = i16(i - 1))
        if (s.HJD(i) < t)
            break;
    return i < 1 ? Integer(0) : i;
}

double markerX(const PlotTransform& box, double t) { return PlotX(box, CurrentScale(), t); }

void drawMarker(Canvas& canvas, double x, Rgb colour)
{
    const PlotTransform& s = canvas.transform();
    // Inside the box only: a marker remembered from a larger scale, and the erase line painted at
    // x = 0 before the first marker, stay off the axis numbers.
    PlotBoxClip clip(canvas);
    canvas.setForeColor(colour);
    canvas.line(x, s.PlotTop, x, s.PlotBottom);
}

MousePointer pointerAt(const PlotTransform& s, double x, double y)
{
    if (x > s.PlotLeft && x < s.PlotRight && y > s.PlotTop && y < s.PlotBottom)
        return MousePointer::Cross;
    return MousePointer::Arrow;
}

// A plain FormMemory, not a form built on it that records what it is given.

const RangePickStyle& parabolaRangeStyle()
{
    static const RangePickStyle style{
        QStringLiteral("Fit Parabola - RIGHT-CLICK AT START (left end) OF RANGE."),
        QStringLiteral("Fit Parabola - RIGHT-CLICK AT (right) END OF RANGE."),
        QStringLiteral("Fit Parabola - CLICK 'Fit Parabola', OR 'Undo' TO START OVER."),
        QStringLiteral("Fit Parabola - CLICK 'Done' TO EXIT, OR 'Undo' TO START OVER."),
        // After Undo the shorter prompt, without "(left end)": kept as the window has it.
        QStringLiteral("Fit Parabola - RIGHT-CLICK AT START OF RANGE."),
        false,
        true,
        false,
    };
    return style;
}

const RangePickStyle& kweeRangeStyle()
{
    static const RangePickStyle style{
        QStringLiteral("Kwee & van Woerden - RIGHT-CLICK AT START (left end) OF RANGE."),
        QStringLiteral("Kwee & van Woerden - RIGHT-CLICK AT (right) END OF RANGE."),
        // A semicolon where the parabola window has a comma: kept as the window has it.
        QStringLiteral("Kwee & van Woerden - CLICK 'Fit Kwee'; OR 'Undo' TO START OVER."),
        QStringLiteral("Kwee & van Woerden - CLICK 'Done' TO EXIT, OR 'Undo' TO START OVER."),
        QStringLiteral("Kwee & van Woerden - RIGHT-CLICK AT START OF RANGE."),
        true,
        false,
        true,
    };
    return style;
}

RangePicker::RangePicker(RangePick& pick, FormPort& form, const RangePickStyle& style)
    : m_pick(pick), m_form(form), m_style(style)
{}

void RangePicker::formLoad()
{
    if (m_style.kweeFlags) {
        m_pick.LeftSet = rt::False;
        m_pick.RightSet = rt::False;
        m_pick.RangeSet = rt::False;
    }
    m_form.setCaption(m_style.loadPrompt);
}

void RangePicker::mouseDown(const Click& click)
{
    if (!clickInsideBox(m_form.transform(), click))
        return;
    if (click.Button == RightButton) {
        const double t = clickTime(m_form.transform(), click, ClickTimeForm::GroupedFraction);
        // The side is decided against the deepest point found at load (or at the last change of
        // magnitude sense), in the full list: a click exactly on it is a right end.
        const Session& s = S();
        if (t < s.OrigHJD(s.FullIdxMagMax))
            pickLeft(click, t);
        else
            pickRight(click, t);
    }
    m_pick.RangeSet = (m_pick.LeftSet != 0 && m_pick.RightSet != 0) ? rt::True : rt::False;
}

void RangePicker::pickLeft(const Click& click, double t)
{
    Session& s = S();
    // Erases the previous marker; before the first one this paints at x = 0.
    drawMarker(m_form, m_pick.LeftMarkX, colours::white);
    const Integer i = searchFirstAfter(t);
    if (i <= s.NumPts)
        m_pick.LeftIdx = i;
    drawMarker(m_form, click.X, colours::purple);
    m_pick.LeftMarkX = click.X;
    // frmPlott4 remembers the first point inside the range; with no point later than the
    // click that is the element just past the used points.
    m_pick.LeftHJD = m_style.leftTimeFromPoint ? s.HJD(i) : t;
    m_pick.LeftSet = rt::True;
    m_form.setControlText(QStringLiteral("Label8"), rt::Str(m_pick.LeftIdx));
    m_form.setCaption(m_style.leftPickedPrompt);
}

void RangePicker::pickRight(const Click& click, double t)
{
    drawMarker(m_form, m_pick.RightMarkX, colours::white);
    const Integer i = searchLastBefore(t);
    if (i >= 1)
        m_pick.RightIdx = i;
    drawMarker(m_form, click.X, colours::purple);
    m_pick.RightMarkX = click.X;
    m_pick.RightHJD = t;
    m_pick.RightSet = rt::True;
    const QString label = rt::Str(m_pick.RightIdx);
    m_form.setControlText(QStringLiteral("Label10"),
                          m_style.rightLabelPadded ? rt::LTrim(label).rightJustified(4, QLatin1Char(' ')) : label);
    m_form.setCaption(m_style.rightPickedPrompt);
}

bool RangePicker::ready() const { return m_pick.RangeSet != 0 && m_pick.LeftIdx != 0 && m_pick.RightIdx != 0; }

void RangePicker::redrawMarkers()
{
    m_pick.LeftMarkX = markerX(m_form.transform(), m_pick.LeftHJD);
    drawMarker(m_form, m_pick.LeftMarkX);
    m_pick.RightMarkX = markerX(m_form.transform(), m_pick.RightHJD);
    drawMarker(m_form, m_pick.RightMarkX);
}

void RangePicker::drawStoredMarkers()
{
    drawMarker(m_form, m_pick.LeftMarkX);
    drawMarker(m_form, m_pick.RightMarkX);
}

void RangePicker::undo()
{
    if (!m_style.kweeFlags) {
        m_pick.LeftSet = rt::False;
        m_pick.RightSet = rt::False;
    }
    m_pick.RangeSet = rt::False;
    m_pick.Fitted = rt::False;
    m_form.setCaption(m_style.undoPrompt);
    m_form.setControlText(QStringLiteral("Label8"), QString());
    m_form.setControlText(QStringLiteral("Label10"), QString());
}

void RangePicker::showFitted() { m_form.setCaption(m_style.fittedPrompt); }

} // namespace dip
