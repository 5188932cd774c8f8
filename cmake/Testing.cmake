# navorin_add_test(NAME <name> SOURCES <files> [LIBRARIES <targets>] [LABELS <labels>] [TIMEOUT <seconds>]
#                  [ENVIRONMENT <NAME=value>])
#
# One Qt Test executable. It runs without a display and without anybody's real folders: HOME and the XDG folders
# point into the build tree. LABELS: `threads` puts the test into the thread-sanitizer run, `desktop` marks one
# that starts its own X server, bus or sound server.
add_custom_target(threads_tests) # all that the thread-sanitizer run needs
function(navorin_add_test)
    cmake_parse_arguments(T "" "NAME;TIMEOUT" "SOURCES;LIBRARIES;LABELS;ENVIRONMENT" ${ARGN})
    add_executable(${T_NAME} ${T_SOURCES})
    target_link_libraries(${T_NAME} PRIVATE navorin_strict navorin_test_support Qt6::Test ${T_LIBRARIES})
    add_test(NAME ${T_NAME} COMMAND ${T_NAME})
    if("threads" IN_LIST T_LABELS)
        add_dependencies(threads_tests ${T_NAME})
    endif()
    navorin_test_properties(${T_NAME} LABELS ${T_LABELS} TIMEOUT ${T_TIMEOUT} ENVIRONMENT ${T_ENVIRONMENT})
endfunction()

# The environment and limits that every test shares, also those that are scripts.
function(navorin_test_properties name)
    cmake_parse_arguments(T "" "TIMEOUT" "LABELS;ENVIRONMENT" ${ARGN})
    set(home ${CMAKE_BINARY_DIR}/test-homes/${name})
    file(MAKE_DIRECTORY ${home})
    if(NOT T_TIMEOUT)
        set(T_TIMEOUT 240)
    endif()
    set(suppressions ${CMAKE_SOURCE_DIR}/tests/Support)
    set(environment
        HOME=${home}
        XDG_CONFIG_HOME=${home}/config
        XDG_DATA_HOME=${home}/data
        XDG_CACHE_HOME=${home}/cache
        QT_QPA_PLATFORM=offscreen
        QT_QUICK_BACKEND=software
        LANG=C.UTF-8
        GST_REGISTRY=${CMAKE_BINARY_DIR}/test-homes/gst-registry.bin
        GST_REGISTRY_FORK=no
        G_SLICE=always-malloc
        ASAN_OPTIONS=fast_unwind_on_malloc=0:new_delete_type_mismatch=0
        LSAN_OPTIONS=suppressions=${suppressions}/lsan.supp:print_suppressions=0
        UBSAN_OPTIONS=print_stacktrace=1
        TSAN_OPTIONS=ignore_noninstrumented_modules=1:suppressions=${suppressions}/tsan.supp
        ${T_ENVIRONMENT})
    set_tests_properties(${name} PROPERTIES
        TIMEOUT ${T_TIMEOUT}
        LABELS "${T_LABELS}"
        ENVIRONMENT "${environment}")
endfunction()
