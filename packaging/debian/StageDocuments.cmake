# Adds to the staged files what only a Debian package has: its documents, and compressed pages.
set(root "${CPACK_TEMPORARY_DIRECTORY}")
set(documents "${root}/usr/share/doc/vigilo")
set(project "${CMAKE_CURRENT_LIST_DIR}/../..")

function(compress source target)
    execute_process(COMMAND gzip --best --no-name --stdout "${source}" OUTPUT_FILE "${target}"
        COMMAND_ERROR_IS_FATAL ANY)
    file(CHMOD "${target}" PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
endfunction()

file(MAKE_DIRECTORY "${documents}")
file(CHMOD "${root}/usr/share/doc" "${documents}" PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
file(INSTALL "${CMAKE_CURRENT_LIST_DIR}/copyright" DESTINATION "${documents}")
compress("${project}/CHANGELOG.md" "${documents}/changelog.gz")
configure_file("${CMAKE_CURRENT_LIST_DIR}/changelog.in" "${documents}/changelog.Debian" @ONLY)
compress("${documents}/changelog.Debian" "${documents}/changelog.Debian.gz")
file(REMOVE "${documents}/changelog.Debian")

file(GLOB pages "${root}/usr/share/man/man*/*.[1-9]")
foreach(page ${pages})
    compress("${page}" "${page}.gz")
    file(REMOVE "${page}")
endforeach()
