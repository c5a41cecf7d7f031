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

add_executable(kelvane_dict ${KELVANE_DICT_TOOL} src/dictionary/collation.cpp
  src/dictionary/container.cpp src/dictionary/file.cpp src/dictionary/index.cpp
  src/dictionary/morphology.cpp src/ground/utf8.cpp)
target_include_directories(kelvane_dict PRIVATE src)
target_compile_definitions(kelvane_dict PRIVATE KELVANE_VERSION="${PROJECT_VERSION}"
  KELVANE_DATA="${KELVANE_DATA_FROM_BIN}")
target_link_libraries(kelvane_dict PRIVATE kelvane_dict_writer kelvane kelvane_flags PkgConfig::DEFLATE)
set_target_properties(kelvane_dict PROPERTIES OUTPUT_NAME kelvane-dict
  RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin
  INSTALL_RPATH "\$ORIGIN/${KELVANE_LIBDIR_FROM_BIN}")
install(TARGETS kelvane_dict RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES man/kelvane-dict.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(DIRECTORY data/morphology DESTINATION ${CMAKE_INSTALL_DATADIR}/kelvane)
