// SPDX-License-Identifier: MIT
#pragma once

namespace glimmerpane::bench
{

/** How much of its processors' time a virtual machine lost to its host, from /proc/stat. */
class StolenTime
{
public:
    /** Counts from now. */
    StolenTime();

    /** Of all processors' time since. */
    double percent() const;

private:
    struct Ticks {
        double stolen = 0;
        double all = 0;
    };
    static Ticks now();

    Ticks begin_;
};

} // namespace glimmerpane::bench
