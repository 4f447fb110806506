// SPDX-License-Identifier: MIT
#pragma once

#include "services/ServiceInterfaces.h"

#include <QByteArray>

#include <chrono>

namespace glimmerpane
{

/** Where to check for updates, and the limits of an answer. */
struct UpdateService {
    QString address; ///< an https URL, used as it stands
    std::chrono::milliseconds limit = std::chrono::seconds(60); ///< for the whole answer
    qsizetype largestAnswer = 1024 * 1024; ///< bytes
    QByteArray authorities{}; ///< PEM; trusted instead of the system's, if not empty
};

/** Asks the update service over HTTPS, once per call; nothing is kept between calls. */
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
