# The package for Debian. Its libraries are found by dpkg-shlibdeps; what no executable links to stands here.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vistorama)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "web galleries from photographs")
set(CPACK_PACKAGE_DESCRIPTION
"Vistorama turns folders of photographs into a finished web site of picture
galleries: collect pictures into a tree of galleries, choose a layout and a
style, edit texts and pictures right on the finished page, and deploy the
static site to a folder or to an FTP server.
.
This package holds the desktop program, vistorama, and vistorama-cli, which
does the same work without a display.")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/package)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES TRUE)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
    WORLD_READ WORLD_EXECUTE)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER ${VISTORAMA_MAINTAINER})
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS TRUE)
# Texts on pictures need a font; the icons need the theme that they are a part of.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "fonts-dejavu-core | fonts-liberation2 | fonts-freefont-ttf, hicolor-icon-theme")
# For Wayland desktops, and to show a finished site in the browser.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-wayland, shared-mime-info, xdg-utils")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION TRUE)

include(CPack)

# The same as the target package, which would first build all tests.
add_custom_target(deb
    COMMAND ${CMAKE_CPACK_COMMAND} --config ${PROJECT_BINARY_DIR}/CPackConfig.cmake
    WORKING_DIRECTORY ${PROJECT_BINARY_DIR}
    VERBATIM USES_TERMINAL)
add_dependencies(deb vistorama vistorama-cli package_files)
