# Sets OUTPUT to a compressed copy of the file, as Debian wants manual pages and lists of changes: the same bytes each time.
function(kipcc_compressed file output)
  find_program(GZIP gzip REQUIRED)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})
  get_filename_component(name ${file} NAME)
  set(copy ${CMAKE_CURRENT_BINARY_DIR}/${name}.gz)
  execute_process(COMMAND ${GZIP} -9nc ${file} OUTPUT_FILE ${copy} COMMAND_ERROR_IS_FATAL ANY)
  set(${output} ${copy} PARENT_SCOPE)
endfunction()
