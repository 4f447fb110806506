// SPDX-License-Identifier: MIT
#include "app/GlimmerpaneShareApp.h"
#include "update/UpdateCheck.h"

int main(int argc, char **argv)
{
    return glimmerpane::runGlimmerpane(argc, argv, glimmerpane::makeUpdateRepository);
}
