# Draws the picture of the folders in docs/architecture.md from the current include lines. A test compares it
# with the committed docs/folders.svg.
find_package(Python3 REQUIRED COMPONENTS Interpreter)
file(GLOB_RECURSE folder_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/*.cpp ${PROJECT_SOURCE_DIR}/src/*.h)
set(folders_picture ${PROJECT_BINARY_DIR}/folders.svg)
add_custom_command(
  OUTPUT ${folders_picture}
  COMMAND Python3::Interpreter ${PROJECT_SOURCE_DIR}/scripts/folders draw ${folders_picture} ${PROJECT_SOURCE_DIR}
  DEPENDS ${PROJECT_SOURCE_DIR}/scripts/folders ${PROJECT_SOURCE_DIR}/CMakeLists.txt ${folder_sources}
  COMMENT "Drawing the folders"
  VERBATIM)
add_custom_target(tallymoor_folders ALL DEPENDS ${folders_picture})
