// SPDX-License-Identifier: MIT
#include "app/GlimmerpaneShareApp.h"
#include "update/UpdateRepository.h"

using namespace glimmerpane;

namespace
{

std::unique_ptr<UpdateRepositoryProtocol> makeTestRepository()
{
    return std::make_unique<UpdateRepository>(
        UpdateService{.address = qEnvironmentVariable("TEST_UPDATE_URL"),
                      .authorities = qgetenv("TEST_AUTHORITY")});
}

} // namespace

int main(int argc, char **argv)
{
    return runGlimmerpane(argc, argv, makeTestRepository);
}
