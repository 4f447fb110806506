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

/** A ring of the size and look of a click highlight, `scale` pixels for each point. */
QImage clickRing(const QColor &color, double scale);

/** Rings that fade out over a picture. Costs nothing while there is none. Main thread. */
class ClickHighlights : public QObject
{
public:
    using Clock = std::chrono::steady_clock;

    /** The layer must outlive the object. */
    explicit ClickHighlights(DisplayLayer &layer);

    /** Shows the image around a place (root pixels) and lets it fade. */
    void add(const QImage &image, QPoint centre);

private:
    struct Ring {
        QImage image;
        QPoint topLeft; ///< root pixels
        Clock::time_point start;
    };

    void step();

    DisplayLayer &layer_;
    std::vector<Ring> rings_; ///< the oldest first
    QTimer timer_; ///< runs while there are rings, or one that ended is still shown
    Clock::time_point nextStep_;
};

} // namespace glimmerpane
