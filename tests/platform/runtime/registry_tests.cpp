// .reg files and the registry read back from them.
#include "platform/com.h"
#include "platform/registry_files.h"
#include "support/temporary_folder.h"
#include "system_support.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

namespace platform {
namespace {

const std::string header = "Windows Registry Editor Version 5.00\r\n\r\n";

class Registry : public testing::Test {
  protected:
    void SetUp() override { clearRegistry(); }
    void TearDown() override { clearRegistry(); }

    void load(const std::string& bytes) {
        folder_.write("test.reg", bytes);
        loadRegistryFile(folder_.file("test.reg"));
    }

    // The value as "TYPE:text" or, for other types than text, "TYPE:bytes"; "-" without it.
    static std::string read(HKEY root, const OLECHAR* path, const OLECHAR* name = nullptr) {
        HKEY key = nullptr;
        if (RegOpenKeyExW(root, path, 0, KEY_READ, &key) != 0) return "-";
        DWORD type = 0;
        BYTE data[256];
        DWORD size = sizeof data;
        const LSTATUS status = RegQueryValueExW(key, name, nullptr, &type, data, &size);
        RegCloseKey(key);
        if (status != 0) return "-";
        std::string text = std::to_string(type) + ":";
        if (type == REG_SZ || type == REG_EXPAND_SZ)
            return text + toNarrow(reinterpret_cast<const OLECHAR*>(data));
        for (DWORD i = 0; i < size; ++i)
            text += std::to_string(data[i]) + " ";
        return text;
    }

    const axlink2::test::TemporaryFolder folder_;
};

TEST_F(Registry, givesEveryKindOfValueBack) {
    load(header + "; a comment\r\n"
                  "[HKEY_LOCAL_MACHINE\\Software\\Sample] ; another\r\n"
                  "@=\"the \\\"default\\\" C:\\\\x\"\r\n"
                  "\"number\"=dword:0000000a ; ten\r\n"
                  "\"bytes\"=hex:01,02,\\\r\n"
                  "  ff\r\n"
                  "\"path\"=hex(2):25,00,54,00,25,00,00,00\r\n"
                  "\"caf\xC3\xA9\"=\"\xC3\xA9\"\r\n"
                  "\"gone\"=\"x\"\r\n\"gone\"=-\r\n");
    const OLECHAR* path = OLESTR("SOFTWARE\\sample");
    EXPECT_EQ(read(HKEY_LOCAL_MACHINE, path), "1:the \"default\" C:\\x");
    EXPECT_EQ(read(HKEY_LOCAL_MACHINE, path, OLESTR("Number")), "4:10 0 0 0 ");
    EXPECT_EQ(read(HKEY_LOCAL_MACHINE, path, OLESTR("bytes")), "3:1 2 255 ");
    EXPECT_EQ(read(HKEY_LOCAL_MACHINE, path, OLESTR("path")), "2:%T%");
    EXPECT_EQ(read(HKEY_LOCAL_MACHINE, path, OLESTR("CAF\u00C9")), "1:\xC3\xA9");
    EXPECT_EQ(read(HKEY_LOCAL_MACHINE, path, OLESTR("gone")), "-");
}

TEST_F(Registry, readsTheOlderFormAndUtf16) {
    load("REGEDIT4\n[HKEY_CURRENT_USER\\old]\n@=hex(2):25,54,25,00\n");
    EXPECT_EQ(read(HKEY_CURRENT_USER, OLESTR("old")), "2:%T%");
    std::string wide = "\xFF\xFE";
    for (const char c : header + "[HKEY_CURRENT_USER\\new]\r\n@=\"w\"\r\n")
        wide += {c, '\0'};
    load(wide);
    EXPECT_EQ(read(HKEY_CURRENT_USER, OLESTR("new")), "1:w");
}

TEST_F(Registry, mergesTheClassesOfUserAndMachine) {
    load(header + "[HKEY_CLASSES_ROOT\\b]\n@=\"machine\"\n\"only\"=\"m\"\n"
                  "[HKEY_CURRENT_USER\\Software\\Classes\\B]\n@=\"user\"\n"
                  "[HKEY_CURRENT_USER\\Software\\Classes\\a]\n"
                  "[HKEY_LOCAL_MACHINE\\Software\\Classes\\C]\n");
    std::string names;
    OLECHAR name[64];
    for (DWORD i = 0, size = 64;
         RegEnumKeyExW(HKEY_CLASSES_ROOT, i, name, &size, nullptr, nullptr, nullptr, nullptr) == 0;
         ++i, size = 64)
        names += toNarrow(OleView(name, size)) + " ";
    EXPECT_EQ(names, "a B C ");
    EXPECT_EQ(read(HKEY_CLASSES_ROOT, OLESTR("b")), "1:user");
    EXPECT_EQ(read(HKEY_CLASSES_ROOT, OLESTR("b"), OLESTR("only")), "1:m");
    load(header + "[-HKEY_CURRENT_USER\\Software\\Classes\\b]\n");
    EXPECT_EQ(read(HKEY_CLASSES_ROOT, OLESTR("b")), "1:machine");
}

TEST_F(Registry, answersSizesAndEndsAsDocumented) {
    load(header + "[HKEY_CURRENT_USER\\k\\sub]\n@=\"abc\"\n[HKEY_CLASSES_ROOT\\CLSID]\n");
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, OLESTR("none"), 0, KEY_READ, &key), 2);
    EXPECT_EQ(RegOpenKeyExW(nullptr, OLESTR("k"), 0, KEY_READ, &key), 6);
    EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, OLESTR("\\k"), 0, KEY_READ, &key), 161);
    ASSERT_EQ(RegOpenKeyExW(HKEY_CLASSES_ROOT, OLESTR("\\CLSID"), 0, KEY_READ, &key), 0);
    EXPECT_EQ(RegCloseKey(key), 0);
    ASSERT_EQ(RegOpenKeyExW(HKEY_CLASSES_ROOT, nullptr, 0, KEY_READ, &key), 0);
    EXPECT_EQ(RegCloseKey(key), 0);
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, OLESTR("k\\"), 0, KEY_READ, &key), 0);
    OLECHAR name[4];
    DWORD size = 3;
    EXPECT_EQ(RegEnumKeyExW(key, 0, name, &size, nullptr, nullptr, nullptr, nullptr), 234);
    EXPECT_EQ(size, 3u);
    size = 4;
    EXPECT_EQ(RegEnumKeyExW(key, 0, name, &size, nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(size, 3u);
    EXPECT_EQ(RegEnumKeyExW(key, 1, name, &size, nullptr, nullptr, nullptr, nullptr), 259);
    DWORD type = 99;
    DWORD bytes = 64;
    EXPECT_EQ(RegQueryValueExW(key, nullptr, nullptr, &type, nullptr, &bytes), 2);
    EXPECT_EQ(type, 99u);
    HKEY sub = nullptr;
    ASSERT_EQ(RegOpenKeyW(key, OLESTR("SUB"), &sub), 0);
    EXPECT_EQ(RegQueryValueExW(sub, nullptr, nullptr, &type, nullptr, &bytes), 0);
    EXPECT_EQ(bytes, 8u);
    BYTE small[7];
    bytes = sizeof small;
    EXPECT_EQ(RegQueryValueExW(sub, nullptr, nullptr, &type, small, &bytes), 234);
    EXPECT_EQ(bytes, 8u);
    clearRegistry();
    EXPECT_EQ(RegQueryValueExW(sub, nullptr, nullptr, &type, nullptr, &bytes), 1018);
    EXPECT_EQ(RegCloseKey(sub), 0);
    EXPECT_EQ(RegCloseKey(key), 0);
}

TEST_F(Registry, takesRelativeServerLibrariesFromTheFilesFolder) {
    load(header + "[HKEY_CLASSES_ROOT\\CLSID\\{1}\\InProcServer32]\n@=\"lib/../server.so\"\n"
                  "[HKEY_CLASSES_ROOT\\CLSID\\{2}\\InProcServer32]\n@=\"/opt/server.so\"\n");
    EXPECT_EQ(read(HKEY_CLASSES_ROOT, OLESTR("CLSID\\{1}\\InprocServer32")),
              "1:" + folder_.file("server.so").string());
    EXPECT_EQ(read(HKEY_CLASSES_ROOT, OLESTR("CLSID\\{2}\\InprocServer32")), "1:/opt/server.so");
}

TEST_F(Registry, refusesBrokenFilesWithFileAndLineAndKeepsWhatItHad) {
    const std::string key = header + "[HKEY_CURRENT_USER\\kept]\r\n@=\"changed\"\r\n"; // lines 1-4
    const struct {
        std::string bytes;
        int line;
        const char* reason;
    } cases[] = {
        {"", 1, "first line"},
        {"[HKEY_CURRENT_USER\\x]\n", 1, "first line"},
        {header + "@=\"x\"\n", 3, "in no key"},
        {header + "[-HKEY_CURRENT_USER\\x]\n@=\"x\"\n", 4, "in no key"},
        {key + "[HKEY_CURRENT_USER\\x\n", 5, "closing bracket"},
        {key + "[HKEY_ELSEWHERE\\x]\n", 5, "root key"},
        {key + "[-HKEY_CURRENT_USER]\n", 5, "cannot be removed"},
        {key + "\"a\"=\"x\n", 5, "closing quote"},
        {key + "\"a\"=\"C:\\temp\"\n", 5, "backslash"},
        {key + "\"a\"=\"x\" y\n", 5, "unexpected text \"y\""},
        {key + "\"a\" \"x\"\n", 5, "followed by ="},
        {key + "\"a\"=dword:xyz\n", 5, "32 bits"},
        {key + "\"a\"=dword:123456789\n", 5, "32 bits"},
        {key + "\"a\"=hex:01,\\\n  1ff\n", 6, "hexadecimal byte"},
        {key + "\"a\"=hex:01,\\", 5, "continued line"},
        {key + "\"a\"=qword:1\n", 5, "unknown kind"},
        {key + "just text\n", 5, "just text"},
        {key + "\"a\"=\"\xFF\"\n", 5, "UTF-8"},
        {"\xFF\xFEo", 1, "UTF-16"},
    };
    load(header + "[HKEY_CURRENT_USER\\kept]\n@=\"as it was\"\n");
    for (const auto& broken : cases) {
        try {
            load(broken.bytes);
            ADD_FAILURE() << "accepted: " << broken.bytes;
        } catch (const RegistryFileError& error) {
            const std::string what = error.what();
            const std::string place = ":" + std::to_string(broken.line) + ": ";
            EXPECT_TRUE(what.starts_with(folder_.file("test.reg").string() + place)) << what;
            EXPECT_NE(what.find(broken.reason), std::string::npos) << what;
        }
        EXPECT_EQ(read(HKEY_CURRENT_USER, OLESTR("kept")), "1:as it was");
    }
    EXPECT_THROW(loadRegistryFile(folder_.file("missing.reg")), RegistryFileError);
    EXPECT_THROW(loadRegistryFile(folder_.file(".")), RegistryFileError);
}

TEST_F(Registry, survivesEveryMutationOfAFile) {
    const std::string sound = header + "[HKEY_CURRENT_USER\\k]\r\n@=\"a\\\\b\"\r\n\"n\"=hex(7):"
                                       "01,\\\r\n 02\r\n\"d\"=dword:1 ; c\r\n[-HKEY_USERS\\x]\r\n";
    std::mt19937 random(7);
    int accepted = 0;
    for (int i = 0; i < 500; ++i) {
        std::string bytes = sound;
        for (auto n = random() % 3 + 1; n > 0; --n) {
            static constexpr char pool[] = "[]\"\\=-@;:,(\r\n \xFF\0z";
            bytes[random() % bytes.size()] = pool[random() % (sizeof pool - 1)];
        }
        bytes.resize(bytes.size() - random() % 8);
        clearRegistry();
        try {
            load(bytes);
            ++accepted;
        } catch (const RegistryFileError&) {
            ASSERT_EQ(read(HKEY_CURRENT_USER, OLESTR("k")), "-");
        }
    }
    EXPECT_TRUE(accepted > 0 && accepted < 500) << accepted;
}

TEST_F(Registry, loadsTheUsersFilesInOrder) {
    std::filesystem::create_directories(folder_.file("axlink2/classes"));
    const std::string key = header + "[HKEY_CURRENT_USER\\u]\n";
    folder_.write("axlink2/classes/b.reg", key + "@=\"second\"\n");
    folder_.write("axlink2/classes/a.reg", key + "@=\"first\"\n\"a\"=\"a\"\n");
    folder_.write("axlink2/classes/readme.txt", "not a registry file");
    const char* before = std::getenv(userDataVariable);
    const std::string saved = before ? before : "";
    setVariable(userDataVariable, folder_.file(".").string().c_str());
    loadUserRegistryFiles();
    EXPECT_EQ(read(HKEY_CURRENT_USER, OLESTR("u")), "1:second");
    EXPECT_EQ(read(HKEY_CURRENT_USER, OLESTR("u"), OLESTR("a")), "1:a");
    setVariable(userDataVariable, folder_.file("nowhere").string().c_str());
    EXPECT_NO_THROW(loadUserRegistryFiles());
    setVariable(userDataVariable, before ? saved.c_str() : nullptr);
}

} // namespace
} // namespace platform
