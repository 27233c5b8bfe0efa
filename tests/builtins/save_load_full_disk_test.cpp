// save where no room is left, on systems on which a test can bring that about.
#include "builtins/save_load_fixture.h"
#include "support/full_disk.h"

namespace {

using namespace axlink2::test;

struct FullDiskSave : SaveLoadTest {};

TEST_F(FullDiskSave, LeavesTheOldFileAndCanBeTriedAgain) {
    forEachDocument([&](const Array& h) {
        setText(h, "old");
        EXPECT_EQ(save(h), "");
        const std::string before = folder.read("a.bin");
        const std::string value(50'000, 'n');
        setText(h, value);
        {
            const FullDisk full(10'000);
            EXPECT_EQ(save(h), serializationError);
        }
        EXPECT_TRUE(folder.read("a.bin") == before);
        EXPECT_EQ(folder.names(), std::vector<std::string>{"a.bin"});
        EXPECT_EQ(textOf(h), "'" + value + "'");
        EXPECT_EQ(save(h), "");
        EXPECT_EQ(load(h), "");
        EXPECT_EQ(textOf(h), "'" + value + "'");
    });
}

} // namespace
