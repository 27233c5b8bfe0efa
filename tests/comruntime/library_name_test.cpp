// Display names of type libraries: which registered version a request means.
#include "comruntime/library_name.h"
#include "support/registry_keys.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using namespace axlink2;
using platform::toOle;

// A library identifier of this test's own.
std::string library(int number) {
    return "{2F3C8A10-7B3D-4D0C-9A51-5E0F6B7A0" + std::to_string(100 + number) + "}";
}

void registerVersions(int number, std::initializer_list<const char*> versions) {
    std::string keys;
    for (const char* version : versions)
        keys += test::registryKey("TypeLib\\" + library(number) + "\\" + version,
                                  std::string("is ") + version);
    test::registerKeys(keys);
}

struct Row {
    int library;
    const char* major;
    const char* minor;
    const char* name;
    std::uint32_t outMajor;
    std::uint32_t outMinor;
};

constexpr std::uint32_t unwritten = 99;

TEST(LibraryName, IsThatOfTheVersionAskedForOrOfTheNewest) {
    registerVersions(1, {"1.0", "1.a", "2.0"});
    registerVersions(2, {"1.0", "1.a"});
    registerVersions(3, {"0.0"});
    registerVersions(4, {"3", "nonsense", "2.f"});
    registerVersions(5, {"2.0"});
    registerVersions(6, {"1.0.1", "10.2"});
    constexpr Row rows[] = {
        {1, "0", "0", "is 2.0", 2, 0},
        {1, "1", "A", "is 1.a", 1, 10},
        {1, "1", "0", "is 1.0", 1, 0},
        {2, "0", "0", "is 1.a", 1, 10}, // minors are numbers
        {2, "00", "0a", "", 0, 0},      // 0.a is no request for the newest
        {3, "0", "0", "is 0.0", 0, 0},
        {4, "0", "0", "", 3, 0}, // chosen, but its key isn't written so
        {5, "1", "0", "", 0, 0},
        {6, "1", "0.1", "is 1.0.1", unwritten, unwritten}, // no hexadecimal number: as it stands
        {6, "10", "2", "is 10.2", 16, 2},
        {9, "1", "0", "", unwritten, unwritten},
    };
    for (const Row& row : rows) {
        std::uint32_t major = unwritten;
        std::uint32_t minor = unwritten;
        const _bstr_t name = typeLibraryName(toOle(library(row.library)), toOle(row.major),
                                             toOle(row.minor), &major, &minor);
        SCOPED_TRACE(library(row.library) + " " + row.major + "." + row.minor);
        EXPECT_STREQ(static_cast<const char*>(name), row.name);
        EXPECT_EQ(std::pair(major, minor), std::pair(row.outMajor, row.outMinor));
    }
    EXPECT_EQ(typeLibraryName(toOle(library(5)), OLESTR("2"), OLESTR("0")).length(), 6u);
}

TEST(LibraryName, OfNothingIsEmpty) {
    std::uint32_t major = unwritten;
    EXPECT_EQ(typeLibraryName({}, OLESTR("1"), OLESTR("0"), &major).length(), 0u);
    EXPECT_EQ(major, unwritten);
    test::registerKeys("[HKEY_CLASSES_ROOT\\TypeLib\\" + library(7) + "\\1.0]\r\n\r\n");
    EXPECT_EQ(typeLibraryName(toOle(library(7)), OLESTR("1"), OLESTR("0")).length(), 0u);
    test::registerKeys("[HKEY_CLASSES_ROOT\\TypeLib\\" + library(7) +
                       "\\2.0]\r\n@=dword:00420041\r\n\r\n");
    EXPECT_EQ(typeLibraryName(toOle(library(7)), OLESTR("2"), OLESTR("0")).length(), 0u);
}

TEST(LibraryName, RefusesNumbersBeyond32Bits) {
    registerVersions(8, {"1.0"});
    EXPECT_THROW(typeLibraryName(toOle(library(8)), OLESTR("123456789"), OLESTR("0")),
                 std::out_of_range);
}

} // namespace
