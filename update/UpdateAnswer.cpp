// SPDX-License-Identifier: MIT
#include "update/UpdateAnswer.h"

#include "services/Json.h"

#include <optional>

namespace glimmerpane
{

namespace
{

/** Does not quote the answer: this text is printed, and the answer is untrusted. */
std::unexpected<Error> unreadable(const char *why)
{
    const auto text = QStringLiteral("The answer cannot be read: %1.").arg(QLatin1String(why));
    return std::unexpected(Error{.text = text, .log = text});
}

std::optional<QString> textOf(const nlohmann::json &object, const char *name)
{
    const auto member = object.find(name);
    return member != object.end() && member->is_string()
        ? std::optional(QString::fromStdString(member->get_ref<const std::string &>()))
        : std::nullopt;
}

} // namespace

QByteArray updateQuestion(const QString &serialNumber, const QString &appVersion)
{
    const nlohmann::json question{{"serialNumber", serialNumber.toStdString()},
                                  {"appVersion", appVersion.toStdString()}};
    return QByteArray::fromStdString(question.dump());
}

UpdateRepositoryProtocol::CheckResult updateInfoFromJson(const QByteArray &json)
{
    const auto object = parseJson(json);
    if (!object.is_object()) {
        return unreadable("it is not a JSON object");
    }
    const auto version = textOf(object, "lastAppVersion");
    if (!version) {
        return unreadable("\"lastAppVersion\" is not a string");
    }
    const auto address = textOf(object, "downloadUrl");
    if (!address) {
        return unreadable("\"downloadUrl\" is not a string");
    }
    const auto canUpdate = object.find("canUpdate");
    if (canUpdate == object.end() || !canUpdate->is_boolean()) {
        return unreadable("\"canUpdate\" is neither true nor false");
    }
    return UpdateInfo{
        .lastAppVersion = *version, .downloadUrl = *address, .canUpdate = canUpdate->get<bool>()};
}

} // namespace glimmerpane
