# What `make install` puts into place beside the programs, and how `make package` makes a Debian package of all.
set(PACKAGING ${CMAKE_SOURCE_DIR}/packaging)
set(APP_ICONS ${CMAKE_SOURCE_DIR}/platform/qt/images/svg/app)
set(ICONS ${CMAKE_INSTALL_DATADIR}/icons/hicolor)

configure_file(${PACKAGING}/orvane.TesselDrive.service.in ${CMAKE_BINARY_DIR}/packaging/orvane.TesselDrive.service @ONLY)
install(FILES ${PACKAGING}/orvane.TesselDrive.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${CMAKE_BINARY_DIR}/packaging/orvane.TesselDrive.service DESTINATION ${CMAKE_INSTALL_DATADIR}/dbus-1/services)
install(FILES ${PACKAGING}/orvane.TesselDrive.search-provider.ini DESTINATION ${CMAKE_INSTALL_DATADIR}/gnome-shell/search-providers)
install(FILES ${PACKAGING}/org.orvane.TesselDrive.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${APP_ICONS}/orvane.TesselDrive.svg DESTINATION ${ICONS}/scalable/apps)
install(FILES ${APP_ICONS}/orvane.TesselDrive-symbolic.svg DESTINATION ${ICONS}/symbolic/apps)
install(FILES ${PACKAGING}/tesseldrive.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME tesseldrive)
if(EXISTS /etc/debian_version) # whose site-functions are the administrator's
    set(ZSH_COMPLETIONS vendor-completions)
else()
    set(ZSH_COMPLETIONS site-functions)
endif()
install(FILES ${PACKAGING}/tesseldrive.zsh DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/${ZSH_COMPLETIONS} RENAME _tesseldrive)
install(FILES ${PACKAGING}/copyright DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tesseldrive)

# Debian wants these compressed, with no date in them.
foreach(text IN ITEMS tesseldrive.1 changelog)
    add_custom_command(
        OUTPUT ${CMAKE_BINARY_DIR}/packaging/${text}.gz
        COMMAND gzip -9 -n -c ${PACKAGING}/${text} > ${CMAKE_BINARY_DIR}/packaging/${text}.gz
        DEPENDS ${PACKAGING}/${text}
        VERBATIM)
endforeach()
add_custom_target(compressed-texts ALL DEPENDS ${CMAKE_BINARY_DIR}/packaging/tesseldrive.1.gz ${CMAKE_BINARY_DIR}/packaging/changelog.gz)
install(FILES ${CMAKE_BINARY_DIR}/packaging/tesseldrive.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${CMAKE_BINARY_DIR}/packaging/changelog.gz DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tesseldrive)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tesseldrive)
set(CPACK_PACKAGE_CONTACT "The maintainers of Tessel Drive <maintainers@tesseldrive.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "document browser for a Tessel Drive")
set(CPACK_PACKAGE_DESCRIPTION "Shows the documents of a Tessel Drive as a stack of folder lists, on a phone, a
tablet or a desk. Documents open in the application that owns them; others are
previewed and described.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# What is loaded when the program runs, which no library names.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qml6-module-qtquick, qml6-module-qtquick-window, qml6-module-qtqml-workerscript, shared-mime-info")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-wayland, qt6-image-formats-plugins, dbus-user-session, fonts-noto-core")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "xdg-utils, wl-clipboard, xclip")
include(CPack)
