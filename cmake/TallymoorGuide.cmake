# The user guide as HTML pages beside the program, where Online Help opens it.
find_program(CMARK_GFM_EXECUTABLE cmark-gfm REQUIRED)
find_package(Python3 REQUIRED COMPONENTS Interpreter)

set(TALLYMOOR_GUIDE_DIR ${TALLYMOOR_PROGRAM_DIR}/guide)
set(guide_documents ${PROJECT_SOURCE_DIR}/docs/guide.md ${PROJECT_SOURCE_DIR}/docs/prices.md
  ${PROJECT_SOURCE_DIR}/docs/locators.md)
set(guide_style ${PROJECT_SOURCE_DIR}/docs/guide.css)
set(guide_maker ${PROJECT_SOURCE_DIR}/scripts/make-guide)
file(GLOB guide_pictures CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/docs/images/*.png)
# The pages and documents used in the chapter on price sources, for readers without the sources.
set(guide_example ${PROJECT_SOURCE_DIR}/samples/locators)
file(GLOB_RECURSE guide_example_files CONFIGURE_DEPENDS ${guide_example}/*)

add_custom_command(
  OUTPUT ${TALLYMOOR_GUIDE_DIR}/guide.html
  COMMAND Python3::Interpreter ${guide_maker} --to ${TALLYMOOR_GUIDE_DIR} --style ${guide_style} ${guide_documents}
  COMMAND ${CMAKE_COMMAND} -E rm -rf ${TALLYMOOR_GUIDE_DIR}/samples
  COMMAND ${CMAKE_COMMAND} -E copy_directory ${guide_example} ${TALLYMOOR_GUIDE_DIR}/samples/locators
  DEPENDS ${guide_maker} ${guide_style} ${guide_documents} ${guide_pictures} ${guide_example_files}
  COMMENT "Making the user guide"
  VERBATIM)
add_custom_target(tallymoor_guide ALL DEPENDS ${TALLYMOOR_GUIDE_DIR}/guide.html)
# The guide is also made if only the program is built, because its Help menu opens it.
add_dependencies(tallymoor tallymoor_guide)
