# cmake --install BUILD [--prefix FOLDER], by default below ~/.local, installs for one user:
#   lib/tallymoor/     the program's folder, which can be moved and updated by the program:
#     Tallymoor.exe, UpdateInstaller.exe, tallymoor-locator, the default documents in defaults/, the guide in guide/
#     FOXDLL-*.dll, FxEx-*.dll, xerces-c_*.dll   the libraries that updates replace, with their versions in their names
#     lib/             links to them under the names used by the loader
#     uninstall        removes everything in the record installed-files
#   bin/tallymoor      starts the program in its folder
#   share/             the desktop menu's entry, its description, icons and manual pages
#
# The Debian package (cmake/TallymoorPackage.cmake) has the same files below /usr, except for those that the package
# manager replaces: the record, uninstall, and the toolkit and XML library, which are Debian's.
#
# Components: "program" is in both, "user" and "package" are in one of them.
set(tallymoor_folder lib/tallymoor)
set(tallymoor_scratch ${PROJECT_BINARY_DIR}/installation)  # Files generated for the installation.
# Independent of the umask: updates need a folder that others can't write to.
set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
if(CMAKE_INSTALL_PREFIX_INITIALIZED_TO_DEFAULT AND DEFINED ENV{HOME})
  set(CMAKE_INSTALL_PREFIX $ENV{HOME}/.local CACHE PATH "Where cmake --install lays the program down" FORCE)
endif()

find_program(RSVG_CONVERT rsvg-convert REQUIRED)
find_program(GZIP gzip REQUIRED)

# Builds everything for the installation.
add_custom_target(tallymoor_installation ALL DEPENDS tallymoor update_installer tallymoor_locator tallymoor_guide)

# ---- Start of an installation for one user. The following commands run in this order. ----

set(icon_sizes 16 22 24 32 48 64 128 256)
set(destinations bin ${tallymoor_folder} share/applications share/metainfo share/man/man1 share/icons/hicolor/scalable/apps)
foreach(size IN LISTS icon_sizes)
  list(APPEND destinations share/icons/hicolor/${size}x${size}/apps)
endforeach()
install(CODE "set(TALLYMOOR_DESTINATIONS \"${destinations}\")
  set(TALLYMOOR_DESKTOP_FILE \"${PROJECT_SOURCE_DIR}/assets/desktop/tallymoor.desktop.in\")
  set(TALLYMOOR_SCRATCH \"${tallymoor_scratch}/user\")" COMPONENT user)
install(SCRIPT ${CMAKE_CURRENT_LIST_DIR}/BeginUserInstallation.cmake COMPONENT user)

# ---- The program's folder ----

# The name by which the loader searches for a library.
function(tallymoor_loader_name library result)
  execute_process(COMMAND ${CMAKE_READELF} -d ${library} OUTPUT_VARIABLE dynamic COMMAND_ERROR_IS_FATAL ANY)
  if(NOT dynamic MATCHES "\\(SONAME\\)[^[]*\\[([^]]+)\\]")
    message(FATAL_ERROR "${library} has no name for the loader")
  endif()
  set(${result} ${CMAKE_MATCH_1} PARENT_SCOPE)
endfunction()

# Installs a library under its name in the program's folder, with the loader's link to it.
function(tallymoor_install_library file loader_name installed_name)
  set(link ${tallymoor_scratch}/lib/${loader_name})
  file(MAKE_DIRECTORY ${tallymoor_scratch}/lib)
  file(CREATE_LINK ../${installed_name} ${link} SYMBOLIC)
  install(FILES ${file} DESTINATION ${tallymoor_folder} RENAME ${installed_name} COMPONENT user)
  install(FILES ${link} DESTINATION ${tallymoor_folder}/lib COMPONENT user)
endfunction()

file(READ ${FOX_INCLUDE_DIR}/fxver.h fox_version_header)
foreach(part IN ITEMS MAJOR MINOR LEVEL)
  string(REGEX MATCH "#define FOX_${part} +([0-9]+)" ignored "${fox_version_header}")
  list(APPEND fox_version ${CMAKE_MATCH_1})
endforeach()
list(JOIN fox_version "." fox_version)
get_target_property(xerces_library XercesC::XercesC IMPORTED_LOCATION)
if(NOT xerces_library)
  set(xerces_library ${XercesC_LIBRARY_RELEASE})
endif()
file(REAL_PATH ${FOX_LIBRARY} fox_file)
file(REAL_PATH ${xerces_library} xerces_file)
tallymoor_loader_name(${fox_file} fox_loader_name)
tallymoor_loader_name(${xerces_file} xerces_loader_name)
get_target_property(fxex_soversion tallymoor_fxex SOVERSION)

set_target_properties(tallymoor tallymoor_locator PROPERTIES INSTALL_RPATH "$ORIGIN/lib")
install(TARGETS tallymoor update_installer tallymoor_locator RUNTIME DESTINATION ${tallymoor_folder} COMPONENT program)
tallymoor_install_library(${fox_file} ${fox_loader_name} FOXDLL-${fox_version}.dll)
tallymoor_install_library(${xerces_file} ${xerces_loader_name} xerces-c_${XercesC_VERSION}.dll)
tallymoor_install_library($<TARGET_FILE:tallymoor_fxex> libFxEx.so.${fxex_soversion} FxEx-${TALLYMOOR_FXEX_VERSION}.dll)
install(DIRECTORY ${TALLYMOOR_PROGRAM_DIR}/defaults DESTINATION ${tallymoor_folder} COMPONENT program)
install(DIRECTORY ${TALLYMOOR_GUIDE_DIR} DESTINATION ${tallymoor_folder} COMPONENT program)
install(PROGRAMS ${PROJECT_SOURCE_DIR}/assets/uninstall DESTINATION ${tallymoor_folder} COMPONENT user)

# ---- Launchers, menu, icons, manual ----

# Installs a manual page, compressed according to Debian's policy.
function(tallymoor_install_manual page)
  get_filename_component(name ${page} NAME)
  set(compressed ${tallymoor_scratch}/man/${name}.gz)
  file(MAKE_DIRECTORY ${tallymoor_scratch}/man)
  add_custom_command(OUTPUT ${compressed} COMMAND ${GZIP} -9nc ${page} > ${compressed} DEPENDS ${page} VERBATIM)
  add_custom_target(tallymoor_manual_${name} DEPENDS ${compressed})
  add_dependencies(tallymoor_installation tallymoor_manual_${name})
  install(FILES ${compressed} DESTINATION share/man/man1 COMPONENT program)
endfunction()

install(PROGRAMS ${PROJECT_SOURCE_DIR}/assets/tallymoor DESTINATION bin COMPONENT program)
tallymoor_install_manual(${PROJECT_SOURCE_DIR}/assets/man/tallymoor.1)
# A link, because the workbench uses files in the user's current folder.
file(MAKE_DIRECTORY ${tallymoor_scratch}/bin)
file(CREATE_LINK ../${tallymoor_folder}/tallymoor-locator ${tallymoor_scratch}/bin/tallymoor-locator SYMBOLIC)
install(FILES ${tallymoor_scratch}/bin/tallymoor-locator DESTINATION bin COMPONENT program)
tallymoor_install_manual(${PROJECT_SOURCE_DIR}/assets/man/tallymoor-locator.1)

install(FILES ${PROJECT_SOURCE_DIR}/assets/desktop/example.brindlecove.tallymoor.metainfo.xml
  DESTINATION share/metainfo COMPONENT program)
set(icon_source ${PROJECT_SOURCE_DIR}/assets/icons/app_big.svg)
install(FILES ${icon_source} DESTINATION share/icons/hicolor/scalable/apps RENAME tallymoor.svg COMPONENT program)
file(MAKE_DIRECTORY ${tallymoor_scratch}/icons)
foreach(size IN LISTS icon_sizes)
  set(icon ${tallymoor_scratch}/icons/${size}.png)
  add_custom_command(OUTPUT ${icon} COMMAND ${RSVG_CONVERT} -w ${size} -h ${size} -o ${icon} ${icon_source}
    DEPENDS ${icon_source} VERBATIM)
  list(APPEND icons ${icon})
  install(FILES ${icon} DESTINATION share/icons/hicolor/${size}x${size}/apps RENAME tallymoor.png COMPONENT program)
endforeach()
add_custom_target(tallymoor_icons DEPENDS ${icons})
add_dependencies(tallymoor_installation tallymoor_icons)

install(SCRIPT ${CMAKE_CURRENT_LIST_DIR}/EndUserInstallation.cmake COMPONENT user)
