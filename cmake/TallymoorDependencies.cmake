# Imported targets for libraries that Debian packages without a CMake configuration. Their headers are system
# headers, so that warnings concern only our own code.
find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)
find_package(CURL REQUIRED)
find_package(LibXml2 REQUIRED)
find_package(LibXslt REQUIRED)
find_package(X11 REQUIRED)
find_package(ZLIB REQUIRED)

find_path(FOX_INCLUDE_DIR fx.h PATH_SUFFIXES fox-1.6 REQUIRED)
find_library(FOX_LIBRARY FOX-1.6 REQUIRED)
find_program(RESWRAP_EXECUTABLE NAMES reswrap-1.6 reswrap REQUIRED)
add_library(Fox::Fox UNKNOWN IMPORTED)
set_target_properties(Fox::Fox PROPERTIES
  IMPORTED_LOCATION ${FOX_LIBRARY}
  INTERFACE_INCLUDE_DIRECTORIES ${FOX_INCLUDE_DIR}
  INTERFACE_LINK_LIBRARIES Threads::Threads)

find_package(XercesC 3.2 REQUIRED)
add_library(Xerces::Xerces ALIAS XercesC::XercesC)

find_package(ICU REQUIRED COMPONENTS i18n uc)
add_library(Icu::Icu INTERFACE IMPORTED)
target_link_libraries(Icu::Icu INTERFACE ICU::i18n ICU::uc)

find_package(sdbus-c++ 1.2 REQUIRED)

# For charts, and for their texts.
pkg_check_modules(CAIRO REQUIRED IMPORTED_TARGET cairo)
add_library(Cairo::Cairo ALIAS PkgConfig::CAIRO)
pkg_check_modules(PANGO REQUIRED IMPORTED_TARGET pangocairo)
# Without its -pthread, which the precompiled headers don't have: threads come from CMake's target.
set_target_properties(PkgConfig::PANGO PROPERTIES INTERFACE_COMPILE_OPTIONS "")
add_library(Pango::Pango ALIAS PkgConfig::PANGO)

# For the arguments of the workbench.
find_package(CLI11 2.1 REQUIRED)

# For answers in JSON and CSV.
find_path(RAPIDJSON_INCLUDE_DIR rapidjson/reader.h REQUIRED)
add_library(RapidJson::RapidJson INTERFACE IMPORTED)
set_target_properties(RapidJson::RapidJson PROPERTIES INTERFACE_INCLUDE_DIRECTORIES ${RAPIDJSON_INCLUDE_DIR})
find_path(CSV_INCLUDE_DIR csv.h REQUIRED)
find_library(CSV_LIBRARY csv REQUIRED)
add_library(Csv::Csv UNKNOWN IMPORTED)
set_target_properties(Csv::Csv PROPERTIES
  IMPORTED_LOCATION ${CSV_LIBRARY}
  INTERFACE_INCLUDE_DIRECTORIES ${CSV_INCLUDE_DIR})

# For the journal.
pkg_check_modules(ZSTD REQUIRED IMPORTED_TARGET libzstd)
add_library(Zstd::Zstd ALIAS PkgConfig::ZSTD)

pkg_check_modules(SM REQUIRED IMPORTED_TARGET sm ice)
add_library(Sm::Sm ALIAS PkgConfig::SM)

# For the pictures of adverts.
find_package(GIF 5.0 REQUIRED)

# For the signatures of program updates and the checksums of the journal.
find_package(OpenSSL 3.0 REQUIRED)

# Only for the sample data service and the servers in tests.
find_path(HTTPLIB_INCLUDE_DIR httplib.h REQUIRED)
find_library(HTTPLIB_LIBRARY cpp-httplib REQUIRED)
add_library(Httplib::Httplib UNKNOWN IMPORTED)
set_target_properties(Httplib::Httplib PROPERTIES
  IMPORTED_LOCATION ${HTTPLIB_LIBRARY}
  INTERFACE_INCLUDE_DIRECTORIES ${HTTPLIB_INCLUDE_DIR}
  INTERFACE_LINK_LIBRARIES Threads::Threads)
