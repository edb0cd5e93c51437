# The user guide as pages for a browser, beside the program, where Online Help looks for it.
find_program(CMARK_GFM_EXECUTABLE cmark-gfm REQUIRED)
find_package(Python3 REQUIRED COMPONENTS Interpreter)

set(TALLYMOOR_GUIDE_DIR ${TALLYMOOR_PROGRAM_DIR}/guide)
set(guide_documents ${PROJECT_SOURCE_DIR}/docs/guide.md ${PROJECT_SOURCE_DIR}/docs/locators.md)
set(guide_style ${PROJECT_SOURCE_DIR}/docs/guide.css)
set(guide_maker ${PROJECT_SOURCE_DIR}/scripts/make-guide)
file(GLOB guide_pictures CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/docs/images/*.png)
# The pages and documents that the chapter on price sources works on, so that it can be followed where there are no sources.
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
# Who builds the program alone can read the guide from its Help menu, too.
add_dependencies(tallymoor tallymoor_guide)
