// SPDX-License-Identifier: MIT
#include "platform/DisplayWatch.h"

#include <QGuiApplication>
#include <QScreen>

#include <chrono>

namespace glimmerpane
{

namespace
{

using namespace std::chrono_literals;

/** A change of displays comes as several events. */
constexpr auto settleTime = 300ms;

} // namespace

DisplayWatch::DisplayWatch()
{
    settled_.setSingleShot(true);
    settled_.setInterval(settleTime);
    connect(&settled_, &QTimer::timeout, this, &DisplayWatch::changed);
    const auto change = [this] { settled_.start(); };
    connect(qGuiApp, &QGuiApplication::screenAdded, this, &DisplayWatch::watch);
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, change);
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, change);
    for (QScreen *const screen : QGuiApplication::screens()) {
        watch(screen);
    }
}

void DisplayWatch::watch(QScreen *screen)
{
    connect(screen, &QScreen::geometryChanged, this, [this] { settled_.start(); });
    settled_.start();
}

} // namespace glimmerpane
