# vx_add_test(NAME [SOURCES file...] [LINK lib...] [LABELS label...] [TIMEOUT seconds]
#             [PHONES number])
#
# A Qt Test program. Without SOURCES it is made of NAME.cpp. It makes its own private home
# folder (tests/support/VXTestMain.h), so it passes alone, in any order and beside others.
# The label webengine means that it starts the web engine; sanitizer builds leave it out.
# With PHONES it runs in a network namespace of its own with that many others in reach, see
# script/in-namespace.
#
# Most tests wait, so ctest runs more of them at a time than there are processors (the presets);
# one with the web engine counts as two. Who may take long begins first.
function(vx_add_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "TIMEOUT;PHONES" "SOURCES;LINK;LABELS")
    # The engine's own processes and allocators are not for sanitizers.
    if(VX_SANITIZE AND "webengine" IN_LIST arg_LABELS)
        return()
    endif()
    if(NOT arg_SOURCES)
        set(arg_SOURCES ${name}.cpp)
    endif()
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()

    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE vx_compiler vx_test_support Qt6::Test ${arg_LINK})
    vx_use_precompiled_headers(${name})
    set_target_properties(${name} PROPERTIES
        RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/tests")
    set(command ${name})
    if(DEFINED arg_PHONES)
        set(command "${PROJECT_SOURCE_DIR}/script/in-namespace" --phones ${arg_PHONES}
            $<TARGET_FILE:${name}>)
    endif()
    add_test(NAME ${name} COMMAND ${command})
    set(processors 1)
    if("webengine" IN_LIST arg_LABELS)
        set(processors 2)
    endif()
    set_tests_properties(${name} PROPERTIES
        LABELS "${arg_LABELS}"
        TIMEOUT ${arg_TIMEOUT}
        COST ${arg_TIMEOUT}
        PROCESSORS ${processors}
        ENVIRONMENT "LC_ALL=C.UTF-8")
endfunction()
