# The small dictionaries that a new device has, from their words and articles under
# data/dictionaries: NAME:LANGUAGE of the words.
set(KELVANE_DICTIONARIES_DIR ${PROJECT_BINARY_DIR}/dictionaries)
file(MAKE_DIRECTORY ${KELVANE_DICTIONARIES_DIR})
set(KELVANE_DICTIONARIES)
foreach(dictionary English-German:en English-Arabic:en Hebrew-English:he)
  string(REPLACE ":" ";" dictionary ${dictionary})
  list(GET dictionary 0 name)
  list(GET dictionary 1 language)
  set(words ${PROJECT_SOURCE_DIR}/data/dictionaries/${name}.tsv)
  set(compiled ${KELVANE_DICTIONARIES_DIR}/${name}.dic)
  add_custom_command(
    OUTPUT ${compiled}
    COMMAND kelvane_dict compile --language ${language} -o ${compiled} ${words}
    DEPENDS kelvane_dict ${words}
    COMMENT "Compiling the dictionary ${name}"
    VERBATIM)
  list(APPEND KELVANE_DICTIONARIES ${compiled})
endforeach()
add_custom_target(kelvane_dictionaries ALL DEPENDS ${KELVANE_DICTIONARIES})
install(FILES ${KELVANE_DICTIONARIES} DESTINATION ${CMAKE_INSTALL_DATADIR}/kelvane/dictionaries)
