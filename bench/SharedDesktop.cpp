// SPDX-License-Identifier: MIT
#include "bench/SharedDesktop.h"

#include "rig/InputInjector.h"

namespace glimmerpane::bench
{

Result<std::unique_ptr<Desktop>> startDesktop(const Measurement &measurement, bool compositor)
{
    return Desktop::start(
        {.screen = QSize(1920, 1080), .compositor = compositor, .stop = measurement.stop});
}

Result<void> startProgram(const Measurement &measurement, bool share, SharedDesktop &shared)
{
    auto program = Program::start(
        *shared.desktop,
        {.executable = measurement.executable, .area = measuredArea, .share = share});
    if (!program) {
        return testing::failure(program.error());
    }
    shared.program.emplace(std::move(*program));
    testing::InputInjector(shared.desktop->client()).moveTo(pointerInArea);
    if (const auto placed = shared.program->placeMainWindow(measuredMainWindow, measuredArea);
        !placed) {
        return placed;
    }
    if (!share) {
        return {};
    }
    const auto output = shared.program->outputWindow();
    if (!output) {
        return testing::failure(output.error());
    }
    shared.output = *output;
    return {};
}

} // namespace glimmerpane::bench
