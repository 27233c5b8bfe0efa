// What this project's own layer promises beyond the documentation: files that survive failures, and
// that other programs read.
#include "storage_fixture.h"
#include "support/full_disk.h"

#include <gsf/gsf-infile-msole.h>
#include <gsf/gsf-infile.h>
#include <gsf/gsf-input-memory.h>

namespace storage_test {
namespace {

TEST_F(StorageTest, ANewFileIsThereFromItsCommitOn) {
    const auto root = create();
    EXPECT_TRUE(folder.names().empty());
    EXPECT_EQ(root->Commit(STGC_DEFAULT), S_OK);
    EXPECT_EQ(folder.names(), std::vector<std::string>{"a.bin"});
}

TEST_F(StorageTest, AFailedCommitLeavesTheOldFileAndCanBeTriedAgain) {
    makeFile("a.bin", "old");
    const std::string before = folder.read("a.bin");
    const auto root = create();
    writeStream(root.get(), OLESTR("s"), std::string(100'000, 'n'));
    {
        const axlink2::test::FullDisk full(10'000);
        EXPECT_EQ(root->Commit(STGC_DEFAULT), STG_E_MEDIUMFULL);
    }
    EXPECT_TRUE(folder.read("a.bin") == before);
    EXPECT_EQ(folder.names(), std::vector<std::string>{"a.bin"});
    EXPECT_EQ(root->Commit(STGC_DEFAULT), S_OK);
    EXPECT_GT(folder.read("a.bin").size(), 100'000u);
}

TEST_F(StorageTest, ReplacingKeepsPermissionsAndLinksAndRefusesDevices) {
    namespace fs = std::filesystem;
    makeFile("real.bin", "old");
    fs::permissions(folder.file("real.bin"), fs::perms::owner_read | fs::perms::owner_write);
    fs::create_symlink("real.bin", folder.file("link.bin"));
    makeFile("link.bin", "new");
    EXPECT_TRUE(fs::is_symlink(folder.file("link.bin")));
    EXPECT_EQ(readStream(open("real.bin").get(), OLESTR("s")), "new");
    EXPECT_EQ(fs::status(folder.file("real.bin")).permissions(),
              fs::perms::owner_read | fs::perms::owner_write);
    // The link and what it points at are one file.
    const auto one = open("real.bin", changing);
    EXPECT_EQ(openResult("link.bin"), STG_E_SHAREVIOLATION);

    ComPtr<IStorage> storage;
    EXPECT_EQ(StgCreateDocfile(folder.path("missing/a.bin").c_str(), saving, 0, storage.put()),
              STG_E_PATHNOTFOUND);
    for (const OLECHAR* device : {OLESTR("/dev/full"), OLESTR("/dev/zero")}) {
        EXPECT_EQ(StgCreateDocfile(device, saving, 0, storage.put()), STG_E_ACCESSDENIED);
        EXPECT_EQ(StgOpenStorage(device, nullptr, loading, nullptr, 0, storage.put()),
                  STG_E_ACCESSDENIED);
    }
}

// The tree as another reader sees it: "d(x5) s3".
std::string readElsewhere(GsfInfile* in) {
    std::string text;
    for (int i = 0; i < gsf_infile_num_children(in); ++i) {
        GsfInput* const child = gsf_infile_child_by_index(in, i);
        text += (text.empty() ? "" : " ") + std::string(gsf_infile_name_by_index(in, i));
        const bool isStorage = gsf_infile_num_children(GSF_INFILE(child)) >= 0;
        text += isStorage ? "(" + readElsewhere(GSF_INFILE(child)) + ")"
                          : std::to_string(gsf_input_size(child));
        g_object_unref(child);
    }
    return text;
}

TEST_F(StorageTest, WhatIsWrittenIsReadByAnotherReader) {
    {
        const auto root = create();
        EXPECT_EQ(root->SetClass(someClass), S_OK);
        writeStream(root.get(), OLESTR("s"), "abc");
        writeStream(root.get(), OLESTR("large"), std::string(10'000, 'x'));
        writeStream(createStorage(root.get(), OLESTR("d")).get(), OLESTR("x"), "inner");
        EXPECT_EQ(root->Commit(STGC_DEFAULT), S_OK);
    }
    const std::string bytes = folder.read("a.bin");
    GsfInput* const input = gsf_input_memory_new(reinterpret_cast<const guint8*>(bytes.data()),
                                                 static_cast<gsf_off_t>(bytes.size()), FALSE);
    GsfInfile* const in = gsf_infile_msole_new(input, nullptr);
    ASSERT_NE(in, nullptr);
    EXPECT_EQ(readElsewhere(in), "d(x5) s3 large10000");
    CLSID clsid{};
    EXPECT_TRUE(
        gsf_infile_msole_get_class_id(GSF_INFILE_MSOLE(in), reinterpret_cast<guint8*>(&clsid)));
    EXPECT_EQ(clsid, someClass);
    g_object_unref(in);
    g_object_unref(input);
}

} // namespace
} // namespace storage_test
