// SPDX-License-Identifier: MIT
// Preloaded, it makes every lookup of a name wait without end, as a silent name server does for
// half a minute.
#include <cstdio>
#include <netdb.h>
#include <unistd.h>

extern "C" int getaddrinfo(const char *, const char *, const addrinfo *, addrinfo **)
{
    std::puts("looking up");
    std::fflush(stdout);
    for (;;) {
        pause();
    }
}
