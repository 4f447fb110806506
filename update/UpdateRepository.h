// SPDX-License-Identifier: MIT
#pragma once

#include "services/ServiceInterfaces.h"

#include <QByteArray>

#include <chrono>

namespace glimmerpane
{

/** Whom the update check asks and how much it takes from there. */
struct UpdateService {
    QString address; ///< an https URL, used as it stands
    std::chrono::milliseconds limit = std::chrono::seconds(60); ///< for the whole answer
    qsizetype largestAnswer = 1024 * 1024; ///< bytes
    QByteArray authorities{}; ///< PEM; trusted instead of the system's, if not empty
};

/** Asks the update service over HTTPS, once for each call; nothing is kept in between. */
class UpdateRepository : public UpdateRepositoryProtocol
{
public:
    explicit UpdateRepository(UpdateService service);

    /** Main thread; the request itself runs on another. May outlive this object. */
    QCoro::Task<CheckResult> checkForUpdate(QString serialNumber, QString appVersion) override;

private:
    const UpdateService service_;
};

} // namespace glimmerpane
