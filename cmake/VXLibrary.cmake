# vx_add_library(NAME CLASSES class... [HEADERS header...] [PUBLIC_LINK lib...] [PRIVATE_LINK lib...]
#                [KEEP])
#
# A shared library of this project. Every class has one header and one source of its name;
# HEADERS are public headers without a source. The alias VX::<name without VX> links it; with KEEP
# a program has the library even if it uses no symbol of it, as the installed target of that name.
set(CMAKE_CXX_LINK_LIBRARY_USING_VX_KEEP_SUPPORTED TRUE)
set(CMAKE_CXX_LINK_LIBRARY_USING_VX_KEEP
    "LINKER:--push-state,--no-as-needed" "<LINK_ITEM>" "LINKER:--pop-state")
function(vx_add_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "KEEP" "" "CLASSES;HEADERS;PUBLIC_LINK;PRIVATE_LINK")
    list(TRANSFORM arg_CLASSES APPEND ".cpp" OUTPUT_VARIABLE sources)
    list(TRANSFORM arg_CLASSES APPEND ".h" OUTPUT_VARIABLE headers)

    add_library(${name} SHARED)
    string(REGEX REPLACE "^VX" "" short "${name}")
    add_library(VX::${name} ALIAS ${name})
    if(NOT arg_KEEP)
        add_library(VX::${short} ALIAS ${name})
    else()
        add_library(${name}Kept INTERFACE)
        target_link_libraries(${name}Kept INTERFACE "$<LINK_LIBRARY:VX_KEEP,${name}>")
        add_library(VX::${short} ALIAS ${name}Kept)
    endif()

    target_sources(${name}
        PRIVATE ${sources}
        PUBLIC FILE_SET HEADERS BASE_DIRS "${CMAKE_CURRENT_SOURCE_DIR}/.."
            FILES ${headers} ${arg_HEADERS} ${name}Export.h)
    target_compile_features(${name} PUBLIC cxx_std_20)
    target_link_libraries(${name}
        PUBLIC ${arg_PUBLIC_LINK}
        PRIVATE ${arg_PRIVATE_LINK} $<BUILD_INTERFACE:vx_compiler>)
    set_target_properties(${name} PROPERTIES
        VERSION "${PROJECT_VERSION}"
        SOVERSION 0
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)
    install(TARGETS ${name} EXPORT VXNetworkingTargets
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT runtime NAMELINK_COMPONENT dev
        FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" COMPONENT dev)
endfunction()
