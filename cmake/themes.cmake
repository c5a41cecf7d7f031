# The theme tool, and the themes that it packs from their folders under themes/.
file(GLOB KELVANE_THEME_TOOL CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tools/theme/*.cpp)
add_executable(kelvane_theme ${KELVANE_THEME_TOOL} tools/picture.cpp src/theme/container.cpp)
target_compile_definitions(kelvane_theme PRIVATE KELVANE_VERSION="${PROJECT_VERSION}")
target_link_libraries(kelvane_theme PRIVATE kelvane kelvane_flags ZLIB::ZLIB PNG::PNG PkgConfig::CAIRO)
set_target_properties(kelvane_theme PROPERTIES OUTPUT_NAME kelvane-theme)
target_precompile_headers(kelvane_theme PRIVATE <algorithm> <filesystem> <map> <string> <string_view>
  <vector>)

set(KELVANE_THEMES_DIR ${PROJECT_BINARY_DIR}/themes)
file(MAKE_DIRECTORY ${KELVANE_THEMES_DIR})
set(KELVANE_THEME_FILES)
# Each theme comes in its own size, and larger for denser screens; kelvane-device chooses.
foreach(theme default contrast)
  file(GLOB_RECURSE files CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/themes/${theme}/*)
  foreach(scale 100 125 150 175)
    set(packed ${KELVANE_THEMES_DIR}/${theme}-${scale}.tqt)
    if(scale EQUAL 100)
      set(packed ${KELVANE_THEMES_DIR}/${theme}.tqt)
    endif()
    add_custom_command(
      OUTPUT ${packed}
      COMMAND kelvane_theme pack --scale ${scale} ${PROJECT_SOURCE_DIR}/themes/${theme} ${packed}
      DEPENDS kelvane_theme ${files}
      COMMENT "Packing the theme ${theme} at ${scale} %"
      VERBATIM)
    list(APPEND KELVANE_THEME_FILES ${packed})
  endforeach()
endforeach()
add_custom_target(kelvane_themes ALL DEPENDS ${KELVANE_THEME_FILES})
