# Adds to the staged files what only a Debian package has: its documents, and compressed pages.
set(root "${CPACK_TEMPORARY_DIRECTORY}")
set(documents "${root}/usr/share/doc/vigilo")
set(project "${CMAKE_CURRENT_LIST_DIR}/../..")

# Without the name and the time, so that equal files make an equal package.
function(compress source target)
    execute_process(COMMAND gzip --best --no-name --stdout "${source}" OUTPUT_FILE "${target}"
        COMMAND_ERROR_IS_FATAL ANY)
endfunction()

configure_file("${CMAKE_CURRENT_LIST_DIR}/copyright" "${documents}/copyright" COPYONLY)
set(overrides "${root}/usr/share/lintian/overrides")
configure_file("${CMAKE_CURRENT_LIST_DIR}/lintian-overrides" "${overrides}/vigilo" COPYONLY)
compress("${project}/CHANGELOG.md" "${documents}/changelog.gz")

execute_process(COMMAND date --utc --rfc-email --date "${CPACK_VIGILO_RELEASE_DATE}"
    OUTPUT_VARIABLE date OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
set(changelog "${documents}/changelog.Debian")
configure_file("${CMAKE_CURRENT_LIST_DIR}/changelog.in" "${changelog}" @ONLY)
compress("${changelog}" "${changelog}.gz")
file(REMOVE "${changelog}")

set(page "${root}/usr/share/man/man1/vigilo.1")
compress("${page}" "${page}.gz")
file(REMOVE "${page}")

# Whatever whoever makes the package keeps from others by default.
set(readable OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
set(searchable OWNER_EXECUTE GROUP_EXECUTE WORLD_EXECUTE)
file(CHMOD_RECURSE "${root}/usr/share" FILE_PERMISSIONS ${readable})
file(CHMOD_RECURSE "${root}/etc" "${root}/usr" DIRECTORY_PERMISSIONS ${readable} ${searchable})
