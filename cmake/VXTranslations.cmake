# The catalogues: i18n/VXNetworking_<language>.ts of the German source texts. Without Qt's
# LinguistTools the build goes on without them, and the programs speak German.
#
# release_translations (part of every build) makes share/VXNetworking/translations/*.qm, where the
# programs look for them; update_translations (by hand) takes the texts of the sources over into
# the .ts files.

file(GLOB vx_catalogues CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/i18n/VXNetworking_*.ts")
find_package(Qt6LinguistTools QUIET)
if(NOT TARGET Qt6::lrelease OR NOT TARGET Qt6::lupdate)
    message(STATUS "Qt's LinguistTools are missing: no catalogues, all texts stay German")
    return()
endif()

set(vx_translations_dir "${PROJECT_BINARY_DIR}/share/VXNetworking/translations")
file(MAKE_DIRECTORY "${vx_translations_dir}")
set(vx_released)
foreach(catalogue IN LISTS vx_catalogues)
    cmake_path(GET catalogue STEM name)
    set(released "${vx_translations_dir}/${name}.qm")
    add_custom_command(OUTPUT "${released}"
        COMMAND Qt6::lrelease -silent "${catalogue}" -qm "${released}"
        DEPENDS "${catalogue}"
        COMMENT "Releasing ${name}.qm"
        VERBATIM)
    list(APPEND vx_released "${released}")
endforeach()
add_custom_target(release_translations ALL DEPENDS ${vx_released})
# Whoever runs a program from the build tree finds its catalogues.
add_dependencies(VXCore release_translations)

# Without locations: a line that moves is no change of a text. The languages stand in the files.
add_custom_target(update_translations
    COMMAND Qt6::lupdate -locations none -no-obsolete libs apps -ts ${vx_catalogues}
    WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}"
    VERBATIM)

install(FILES ${vx_released} DESTINATION "${CMAKE_INSTALL_DATADIR}/VXNetworking/translations"
    COMPONENT runtime)
