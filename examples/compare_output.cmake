# Runs PROGRAM and fails unless its standard output is exactly the content of EXPECTED.
execute_process(
    COMMAND ${PROGRAM}
    OUTPUT_FILE ${PROGRAM}.output
    RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "${PROGRAM} ended with ${result}")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${PROGRAM}.output ${EXPECTED} RESULT_VARIABLE different)
if(different)
    file(READ ${PROGRAM}.output output)
    message(FATAL_ERROR "output differs from ${EXPECTED}:\n${output}")
endif()
