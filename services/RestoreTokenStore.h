// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace glimmerpane
{

/**
 * Keeps the desktop's token for a granted recording, with which the next one needs no question. A
 * token is good for one use, which gives a new one. Main thread.
 */
class RestoreTokenStore
{
public:
    virtual ~RestoreTokenStore() = default;

    /** Empty if there is none. */
    virtual QString load() = 0;

    /** Replaces the token; an empty one forgets it. On failure, silently keeps the previous one. */
    virtual void save(const QString &token) = 0;
};

} // namespace glimmerpane
