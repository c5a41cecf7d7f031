# kelvane-device with what it puts into a device folder: for the build tree, and to be installed.
set(DEVICE_DATA ${PROJECT_SOURCE_DIR}/data)
set(DEVICE_THEMES ${PROJECT_BINARY_DIR}/themes)
set(DEVICE_DICTIONARIES ${PROJECT_BINARY_DIR}/dictionaries)
configure_file(tools/kelvane-device.in kelvane-device @ONLY)

file(RELATIVE_PATH DEVICE_DATA ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_DATADIR}/kelvane)
set(DEVICE_DATA "$here/${DEVICE_DATA}")
set(DEVICE_THEMES "${DEVICE_DATA}/themes")
set(DEVICE_DICTIONARIES "${DEVICE_DATA}/dictionaries")
configure_file(tools/kelvane-device.in installed/kelvane-device @ONLY)

install(PROGRAMS ${PROJECT_BINARY_DIR}/installed/kelvane-device
  DESTINATION ${CMAKE_INSTALL_BINDIR})
install(DIRECTORY data/config data/language data/keyboard DESTINATION ${CMAKE_INSTALL_DATADIR}/kelvane)
install(FILES man/kelvane-device.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
