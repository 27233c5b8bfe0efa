# CLI11's headers, and nothing else of the folder that they are in.
set(cli11_headers ${CMAKE_BINARY_DIR}/system_headers)
if(NOT EXISTS /usr/include/CLI/CLI.hpp)
    message(FATAL_ERROR "CLI11's headers are missing (libcli11-dev)")
endif()
file(MAKE_DIRECTORY ${cli11_headers})
file(CREATE_LINK /usr/include/CLI ${cli11_headers}/CLI SYMBOLIC)

add_library(CLI11::CLI11 INTERFACE IMPORTED GLOBAL)
set_target_properties(CLI11::CLI11 PROPERTIES INTERFACE_INCLUDE_DIRECTORIES ${cli11_headers})
set(CLI11_FOUND TRUE)
