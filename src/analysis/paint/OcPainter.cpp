// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "analysis/paint/OcPainter.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>
#include <QPen>

#include <algorithm>
#include <cmath>

namespace dip {

namespace {

struct Ticks {
    double first = 0;
    double step = 1;
    int decimals = 0;
};

// About six steps of 1, 2 or 5 times a power of ten over lo .. hi.
Ticks niceTicks(double lo, double hi)
{
    Ticks t;
    const double raw = (hi - lo) / 6;
    const double magnitude = std::pow(10.0, std::floor(std::log10(raw)));
    const double f = raw / magnitude;
    t.step = (f < 1.5 ? 1 : f < 3 ? 2 : f < 7 ? 5 : 10) * magnitude;
    t.decimals = std::max(0, static_cast<int>(-std::floor(std::log10(t.step) + 1e-9)));
    t.first = std::ceil(lo / t.step - 1e-9) * t.step;
    return t;
}

QString tickText(double v, int decimals)
{
    QString s = QString::number(v, 'f', decimals);
    // No "-0" at zero.
    bool zero = true;
    for (const QChar c : s)
        zero = zero && (c == QLatin1Char('-') || c == QLatin1Char('0') || c == QLatin1Char('.'));
    return zero ? s.remove(QLatin1Char('-')) : s;
}

QString withError(double value, double error, int decimals, bool hasError)
{
    QString s = QString::number(value, 'f', decimals);
    if (hasError)
        s += QStringLiteral(" \u00b1 ") + QString::number(error, 'f', decimals);
    return s;
}

} // namespace

QPointF OcPlotFrame::map(double x, double ocDays) const { return {xToDevice(x), yToDevice(ocDays)}; }

double OcPlotFrame::xToDevice(double x) const { return box.left() + (x - xMin) / (xMax - xMin) * box.width(); }

double OcPlotFrame::yToDevice(double ocDays) const
{
    return box.bottom() - (ocDays * yScale - yMin) / (yMax - yMin) * box.height();
}

double ocMarkerRadius(const QRectF& area) { return std::max(2.5, area.width() / 300); }

OcPlotFrame ocPlotFrame(const OcDiagram& diagram, const QRectF& area)
{
    OcPlotFrame f;
    const double w = area.width(), h = area.height();
    f.box = QRectF(area.left() + 0.11 * w, area.top() + 0.09 * h, 0.86 * w, 0.79 * h);
    if (diagram.points.empty()) {
        f.xMin = 0;
        f.xMax = 1;
        f.yMin = -1;
        f.yMax = 1;
        f.yScale = 1440;
        return f;
    }
    double xLo = f.xOf(diagram.points.front(), diagram.axis), xHi = xLo;
    double lo = diagram.points.front().oc, hi = lo;
    for (const OcPoint& p : diagram.points) {
        const double x = f.xOf(p, diagram.axis);
        const double e = p.error > 0 ? p.error : 0;
        xLo = std::min(xLo, x);
        xHi = std::max(xHi, x);
        lo = std::min(lo, p.oc - e);
        hi = std::max(hi, p.oc + e);
    }
    const double xPad = xHi > xLo ? 0.04 * (xHi - xLo) : 1;
    f.xMin = xLo - xPad;
    f.xMax = xHi + xPad;
    f.yScale = std::max(std::abs(lo), std::abs(hi)) < 0.02 ? 1440 : 1;
    lo *= f.yScale;
    hi *= f.yScale;
    const double span = hi > lo ? hi - lo : (f.yScale == 1 ? 0.002 : 2);
    // Room above the points for the fitted ephemeris and the legend.
    f.yMin = lo - 0.08 * span;
    f.yMax = hi + 0.22 * span;
    return f;
}

void paintOcDiagram(QPainter& painter, const QRectF& area, const OcDiagram& diagram)
{
    const OcPlotFrame f = ocPlotFrame(diagram, area);
    const QRectF& box = f.box;
    const double unit = area.height() / 800; // line widths scale with the picture
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.fillRect(area, Qt::white);
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(std::max(8, static_cast<int>(std::lround(area.height() / 40))));
    painter.setFont(font);
    const QFontMetricsF metrics(font, painter.device());
    const double em = metrics.height();

    // Grid and tick labels.
    painter.setPen(QPen(occolours::grid, unit));
    const Ticks xt = niceTicks(f.xMin, f.xMax);
    for (double x = xt.first; x <= f.xMax; x += xt.step) {
        const double dx = f.xToDevice(x);
        painter.setPen(QPen(occolours::grid, unit));
        painter.drawLine(QPointF(dx, box.top()), QPointF(dx, box.bottom()));
        painter.setPen(Qt::black);
        const QRectF label(dx - 5 * em, box.bottom() + 0.2 * em, 10 * em, em);
        painter.drawText(label, Qt::AlignHCenter | Qt::AlignTop, tickText(x, xt.decimals));
    }
    const Ticks yt = niceTicks(f.yMin, f.yMax);
    for (double y = yt.first; y <= f.yMax; y += yt.step) {
        const double dy = box.bottom() - (y - f.yMin) / (f.yMax - f.yMin) * box.height();
        painter.setPen(QPen(occolours::grid, unit));
        painter.drawLine(QPointF(box.left(), dy), QPointF(box.right(), dy));
        painter.setPen(Qt::black);
        const QRectF label(area.left(), dy - em / 2, box.left() - area.left() - 0.4 * em, em);
        painter.drawText(label, Qt::AlignRight | Qt::AlignVCenter, tickText(y, yt.decimals));
    }

    // Axis titles and the title.
    painter.setPen(Qt::black);
    const QString xTitle =
        diagram.axis == OcAxis::Cycle ? QStringLiteral("Cycle E") : QStringLiteral("Time (%1)").arg(diagram.timeName);
    painter.drawText(QRectF(box.left(), box.bottom() + 1.4 * em, box.width(), em), Qt::AlignHCenter, xTitle);
    painter.drawText(QRectF(box.left(), area.top() + 0.2 * em, box.width(), em), Qt::AlignHCenter, diagram.title);
    painter.save();
    painter.translate(area.left() + 0.2 * em, box.center().y());
    painter.rotate(-90);
    painter.drawText(QRectF(-box.height() / 2, 0, box.height(), em), Qt::AlignHCenter | Qt::AlignTop,
                     f.yScale == 1 ? QStringLiteral("O\u2013C (d)") : QStringLiteral("O\u2013C (min)"));
    painter.restore();

    // The data, clipped to the box.
    painter.save();
    painter.setClipRect(box);
    if (f.yMin < 0 && f.yMax > 0) {
        QPen zero(QColor(128, 128, 128), unit, Qt::DashLine);
        painter.setPen(zero);
        painter.drawLine(QPointF(box.left(), f.yToDevice(0)), QPointF(box.right(), f.yToDevice(0)));
    }
    if (diagram.fit) {
        // E along the time axis: (t - T0) / P; the line is straight either way.
        auto cycleAt = [&](double x) {
            return diagram.axis == OcAxis::Cycle ? x : (x - diagram.ephemeris.t0) / diagram.ephemeris.period;
        };
        painter.setPen(QPen(occolours::line, 2 * unit));
        painter.drawLine(f.map(f.xMin, diagram.fit->ocAt(cycleAt(f.xMin))),
                         f.map(f.xMax, diagram.fit->ocAt(cycleAt(f.xMax))));
    }
    const double r = ocMarkerRadius(area);
    for (const OcPoint& p : diagram.points) {
        if (!(p.error > 0))
            continue;
        const double x = f.xToDevice(f.xOf(p, diagram.axis));
        const double top = f.yToDevice(p.oc + p.error), bottom = f.yToDevice(p.oc - p.error);
        painter.setPen(QPen(p.secondary() ? occolours::secondary : occolours::primary, 1.5 * unit));
        painter.drawLine(QPointF(x, top), QPointF(x, bottom));
        painter.drawLine(QPointF(x - r, top), QPointF(x + r, top));
        painter.drawLine(QPointF(x - r, bottom), QPointF(x + r, bottom));
    }
    painter.setPen(Qt::NoPen);
    for (const OcPoint& p : diagram.points) {
        painter.setBrush(p.secondary() ? occolours::secondary : occolours::primary);
        painter.drawEllipse(f.map(f.xOf(p, diagram.axis), p.oc), r, r);
    }
    painter.restore();

    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(Qt::black, unit));
    painter.drawRect(box);

    // The corrected ephemeris at the top left, the legend at the top right.
    const QRectF inner = box.adjusted(0.5 * em, 0.3 * em, -0.5 * em, 0);
    if (diagram.fit) {
        const EphemerisFit& fit = *diagram.fit;
        painter.setPen(occolours::line);
        painter.drawText(QRectF(inner.left(), inner.top(), inner.width(), em), Qt::AlignLeft,
                         QStringLiteral("T0 = ") + withError(fit.t0, fit.sigmaT0, 6, fit.dof > 0));
        painter.drawText(QRectF(inner.left(), inner.top() + em, inner.width(), em), Qt::AlignLeft,
                         QStringLiteral("P = ") + withError(fit.period, fit.sigmaPeriod, 8, fit.dof > 0) +
                             QStringLiteral(" d"));
    }
    bool havePrimary = false, haveSecondary = false;
    for (const OcPoint& p : diagram.points)
        (p.secondary() ? haveSecondary : havePrimary) = true;
    double legendY = inner.top();
    if (havePrimary) {
        painter.setPen(occolours::primary);
        painter.drawText(QRectF(inner.left(), legendY, inner.width(), em), Qt::AlignRight, QStringLiteral("primary"));
        legendY += em;
    }
    if (haveSecondary) {
        painter.setPen(occolours::secondary);
        painter.drawText(QRectF(inner.left(), legendY, inner.width(), em), Qt::AlignRight, QStringLiteral("secondary"));
    }
    painter.restore();
}

} // namespace dip
