# Runs the fingerprint programs of two builds and compares what they print, a line for each function.
# -DHERE=program -DTHERE=program of another build

if(NOT EXISTS ${THERE})
  message("skipped: ${THERE} has not been built")
  return()
endif()
execute_process(COMMAND ${HERE} OUTPUT_VARIABLE HERE_TEXT COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${THERE} OUTPUT_VARIABLE THERE_TEXT COMMAND_ERROR_IS_FATAL ANY)
if(HERE_TEXT STREQUAL "")
  message(FATAL_ERROR "${HERE} printed nothing")
endif()
if(NOT HERE_TEXT STREQUAL THERE_TEXT)
  string(REPLACE "\n" ";" HERE_LINES "${HERE_TEXT}")
  string(REPLACE "\n" ";" THERE_LINES "${THERE_TEXT}")
  set(ONLY_HERE ${HERE_LINES})
  list(REMOVE_ITEM ONLY_HERE ${THERE_LINES})
  list(REMOVE_ITEM THERE_LINES ${HERE_LINES})
  list(JOIN ONLY_HERE "\n  " HERE_LINES)
  list(JOIN THERE_LINES "\n  " THERE_LINES)
  message(FATAL_ERROR "${HERE}\n  ${HERE_LINES}\n${THERE}\n  ${THERE_LINES}\n"
                      "The builds differ, or one of them is older than the other.")
endif()
