# The compiler's libraries that every program here needs, stripped, beside the programs.
foreach(library libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
    execute_process(
        COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${library}
        OUTPUT_VARIABLE found
        OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(NOT IS_ABSOLUTE "${found}")
        message(FATAL_ERROR "${library} is missing")
    endif()
    if(found IS_NEWER_THAN ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${library})
        file(MAKE_DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
        execute_process(COMMAND ${CMAKE_STRIP} -o ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${library}
                                ${found} COMMAND_ERROR_IS_FATAL ANY)
    endif()
endforeach()
