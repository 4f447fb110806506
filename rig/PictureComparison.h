// SPDX-License-Identifier: MIT
#pragma once

#include "rig/WaitFor.h"

#include <QImage>
#include <QTest>

namespace glimmerpane::testing
{

/**
 * Takes the two pictures again and again until they have the same pixels or the limit has passed.
 * Returns whether they do; if not, saves the last two next to the running test, named after the
 * test function, or in the current folder.
 */
inline bool becomeEqual(const std::function<QImage()> &actual,
                        const std::function<QImage()> &expected, std::chrono::milliseconds limit)
{
    QImage seen;
    QImage wanted;
    const auto same = [&] {
        seen = actual().convertToFormat(QImage::Format_RGB32);
        wanted = expected().convertToFormat(QImage::Format_RGB32);
        return !seen.isNull() && seen == wanted;
    };
    if (waitFor(same, limit)) {
        return true;
    }
    const QString test = QString::fromLatin1(QTest::currentTestFunction());
    const QString name = test.isEmpty() ? test : test + u'-';
    seen.save(name + QStringLiteral("actual.png"));
    wanted.save(name + QStringLiteral("expected.png"));
    return false;
}

} // namespace glimmerpane::testing
