// SPDX-License-Identifier: MIT
#pragma once

#include "platform/DisplayLayer.h"

#include <QColor>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <vector>

namespace glimmerpane
{

/** The ring drawn for a click, at `scale` pixels per point. */
QImage clickRing(const QColor &color, double scale);

/** Rings that fade out over a picture. Costs nothing while there are none. Main thread. */
class ClickHighlights : public QObject
{
public:
    using Clock = std::chrono::steady_clock;

    /** The layer must outlive this object. */
    explicit ClickHighlights(DisplayLayer &layer);

    /** Shows the image centred on a position (desktop pixels) and fades it out. */
    void add(const QImage &image, QPoint centre);

private:
    struct Ring {
        QImage image;
        QPoint topLeft; ///< desktop pixels
        Clock::time_point start;
    };

    void step();

    DisplayLayer &layer_;
    std::vector<Ring> rings_; ///< the oldest first
    QTimer timer_; ///< runs while any ring is shown
    Clock::time_point nextStep_;
};

} // namespace glimmerpane
