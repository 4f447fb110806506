// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QRect>
#include <QSocketNotifier>

#include <memory>

struct pw_context;
struct pw_core;
struct pw_loop;
struct pw_stream;
struct spa_hook;

namespace glimmerpane::testing
{

/**
 * Reads a PipeWire node of pictures, as a viewer does, while Qt events of its thread are handled.
 * It asks for 32 bits a pixel in memory, at most 60 pictures a second.
 */
class PipeWireReader
{
public:
    /** `socket` is the path of PipeWire's socket. Throws a Failure. */
    PipeWireReader(const QString &socket, uint node);
    ~PipeWireReader();
    Q_DISABLE_COPY_MOVE(PipeWireReader)

    /** The latest one, cropped as its sender says; null before the first. Format_RGB32. */
    QImage picture() const { return picture_; }
    int pictures() const { return pictures_; } ///< how many have arrived
    /** How many differed from the one before, in this part of the picture if it is not empty. */
    int changes() const { return changes_; }
    void watch(const QRect &part) { watched_ = part; }

private:
    friend struct PipeWireEvents;

    void takeFormat(const void *format);
    void takeBuffers();

    std::unique_ptr<pw_loop, void (*)(pw_loop *)> loop_;
    std::unique_ptr<pw_context, void (*)(pw_context *)> context_;
    std::unique_ptr<pw_core, int (*)(pw_core *)> core_;
    std::unique_ptr<spa_hook> listener_; ///< the stream uses it to its end
    std::unique_ptr<pw_stream, void (*)(pw_stream *)> stream_;
    std::unique_ptr<QSocketNotifier> notifier_;
    QSize size_; ///< of a buffer
    QImage picture_;
    QRect watched_;
    int pictures_ = 0;
    int changes_ = 0;
};

} // namespace glimmerpane::testing
