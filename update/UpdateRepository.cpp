// SPDX-License-Identifier: MIT
#include "update/UpdateRepository.h"

#include "update/HttpsPost.h"
#include "update/Log.h"
#include "update/UpdateAnswer.h"
#include "update/UpdateError.h"

#include <QCoroFuture>

#include <utility>

namespace glimmerpane
{

namespace
{

using Case = UpdateError::Case;

std::unexpected<Error> failed(const UpdateError &error)
{
    return std::unexpected(error.failure());
}

/** Anything but https could be read or answered by third parties. */
bool isUsable(const QUrl &url)
{
    return url.isValid() && url.scheme() == QStringLiteral("https") && !url.host().isEmpty();
}

} // namespace

UpdateRepository::UpdateRepository(UpdateService service)
    : service_(std::move(service))
{
}

QCoro::Task<UpdateRepositoryProtocol::CheckResult> UpdateRepository::checkForUpdate(
    QString serialNumber, QString appVersion)
{
    const QUrl url(service_.address, QUrl::StrictMode);
    if (!isUsable(url)) {
        co_return failed({.kind = Case::invalidURL});
    }
    qCInfo(updateLog) << "asking" << url.host();
    const HttpsPost post({.url = url,
                          .contentType = "application/json",
                          .body = updateQuestion(serialNumber, appVersion),
                          .limit = service_.limit,
                          .largestAnswer = service_.largestAnswer,
                          .authorities = service_.authorities});
    auto result = post.result();
    const auto answer = co_await result;
    if (!answer) {
        co_return std::unexpected(Error{.text = answer.error(), .log = answer.error()});
    }
    if (!answer->status) {
        co_return failed({.kind = Case::invalidResponse});
    }
    qCInfo(updateLog) << "answer with status" << *answer->status;
    constexpr int ok = 200;
    if (*answer->status != ok) {
        co_return failed({.kind = Case::httpError, .statusCode = *answer->status});
    }
    co_return updateInfoFromJson(answer->body);
}

} // namespace glimmerpane
