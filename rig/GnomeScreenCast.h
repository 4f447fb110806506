// SPDX-License-Identifier: MIT
#pragma once

#include "rig/PipeWireReader.h"

#include <QDBusConnection>
#include <QObject>
#include <QPoint>

#include <memory>
#include <optional>

namespace glimmerpane::testing
{

/** Calls a method of an object on the bus; throws a Failure with the error's text. */
QVariantList call(const QDBusConnection &bus, const QString &service, const QString &path,
                  const QString &interface, const QString &method,
                  const QVariantList &arguments = {});

/** A monitor, an area or a window recorded by gnome-shell without asking anybody. Ends with the
 * object. */
class GnomeScreenCast : public QObject
{
    Q_OBJECT

public:
    enum class Pointer { Hidden, Embedded };
    struct Source {
        QString monitor{}; ///< its connector, such as "Meta-0"
        QRect area{}; ///< pixels of the desktop, if there is no monitor
        quint64 window = 0; ///< if neither; as the list of windows names it
        Pointer pointer = Pointer::Hidden;
        QString remoteDesktop{}; ///< the id of the input's session, if it belongs to one
    };

    GnomeScreenCast(const QDBusConnection &bus, const Source &source);
    ~GnomeScreenCast() override;
    Q_DISABLE_COPY_MOVE(GnomeScreenCast)

    /** For input at a place in it. */
    QString streamPath() const { return stream_; }
    void start();
    /** Waits for the stream, which has been started. */
    uint node();

private Q_SLOTS:
    void onStreamAdded(uint node) { node_ = node; }

private:
    QDBusConnection bus_;
    QString session_;
    QString stream_;
    bool isStarted_ = false;
    std::optional<uint> node_;
};

/** The pictures of a monitor or a window. */
class GnomeStream
{
public:
    GnomeStream(const QDBusConnection &bus, const QString &socket,
                const GnomeScreenCast::Source &source)
        : cast_(bus, source)
    {
        cast_.start();
        reader_.emplace(socket, cast_.node());
    }

    PipeWireReader *operator->() { return &*reader_; }

private:
    GnomeScreenCast cast_;
    std::optional<PipeWireReader> reader_;
};

/** The pointer and the keyboard of a person in front of one monitor. */
class GnomeInput
{
public:
    GnomeInput(const QDBusConnection &bus, const QString &monitor);
    ~GnomeInput();
    Q_DISABLE_COPY_MOVE(GnomeInput)

    /** Points from the monitor's top left. */
    void moveTo(QPoint place) const;
    void press() const { button(true); } ///< the left button
    void release() const { button(false); }
    void click(QPoint place) const;
    /** A key by its X keysym; see keys. */
    void pressKey(uint keysym) const { key(keysym, true); }
    void releaseKey(uint keysym) const { key(keysym, false); }

private:
    void button(bool isPressed) const;
    void key(uint keysym, bool isPressed) const;
    void notify(const QString &method, const QVariantList &arguments) const;

    QDBusConnection bus_;
    QString session_;
    std::unique_ptr<GnomeScreenCast> cast_; ///< gives the places a meaning
};

} // namespace glimmerpane::testing
