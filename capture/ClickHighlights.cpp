// SPDX-License-Identifier: MIT
#include "capture/ClickHighlights.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace glimmerpane
{

namespace
{

using namespace std::chrono_literals;

constexpr double diameter = 60; // points, to the middle of the line
constexpr double lineWidth = 4; // points
constexpr std::chrono::duration<double> fadeDuration = 500ms;
constexpr auto stepInterval = std::chrono::nanoseconds(1s) / 60;

} // namespace

QImage clickRing(const QColor &color, double scale)
{
    const double reach = (diameter + lineWidth) / 2 * scale; // in pixels
    // An integer, so that the centre lies between pixels.
    const int half = static_cast<int>(std::ceil(reach));
    QImage image(2 * half, 2 * half, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, lineWidth * scale));
    const double radius = diameter / 2 * scale;
    painter.drawEllipse(QPointF(half, half), radius, radius);
    return image;
}

ClickHighlights::ClickHighlights(DisplayLayer &layer)
    : layer_(layer)
{
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, &ClickHighlights::step);
}

void ClickHighlights::add(const QImage &image, QPoint centre)
{
    const QPoint half(image.width() / 2, image.height() / 2);
    rings_.push_back({.image = image, .topLeft = centre - half, .start = Clock::now()});
    if (!timer_.isActive()) {
        nextStep_ = Clock::now();
        step();
    }
}

void ClickHighlights::step()
{
    const auto now = Clock::now();
    std::erase_if(rings_, [now](const Ring &ring) { return now - ring.start >= fadeDuration; });
    std::vector<Highlight> highlights;
    for (const Ring &ring : rings_) {
        const std::chrono::duration<double> age = now - ring.start;
        highlights.push_back(
            {.image = ring.image, .topLeft = ring.topLeft, .opacity = 1 - age / fadeDuration});
    }
    const bool isShown = layer_.setHighlights(highlights);
    if (rings_.empty() && isShown) {
        return;
    }
    nextStep_ = std::max(nextStep_ + stepInterval, now);
    timer_.start(std::chrono::ceil<std::chrono::milliseconds>(nextStep_ - now));
}

} // namespace glimmerpane
