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
// On Windows, COM itself finds the classes, so the keys go to the system's registry, but only for
// the life of the program: HKEY_CLASSES_ROOT is the user's classes (the machine's when the program
// has the right to write there, since such programs see no others), new keys are volatile, and at
// the end what was there before is put back. A program that is killed leaves its new keys until
// the system restarts. A key that no file brought in can't be removed there.
void loadRegistryFile(const std::filesystem::path& file);

// Brings in the .reg files of the user's data directory (axlink2/classes below $XDG_DATA_HOME or
// ~/.local/share; on Windows below %LOCALAPPDATA%) in the order of their names. Nothing calls it by
// itself: a program that wants the user's classes does, once, at its start. Raises
// RegistryFileError for the first bad file; a missing directory is no error.
void loadUserRegistryFiles();

// Forgets every key and value that files brought in, for programs that start over.
void clearRegistry();

} // namespace platform
