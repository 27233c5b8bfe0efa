# Runs COMMAND with SCRIPT and compares its output, errors included, with the text in EXPECTED.
execute_process(
    COMMAND ${COMMAND} "${SCRIPT}"
    RESULT_VARIABLE status
    OUTPUT_VARIABLE output
    ERROR_VARIABLE output)
string(REPLACE "\r" "" output "${output}")
file(READ ${EXPECTED} expected)
# What the system says of a code is its own.
foreach(text output expected)
    string(REGEX REPLACE "ActiveX VT_ERROR: [^']*" "ActiveX VT_ERROR: " ${text} "${${text}}")
endforeach()
if(NOT status EQUAL 0)
    message(FATAL_ERROR "Ended with ${status}:\n${output}")
endif()
if(NOT output STREQUAL expected)
    message(FATAL_ERROR "The output is\n${output}\nand should be\n${expected}")
endif()
