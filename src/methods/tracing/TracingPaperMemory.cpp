// SPDX-License-Identifier: MIT
// Copyright (c) the Dipscope developers
#include "methods/tracing/TracingPaperMemory.h"

namespace dip {

TracingPaperMemory::TracingPaperMemory()
{
    SetTracingPaperDesignTexts(*this);
    setCaption(tracingPaperCaption());
}

void TracingPaperMemory::moveControl(const QString& name, double left, double top)
{
    m_positions.insert(name, QPointF(left, top));
}

void TracingPaperMemory::setScrollValue(int value)
{
    // Like the bar: a new position raises its change event, the same one does not.
    if (value == m_scroll)
        return;
    m_scroll = value;
    FoldFromScrollBar(view());
}

} // namespace dip
