// Compound files as the documentation of the COM platform has them.
#include "storage_fixture.h"

namespace storage_test {
namespace {

TEST_F(StorageTest, AFileKeepsStreamsStoragesAndClasses) {
    const std::string large(8'000'000, 'L');
    const std::string medium(5000, 'M');
    const std::string name = "\xC3\xBC\xE6\xBC\xA2.bin"; // beyond ASCII
    {
        const auto root = create(name);
        writeStream(root.get(), OLESTR("Large"), large);
        writeStream(root.get(), OLESTR("Empty"), "");
        writeStream(root.get(), OLESTR("\u00FC\u6F22"), "name");
        const auto inner = createStorage(root.get(), OLESTR("Inner"));
        writeStream(inner.get(), OLESTR("Medium"), medium);
        const auto innermost = createStorage(inner.get(), OLESTR("Innermost"));
        writeStream(innermost.get(), OLESTR("x"), "deep");
        for (IStorage* storage : {root.get(), innermost.get()})
            EXPECT_EQ(WriteClassStg(storage, someClass), S_OK);
        EXPECT_EQ(root->Commit(STGC_DEFAULT), S_OK);
    }
    const auto root = open(name);
    ASSERT_TRUE(root);
    EXPECT_EQ(listing(root.get()), "\xC3\xBC\xE6\xBC\xA2"
                                   "4 Empty0 Inner Large8000000");
    EXPECT_EQ(readStream(root.get(), OLESTR("large")), large);
    EXPECT_EQ(readStream(root.get(), OLESTR("Empty")), "");
    const auto inner = openStorage(root.get(), OLESTR("Inner"), reading);
    EXPECT_EQ(readStream(inner.get(), OLESTR("Medium")), medium);
    const auto innermost = openStorage(inner.get(), OLESTR("Innermost"), reading);
    EXPECT_EQ(readStream(innermost.get(), OLESTR("x")), "deep");
    for (IStorage* storage : {root.get(), innermost.get()}) {
        CLSID clsid{};
        EXPECT_EQ(ReadClassStg(storage, &clsid), S_OK);
        EXPECT_EQ(clsid, someClass);
    }
}

// Smaller ones stand in another place of the file.
TEST_F(StorageTest, StreamsAroundTheSizeOfSmallOnesAreKept) {
    for (const std::size_t size : {4095u, 4096u, 4097u}) {
        const std::string content = std::string(size - 3, 'x') + "end";
        makeFile("a.bin", content);
        EXPECT_EQ(readStream(open().get(), OLESTR("s")), content);
    }
}

TEST_F(StorageTest, ATransactionIsKeptByCommitAlone) {
    makeFile("a.bin", "old");
    {
        const auto root = open("a.bin", changing);
        writeStream(root.get(), OLESTR("s"), "new");
        EXPECT_EQ(readStream(root.get(), OLESTR("s")), "new");
    }
    EXPECT_EQ(readStream(open().get(), OLESTR("s")), "old");
    {
        const auto root = open("a.bin", changing);
        writeStream(root.get(), OLESTR("s"), "new");
        EXPECT_EQ(root->Revert(), S_OK);
        EXPECT_EQ(readStream(root.get(), OLESTR("s")), "old");
        writeStream(root.get(), OLESTR("s"), "newer");
        EXPECT_EQ(root->Commit(STGC_DEFAULT), S_OK);
        EXPECT_EQ(root->DestroyElement(OLESTR("s")), S_OK);
    }
    EXPECT_EQ(readStream(open().get(), OLESTR("s")), "newer");
}

TEST_F(StorageTest, AnInnerTransactionReachesItsParentByCommit) {
    const auto root = create();
    {
        const auto lost = createStorage(root.get(), OLESTR("d"), changing);
        writeStream(lost.get(), OLESTR("s"), "lost");
    }
    auto inner = openStorage(root.get(), OLESTR("d"), changing);
    EXPECT_EQ(listing(inner.get()), "");
    writeStream(inner.get(), OLESTR("s"), "kept");
    EXPECT_EQ(inner->Commit(STGC_DEFAULT), S_OK);
    inner.reset();
    EXPECT_EQ(root->Commit(STGC_DEFAULT), S_OK);
    inner = openStorage(root.get(), OLESTR("d"));
    EXPECT_EQ(readStream(inner.get(), OLESTR("s")), "kept");
}

TEST_F(StorageTest, WithoutTransactionsTheLastReleaseKeepsEverything) {
    create("a.bin", STGM_CREATE | exclusive).reset();
    writeStream(open("a.bin", exclusive).get(), OLESTR("s"), "direct");
    EXPECT_EQ(readStream(open().get(), OLESTR("s")), "direct");
}

TEST_F(StorageTest, CreatingReplacesOnRequestOnly) {
    makeFile("a.bin", "old");
    ComPtr<IStorage> storage;
    EXPECT_EQ(StgCreateDocfile(folder.path("a.bin").c_str(), changing, 0, storage.put()),
              STG_E_FILEALREADYEXISTS);
    const auto root = create();
    EXPECT_EQ(listing(root.get()), "");
    EXPECT_EQ(root->Commit(STGC_DEFAULT), S_OK);
}

TEST_F(StorageTest, SaysWhyAFileCannotBeOpened) {
    std::filesystem::create_directory(folder.file("folder"));
    folder.write("empty.bin", "");
    folder.write("text.bin", std::string(5000, 't'));
    makeFile("good.bin", std::string(5000, 'g'));
    folder.write("short.bin", folder.read("good.bin").substr(0, 1000));

    const std::pair<const char*, HRESULT> results[] = {
        {"missing.bin", STG_E_FILENOTFOUND},   {"missing/a.bin", STG_E_PATHNOTFOUND},
        {"folder", STG_E_ACCESSDENIED},        {"empty.bin", STG_E_FILEALREADYEXISTS},
        {"text.bin", STG_E_FILEALREADYEXISTS}, {"good.bin", S_OK}};
    for (const auto& [name, result] : results)
        EXPECT_EQ(openResult(name), result) << name;
    EXPECT_TRUE(FAILED(openResult("short.bin")));

    ComPtr<IStorage> storage;
    const OleString nowhere = folder.path("missing/a.bin");
    EXPECT_TRUE(FAILED(StgCreateDocfile(nowhere.c_str(), saving, 0, storage.put())));
    EXPECT_TRUE(FAILED(StgCreateDocfile(folder.path("folder").c_str(), saving, 0, storage.put())));
    EXPECT_FALSE(storage);
}

TEST_F(StorageTest, RefusesModesWithoutMeaning) {
    makeFile("a.bin", "s");
    for (const DWORD mode : {DWORD{exclusive | STGM_WRITE}, DWORD{0x70}, DWORD{STGM_READ},
                             DWORD{STGM_READWRITE | STGM_SHARE_DENY_WRITE},
                             DWORD{loading | STGM_CREATE}, DWORD{loading | 0x80}})
        EXPECT_EQ(openResult("a.bin", mode), STG_E_INVALIDFLAG) << std::hex << mode;
    EXPECT_EQ(StgOpenStorage(folder.path("a.bin").c_str(), nullptr, loading, nullptr, 0, nullptr),
              STG_E_INVALIDPOINTER);
    ComPtr<IStorage> storage;
    EXPECT_EQ(StgOpenStorage(nullptr, nullptr, loading, nullptr, 0, storage.put()),
              STG_E_INVALIDNAME);

    const auto root = create();
    ComPtr<IStream> stream;
    EXPECT_EQ(root->CreateStream(OLESTR("x"), STGM_READWRITE, 0, 0, stream.put()),
              STG_E_INVALIDFLAG);
    EXPECT_TRUE(FAILED(root->CreateStream(OLESTR("x"), changing, 0, 0, stream.put())));
    EXPECT_EQ(listing(root.get()), "");
}

TEST_F(StorageTest, RefusesNamesThatNoElementCanHave) {
    const auto root = create();
    ComPtr<IStream> stream;
    for (const OLECHAR* name : {OLESTR(""), OLESTR("a/b"), OLESTR("a\\b"), OLESTR("a:b"),
                                OLESTR("a!b"), OLESTR("12345678901234567890123456789012")})
        EXPECT_EQ(root->CreateStream(name, exclusive, 0, 0, stream.put()), STG_E_INVALIDNAME);
    EXPECT_EQ(listing(root.get()), "");
}

TEST_F(StorageTest, AFileIsSharedAsItsOpenersSay) {
    makeFile("a.bin", "s");
    constexpr DWORD read = STGM_TRANSACTED | STGM_READ;
    constexpr DWORD change = STGM_TRANSACTED | STGM_READWRITE;
    constexpr DWORD write = STGM_TRANSACTED | STGM_WRITE;
    struct Row {
        DWORD one;
        DWORD other;
        bool together; // in either order
    };
    constexpr Row rows[] = {
        {read | STGM_SHARE_DENY_NONE, change | STGM_SHARE_DENY_NONE, true},
        {read | STGM_SHARE_DENY_WRITE, read | STGM_SHARE_DENY_WRITE, true},
        {read | STGM_SHARE_DENY_WRITE, read | STGM_SHARE_DENY_NONE, true},
        {read | STGM_SHARE_DENY_WRITE, change | STGM_SHARE_DENY_NONE, false},
        {read | STGM_SHARE_DENY_WRITE, write | STGM_SHARE_DENY_NONE, false},
        {read | STGM_SHARE_DENY_READ, read | STGM_SHARE_DENY_NONE, false},
        {write | STGM_SHARE_DENY_READ, change | STGM_SHARE_DENY_NONE, false},
        {read | STGM_SHARE_EXCLUSIVE, read | STGM_SHARE_DENY_NONE, false},
        {read | STGM_SHARE_EXCLUSIVE, write | STGM_SHARE_DENY_NONE, false},
        {write | STGM_SHARE_EXCLUSIVE, write | STGM_SHARE_DENY_NONE, false},
    };
    for (const Row& row : rows)
        for (const auto& [first, second] : {std::pair{row.one, row.other}, {row.other, row.one}}) {
            const auto opened = open("a.bin", first);
            EXPECT_EQ(SUCCEEDED(openResult("a.bin", second)), row.together)
                << std::hex << first << ", then " << second;
        }
    EXPECT_EQ(openResult("a.bin", changing), S_OK);
    EXPECT_TRUE(std::filesystem::remove(folder.file("a.bin")));
}

TEST_F(StorageTest, WhatIsKeptBeyondItsStorageIsReverted) {
    auto root = create();
    auto inner = createStorage(root.get(), OLESTR("d"));
    const auto kept = createStorage(root.get(), OLESTR("kept"));
    const auto stream = createStream(inner.get(), OLESTR("s"));
    const auto other = createStream(root.get(), OLESTR("s"));
    ULONG count = 0;
    inner.reset();
    EXPECT_EQ(stream->Write("x", 1, &count), STG_E_REVERTED);
    EXPECT_EQ(other->Write("x", 1, &count), S_OK);
    EXPECT_EQ(root->Revert(), S_OK);
    EXPECT_EQ(other->Write("x", 1, &count), STG_E_REVERTED);
    root.reset();
    char byte = 0;
    EXPECT_EQ(stream->Read(&byte, 1, &count), STG_E_REVERTED);
    STATSTG stat{};
    EXPECT_EQ(other->Stat(&stat, STATFLAG_NONAME), STG_E_REVERTED);
    EXPECT_EQ(kept->Stat(&stat, STATFLAG_NONAME), STG_E_REVERTED);
    ComPtr<IStream> none;
    EXPECT_EQ(kept->CreateStream(OLESTR("x"), exclusive, 0, 0, none.put()), STG_E_REVERTED);
    EXPECT_EQ(kept->DestroyElement(OLESTR("x")), STG_E_REVERTED);
}

TEST_F(StorageTest, ElementsAreFoundReplacedRenamedAndDestroyed) {
    const auto root = create();
    writeStream(root.get(), OLESTR("bb"), "1");
    writeStream(root.get(), OLESTR("A"), "22");
    createStorage(root.get(), OLESTR("dir"));
    EXPECT_EQ(listing(root.get()), "A2 bb1 dir");

    ComPtr<IStream> stream;
    ComPtr<IStorage> storage;
    EXPECT_EQ(root->CreateStream(OLESTR("a"), exclusive, 0, 0, stream.put()),
              STG_E_FILEALREADYEXISTS);
    EXPECT_EQ(root->OpenStream(OLESTR("none"), nullptr, exclusive, 0, stream.put()),
              STG_E_FILENOTFOUND);
    EXPECT_EQ(root->OpenStream(OLESTR("dir"), nullptr, exclusive, 0, stream.put()),
              STG_E_FILENOTFOUND);
    EXPECT_EQ(root->OpenStorage(OLESTR("A"), nullptr, exclusive, nullptr, 0, storage.put()),
              STG_E_FILENOTFOUND);

    ASSERT_EQ(root->OpenStream(OLESTR("A"), nullptr, exclusive, 0, stream.put()), S_OK);
    ComPtr<IStream> second;
    EXPECT_EQ(root->OpenStream(OLESTR("A"), nullptr, exclusive, 0, second.put()),
              STG_E_ACCESSDENIED);
    stream.reset();

    EXPECT_EQ(root->RenameElement(OLESTR("A"), OLESTR("bb")), STG_E_FILEALREADYEXISTS);
    EXPECT_EQ(root->RenameElement(OLESTR("none"), OLESTR("x")), STG_E_FILENOTFOUND);
    EXPECT_EQ(root->RenameElement(OLESTR("A"), OLESTR("renamed")), S_OK);
    EXPECT_EQ(root->DestroyElement(OLESTR("dir")), S_OK);
    EXPECT_EQ(root->DestroyElement(OLESTR("dir")), STG_E_FILENOTFOUND);
    EXPECT_EQ(listing(root.get()), "bb1 renamed2");
}

TEST_F(StorageTest, AStorageOpenedForReadingCannotBeChanged) {
    makeFile("a.bin", "s");
    const auto root = open("a.bin", STGM_READ | STGM_SHARE_DENY_WRITE);
    ComPtr<IStream> stream;
    EXPECT_EQ(root->OpenStream(OLESTR("s"), nullptr, exclusive, 0, stream.put()),
              STG_E_ACCESSDENIED);
    EXPECT_EQ(root->CreateStream(OLESTR("x"), exclusive, 0, 0, stream.put()), STG_E_ACCESSDENIED);
    EXPECT_EQ(root->DestroyElement(OLESTR("s")), STG_E_ACCESSDENIED);
    EXPECT_EQ(root->SetClass(someClass), STG_E_ACCESSDENIED);
    ASSERT_EQ(root->OpenStream(OLESTR("s"), nullptr, reading, 0, stream.put()), S_OK);
    ULONG count = 0;
    EXPECT_EQ(stream->Write("x", 1, &count), STG_E_ACCESSDENIED);
    EXPECT_EQ(stream->SetSize(size(0)), STG_E_ACCESSDENIED);
}

TEST_F(StorageTest, ATransactionForReadingIsChangedAndNotCommitted) {
    makeFile("a.bin", "old");
    const auto root = open();
    writeStream(root.get(), OLESTR("s"), "new");
    EXPECT_EQ(readStream(root.get(), OLESTR("s")), "new");
    EXPECT_EQ(root->Commit(STGC_DEFAULT), STG_E_ACCESSDENIED);
    EXPECT_EQ(readStream(open().get(), OLESTR("s")), "old");
}

TEST_F(StorageTest, CopiesIntoAnotherWithoutWhatIsExcluded) {
    const auto source = create("source.bin");
    const auto target = create("target.bin");
    EXPECT_EQ(source->SetClass(someClass), S_OK);
    writeStream(source.get(), OLESTR("s"), "new");
    writeStream(source.get(), OLESTR("left"), "out");
    writeStream(createStorage(source.get(), OLESTR("d")).get(), OLESTR("x"), "inner");
    writeStream(target.get(), OLESTR("s"), "old content");
    writeStream(createStorage(target.get(), OLESTR("d")).get(), OLESTR("y"), "other");

    OleString left = OLESTR("left");
    LPOLESTR excluded[] = {left.data(), nullptr};
    EXPECT_EQ(source->CopyTo(0, nullptr, excluded, target.get()), S_OK);
    EXPECT_EQ(listing(target.get()), "d s3");
    EXPECT_EQ(listing(openStorage(target.get(), OLESTR("d")).get()), "x5 y5");
    CLSID clsid{};
    EXPECT_EQ(ReadClassStg(target.get(), &clsid), S_OK);
    EXPECT_EQ(clsid, someClass);
    EXPECT_TRUE(FAILED(source->CopyTo(0, nullptr, nullptr, nullptr)));
}

TEST_F(StorageTest, ElementsMoveToOtherStorages) {
    const auto source = create();
    writeStream(source.get(), OLESTR("s"), "123");
    writeStream(createStorage(source.get(), OLESTR("d")).get(), OLESTR("x"), "12345");
    const auto target = createStorage(source.get(), OLESTR("t"));
    writeStream(target.get(), OLESTR("taken"), "1");
    const auto move = [&](const OLECHAR* name, const OLECHAR* newName, DWORD flags) {
        return source->MoveElementTo(name, target.get(), newName, flags);
    };

    EXPECT_EQ(move(OLESTR("s"), OLESTR("copy"), STGMOVE_COPY), S_OK);
    EXPECT_EQ(move(OLESTR("s"), OLESTR("moved"), STGMOVE_MOVE), S_OK);
    EXPECT_EQ(move(OLESTR("d"), OLESTR("taken"), STGMOVE_MOVE), STG_E_FILEALREADYEXISTS);
    EXPECT_EQ(move(OLESTR("d"), OLESTR("inner"), STGMOVE_MOVE), S_OK);
    EXPECT_EQ(listing(source.get()), "t");
    EXPECT_EQ(listing(target.get()), "copy3 inner moved3 taken1");
    EXPECT_EQ(listing(openStorage(target.get(), OLESTR("inner")).get()), "x5");

    EXPECT_EQ(move(OLESTR("none"), OLESTR("n"), STGMOVE_MOVE), STG_E_FILENOTFOUND);
    EXPECT_EQ(move(OLESTR("t"), OLESTR("t"), STGMOVE_COPY), STG_E_ACCESSDENIED); // it is open
    EXPECT_EQ(move(nullptr, OLESTR("n"), STGMOVE_COPY), STG_E_INVALIDNAME);
    EXPECT_EQ(move(OLESTR("t"), OLESTR("n"), 2), STG_E_INVALIDFLAG);
    EXPECT_EQ(source->MoveElementTo(OLESTR("t"), nullptr, OLESTR("n"), 0), STG_E_INVALIDPOINTER);
}

TEST_F(StorageTest, EnumeratesInPiecesFromTheStateAtTheTime) {
    const auto root = create();
    for (const OLECHAR* name : {OLESTR("a"), OLESTR("b"), OLESTR("c")})
        writeStream(root.get(), name, "1");
    ComPtr<IEnumSTATSTG> elements;
    ASSERT_EQ(root->EnumElements(0, nullptr, 0, elements.put()), S_OK);
    std::array<STATSTG, 3> stats{};
    ULONG fetched = 0;
    EXPECT_EQ(elements->Skip(1), S_OK);
    EXPECT_EQ(elements->Next(3, stats.data(), &fetched), S_FALSE);
    ASSERT_EQ(fetched, 2u);
    EXPECT_EQ(OleString(stats[0].pwcsName), OLESTR("b"));
    for (ULONG i = 0; i < fetched; ++i)
        CoTaskMemFree(stats[i].pwcsName);
    EXPECT_EQ(elements->Reset(), S_OK);
    EXPECT_EQ(elements->Skip(4), S_FALSE);
}

} // namespace
} // namespace storage_test
