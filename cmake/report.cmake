# kelvane-report. It reads traces without the library, of which it has the table of waveforms. Its
# parts but for main.cpp are also what its fuzzer drives.
pkg_check_modules(JSONC REQUIRED IMPORTED_TARGET json-c)
file(GLOB KELVANE_REPORT_PARTS CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tools/report/*.cpp)
list(FILTER KELVANE_REPORT_PARTS EXCLUDE REGEX "/main\\.cpp$")
add_executable(kelvane_report ${KELVANE_REPORT_PARTS} tools/report/main.cpp)
target_include_directories(kelvane_report PRIVATE src)
target_compile_definitions(kelvane_report PRIVATE KELVANE_VERSION="${PROJECT_VERSION}")
target_link_libraries(kelvane_report PRIVATE kelvane_flags PkgConfig::JSONC)
set_target_properties(kelvane_report PROPERTIES OUTPUT_NAME kelvane-report
  RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
install(TARGETS kelvane_report RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES man/kelvane-report.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
