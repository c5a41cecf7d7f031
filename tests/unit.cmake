find_package(GTest REQUIRED)
include(GoogleTest)
if(NOT KELVANE_SANITIZE STREQUAL "thread")
  # Building the tests takes longer than running them.
  add_compile_options(-O0 -g1)
endif()

# Unit tests link the library's objects, so they reach names that the shared object hides.
# Each test runs in a process of its own: the runtime is process-wide state.
file(GLOB KELVANE_UNIT_TESTS CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/unit/*.cpp)
set(wanted "")
if(KELVANE_SANITIZE STREQUAL "thread")
  # One thread does everything else: those tests would only take time.
  list(APPEND wanted "_threads")
endif()
if(KELVANE_PORTABLE)
  # The sources that include ground/vectors.h, through what is drawn with them.
  list(APPEND wanted "/bitmap_stretch" "/pictures" "/raster_(grey|primitives)" "/text_bidi")
endif()
list(JOIN wanted "|" wanted)
if(wanted)
  list(FILTER KELVANE_UNIT_TESTS INCLUDE REGEX "(${wanted})\\.cpp$")
endif()
if(KELVANE_SANITIZE)
  add_compile_definitions(KELVANE_SANITIZED) # compilers do not agree on how a source asks
endif()
add_executable(kelvane_unit ${KELVANE_UNIT_TESTS})
target_include_directories(kelvane_unit PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
# Those that read files of the tree; a compiler cache may make __FILE__ relative to anywhere.
set_source_files_properties(unit/device_data.cpp unit/keyboard_input.cpp
  unit/keyboard_layout.cpp unit/keyboard_open.cpp unit/text_drawing.cpp unit/text_fonts.cpp
  PROPERTIES COMPILE_DEFINITIONS SOURCE_DIR="${PROJECT_SOURCE_DIR}")
target_link_libraries(kelvane_unit PRIVATE kelvane_objects kelvane_flags kelvane_libraries
  TIFF::TIFF GTest::gtest_main)
# The call that tests/unit/tiff_library.cpp lets fail.
if(KELVANE_UNIT_TESTS MATCHES "/tiff_library\\.cpp")
  target_link_options(kelvane_unit PRIVATE -Wl,--wrap=dlopen)
endif()
# The plug-in that unit/dictionary.cpp has the library find.
add_library(Morphwrapper SHARED support/morphwrapper.c)
set_source_files_properties(unit/dictionary.cpp PROPERTIES
  COMPILE_DEFINITIONS MORPHWRAPPER="$<TARGET_FILE:Morphwrapper>")
add_dependencies(kelvane_unit Morphwrapper)
# Most of a test's compile time is these headers.
target_precompile_headers(kelvane_unit PRIVATE <gtest/gtest.h> <algorithm> <cstdint> <filesystem>
  <fstream> <functional> <map> <random> <string> <vector>)
gtest_discover_tests(kelvane_unit DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 120)
