# What an installation holds besides the programs, and the two Debian packages made of it: pixmora-server (component server),
# which runs without a desktop, and pixmora (component desktop), which adds the windows.

# What Debian wants compressed is so everywhere.
#   pixmora_install_compressed(COMPONENT FILE DESTINATION NAME)
find_program(GZIP gzip REQUIRED)
function(pixmora_install_compressed component file destination name)
  set(compressed ${PROJECT_BINARY_DIR}/packaging/${component}/${name}.gz)
  add_custom_command(
    OUTPUT ${compressed}
    COMMAND ${GZIP} -9nc ${file} > ${compressed}
    DEPENDS ${file}
    VERBATIM)
  set_property(GLOBAL APPEND PROPERTY PIXMORA_COMPRESSED ${compressed})
  install(FILES ${compressed} DESTINATION ${destination} COMPONENT ${component})
endfunction()

set(packaging ${PROJECT_SOURCE_DIR}/packaging)
set(manuals ${CMAKE_INSTALL_MANDIR}/man1)
file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/packaging/server ${PROJECT_BINARY_DIR}/packaging/desktop)
pixmora_install_compressed(server ${packaging}/man/pixmorad.1 ${manuals} pixmorad.1)
pixmora_install_compressed(server ${packaging}/man/pixmoractl.1 ${manuals} pixmoractl.1)
pixmora_install_compressed(desktop ${packaging}/man/pixmora.1 ${manuals} pixmora.1)
set(documents ${CMAKE_INSTALL_DATAROOTDIR}/doc)
set(components server desktop)
set(packages pixmora-server pixmora)
foreach(component package IN ZIP_LISTS components packages)
  pixmora_install_compressed(${component} ${packaging}/debian/changelog ${documents}/${package} changelog.Debian)
  install(FILES ${packaging}/debian/copyright DESTINATION ${documents}/${package} COMPONENT ${component})
endforeach()
get_property(compressed GLOBAL PROPERTY PIXMORA_COMPRESSED)
add_custom_target(packaging ALL DEPENDS ${compressed})

set(shared ${CMAKE_INSTALL_DATADIR}/pixmora)
set(icons ${CMAKE_INSTALL_DATADIR}/icons)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/htdocs DESTINATION ${shared} COMPONENT server)
install(FILES ${PROJECT_SOURCE_DIR}/share/exif.ini ${PROJECT_SOURCE_DIR}/share/release-1.0.0.sha256
        DESTINATION ${shared} COMPONENT server)
install(FILES ${packaging}/pixmorad.service DESTINATION lib/systemd/user COMPONENT server)
install(FILES ${packaging}/nginx/pixmora.conf DESTINATION ${documents}/pixmora-server/examples COMPONENT server)
install(FILES ${packaging}/pixmora.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT desktop)
install(FILES ${packaging}/example.pixmora.pixmora.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo
        COMPONENT desktop)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/share/icons DESTINATION ${CMAKE_INSTALL_DATADIR} COMPONENT desktop)
install(FILES ${PROJECT_SOURCE_DIR}/art/pixmora.svg DESTINATION ${icons}/hicolor/scalable/apps COMPONENT desktop)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME pixmora)
set(CPACK_PACKAGE_CONTACT "The Pixmora! contributors <contributors@pixmora.example>")
set(description
    "Pixmora! turns a home computer into a small public web server for its
owner's pictures and movies. Albums are folders: nothing is imported or
prepared, and a file dropped into a folder is on the site at once. Friends
look at them with a plain web browser, as thumbnails, list or slide show.
.
")
set(CPACK_COMPONENTS_ALL server desktop)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_SERVER_PACKAGE_NAME pixmora-server)
set(CPACK_COMPONENT_SERVER_DESCRIPTION
    "small website for your pictures and movies, without windows
${description}This package holds the server without windows, pixmorad, with a service for
a user's account, and pixmoractl, which sets it up from a shell.")
set(CPACK_DEBIAN_DESKTOP_PACKAGE_NAME pixmora)
set(CPACK_COMPONENT_DESKTOP_DESCRIPTION
    "small website for your pictures and movies
${description}This package holds the desktop program, pixmora: a window, a tray icon and
a setup that leads through the first start.")
# WebP pictures, by a plug-in that nothing links.
set(CPACK_DEBIAN_SERVER_PACKAGE_DEPENDS qt6-image-formats-plugins)
# Whom to trust, where the central service is asked over TLS.
set(CPACK_DEBIAN_SERVER_PACKAGE_RECOMMENDS ca-certificates)
# The first release was one package.
set(CPACK_DEBIAN_PACKAGE_RELEASE 2)
set(version ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})
set(CPACK_DEBIAN_SERVER_PACKAGE_REPLACES "pixmora (<< 1.0.0-2)")
set(CPACK_DEBIAN_SERVER_PACKAGE_BREAKS "pixmora (<< 1.0.0-2)")
set(CPACK_DEBIAN_DESKTOP_PACKAGE_DEPENDS "pixmora-server (= ${version})")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION web)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE ${PIXMORA_HOME_PAGE})
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Addresses open in the desktop's browser; icons belong to a theme.
set(CPACK_DEBIAN_DESKTOP_PACKAGE_RECOMMENDS "xdg-utils, hicolor-icon-theme, qt6-wayland")
include(CPack)
