// Class registrations from .reg text files, the format that registry editors export.
#pragma once

#include <filesystem>
#include <stdexcept>

namespace platform {

// What is wrong with a .reg file, as "FILE:LINE: what is wrong".
struct RegistryFileError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Brings in the keys and values of a .reg file ("REGEDIT4" or "Windows Registry Editor Version
// 5.00", in UTF-8 or, with its byte order mark, UTF-16LE). A relative path in the default value of
// an InprocServer32 key is taken from the file's folder. Raises RegistryFileError; a file that is
// refused changes nothing.
void loadRegistryFile(const std::filesystem::path& file);

// Brings in the .reg files of the user's data directory (axlink2/classes below $XDG_DATA_HOME or
// ~/.local/share) in the order of their names. Nothing calls it by itself: a program that wants the
// user's classes does, once, at its start. Raises RegistryFileError for the first bad file; a
// missing directory is no error.
void loadUserRegistryFiles();

// Forgets every key and value, for programs that start over.
void clearRegistry();

} // namespace platform
