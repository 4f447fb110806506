// SPDX-License-Identifier: MIT
#include "bench/CopyReference.h"

#include "rig/Statistics.h"

#include <cstring>
#include <ctime>
#include <vector>

namespace glimmerpane::bench
{

namespace
{

constexpr std::size_t bufferCount = 16; ///< of each kind; 118 MB at 1280x720
constexpr std::size_t copies = 20 * bufferCount;

double threadMilliseconds()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

/** The copied bytes are used, so that the compiler cannot leave the copy out. */
void use(const void *memory)
{
    asm volatile("" : : "r"(memory) : "memory");
}

} // namespace

double copyMilliseconds(std::size_t bytes)
{
    using Buffers = std::vector<std::vector<unsigned char>>;
    const Buffers sources(bufferCount, std::vector<unsigned char>(bytes, 1));
    Buffers destinations(bufferCount, std::vector<unsigned char>(bytes, 2));
    std::vector<double> times;
    for (std::size_t i = 0; i < copies; ++i) {
        auto &destination = destinations[i % bufferCount];
        const double begin = threadMilliseconds();
        std::memcpy(destination.data(), sources[i % bufferCount].data(), bytes);
        use(destination.data());
        times.push_back(threadMilliseconds() - begin);
    }
    return median(times);
}

} // namespace glimmerpane::bench
