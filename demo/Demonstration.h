// SPDX-License-Identifier: MIT
#pragma once

#include "rig/Desktop.h"
#include "rig/OutputReader.h"
#include "rig/PatternAnimation.h"
#include "rig/Program.h"

#include <QDir>

#include <vector>

namespace glimmerpane::demo
{

using namespace testing;

/**
 * Shows on a private display that the program works: shares an area in which numbers move,
 * looks at the result as a viewer does, and leaves pictures of it.
 */
class Demonstration
{
public:
    struct Options {
        QString executable; ///< of Glimmerpane
        QDir output; ///< for the pictures
        std::stop_token stop{};
    };

    struct Outcome {
        SeenFrames frames;
        std::vector<double> latencies; ///< milliseconds
    };

    /** Fails if the viewer's picture is not exactly the area's, or if anything takes too long. */
    static Result<Outcome> run(const Options &options);

private:
    Demonstration(const Options &options, std::unique_ptr<Desktop> desktop);

    Result<void> prepareScene();
    Result<void> startProgram();
    Result<void> placeMainWindow();
    Result<void> awaitLivePicture();
    Result<void> comparePictures();
    Result<QImage> expectedPicture() const;
    QString describeMismatch(const QImage &expected, const QImage &actual) const;
    Result<void> savePictures();
    Result<void> openSelector();
    Result<void> saveSelector();
    Result<void> save(const QImage &picture, const QString &name) const;

    Options options_;
    std::unique_ptr<Desktop> desktop_;
    std::unique_ptr<PatternAnimation> animation_;
    std::optional<Program> program_;
    xcb_window_t mainWindow_ = XCB_WINDOW_NONE;
    xcb_window_t output_ = XCB_WINDOW_NONE;
};

} // namespace glimmerpane::demo
