// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#pragma once

// The tracing-paper window in memory, for the console tool and for tests of the procedures:
// texts, control positions and the scroll bar's position, no drawing. Constructing it is
// loading the window: design texts, the loaded caption and the bar at its centre.

#include "methods/tracing/TracingPaper.h"

#include <QHash>
#include <QPointF>

namespace dip {

class TracingPaperMemory : public FormMemory, public TracingPaperControls {
public:
    TracingPaperMemory();

    void showForm() override { ++m_shows; }
    void moveControl(const QString& name, double left, double top) override;
    int scrollValue() const override { return m_scroll; }
    void setScrollValue(int value) override;

    TracingPaperView view() { return {*this, *this}; }
    int shows() const { return m_shows; }
    // The last position given to a control (a null point when never placed).
    QPointF controlPosition(const QString& name) const { return m_positions.value(name); }

private:
    int m_scroll = ScrollCentre;
    int m_shows = 0;
    QHash<QString, QPointF> m_positions;
};

} // namespace dip
