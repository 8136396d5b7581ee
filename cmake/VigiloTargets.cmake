# How every target of ours is compiled: one place for warnings, sanitizers and the include root.

set(VIGILO_WARNINGS -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
if(CMAKE_UNITY_BUILD)
    # What a file declares for itself is seen by others there.
    list(APPEND VIGILO_WARNINGS -Wno-shadow)
endif()

# For a target that also compiles generated code, which must not be held to our warnings.
function(vigilo_base_options target)
    target_include_directories(${target} PUBLIC "${PROJECT_SOURCE_DIR}")
    # Invariants must hold in every build type, so the library's own cheap checks stay on too.
    target_compile_definitions(${target} PRIVATE _GLIBCXX_ASSERTIONS QT_NO_KEYWORDS)
    # What is installed must not tell where it was built.
    target_compile_options(${target} PRIVATE "-fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=")
    if(VIGILO_SANITIZE)
        target_compile_options(${target} PUBLIC -fsanitize=${VIGILO_SANITIZE}
                               -fno-sanitize-recover=all -fno-omit-frame-pointer)
        target_link_options(${target} PUBLIC -fsanitize=${VIGILO_SANITIZE})
    endif()
    if(VIGILO_COVERAGE)
        target_compile_options(${target} PUBLIC --coverage)
        target_link_options(${target} PUBLIC --coverage)
    endif()
endfunction()

function(vigilo_compile_options target)
    vigilo_base_options(${target})
    target_compile_options(${target} PRIVATE ${VIGILO_WARNINGS})
endfunction()

# vigilo_library(NAME SOURCES...): a static library with the house's options.
function(vigilo_library name)
    add_library(${name} STATIC ${ARGN})
    vigilo_compile_options(${name})
endfunction()

# vigilo_wayland_protocols(NAME XML...): the client's side of protocols. It comes from the scanner and is
# not ours to hold to our warnings.
function(vigilo_wayland_protocols name)
    set(sources)
    foreach(protocol ${ARGN})
        cmake_path(GET protocol STEM stem)
        set(glue "${CMAKE_CURRENT_BINARY_DIR}/${stem}")
        add_custom_command(
            OUTPUT "${glue}.c" "${glue}.h"
            COMMAND "${WAYLAND_SCANNER}" private-code "${protocol}" "${glue}.c"
            COMMAND "${WAYLAND_SCANNER}" client-header "${protocol}" "${glue}.h"
            DEPENDS "${protocol}"
            VERBATIM
        )
        list(APPEND sources "${glue}.c" "${glue}.h")
    endforeach()
    add_library(${name} STATIC ${sources})
    target_include_directories(${name} SYSTEM PUBLIC "${CMAKE_CURRENT_BINARY_DIR}")
    target_link_libraries(${name} PUBLIC PkgConfig::WaylandClient)
endfunction()

# vigilo_unit_test(NAME SOURCES... LIBRARIES...): a GoogleTest program, one test per TEST().
function(vigilo_unit_test name)
    cmake_parse_arguments(arg "" "" "SOURCES;LIBRARIES" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    vigilo_compile_options(${name})
    target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} GTest::gtest_main)
    if(VIGILO_COVERAGE)
        target_sources(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests/unit/counters_on_abort.cpp")
    endif()
    gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES LABELS unit TIMEOUT 120)
endfunction()
