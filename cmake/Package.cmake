# What an installation holds besides the programs, and the Debian package made of it.

# What Debian wants compressed is so everywhere.
#   pixmora_install_compressed(FILE DESTINATION NAME)
find_program(GZIP gzip REQUIRED)
function(pixmora_install_compressed file destination name)
  set(compressed ${PROJECT_BINARY_DIR}/packaging/${name}.gz)
  add_custom_command(
    OUTPUT ${compressed}
    COMMAND ${GZIP} -9nc ${file} > ${compressed}
    DEPENDS ${file}
    VERBATIM)
  set_property(GLOBAL APPEND PROPERTY PIXMORA_COMPRESSED ${compressed})
  install(FILES ${compressed} DESTINATION ${destination})
endfunction()

set(packaging ${PROJECT_SOURCE_DIR}/packaging)
file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/packaging)
foreach(program pixmora pixmorad pixmoractl)
  pixmora_install_compressed(${packaging}/man/${program}.1 ${CMAKE_INSTALL_MANDIR}/man1 ${program}.1)
endforeach()
pixmora_install_compressed(${packaging}/debian/changelog ${CMAKE_INSTALL_DOCDIR} changelog)
get_property(compressed GLOBAL PROPERTY PIXMORA_COMPRESSED)
add_custom_target(packaging ALL DEPENDS ${compressed})

install(DIRECTORY ${PROJECT_SOURCE_DIR}/htdocs DESTINATION ${CMAKE_INSTALL_DATADIR}/pixmora)
install(FILES ${PROJECT_SOURCE_DIR}/share/exif.ini DESTINATION ${CMAKE_INSTALL_DATADIR}/pixmora)
install(FILES ${packaging}/pixmora.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${packaging}/example.pixmora.pixmora.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/share/icons DESTINATION ${CMAKE_INSTALL_DATADIR})
install(FILES ${PROJECT_SOURCE_DIR}/art/pixmora.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(FILES ${packaging}/pixmorad.service DESTINATION lib/systemd/user)
install(FILES ${packaging}/debian/copyright DESTINATION ${CMAKE_INSTALL_DOCDIR})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME pixmora)
set(CPACK_PACKAGE_CONTACT "The Pixmora! contributors <contributors@pixmora.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "small website for your pictures and movies")
set(CPACK_PACKAGE_DESCRIPTION
    "Pixmora! turns a home computer into a small public web server for its
owner's pictures and movies. Albums are folders: nothing is imported or
prepared, and a file dropped into a folder is on the site at once. Friends
look at them with a plain web browser, as thumbnails, list or slide show.
.
The package holds the desktop program pixmora, the same server without
windows, pixmorad, with a service for a user's account, and pixmoractl, which
sets it up from a shell.")
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
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "xdg-utils, hicolor-icon-theme")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS qt6-wayland)
include(CPack)
