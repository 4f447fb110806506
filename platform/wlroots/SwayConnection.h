// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FileDescriptor.h"
#include "services/Error.h"

#include <QByteArray>
#include <QRect>
#include <QString>

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <expected>
#include <optional>
#include <vector>

namespace glimmerpane::wlroots
{

/** An output as sway describes it. */
struct SwayOutputState {
    QString name;
    bool isActive = false;
    QRect place; ///< in the desktop; empty unless active
    QString workspace; ///< that it shows

    /** From one element of sway's list. */
    static SwayOutputState of(const nlohmann::json &description);
};

/** What has happened to a workspace. */
struct SwayWorkspaceEvent {
    QString change; ///< such as "focus", or "reload" for all of sway's configuration
    QString output; ///< of the workspace
    QString previous; ///< the workspace that was focused before; empty if none

    static SwayWorkspaceEvent of(const nlohmann::json &event);
};

/** Sway's own socket (sway-ipc(7)). Requests wait for the answer, but not for long. */
class SwayConnection
{
public:
    /** To the sway that $SWAYSOCK names. */
    static std::expected<SwayConnection, Error> open();

    /** Fails with sway's own words if it refuses. */
    std::expected<void, Error> command(const QString &text) const;

    std::expected<std::vector<SwayOutputState>, Error> outputs() const;

    /** From now on it is only for events about workspaces. */
    std::expected<void, Error> subscribeToWorkspaces() const;
    /** Waits for it; null if the connection is lost. */
    std::optional<SwayWorkspaceEvent> nextEvent() const;

    int fileDescriptor() const { return socket_.get(); }

private:
    /** The protocol's numbers. */
    enum class Message : std::uint32_t {
        RunCommand = 0,
        Subscribe = 2,
        GetOutputs = 3,
    };

    explicit SwayConnection(FileDescriptor socket);
    std::expected<nlohmann::json, Error> request(Message type, const QByteArray &payload) const;
    bool send(Message type, const QByteArray &payload) const;
    std::optional<QByteArray> receive() const;
    bool read(char *data, std::size_t bytes) const;

    FileDescriptor socket_;
};

} // namespace glimmerpane::wlroots
