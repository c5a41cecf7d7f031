# kelvane-book, and the table of file types that it lends to folders without a device. Both trees,
# this one and an installed one, have it at the same place beside the program.
file(GLOB KELVANE_BOOK_TOOL CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tools/book/*.cpp)
add_executable(kelvane_book ${KELVANE_BOOK_TOOL} src/bookinfo/encoding.cpp)
target_include_directories(kelvane_book PRIVATE src)
file(RELATIVE_PATH KELVANE_DATA_FROM_BIN ${CMAKE_INSTALL_FULL_BINDIR}
  ${CMAKE_INSTALL_FULL_DATADIR}/kelvane)
target_compile_definitions(kelvane_book PRIVATE KELVANE_VERSION="${PROJECT_VERSION}"
  KELVANE_DATA="${KELVANE_DATA_FROM_BIN}")
target_link_libraries(kelvane_book PRIVATE kelvane kelvane_flags)
set_target_properties(kelvane_book PROPERTIES OUTPUT_NAME kelvane-book
  RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin
  INSTALL_RPATH "\$ORIGIN/${KELVANE_LIBDIR_FROM_BIN}")
get_filename_component(KELVANE_BUILT_DATA ${PROJECT_BINARY_DIR}/bin/${KELVANE_DATA_FROM_BIN} ABSOLUTE)
get_filename_component(KELVANE_BUILT_SHARE ${KELVANE_BUILT_DATA} DIRECTORY)
file(MAKE_DIRECTORY ${KELVANE_BUILT_SHARE})
file(CREATE_LINK ${PROJECT_SOURCE_DIR}/data ${KELVANE_BUILT_DATA} SYMBOLIC)
install(TARGETS kelvane_book RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES man/kelvane-book.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
