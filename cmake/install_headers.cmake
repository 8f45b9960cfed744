# Runs at install time. Installed headers name one another with quillet/ in front, so that they cannot
# meet a host's headers of the same names; those of embed/ stand at the top of that folder.
foreach(header IN LISTS HEADERS)
  file(READ ${SOURCE_FOLDER}/${header} content)
  string(REPLACE "#include \"embed/" "#include \"" content "${content}")
  string(REPLACE "#include \"" "#include \"quillet/" content "${content}")
  string(REGEX REPLACE "^embed/" "" name ${header})
  file(WRITE ${WORK_FOLDER}/${name} "${content}")
  get_filename_component(folder ${DESTINATION}/${name} DIRECTORY)
  file(INSTALL DESTINATION ${folder} TYPE FILE FILES ${WORK_FOLDER}/${name})
endforeach()
