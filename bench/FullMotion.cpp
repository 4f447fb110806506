// SPDX-License-Identifier: MIT
#include "bench/Measurement.h"

#include <cstring>
#include <ctime>

namespace glimmerpane::bench
{

namespace
{

constexpr std::size_t bytes = std::size_t{4} * measuredArea.width() * measuredArea.height();

double threadMilliseconds()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

/** The least that moving a frame can cost here, through buffers that exceed every cache. */
double copyMilliseconds()
{
    constexpr std::size_t bufferCount = 16; // of each kind
    using Buffers = std::vector<std::vector<unsigned char>>;
    const Buffers sources(bufferCount, std::vector<unsigned char>(bytes, 1));
    Buffers destinations(bufferCount, std::vector<unsigned char>(bytes, 2));
    std::vector<double> times;
    for (std::size_t i = 0; i < 20 * bufferCount; ++i) {
        auto &destination = destinations[i % bufferCount];
        const double begin = threadMilliseconds();
        std::memcpy(destination.data(), sources[i % bufferCount].data(), bytes);
        // The copied bytes are used, so that the compiler cannot leave the copy out.
        asm volatile("" : : "r"(destination.data()) : "memory");
        times.push_back(threadMilliseconds() - begin);
    }
    return median(times);
}

std::vector<double> measureRun(const Measurement &measurement)
{
    const auto time = measurement.extent.phase;
    const double copy = copyMilliseconds();
    MeasuredDesktop desktop(measurement);
    const auto animation = desktop.animate();
    const auto alone = desktop.spend(0, time);
    desktop.startProgram();
    const auto output = desktop.movingOutput();
    const auto sharing = desktop.spend(desktop.program.pid(), time);
    const auto seen = countFrames(desktop.server.displayName(), output, {}, time);
    desktop.end();
    const auto cost = costOf(sharing, seen, alone, desktop.spend(0, time));
    return {seen.rate(), static_cast<double>(seen.dropped()), copy, cost.program,
            cost.server, (cost.program + cost.server) / copy};
}

} // namespace

std::vector<Figure> measureFullMotion(const Measurement &measurement)
{
    const QString perFrame = u"for each frame shown, from /proc schedstat, while nobody reads the "
                             "output, pointer in the area; "_s;
    return measurement.repeat(
        {{.name = u"Frames a second, full motion"_s,
          .counted = u"different frame numbers that a second client read from the output's "
                     "Composite pixmap, once for each damage event; 1280x720, source 60 Hz, every "
                     "pixel changes"_s,
          .decimals = 1,
          .atLeast = 59},
         {.name = u"Frames dropped, full motion"_s,
          .counted = u"source numbers that never were in the output"_s,
          .decimals = 0,
          .atMost = 0},
         {.name = u"Copy of a frame's bytes in memory"_s,
          .unit = u" ms"_s,
          .counted = u"processor time of one memcpy of 3.69 MB, through 16 source and 16 "
                     "destination buffers, median of 320"_s,
          .decimals = 3},
         {.name = u"Processor time per frame, program"_s,
          .unit = u" ms"_s,
          .counted = perFrame + u"all threads of the program"_s,
          .decimals = 3},
         {.name = u"Processor time per frame, X server"_s,
          .unit = u" ms"_s,
          .counted = perFrame
              + u"the server while sharing, less the server with only the animation before and "
                "after"_s,
          .decimals = 3},
         {.name = u"Processor time per frame, in copies of its bytes"_s,
          .counted = u"program and server together, divided by the memcpy of the same run"_s,
          .atMost = 2.2}},
        [&] { return measureRun(measurement); });
}

} // namespace glimmerpane::bench
