# What `cmake --install` puts down: the shared object, the headers as sources include them,
# a pkg-config file, a CMake package, the theme tool and the themes, the pages and the examples.
include(CMakePackageConfigHelpers)

set(KELVANE_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/kelvane)

install(TARGETS kelvane EXPORT kelvaneTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(FILES src/kelvane.h src/kelvane.hpp DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES ${KELVANE_HEADERS} src/hw.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/kelvane)

# An installed tree may be moved: the program finds the library by its own place.
file(RELATIVE_PATH KELVANE_LIBDIR_FROM_BIN ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
set_target_properties(kelvane_theme PROPERTIES INSTALL_RPATH "\$ORIGIN/${KELVANE_LIBDIR_FROM_BIN}")
install(TARGETS kelvane_theme RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${KELVANE_THEME_FILES} DESTINATION ${CMAKE_INSTALL_DATADIR}/kelvane/themes)
install(FILES man/kelvane-theme.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

install(EXPORT kelvaneTargets NAMESPACE kelvane:: DESTINATION ${KELVANE_PACKAGE_DIR})
configure_package_config_file(cmake/kelvaneConfig.cmake.in kelvaneConfig.cmake
  INSTALL_DESTINATION ${KELVANE_PACKAGE_DIR})
# Before 1.0 a minor version may change the interface.
write_basic_package_version_file(kelvaneConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/kelvaneConfig.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/kelvaneConfigVersion.cmake DESTINATION ${KELVANE_PACKAGE_DIR})

# Paths are relative to the file, so an installed tree may be moved.
file(RELATIVE_PATH KELVANE_PC_INCLUDEDIR ${CMAKE_INSTALL_FULL_LIBDIR}
  ${CMAKE_INSTALL_FULL_INCLUDEDIR})
configure_file(cmake/kelvane.pc.in kelvane.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/kelvane.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# The pages link to each other and to the examples, so both keep their places in the tree.
install(FILES README.md CHANGELOG.md LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY docs examples DESTINATION ${CMAKE_INSTALL_DOCDIR}
  PATTERN CMakeLists.txt EXCLUDE PATTERN __pycache__ EXCLUDE)
install(CODE "
  set(PAGES \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_DOCDIR}\")
  set(INCLUDES \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_INCLUDEDIR}\")
  include(\"${PROJECT_SOURCE_DIR}/cmake/install_pages.cmake\")")
