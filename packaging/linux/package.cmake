# The package for the Debian that builds it: `./dev package`, or cpack in the build folder of the preset release.
# Libraries have other names in each release of the distribution, so the version names the release it was built on.
set(PINTLE_DISTRIBUTION unknown)
if(EXISTS /etc/os-release)
    file(STRINGS /etc/os-release release)
    string(REGEX MATCH ";ID=\"?([a-z]+)" found ";${release}")
    if(found)
        set(PINTLE_DISTRIBUTION ${CMAKE_MATCH_1})
        string(REGEX REPLACE "^debian$" "deb" PINTLE_DISTRIBUTION ${PINTLE_DISTRIBUTION})
    endif()
    string(REGEX MATCH ";VERSION_ID=\"?([0-9.]+)" found ";${release}")
    if(found)
        string(APPEND PINTLE_DISTRIBUTION ${CMAKE_MATCH_1})
    endif()
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME pintle)
set(CPACK_PACKAGE_VENDOR "The Pintle authors")
# A reserved name that no mail reaches, as in the about window.
set(CPACK_PACKAGE_CONTACT "The Pintle authors <packages@pintle.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "choose, download and resize cursor themes")
set(CPACK_PACKAGE_DESCRIPTION
"Pintle makes the cursors of a free Xcursor theme the pointer of every running
application on an X11 desktop at once, in the size you choose, and gives the
desktop its own back when asked.
.
It lives in the tray, downloads themes with one click and applies the last
one again at login.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_STRIP_FILES ON)
set(CPACK_MONOLITHIC_INSTALL ON)

set(CPACK_DEBIAN_PACKAGE_VERSION ${PROJECT_VERSION}~${PINTLE_DISTRIBUTION})
find_program(PINTLE_DPKG dpkg)
set(architecture unknown)
if(PINTLE_DPKG)
    execute_process(COMMAND ${PINTLE_DPKG} --print-architecture OUTPUT_VARIABLE architecture
        OUTPUT_STRIP_TRAILING_WHITESPACE)
endif()
set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE ${architecture})
set(CPACK_DEBIAN_FILE_NAME pintle_${CPACK_DEBIAN_PACKAGE_VERSION}_${architecture}.deb)
set(CPACK_DEBIAN_PACKAGE_SECTION x11)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# What no library names: the modules that the views import, the reader of drawings (which Debian 12 has in the library's
# package), certificates.
set(dependencies
    qml6-module-qtquick
    qml6-module-qtquick-controls
    qml6-module-qtquick-templates
    qml6-module-qtquick-window
    qml6-module-qtqml-workerscript
    "qt6-svg-plugins | libqt6svg6 (<< 6.7)"
    ca-certificates)
list(JOIN dependencies ", " CPACK_DEBIAN_PACKAGE_DEPENDS)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
    "default-dbus-session-bus | dbus-session-bus, xdg-utils, fonts-inter | fonts-noto-core | fonts-dejavu-core")
include(CPack)
