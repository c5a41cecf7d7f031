# Makes the links of an installed page lead to what is installed: to headers at their place, and of what
# stays in the tree of sources only the words.
# PAGES and INCLUDES are the folders of both.
file(GLOB pages "${PAGES}/*.md" "${PAGES}/docs/*.md")
set(in_tree "(src|tests|data|man|themes|bench|cimages|cmake|fuzz|scripts|tools)(/[^)]*)?")
foreach(page IN LISTS pages)
  get_filename_component(folder "${page}" DIRECTORY)
  file(RELATIVE_PATH includes "${folder}" "${INCLUDES}")
  file(READ "${page}" text)
  string(REGEX REPLACE "\\]\\((\\.\\./)?src/((kelvane|hw\\.h)[^)/]*(/[^)]*)?)\\)" "](${includes}/\\2)" text "${text}")
  string(REPLACE "](${includes}/hw.h" "](${includes}/kelvane/hw.h" text "${text}")
  string(REGEX REPLACE "\\[([^]]*)\\]\\((\\.\\./)?${in_tree}\\)" "\\1" text "${text}")
  file(WRITE "${page}" "${text}")
endforeach()
