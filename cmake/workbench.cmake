# What authors of applications work with.
# kelvane-test, which plays scripts; it starts applications, and of the library it has only how
# UTF-8 is read.
file(GLOB KELVANE_TEST_TOOL CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tools/test/*.cpp)
add_executable(kelvane_test ${KELVANE_TEST_TOOL} src/ground/utf8.cpp)
target_include_directories(kelvane_test PRIVATE src)
target_compile_definitions(kelvane_test PRIVATE KELVANE_VERSION="${PROJECT_VERSION}")
target_link_libraries(kelvane_test PRIVATE kelvane_flags PNG::PNG Threads::Threads)
set_target_properties(kelvane_test PROPERTIES OUTPUT_NAME kelvane-test
  RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
install(TARGETS kelvane_test RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES man/kelvane-test.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

# kelvane-new and the applications that it writes.
set(NEW_DATA ${PROJECT_SOURCE_DIR}/data)
configure_file(tools/kelvane-new.in bin/kelvane-new @ONLY)
file(RELATIVE_PATH NEW_DATA ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_DATADIR}/kelvane)
set(NEW_DATA "$here/${NEW_DATA}")
configure_file(tools/kelvane-new.in installed/kelvane-new @ONLY)
install(PROGRAMS ${PROJECT_BINARY_DIR}/installed/kelvane-new DESTINATION ${CMAKE_INSTALL_BINDIR})
install(DIRECTORY data/new DESTINATION ${CMAKE_INSTALL_DATADIR}/kelvane USE_SOURCE_PERMISSIONS)
install(FILES man/kelvane-new.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

# kelvane-control, which speaks to a running application.
add_executable(kelvane_control tools/control/main.cpp)
target_compile_definitions(kelvane_control PRIVATE KELVANE_VERSION="${PROJECT_VERSION}")
target_link_libraries(kelvane_control PRIVATE kelvane_flags)
set_target_properties(kelvane_control PROPERTIES OUTPUT_NAME kelvane-control
  RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
install(TARGETS kelvane_control RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES man/kelvane-control.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
