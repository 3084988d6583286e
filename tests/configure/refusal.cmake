# Configures the project with options that it must refuse, and looks for the sentence that says why.
#   cmake -DSOURCE=... -DBUILD=... -DGENERATOR=... -DOPTIONS=... -DSENTENCE=... -P refusal.cmake
file(REMOVE_RECURSE ${BUILD})
execute_process(
  COMMAND ${CMAKE_COMMAND} -S ${SOURCE} -B ${BUILD} -G ${GENERATOR} ${OPTIONS}
  RESULT_VARIABLE result
  OUTPUT_VARIABLE output
  ERROR_VARIABLE output)
if(result EQUAL 0)
  message(FATAL_ERROR "The project let itself be configured with ${OPTIONS}:\n${output}")
endif()

# CMake breaks long lines where it likes.
string(REGEX REPLACE "[ \n]+" " " told "${output}")
string(FIND "${told}" "${SENTENCE}" place)
if(place EQUAL -1)
  message(FATAL_ERROR "The refusal does not say \"${SENTENCE}\":\n${output}")
endif()
