// SPDX-License-Identifier: MIT
#include "app/GlimmerpaneShareApp.h"

int main(int argc, char **argv)
{
    return glimmerpane::runGlimmerpane(argc, argv);
}
