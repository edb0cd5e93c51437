# Functions that build the parts of the project: a library per folder of src/, a test program per folder of
# tests/.

add_library(tallymoor_options INTERFACE)
target_compile_options(tallymoor_options INTERFACE
  -Wall -Wextra -Werror -Wno-deprecated-enum-enum-conversion
  # Clang, which builds the fuzz targets, checks the locks (foundation/ThreadSafety.h).
  $<$<CXX_COMPILER_ID:Clang>:-Wthread-safety>
  # When optimising, g++ 12 reports overlapping copies for concatenated and inserted standard strings (its bug
  # 105651).
  $<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>:-Wno-restrict>)
if(TALLYMOOR_SANITIZERS)
  target_compile_options(tallymoor_options INTERFACE
    -fsanitize=${TALLYMOOR_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer
    # g++ 12 reports out-of-bounds accesses in instrumented copies of the standard library's short strings;
    # from a precompiled header it does not treat them as library code. The release build has these warnings.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-array-bounds> $<$<CXX_COMPILER_ID:GNU>:-Wno-stringop-overflow> $<$<CXX_COMPILER_ID:GNU>:-Wno-stringop-overread>)
  target_link_options(tallymoor_options INTERFACE -fsanitize=${TALLYMOOR_SANITIZERS})
endif()

# Stable headers that nearly every source includes: the toolkit and the standard library, precompiled once for
# all libraries. Sources must still include what they use, because the fuzzing preset builds without this.
set(TALLYMOOR_COMMON_HEADERS
  <fx.h> <fxkeys.h>
  <algorithm> <array> <atomic> <cerrno> <chrono> <cmath> <condition_variable> <cstddef> <cstdint> <cstdio> <cstdlib>
  <cstring> <deque> <exception> <filesystem> <fstream> <functional> <iostream> <iterator> <limits> <list> <map> <memory>
  <mutex> <numeric> <optional> <ostream> <random> <set> <sstream> <stdexcept> <string> <string_view> <thread>
  <unordered_map> <utility> <vector>)

# tallymoor_headers(TARGET SCOPE FOLDER): gives TARGET access to the headers of src/FOLDER.
function(tallymoor_headers target scope folder)
  set(headers ${PROJECT_BINARY_DIR}/headers/${folder})
  file(MAKE_DIRECTORY ${headers})
  file(CREATE_LINK ${PROJECT_SOURCE_DIR}/src/${folder} ${headers}/${folder} SYMBOLIC)
  target_include_directories(${target} ${scope} ${headers})
endfunction()

# tallymoor_lone_headers(RESULT FOLDER NAME): a list of sources, each of which includes one header of FOLDER
# without a source, as "NAME/Header.h". So each header is compiled by itself: every other one is included
# first by its own source, which scripts/folders checks.
function(tallymoor_lone_headers result folder name)
  set(sources "")
  set(headers "")
  if(NOT TALLYMOOR_SANITIZERS) # the release build is enough
    file(GLOB headers CONFIGURE_DEPENDS RELATIVE ${folder} ${folder}/*.h)
  endif()
  foreach(header IN LISTS headers)
    string(REPLACE ".h" ".cpp" source ${header})
    if(NOT EXISTS ${folder}/${source})
      file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/lone_headers/${name}/${source} CONTENT "#include \"${name}/${header}\"\n")
      list(APPEND sources ${PROJECT_BINARY_DIR}/lone_headers/${name}/${source})
    endif()
  endforeach()
  set(${result} ${sources} PARENT_SCOPE)
endfunction()

# tallymoor_library(FOLDER [USES folder...] [LINK target...] [WITHOUT file...]): the library tallymoor_FOLDER
# from src/FOLDER/*.cpp except the WITHOUT files. It links only the folders that it may include; CMake orders
# the link line. Its headers are included as "FOLDER/Header.h" through a link in the build folder, by the
# library itself and by those that link it. Including a folder that is not linked does not compile.
function(tallymoor_library folder)
  cmake_parse_arguments(ARG "" "" "USES;LINK;WITHOUT" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/${folder}/*.cpp)
  list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
  foreach(file IN LISTS ARG_WITHOUT)
    list(REMOVE_ITEM sources ${PROJECT_SOURCE_DIR}/src/${folder}/${file})
  endforeach()
  if(sources)
    add_library(tallymoor_${folder} STATIC ${sources})
    set(scope PUBLIC)
    if(folder STREQUAL foundation)
      target_precompile_headers(tallymoor_foundation PRIVATE ${TALLYMOOR_COMMON_HEADERS})
    else()
      target_precompile_headers(tallymoor_${folder} REUSE_FROM tallymoor_foundation)
    endif()
  else()
    add_library(tallymoor_${folder} INTERFACE)
    set(scope INTERFACE)
  endif()
  target_link_libraries(tallymoor_${folder} ${scope} tallymoor_options ${ARG_LINK})
  tallymoor_headers(tallymoor_${folder} ${scope} ${folder})
  if(TALLYMOOR_TESTS AND sources)
    tallymoor_lone_headers(lone_headers ${PROJECT_SOURCE_DIR}/src/${folder} ${folder})
    target_sources(tallymoor_${folder} PRIVATE ${lone_headers})
  endif()
  foreach(used IN LISTS ARG_USES)
    target_link_libraries(tallymoor_${folder} ${scope} tallymoor_${used})
  endforeach()
endfunction()
