// A folder for the files of one test.
#pragma once

#include "platform/file_replacement.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace axlink2::test {

// File names are UTF-8. At the end the folder goes, which fails the test when a file is still open.
class TemporaryFolder {
  public:
    TemporaryFolder() { std::filesystem::create_directories(folder_); }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code error;
        std::filesystem::remove_all(folder_, error);
        EXPECT_FALSE(error) << "a file is still open: " << error.message();
    }

    std::filesystem::path file(const std::string& name) const {
        return folder_ / platform::pathOf(platform::toOle(name));
    }
    platform::OleString path(const std::string& name) const {
        return platform::toOle(narrowPath(name));
    }
    std::string narrowPath(const std::string& name) const {
        const auto text = file(name).generic_u8string();
        return std::string(text.begin(), text.end());
    }

    void write(const std::string& name, const std::string& bytes) const {
        ASSERT_FALSE(platform::replaceFile(file(name), std::as_bytes(std::span(bytes))));
    }
    // "?" where there is no such file.
    std::string read(const std::string& name) const {
        std::vector<std::byte> content;
        if (platform::readFile(file(name), content)) return "?";
        return std::string(reinterpret_cast<const char*>(content.data()), content.size());
    }
    // What stands in the folder.
    std::vector<std::string> names() const {
        std::vector<std::string> result;
        for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
            const auto text = entry.path().filename().generic_u8string();
            result.emplace_back(text.begin(), text.end());
        }
        std::sort(result.begin(), result.end());
        return result;
    }

  private:
    const std::filesystem::path folder_ =
        std::filesystem::temp_directory_path() /
        ("axlink2-test-" + std::to_string(std::random_device()()));
};

} // namespace axlink2::test
