# SPDX-License-Identifier: MIT
add_library(glimmerpane_build_settings INTERFACE)
target_compile_features(glimmerpane_build_settings INTERFACE cxx_std_23)
target_include_directories(glimmerpane_build_settings INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(glimmerpane_build_settings INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual)
target_compile_definitions(glimmerpane_build_settings INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_NO_FOREACH)
if(GLIMMERPANE_SANITIZER)
    # With instrumentation, GCC 12 no longer sees that an optional is set before it is read.
    target_compile_options(glimmerpane_build_settings INTERFACE
        $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
    set(sanitize -fsanitize=${GLIMMERPANE_SANITIZER} -fno-omit-frame-pointer)
    target_compile_options(glimmerpane_build_settings INTERFACE ${sanitize})
    target_link_options(glimmerpane_build_settings INTERFACE ${sanitize})
endif()

# For tests; link it last, because it takes some of the others back.
add_library(glimmerpane_test_settings INTERFACE)
if(Qt6_VERSION VERSION_GREATER_EQUAL 6.8) # whose QTRY_ macros make an int of a long
    target_compile_options(glimmerpane_test_settings INTERFACE -Wno-conversion)
endif()

# glimmerpane_library(NAME SOURCES ... [SHOWS ...] [USES ...]): the static library of one folder. It
# may include only what SHOWS (what its headers include) and USES name; tools/check-includes checks
# that.
function(glimmerpane_library name)
    cmake_parse_arguments(arg "" "" "SOURCES;SHOWS;USES" ${ARGN})
    add_library(${name} STATIC ${arg_SOURCES})
    target_link_libraries(${name} PUBLIC glimmerpane_build_settings ${arg_SHOWS}
                          PRIVATE ${arg_USES})
endfunction()

# glimmerpane_test(NAME SOURCES ... USES ... [LABELS ...] [ENVIRONMENT ...]): a Qt Test program.
function(glimmerpane_test name)
    cmake_parse_arguments(arg "" "" "SOURCES;USES;LABELS;ENVIRONMENT" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE glimmerpane_build_settings Qt6::Test ${arg_USES}
                          glimmerpane_test_settings)
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES TIMEOUT 120 LABELS "${arg_LABELS}"
                         ENVIRONMENT "${arg_ENVIRONMENT}")
endfunction()
