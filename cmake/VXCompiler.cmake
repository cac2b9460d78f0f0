# Language level, warnings and sanitizers of every own target.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTORCC ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_VERIFY_INTERFACE_HEADER_SETS ON)
if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE Debug CACHE STRING "Build type" FORCE)
endif()

find_program(VX_CCACHE ccache)
if(VX_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${VX_CCACHE}")
endif()

# Everything lands in one folder per kind, so that programs find each other and
# the libraries without an installation.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")

add_library(vx_compiler INTERFACE)
target_compile_options(vx_compiler INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
    -Wsuggest-override -Wformat=2 -fstack-protector-strong
    $<$<BOOL:${VX_WARNINGS_AS_ERRORS}>:-Werror>
    $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2>)
target_compile_definitions(vx_compiler INTERFACE
    QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII
    QT_DISABLE_DEPRECATED_BEFORE=0x060400
    $<$<CONFIG:Debug>:_GLIBCXX_ASSERTIONS>)
target_link_options(vx_compiler INTERFACE LINKER:-z,relro,-z,now)

if(VX_SANITIZE)
    target_compile_options(vx_compiler INTERFACE
        -fsanitize=${VX_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(vx_compiler INTERFACE -fsanitize=${VX_SANITIZE})
else()
    # A sanitizer's runtime is linked into the program only, so libraries keep open symbols.
    target_link_options(vx_compiler INTERFACE
        $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,SHARED_LIBRARY>:LINKER:--no-undefined>)
endif()
