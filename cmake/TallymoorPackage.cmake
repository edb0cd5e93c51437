# cmake --build BUILD --target package, or ./run package, makes tallymoor_VERSION-1_ARCHITECTURE.deb. For the
# components see cmake/TallymoorInstall.cmake.
set(package_files ${PROJECT_SOURCE_DIR}/assets/package)

# Uses Debian's toolkit and XML library; contains only our own library.
install(TARGETS tallymoor_fxex LIBRARY DESTINATION ${tallymoor_folder}/lib NAMELINK_SKIP
  COMPONENT package EXCLUDE_FROM_ALL)
install(FILES ${package_files}/package.tallymoor DESTINATION ${tallymoor_folder} COMPONENT package EXCLUDE_FROM_ALL)

set(TALLYMOOR_EXEC tallymoor)
configure_file(${PROJECT_SOURCE_DIR}/assets/desktop/tallymoor.desktop.in ${tallymoor_scratch}/package/tallymoor.desktop @ONLY)
install(FILES ${tallymoor_scratch}/package/tallymoor.desktop DESTINATION share/applications
  COMPONENT package EXCLUDE_FROM_ALL)
install(FILES ${package_files}/lintian-overrides DESTINATION share/lintian/overrides RENAME tallymoor
  COMPONENT package EXCLUDE_FROM_ALL)
install(FILES ${package_files}/copyright DESTINATION share/doc/tallymoor COMPONENT package EXCLUDE_FROM_ALL)
set(changelog ${tallymoor_scratch}/package/changelog.Debian.gz)
add_custom_command(OUTPUT ${changelog} COMMAND ${GZIP} -9nc ${package_files}/changelog > ${changelog}
  DEPENDS ${package_files}/changelog VERBATIM)
add_custom_target(tallymoor_changelog DEPENDS ${changelog})
add_dependencies(tallymoor_installation tallymoor_changelog)
install(FILES ${changelog} DESTINATION share/doc/tallymoor COMPONENT package EXCLUDE_FROM_ALL)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tallymoor)
set(CPACK_PACKAGE_VENDOR Brindlecove)
set(CPACK_PACKAGE_CONTACT "Brindlecove <feedback@brindlecove.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "records of share portfolios and their performance")
set(CPACK_PACKAGE_DESCRIPTION
"Tallymoor keeps the records of your share portfolios and shows how they are
doing. You enter what you bought; it keeps the cash, fetches prices from web
pages, notices share splits, and holds a day-by-day record of what each
portfolio was worth.
.
It draws charts, watches prices, makes reports for the browser, and shows any
past day. Everything stays on your machine, in XML documents that are yours.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS ${CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS})
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL program package)
set(CPACK_COMPONENTS_GROUPING ALL_COMPONENTS_IN_ONE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# dpkg-shlibdeps finds the libraries; xdg-open opens reports, the guide and links.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})
set(CPACK_DEBIAN_PACKAGE_DEPENDS xdg-utils)
# Certificates for price sources with https; the session bus for tray and notifications.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "ca-certificates, default-dbus-session-bus | dbus-session-bus, hicolor-icon-theme")
include(CPack)
