# cmake --install BUILD --prefix FOLDER lays out a folder that can be moved and that the program can update itself in:
#   Tallymoor.exe, UpdateInstaller.exe     and the default documents in defaults/
#   FOXDLL-*.dll, FxEx-*.dll, xerces-c_*.dll   the libraries that updates replace, with their versions in their names
#   lib/                                   links to them by the names that the loader looks for
#   bin/tallymoor                          starts the program in its folder
file(READ ${FOX_INCLUDE_DIR}/fxver.h fox_version_header)
foreach(part IN ITEMS MAJOR MINOR LEVEL)
  string(REGEX MATCH "#define FOX_${part} +([0-9]+)" ignored "${fox_version_header}")
  list(APPEND fox_version ${CMAKE_MATCH_1})
endforeach()
list(JOIN fox_version "." fox_version)

# The name that the loader looks for a library by.
function(tallymoor_loader_name library result)
  execute_process(COMMAND ${CMAKE_READELF} -d ${library} OUTPUT_VARIABLE dynamic COMMAND_ERROR_IS_FATAL ANY)
  if(NOT dynamic MATCHES "\\(SONAME\\)[^[]*\\[([^]]+)\\]")
    message(FATAL_ERROR "${library} has no name for the loader")
  endif()
  set(${result} ${CMAKE_MATCH_1} PARENT_SCOPE)
endfunction()

# A library's file under its installed name, and the link to it.
function(tallymoor_install_library file loader_name installed_name)
  install(FILES ${file} DESTINATION . RENAME ${installed_name})
  install(CODE "file(MAKE_DIRECTORY \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/lib\")
    file(CREATE_LINK ../${installed_name} \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/lib/${loader_name}\" SYMBOLIC)")
endfunction()

get_target_property(xerces_library XercesC::XercesC IMPORTED_LOCATION)
if(NOT xerces_library)
  set(xerces_library ${XercesC_LIBRARY_RELEASE})
endif()
file(REAL_PATH ${FOX_LIBRARY} fox_file)
file(REAL_PATH ${xerces_library} xerces_file)
tallymoor_loader_name(${fox_file} fox_loader_name)
tallymoor_loader_name(${xerces_file} xerces_loader_name)

set_target_properties(tallymoor PROPERTIES INSTALL_RPATH "$ORIGIN/lib")
install(TARGETS tallymoor update_installer RUNTIME DESTINATION .)
tallymoor_install_library(${fox_file} ${fox_loader_name} FOXDLL-${fox_version}.dll)
tallymoor_install_library(${xerces_file} ${xerces_loader_name} xerces-c_${XercesC_VERSION}.dll)
tallymoor_install_library($<TARGET_FILE:tallymoor_fxex> $<TARGET_SONAME_FILE_NAME:tallymoor_fxex>
  FxEx-${TALLYMOOR_FXEX_VERSION}.dll)
install(DIRECTORY ${TALLYMOOR_PROGRAM_DIR}/defaults DESTINATION .)
install(PROGRAMS ${PROJECT_SOURCE_DIR}/assets/tallymoor DESTINATION bin)
