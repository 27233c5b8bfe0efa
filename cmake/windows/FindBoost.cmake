# Boost's headers, and nothing else of the folder that they are in.
set(boost_headers ${CMAKE_BINARY_DIR}/system_headers)
if(NOT EXISTS /usr/include/boost/version.hpp)
    message(FATAL_ERROR "Boost's headers are missing (libboost-dev)")
endif()
file(MAKE_DIRECTORY ${boost_headers})
file(CREATE_LINK /usr/include/boost ${boost_headers}/boost SYMBOLIC)

add_library(Boost::headers INTERFACE IMPORTED GLOBAL)
set_target_properties(Boost::headers PROPERTIES INTERFACE_INCLUDE_DIRECTORIES ${boost_headers})
set(Boost_FOUND TRUE)
