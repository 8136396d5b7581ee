# What CPack needs to know for the Debian package: `cpack --config build/release/CPackConfig.cmake`.
set(CPACK_GENERATOR DEB)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
# The program's configuration is outside of its prefix, so the package's root is what is filled.
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX /usr)
# Everything, by the name of what has no other: so the list of what `cmake --install` has put in place
# stays as it is, by which that is removed again.
set(CPACK_INSTALL_CMAKE_PROJECTS "${PROJECT_BINARY_DIR};${PROJECT_NAME};Unspecified;/")
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_CURRENT_LIST_DIR}/debian/CompleteStaging.cmake")
set(CPACK_VIGILO_RELEASE_DATE "${release_date}") # for that script

set(CPACK_PACKAGE_NAME vigilo)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "keeps the computer awake while agents work")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Vigilo holds off idle sleep while coding agents and terminal jobs run
unattended, for as long as its user says, and shows the agents that it sees
at work. An Agent Lock covers every display meanwhile, and the lock of the
system is at hand.")
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "The Vigilo developers <vigilo@users.noreply.github.com>")
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://vigilo.github.io")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA "${CMAKE_CURRENT_LIST_DIR}/debian/conffiles")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)

# Libraries are found by what the programs link; these are loaded when they run.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(loaded
    qml6-module-qtquick qml6-module-qtquick-templates qml6-module-qtquick-window
    qml6-module-qtqml qml6-module-qtqml-workerscript
    qt6-wayland libpam-runtime
)
list(JOIN loaded ", " CPACK_DEBIAN_PACKAGE_DEPENDS)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
    "default-dbus-session-bus | dbus-session-bus, fonts-quicksand, libglib2.0-bin")

include(CPack)
