# The Python module, for tests and quick tools: what is written by hand in tools/python/kelvane, and
# the declarations, which are made of the public headers. It needs Debian's Python, and the build
# pycparser; without that there is no module.
find_program(KELVANE_PYTHON3 NAMES python3 PATHS /usr/bin NO_DEFAULT_PATH)
if(KELVANE_PYTHON3)
  execute_process(COMMAND ${KELVANE_PYTHON3} -c "import pycparser" ERROR_QUIET
    RESULT_VARIABLE KELVANE_NO_PYCPARSER)
endif()
if(NOT KELVANE_PYTHON3 OR KELVANE_NO_PYCPARSER)
  message(STATUS "No Python module: python3-pycparser is missing")
  return()
endif()

set(KELVANE_PYTHON_FOLDER ${PROJECT_BINARY_DIR}/python)
set(KELVANE_PYTHON_INSTALLED lib/python3/dist-packages/kelvane)
file(GLOB KELVANE_PYTHON_FILES CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tools/python/kelvane/*.py)

set(KELVANE_PYTHON_TO_LIBRARY ../..)
set(KELVANE_PYTHON_TO_DEVICE ../..)
configure_file(tools/python/kelvane/place.py.in ${KELVANE_PYTHON_FOLDER}/kelvane/place.py @ONLY)
file(RELATIVE_PATH KELVANE_PYTHON_TO_LIBRARY ${CMAKE_INSTALL_PREFIX}/${KELVANE_PYTHON_INSTALLED}
  ${CMAKE_INSTALL_FULL_LIBDIR})
file(RELATIVE_PATH KELVANE_PYTHON_TO_DEVICE ${CMAKE_INSTALL_PREFIX}/${KELVANE_PYTHON_INSTALLED}
  ${CMAKE_INSTALL_FULL_BINDIR})
configure_file(tools/python/kelvane/place.py.in ${PROJECT_BINARY_DIR}/installed/place.py @ONLY)

set(declarations ${KELVANE_PYTHON_FOLDER}/kelvane/declarations.py)
add_custom_command(OUTPUT ${declarations}
  COMMAND ${KELVANE_PYTHON3} ${PROJECT_SOURCE_DIR}/tools/python/generate ${CMAKE_C_COMPILER}
    ${PROJECT_SOURCE_DIR}/src ${declarations}
  COMMAND ${CMAKE_COMMAND} -E copy ${KELVANE_PYTHON_FILES} ${KELVANE_PYTHON_FOLDER}/kelvane
  DEPENDS tools/python/generate ${KELVANE_PYTHON_FILES} ${KELVANE_HEADERS} src/kelvane.h src/hw.h
  COMMENT "Declaring the library to Python" VERBATIM)
add_custom_target(kelvane_python ALL DEPENDS ${declarations})

install(FILES ${KELVANE_PYTHON_FILES} ${declarations} ${PROJECT_BINARY_DIR}/installed/place.py
  DESTINATION ${KELVANE_PYTHON_INSTALLED})
