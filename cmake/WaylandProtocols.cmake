# SPDX-License-Identifier: MIT
# wayland_protocol_library(NAME FILE.xml ...): what a client needs to speak these protocols, made by
# wayland-scanner: NAME-client-protocol.h for each, and their code.
function(wayland_protocol_library name)
    set(folder ${CMAKE_CURRENT_BINARY_DIR}/${name})
    file(MAKE_DIRECTORY ${folder})
    set(sources)
    foreach(xml ${ARGN})
        get_filename_component(xml ${xml} ABSOLUTE)
        get_filename_component(protocol ${xml} NAME_WE)
        set(header ${folder}/${protocol}-client-protocol.h)
        set(code ${folder}/${protocol}-protocol.c)
        add_custom_command(OUTPUT ${header} DEPENDS ${xml} VERBATIM
                           COMMAND ${WAYLAND_SCANNER} client-header ${xml} ${header})
        add_custom_command(OUTPUT ${code} DEPENDS ${xml} VERBATIM
                           COMMAND ${WAYLAND_SCANNER} private-code ${xml} ${code})
        list(APPEND sources ${header} ${code})
    endforeach()
    add_library(${name} STATIC ${sources})
    target_include_directories(${name} SYSTEM PUBLIC ${folder})
    target_link_libraries(${name} PUBLIC PkgConfig::WAYLAND)
endfunction()
