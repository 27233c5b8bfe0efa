// Compound files made to harm a reader: each is refused or read, in bounded time and memory.
#include "storage_fixture.h"

#include <cstring>
#include <random>

namespace storage_test {
namespace {

constexpr std::uint32_t endOfChain = 0xFFFFFFFE;
constexpr std::uint32_t noEntry = 0xFFFFFFFF;
constexpr std::uint32_t tableSector = 0xFFFFFFFD;

void put(std::string& bytes, std::size_t at, std::uint64_t value, std::size_t count) {
    std::memcpy(bytes.data() + at, &value, count);
}

// One entry of a directory, with the entries that it links to.
struct Entry {
    int type = 2; // 1 storage, 2 stream, 5 root
    std::uint32_t left = noEntry;
    std::uint32_t right = noEntry;
    std::uint32_t child = noEntry;
    std::uint32_t start = endOfChain;
    std::uint64_t size = 0;
};

std::string entryBytes(const Entry& entry, std::size_t number) {
    std::string bytes(128, '\0');
    const std::u16string name = u"e" + [&] {
        const std::string digits = std::to_string(number);
        return std::u16string(digits.begin(), digits.end());
    }();
    std::memcpy(bytes.data(), name.data(), name.size() * 2);
    put(bytes, 64, name.size() * 2 + 2, 2);
    put(bytes, 66, static_cast<unsigned>(entry.type), 1);
    put(bytes, 67, 1, 1);
    put(bytes, 68, entry.left, 4);
    put(bytes, 72, entry.right, 4);
    put(bytes, 76, entry.child, 4);
    put(bytes, 116, entry.start, 4);
    put(bytes, 120, entry.size, 8);
    return bytes;
}

// A file with that directory, behind `dataSectors` sectors that form one chain from 0. Of version 3
// its sectors have 512 bytes, of version 4 4,096.
std::string compoundFile(const std::vector<Entry>& entries, std::size_t dataSectors = 0,
                         unsigned version = 3) {
    const std::size_t sectorSize = version == 3 ? 512 : 4096;
    std::string directory;
    for (std::size_t i = 0; i < entries.size(); ++i)
        directory += entryBytes(entries[i], i);
    directory.resize((directory.size() + sectorSize - 1) / sectorSize * sectorSize);
    const std::size_t directorySectors = directory.size() / sectorSize;
    const std::size_t content = dataSectors + directorySectors;
    const std::size_t tables = content / (sectorSize / 4 - 1) + 1;
    EXPECT_LE(tables, 109u) << "more than the header alone can list";

    std::string table(tables * sectorSize, '\xFF');
    for (std::size_t i = 0; i < content; ++i) {
        const bool isLast = i + 1 == dataSectors || i + 1 == content;
        put(table, 4 * i, isLast ? endOfChain : i + 1, 4);
    }
    std::string header(sectorSize, '\0');
    std::memcpy(header.data(), "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8);
    put(header, 24, 0x3E, 2);
    put(header, 26, version, 2);
    put(header, 28, 0xFFFE, 2);
    put(header, 30, version == 3 ? 9 : 12, 2);
    put(header, 32, 6, 2);
    put(header, 44, tables, 4);
    put(header, 48, dataSectors, 4);
    put(header, 56, 4096, 4);
    put(header, 60, endOfChain, 4);
    put(header, 68, endOfChain, 4);
    for (std::size_t i = 0; i < 109; ++i) {
        const bool isUsed = i < tables;
        put(header, 76 + 4 * i, isUsed ? content + i : noEntry, 4);
        if (isUsed) put(table, 4 * (content + i), tableSector, 4);
    }
    return header + std::string(dataSectors * sectorSize, 'd') + directory + table;
}

std::size_t readEverything(IStorage* storage) {
    ComPtr<IEnumSTATSTG> elements;
    if (FAILED(storage->EnumElements(0, nullptr, 0, elements.put()))) return 0;
    std::size_t total = 0;
    for (STATSTG stat{}; elements->Next(1, &stat, nullptr) == S_OK;) {
        ComPtr<IStorage> inner;
        if (stat.type == STGTY_STREAM)
            total += readStream(storage, stat.pwcsName).size();
        else if (SUCCEEDED(storage->OpenStorage(stat.pwcsName, nullptr, reading, nullptr, 0,
                                                inner.put())))
            total += readEverything(inner.get());
        CoTaskMemFree(stat.pwcsName);
    }
    return total;
}

class DamagedFile : public StorageTest {
  protected:
    HRESULT resultOf(const std::string& bytes) {
        folder.write("damaged.bin", bytes);
        return openResult("damaged.bin");
    }
};

TEST_F(DamagedFile, AWellMadeOneOfTheTestsIsRead) {
    for (const unsigned version : {3u, 4u}) {
        const auto file = [&](std::uint64_t size) {
            return compoundFile({{.type = 5, .child = 1}, {.start = 0, .size = size}}, 10, version);
        };
        EXPECT_EQ(resultOf(file(5000)), S_OK);
        EXPECT_EQ(readStream(open("damaged.bin").get(), OLESTR("e1")), std::string(5000, 'd'));
        // Sizes have 64 bits in version 4 alone; before, anything may stand in the upper ones.
        EXPECT_EQ(resultOf(file(5000 + (1ull << 32))), version == 3 ? S_OK : STG_E_DOCFILECORRUPT);
        // A version has the one size of sectors.
        std::string other = file(5000);
        put(other, 26, 7 - version, 2);
        EXPECT_EQ(resultOf(other), STG_E_DOCFILECORRUPT);
    }
}

// A root, and `count` entries alike that each lead to the next one.
std::vector<Entry> chained(std::size_t count, Entry one, std::uint32_t Entry::*link) {
    std::vector<Entry> entries(count + 1, one);
    for (std::uint32_t i = 1; i < count; ++i)
        entries[i].*link = i + 1;
    entries[0] = {.type = 5, .child = 1};
    return entries;
}

TEST_F(DamagedFile, WithManyEntriesInARowIsRead) {
    EXPECT_EQ(resultOf(compoundFile(chained(50'000, {}, &Entry::right))), S_OK);
}

TEST_F(DamagedFile, WithStoragesInStoragesWithoutEndIsRefused) {
    EXPECT_EQ(resultOf(compoundFile(chained(50'000, {.type = 1}, &Entry::child))),
              STG_E_DOCFILECORRUPT);
}

TEST_F(DamagedFile, WhoseStreamsShareTheirBytesIsRefused) {
    const auto entries = chained(1000, {.start = 0, .size = 500'000}, &Entry::right);
    EXPECT_EQ(resultOf(compoundFile(entries, 1000)), STG_E_DOCFILECORRUPT);
}

TEST_F(DamagedFile, WhoseStreamIsLargerThanTheFileIsRefused) {
    for (const std::uint32_t size : {6000u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        const std::string bytes =
            compoundFile({{.type = 5, .child = 1}, {.start = 0, .size = size}}, 10);
        EXPECT_EQ(resultOf(bytes), STG_E_DOCFILECORRUPT) << size;
    }
}

TEST_F(DamagedFile, AnywhereIsReadOrRefused) {
    {
        const auto root = create("good.bin");
        writeStream(root.get(), OLESTR("small"), std::string(100, 's'));
        writeStream(root.get(), OLESTR("large"), std::string(9000, 'l'));
        const auto inner = createStorage(root.get(), OLESTR("inner"));
        writeStream(inner.get(), OLESTR("small"), std::string(700, 't'));
        writeStream(createStorage(inner.get(), OLESTR("d")).get(), OLESTR("x"), "y");
        EXPECT_EQ(root->Commit(STGC_DEFAULT), S_OK);
    }
    const std::string good = folder.read("good.bin");
    std::mt19937 random(7);
    int refused = 0;
    for (int round = 0; round < 2000; ++round) {
        std::string bytes = good;
        for (unsigned change = random() % 4 + 1; change > 0; --change) {
            // Mostly where the structure stands: the header and the directory's numbers.
            const std::size_t at = random() % 2 ? random() % (bytes.size() - 4) : random() % 512;
            const std::uint64_t values[] = {0, 1, noEntry, endOfChain, random(), random() % 32};
            put(bytes, at & ~std::size_t{3}, values[random() % std::size(values)], 4);
        }
        if (random() % 8 == 0) bytes.resize(random() % bytes.size());
        std::filesystem::remove(folder.file("damaged.bin")); // a new file costs less than another
        folder.write("damaged.bin", bytes);
        if (FAILED(openResult("damaged.bin")))
            ++refused;
        else
            EXPECT_LE(readEverything(open("damaged.bin").get()), bytes.size());
    }
    EXPECT_GT(refused, 100);
    EXPECT_LT(refused, 2000);
}

} // namespace
} // namespace storage_test
