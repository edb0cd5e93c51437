# Runs before the files of an installation for one user are laid down. An earlier copy is taken away first, so that no library
# of it stays beside the new ones. Begins the record that uninstall goes by, one path below the prefix a line, with the
# folders that this copy or an earlier one made: those of TALLYMOOR_DESTINATIONS, and above them up to the prefix, that
# are not there yet.
cmake_policy(VERSION 3.25) # an installation begins with none
cmake_path(ABSOLUTE_PATH CMAKE_INSTALL_PREFIX NORMALIZE)
set(tallymoor_prefix "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}")
set(record "${tallymoor_prefix}/lib/tallymoor/installed-files")
set(made_folders "")
if(EXISTS "${record}")
  file(STRINGS "${record}" made_folders REGEX "^folder ")
  list(TRANSFORM made_folders REPLACE "^folder " "")
  execute_process(COMMAND "${tallymoor_prefix}/lib/tallymoor/uninstall" --quiet RESULT_VARIABLE status)
  if(EXISTS "${tallymoor_prefix}/lib/tallymoor/uninstall" AND NOT status EQUAL 0)
    message(FATAL_ERROR "The copy in ${tallymoor_prefix} could not be taken away, so no other one was installed.")
  endif()
endif()

set(folders .)
foreach(folder IN LISTS TALLYMOOR_DESTINATIONS)
  while(folder)
    list(APPEND folders ${folder})
    cmake_path(GET folder PARENT_PATH folder)
  endwhile()
endforeach()
list(REMOVE_DUPLICATES folders)
set(lines "")
foreach(folder IN LISTS folders)
  if(folder IN_LIST made_folders OR NOT IS_DIRECTORY "${tallymoor_prefix}/${folder}")
    string(APPEND lines "folder ${folder}\n")
  endif()
endforeach()
file(WRITE "${TALLYMOOR_SCRATCH}/installed-files" "${lines}")
file(INSTALL DESTINATION "${CMAKE_INSTALL_PREFIX}/lib/tallymoor" TYPE FILE FILES "${TALLYMOOR_SCRATCH}/installed-files")
