# kelvane-dict, the rules and keyboards that it takes by language, and the writer of dictionaries,
# which tests and benchmarks use as well.
pkg_check_modules(GLIB REQUIRED IMPORTED_TARGET glib-2.0)
file(GLOB KELVANE_DICT_TOOL CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tools/dict/*.cpp)
set(KELVANE_DICT_WRITER ${KELVANE_DICT_TOOL})
list(FILTER KELVANE_DICT_WRITER INCLUDE REGEX "/(dictd|letters|markup|pack|sides|sources|stardict|writer)\\.cpp$")
list(REMOVE_ITEM KELVANE_DICT_TOOL ${KELVANE_DICT_WRITER})

# What it needs of the library's hidden names, its users have or add.
add_library(kelvane_dict_writer STATIC ${KELVANE_DICT_WRITER})
target_include_directories(kelvane_dict_writer PRIVATE src INTERFACE tools)
target_link_libraries(kelvane_dict_writer PRIVATE kelvane_flags PkgConfig::GLIB
  PUBLIC Threads::Threads ZLIB::ZLIB)

# The service without the library around it: a program that looks up words in milliseconds does not
# wait for a toolkit to be loaded.
file(GLOB KELVANE_DICT_SERVICE CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/dictionary/*.cpp
  ${PROJECT_SOURCE_DIR}/src/file/*.cpp ${PROJECT_SOURCE_DIR}/src/ground/*.cpp)
add_executable(kelvane_dict ${KELVANE_DICT_TOOL} ${KELVANE_DICT_SERVICE} src/internal.cpp)
target_include_directories(kelvane_dict PRIVATE src)
target_compile_definitions(kelvane_dict PRIVATE KELVANE_BUILDING KELVANE_VERSION="${PROJECT_VERSION}"
  KELVANE_DATA="${KELVANE_DATA_FROM_BIN}")
target_link_libraries(kelvane_dict PRIVATE kelvane_dict_writer kelvane_flags ${CMAKE_DL_LIBS}
  PkgConfig::DEFLATE PkgConfig::MINIZIP)
set_target_properties(kelvane_dict PROPERTIES OUTPUT_NAME kelvane-dict
  RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
install(TARGETS kelvane_dict RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES man/kelvane-dict.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(DIRECTORY data/morphology DESTINATION ${CMAKE_INSTALL_DATADIR}/kelvane)
