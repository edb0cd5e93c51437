# Runs after the files of an installation for one user were copied. Writes the desktop menu's entry, which
# contains the launcher's path because its folder may not be in PATH, and adds the files to the record.
cmake_policy(VERSION 3.25)  # An installation starts without policies.

# A quoted path for the Exec line of a desktop file: escaped for the quotes, then for the line.
function(tallymoor_quoted_for_exec path result)
  string(REGEX REPLACE "([\"`$\\\\])" "\\\\\\1" path "${path}")
  string(REPLACE "\\" "\\\\" path "${path}")
  string(REPLACE "%" "%%" path "${path}")
  set(${result} "\"${path}\"" PARENT_SCOPE)
endfunction()

tallymoor_quoted_for_exec("${CMAKE_INSTALL_PREFIX}/bin/tallymoor" TALLYMOOR_EXEC)
configure_file("${TALLYMOOR_DESKTOP_FILE}" "${TALLYMOOR_SCRATCH}/tallymoor.desktop" @ONLY)
file(INSTALL DESTINATION "${CMAKE_INSTALL_PREFIX}/share/applications" TYPE FILE FILES "${TALLYMOOR_SCRATCH}/tallymoor.desktop")

set(lines "")
foreach(file IN LISTS CMAKE_INSTALL_MANIFEST_FILES)
  file(RELATIVE_PATH path "${CMAKE_INSTALL_PREFIX}" "${file}")
  if(NOT path MATCHES "^lib/tallymoor/(installed-files|uninstall)$")  # They are removed last.
    string(APPEND lines "file ${path}\n")
  endif()
endforeach()
file(APPEND "${record}" "${lines}")
if(IS_DIRECTORY "${tallymoor_prefix}/share/icons/hicolor")
  file(TOUCH_NOCREATE "${tallymoor_prefix}/share/icons/hicolor")  # Makes desktops reload the icons.
endif()
