# The pictures under cimages/ become a C++ table inside the library; see tools/cimages.cpp.
add_executable(kelvane_cimages tools/cimages.cpp tools/picture.cpp)
target_link_libraries(kelvane_cimages PRIVATE kelvane_flags PNG::PNG)
set_target_properties(kelvane_cimages PROPERTIES OUTPUT_NAME cimages)

file(GLOB KELVANE_PICTURES CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/cimages/*.png)
set(KELVANE_BUILTIN_IMAGES ${PROJECT_BINARY_DIR}/generated/builtin_images.cpp)
file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/generated)
add_custom_command(
  OUTPUT ${KELVANE_BUILTIN_IMAGES}
  COMMAND kelvane_cimages ${KELVANE_PICTURES} > ${KELVANE_BUILTIN_IMAGES}
  DEPENDS kelvane_cimages ${KELVANE_PICTURES}
  COMMENT "Compiling the built-in pictures"
  VERBATIM)
target_sources(kelvane_objects PRIVATE ${KELVANE_BUILTIN_IMAGES})
