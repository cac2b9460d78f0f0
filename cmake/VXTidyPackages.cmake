# Run by CPack behind the packages. CPack writes scripts that call ldconfig; the trigger of the
# package does that, once for a whole installation, so the scripts go.
foreach(package IN LISTS CPACK_PACKAGE_FILES)
    set(folder "${package}.unpacked")
    file(REMOVE_RECURSE "${folder}")
    execute_process(COMMAND dpkg-deb --raw-extract "${package}" "${folder}"
        COMMAND_ERROR_IS_FATAL ANY)
    file(REMOVE "${folder}/DEBIAN/postinst" "${folder}/DEBIAN/postrm")
    execute_process(COMMAND dpkg-deb --root-owner-group --build "${folder}" "${package}"
        OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
    file(REMOVE_RECURSE "${folder}")
endforeach()
