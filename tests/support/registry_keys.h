// Keys for the class registry, written as in a .reg file.
#pragma once

#include "platform/registry_files.h"

#include <filesystem>
#include <fstream>
#include <string>

namespace axlink2::test {

// Brings in the text of a .reg file behind its first line, keys below HKEY_CLASSES_ROOT.
inline void registerKeys(const std::string& text) {
    const auto file = std::filesystem::temp_directory_path() /
                      ("axlink2-keys-" + std::to_string(std::hash<std::string>()(text)) + ".reg");
    std::ofstream(file, std::ios::binary) << "Windows Registry Editor Version 5.00\r\n\r\n" << text;
    platform::loadRegistryFile(file);
    std::filesystem::remove(file);
}

// One key with its default value.
inline std::string registryKey(const std::string& path, const std::string& value) {
    return "[HKEY_CLASSES_ROOT\\" + path + "]\r\n@=\"" + value + "\"\r\n\r\n";
}

} // namespace axlink2::test
