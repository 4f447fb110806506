// SPDX-License-Identifier: MIT
#include "platform/wlroots/SwayConnection.h"

#include <nlohmann/json.hpp>

#include <array>
#include <cstring>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>

namespace glimmerpane::wlroots
{

namespace
{

// sway-ipc(7), "MESSAGES": the magic, then the length of what follows, then the type, in the
// machine's byte order.
constexpr std::array magic{'i', '3', '-', 'i', 'p', 'c'};
constexpr std::size_t headerSize = magic.size() + 2 * sizeof(std::uint32_t);
constexpr std::uint32_t longestAnswer = 1U << 24;
constexpr timeval patience{.tv_sec = 2, .tv_usec = 0};

Error unreachable(const QString &log)
{
    return {.text = Error::tr("Sway does not answer."), .log = log};
}

QString text(const nlohmann::json &object, const char *key)
{
    const auto found = object.find(key);
    return found != object.end() && found->is_string()
        ? QString::fromStdString(found->get<std::string>())
        : QString();
}

int number(const nlohmann::json &object, const char *key)
{
    const auto found = object.find(key);
    return found != object.end() && found->is_number_integer() ? found->get<int>() : 0;
}

nlohmann::json part(const nlohmann::json &object, const char *key)
{
    const auto found = object.find(key);
    return found != object.end() && found->is_object() ? *found : nlohmann::json::object();
}

} // namespace

SwayOutputState SwayOutputState::of(const nlohmann::json &description)
{
    const auto rect = part(description, "rect");
    const auto active = description.find("active");
    return {.name = text(description, "name"),
            .isActive = active != description.end() && *active == true,
            .place
            = {number(rect, "x"), number(rect, "y"), number(rect, "width"), number(rect, "height")},
            .workspace = text(description, "current_workspace")};
}

SwayWorkspaceEvent SwayWorkspaceEvent::of(const nlohmann::json &event)
{
    return {.change = text(event, "change"),
            .output = text(part(event, "current"), "output"),
            .previous = text(part(event, "old"), "name")};
}

std::expected<SwayConnection, Error> SwayConnection::open()
{
    const QByteArray path = qgetenv("SWAYSOCK");
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    if (path.isEmpty() || std::size_t(path.size()) >= sizeof address.sun_path) {
        return std::unexpected(Error{.text = Error::tr("SWAYSOCK names no socket of sway."),
                                     .log = QStringLiteral("SWAYSOCK is empty or too long"),
                                     .outcome = Outcome::unavailable});
    }
    std::memcpy(address.sun_path, path.constData(), std::size_t(path.size()));
    FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    setsockopt(socket.get(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    setsockopt(socket.get(), SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
    if (socket.get() < 0
        || connect(socket.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address)
            != 0) {
        return std::unexpected(
            unreachable(QStringLiteral("SWAYSOCK: %1").arg(qt_error_string(errno))));
    }
    return SwayConnection(std::move(socket));
}

SwayConnection::SwayConnection(FileDescriptor socket)
    : socket_(std::move(socket))
{
}

std::expected<void, Error> SwayConnection::command(const QString &text) const
{
    const auto answer = request(Message::RunCommand, text.toUtf8());
    if (!answer) {
        return std::unexpected(answer.error());
    }
    for (const auto &result : *answer) { // one for each command in the text
        const auto success = result.find("success");
        if (success == result.end() || *success != true) {
            const QString log
                = QStringLiteral("sway refused '%1': %2").arg(text, wlroots::text(result, "error"));
            return std::unexpected(Error{.text = log, .log = log});
        }
    }
    return {};
}

std::expected<std::vector<SwayOutputState>, Error> SwayConnection::outputs() const
{
    const auto answer = request(Message::GetOutputs, {});
    if (!answer) {
        return std::unexpected(answer.error());
    }
    std::vector<SwayOutputState> outputs;
    for (const auto &description : *answer) {
        outputs.push_back(SwayOutputState::of(description));
    }
    return outputs;
}

std::expected<void, Error> SwayConnection::subscribeToWorkspaces() const
{
    const auto answer = request(Message::Subscribe, "[\"workspace\"]");
    return answer ? std::expected<void, Error>() : std::unexpected(answer.error());
}

std::optional<SwayWorkspaceEvent> SwayConnection::nextEvent() const
{
    const auto answer = receive();
    const auto event = nlohmann::json::parse(answer.value_or(QByteArray()), nullptr, false);
    return event.is_object() ? std::optional(SwayWorkspaceEvent::of(event)) : std::nullopt;
}

std::expected<nlohmann::json, Error> SwayConnection::request(Message type,
                                                             const QByteArray &payload) const
{
    const auto answer = send(type, payload) ? receive() : std::nullopt;
    if (!answer) {
        return std::unexpected(unreachable(QStringLiteral("no answer: %1").arg(qt_error_string())));
    }
    auto json = nlohmann::json::parse(*answer, nullptr, false);
    if (!json.is_structured()) {
        return std::unexpected(unreachable(QStringLiteral("the answer is not JSON")));
    }
    return json;
}

bool SwayConnection::send(Message type, const QByteArray &payload) const
{
    const std::array<std::uint32_t, 2> header{static_cast<std::uint32_t>(payload.size()),
                                              static_cast<std::uint32_t>(type)};
    QByteArray message(magic.data(), magic.size());
    message.append(reinterpret_cast<const char *>(header.data()), sizeof header);
    message.append(payload);
    const auto sent
        = ::send(socket_.get(), message.constData(), std::size_t(message.size()), MSG_NOSIGNAL);
    return sent == message.size();
}

std::optional<QByteArray> SwayConnection::receive() const
{
    std::array<char, headerSize> header{};
    std::uint32_t length = 0;
    if (!read(header.data(), header.size())) {
        return std::nullopt;
    }
    std::memcpy(&length, header.data() + magic.size(), sizeof length);
    if (std::memcmp(header.data(), magic.data(), magic.size()) != 0 || length > longestAnswer) {
        return std::nullopt;
    }
    QByteArray payload(static_cast<qsizetype>(length), Qt::Uninitialized);
    return read(payload.data(), length) ? std::optional(payload) : std::nullopt;
}

bool SwayConnection::read(char *data, std::size_t bytes) const
{
    while (bytes > 0) {
        const auto got = recv(socket_.get(), data, bytes, 0);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            return false;
        }
        data += got;
        bytes -= static_cast<std::size_t>(got);
    }
    return true;
}

} // namespace glimmerpane::wlroots
