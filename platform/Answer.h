// SPDX-License-Identifier: MIT
#pragma once

#include <QFuture>
#include <QPromise>

namespace glimmerpane
{

/** A result that one thread waits for and that several events can give; the first one counts. */
template<typename T>
class Answer
{
public:
    Answer() { promise_.start(); }

    QFuture<T> future() const { return promise_.future(); }

    /** False if there is an answer already. */
    bool give(const T &value)
    {
        if (promise_.future().isFinished()) {
            return false;
        }
        promise_.addResult(value); // GCC 14 would warn of a moved std::expected's parts
        promise_.finish();
        return true;
    }

private:
    QPromise<T> promise_;
};

} // namespace glimmerpane
