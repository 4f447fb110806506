# SPDX-License-Identifier: MIT
# The only place that names the program's dependencies; docs/dependencies.md explains them.
option(GLIMMERPANE_UPDATE_CHECK "Ask the update service for a newer version at each launch" ON)
find_package(Qt6 6.4 REQUIRED COMPONENTS Core Gui Widgets Concurrent DBus LinguistTools)
if(GLIMMERPANE_UPDATE_CHECK)
    find_package(Qt6 6.4 REQUIRED COMPONENTS Network)
endif()
find_package(QCoro6 0.8 REQUIRED COMPONENTS Core DBus)
find_package(nlohmann_json 3.11 REQUIRED)
find_package(PkgConfig REQUIRED)
pkg_check_modules(XCB REQUIRED IMPORTED_TARGET
                  xcb xcb-composite xcb-damage xcb-xfixes xcb-render xcb-renderutil
                  xcb-randr xcb-shm xcb-xinput xcb-cursor xcb-record xcb-dri3)
pkg_check_modules(PIPEWIRE REQUIRED IMPORTED_TARGET libpipewire-0.3)
pkg_check_modules(WAYLAND REQUIRED IMPORTED_TARGET wayland-client)
pkg_get_variable(WAYLAND_SCANNER wayland-scanner wayland_scanner)
pkg_get_variable(WAYLAND_PROTOCOLS_DIR wayland-protocols pkgdatadir)
find_package(PlasmaWaylandProtocols REQUIRED)
if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    qcoro_enable_coroutines() # adds an option that clang no longer knows or needs
endif()

if(GLIMMERPANE_BUILD_TESTS)
    find_package(Qt6 6.4 REQUIRED COMPONENTS Test Network)
    pkg_check_modules(XCB_TOOLS REQUIRED IMPORTED_TARGET xcb-shm xcb-xtest xcb-res)
    pkg_check_modules(GRAPHICS REQUIRED IMPORTED_TARGET egl gl)
endif()
