# The Debian packages that "cpack -G DEB" makes from a build for /usr (preset package).
#
#   runtime  libvxnetworking0     the shared libraries, their catalogues, certificates and pages
#   dev      libvxnetworking-dev  headers, CMake package, pkg-config file
#   tools    vxnetworking-tools   sample host and simulator with their manual pages

set(CPACK_PACKAGE_NAME vxnetworking)
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(VX_PACKAGE_CONTACT "VXNetworking developers <vxnetworking@localhost>" CACHE STRING
    "Maintainer of the packages: name and address")
set(CPACK_PACKAGE_CONTACT "${VX_PACKAGE_CONTACT}")
# The text that makes CPack put no summary of its own before that of each package.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_NAME} built using CMake")
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}/packages")
set(CPACK_GENERATOR DEB)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_COMPONENTS_ALL runtime dev tools)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS OFF)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY "=")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_POST_BUILD_SCRIPTS "${PROJECT_SOURCE_DIR}/cmake/VXTidyPackages.cmake")

set(vx_runtime "libvxnetworking0 (= ${PROJECT_VERSION})")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libvxnetworking0)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
# Qt's own texts and the programs that the platform services call when they are there.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_RECOMMENDS
    "ca-certificates, qt6-translations-l10n, xdg-utils")
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "networking library of a desktop photo application
Synchronous HTTP from any thread with one error value and its messages for
the customer, proxy and TLS handling that asks the user, login to a cloud by
OAuth2, web views, and photo transfer from a phone on the local network.

This package contains the shared libraries, their English catalogue, and the
pages and icons that they serve and show.")

set(CPACK_DEBIAN_DEV_PACKAGE_NAME libvxnetworking-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS
    "${vx_runtime}, qt6-base-dev (>= 6.4), qt6-webengine-dev (>= 6.4), qt6-websockets-dev (>= 6.4)")
set(CPACK_DEBIAN_DEV_PACKAGE_SUGGESTS "cmake, pkgconf")
set(CPACK_COMPONENT_DEV_DESCRIPTION "networking library of a desktop photo application (development)
Synchronous HTTP from any thread with one error value and its messages for
the customer, proxy and TLS handling that asks the user, login to a cloud by
OAuth2, web views, and photo transfer from a phone on the local network.

This package contains the headers, the CMake package VXNetworking and the
file for pkg-config.")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME vxnetworking-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION net)
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "${vx_runtime}, openssl")
set(CPACK_COMPONENT_TOOLS_DESCRIPTION "sample host and loopback service of the VXNetworking library
The program vx-sample shows what an application does with the library, as a
window and as commands for scripts. The program vx-simulator is the service
that it talks to: HTTP, HTTPS, proxies and OAuth2 on the loopback, with a
record of every request.")

# What Debian wants in each package: licence, changes, and for the libraries the linker's cache.
foreach(component IN ITEMS runtime dev tools)
    string(TOUPPER "${component}" upper)
    set(folder "${CMAKE_INSTALL_DOCDIR}/../${CPACK_DEBIAN_${upper}_PACKAGE_NAME}")
    cmake_path(NORMAL_PATH folder)
    install(FILES debian/copyright "${PROJECT_BINARY_DIR}/debian/changelog.gz"
        DESTINATION "${folder}" COMPONENT ${component})
endforeach()
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA "${PROJECT_SOURCE_DIR}/debian/triggers")

# Packed when the build is configured: an installation needs no further target for them.
function(vx_pack source packed)
    execute_process(COMMAND "${VX_GZIP}" -9nc "${PROJECT_SOURCE_DIR}/${source}"
        OUTPUT_FILE "${packed}" COMMAND_ERROR_IS_FATAL ANY)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/${source}")
endfunction()

find_program(VX_GZIP gzip REQUIRED)
file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/debian")
vx_pack(debian/changelog "${PROJECT_BINARY_DIR}/debian/changelog.gz")
if(VX_BUILD_APPS)
    foreach(page IN ITEMS vx-sample vx-simulator)
        set(packed "${PROJECT_BINARY_DIR}/debian/${page}.1.gz")
        vx_pack(man/${page}.1 "${packed}")
        install(FILES "${packed}" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT tools)
    endforeach()
endif()

include(CPack)
