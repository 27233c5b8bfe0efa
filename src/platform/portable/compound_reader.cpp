// Reading compound files. This project's own code, as files come from anywhere: every link is
// checked, nothing is followed twice, and no more is kept than the file holds.
#include "platform/portable/compound_file.h"
#include "platform/portable/hresults.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <optional>

namespace platform {

namespace {

static_assert(std::endian::native == std::endian::little, "numbers are read as they stand");

constexpr std::uint32_t endOfChain = 0xFFFFFFFE;
constexpr std::uint32_t noEntry = 0xFFFFFFFF;
constexpr std::size_t headerSize = 512;
constexpr std::size_t entrySize = 128;
constexpr std::size_t miniSectorSize = 64;
constexpr std::size_t listedInHeader = 109;
constexpr std::array<unsigned char, 8> signature = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};

// What a file says that can't be.
struct Damage {};

void require(bool condition) {
    if (!condition) throw Damage{};
}

template <class Number>
Number numberAt(std::span<const std::byte> bytes, std::size_t at) {
    require(at + sizeof(Number) <= bytes.size());
    Number number{};
    std::memcpy(&number, bytes.data() + at, sizeof(number));
    return number;
}

std::vector<std::uint32_t> numbersOf(std::span<const std::byte> bytes) {
    std::vector<std::uint32_t> numbers(bytes.size() / sizeof(std::uint32_t));
    std::copy_n(bytes.begin(), numbers.size() * sizeof(std::uint32_t),
                reinterpret_cast<std::byte*>(numbers.data()));
    return numbers;
}

// Sectors of equal size, and for each the next one of its chain.
struct Sectors {
    std::span<const std::byte> bytes;
    std::size_t size = 0;
    std::vector<std::uint32_t> next;

    std::size_t count() const { return (bytes.size() + size - 1) / size; }

    // The last sector of a file may be cut off behind what is used of it.
    std::span<const std::byte> sector(std::uint32_t index) const {
        require(index < count());
        const std::size_t start = index * size;
        return bytes.subspan(start, std::min(size, bytes.size() - start));
    }

    // The first `length` bytes of a chain, or all of it.
    Bytes chain(std::uint32_t start, std::optional<std::size_t> length) const {
        require(length.value_or(0) <= bytes.size());
        Bytes result;
        result.reserve(length.value_or(0));
        std::size_t left = length.value_or(bytes.size());
        for (std::uint32_t at = start; left > 0 && at != endOfChain; at = next[at]) {
            const auto part = sector(at).first(std::min(left, sector(at).size()));
            require(at < next.size() && (part.size() == size || part.size() == left || !length));
            result.insert(result.end(), part.begin(), part.end());
            left -= part.size();
        }
        // A chain that is longer than the file goes in a circle.
        require(length ? left == 0 : left > 0 || start == endOfChain);
        return result;
    }
};

// One entry of the directory.
struct DirectoryEntry {
    explicit DirectoryEntry(std::span<const std::byte> bytes, bool hasLongSize)
        : type(numberAt<std::uint8_t>(bytes, 66)), left(numberAt<std::uint32_t>(bytes, 68)),
          right(numberAt<std::uint32_t>(bytes, 72)), child(numberAt<std::uint32_t>(bytes, 76)),
          clsid(numberAt<CLSID>(bytes, 80)), start(numberAt<std::uint32_t>(bytes, 116)),
          size(hasLongSize ? numberAt<std::uint64_t>(bytes, 120)
                           : numberAt<std::uint32_t>(bytes, 120)) {
        // The name's length counts bytes, with those of the zero at its end.
        const auto length = numberAt<std::uint16_t>(bytes, 64);
        require(length % 2 == 0 && length >= 2 && length <= 64);
        name.resize(length / 2 - 1u);
        std::memcpy(name.data(), bytes.data(), name.size() * sizeof(OLECHAR));
    }

    enum Type : std::uint8_t { Storage = 1, Stream = 2, Root = 5 };

    std::uint8_t type;
    std::uint32_t left;
    std::uint32_t right;
    std::uint32_t child;
    CLSID clsid;
    std::uint32_t start;
    std::uint64_t size;
    OleString name;
};

class CompoundReader {
  public:
    explicit CompoundReader(std::span<const std::byte> file) : header_(file) {
        const auto version = numberAt<std::uint16_t>(file, 26);
        const auto shift = numberAt<std::uint16_t>(file, 30);
        require((version == 3 && shift == 9) || (version == 4 && shift == 12));
        hasLongSizes_ = version == 4;
        sectors_.size = std::size_t{1} << shift;
        // The header takes the place of one sector.
        require(file.size() > sectors_.size && numberAt<std::uint16_t>(file, 32) == 6);
        sectors_.bytes = file.subspan(sectors_.size);
        readSectorTable();
        directory_ = sectors_.chain(numberAt<std::uint32_t>(file, 48), std::nullopt);
        isVisited_.resize(directory_.size() / entrySize);
        bytesLeft_ = file.size();
    }

    void readInto(StorageEntry& root) {
        const DirectoryEntry entry = visit(0);
        require(entry.type == DirectoryEntry::Root);
        const auto links = numberAt<std::uint32_t>(header_, 60);
        miniStream_ = sectors_.chain(entry.start, sizeInFile(entry));
        miniSectors_ = {miniStream_, miniSectorSize, numbersOf(sectors_.chain(links, {}))};
        root.clsid = entry.clsid;
        push(entry.child, root, 1);
        while (!toVisit_.empty()) {
            const Visit next = toVisit_.back();
            toVisit_.pop_back();
            readElement(next);
        }
    }

  private:
    struct Visit {
        std::uint32_t index;
        StorageEntry* parent;
        int depth;
    };

    void readSectorTable() {
        const std::size_t total = sectors_.count();
        std::size_t parts = 0;
        const auto addPart = [&](std::uint32_t index) {
            if (index == noEntry) return;
            require(parts++ < total);
            const auto part = numbersOf(sectors_.sector(index));
            sectors_.next.insert(sectors_.next.end(), part.begin(), part.end());
        };
        for (std::size_t i = 0; i < listedInHeader; ++i)
            addPart(numberAt<std::uint32_t>(header_, 76 + 4 * i));
        // Further parts are listed in sectors, whose last number leads to the next of them.
        std::size_t lists = 0;
        for (auto at = numberAt<std::uint32_t>(header_, 68); at < noEntry - 1;) {
            require(lists++ < total);
            const auto list = numbersOf(sectors_.sector(at));
            require(list.size() == sectors_.size / sizeof(std::uint32_t));
            std::for_each(list.begin(), list.end() - 1, addPart);
            at = list.back();
        }
    }

    DirectoryEntry visit(std::uint32_t index) {
        require(index < isVisited_.size() && !isVisited_[index]);
        isVisited_[index] = true;
        return DirectoryEntry(std::span(directory_).subspan(index * entrySize, entrySize),
                              hasLongSizes_);
    }

    void push(std::uint32_t index, StorageEntry& parent, int depth) {
        require(depth <= maximumDepth);
        if (index != noEntry) toVisit_.push_back({index, &parent, depth});
    }

    void readElement(const Visit& place) {
        DirectoryEntry entry = visit(place.index);
        push(entry.left, *place.parent, place.depth);
        push(entry.right, *place.parent, place.depth);
        Element element;
        if (entry.type == DirectoryEntry::Storage) {
            auto storage = std::make_shared<StorageEntry>();
            storage->clsid = entry.clsid;
            push(entry.child, *storage, place.depth + 1);
            element = std::move(storage);
        } else {
            require(entry.type == DirectoryEntry::Stream);
            auto stream = std::make_shared<StreamEntry>();
            stream->bytes = bytesOf(entry);
            element = std::move(stream);
        }
        require(isElementName(entry.name));
        require(place.parent->elements.emplace(std::move(entry.name), std::move(element)).second);
    }

    std::size_t sizeInFile(const DirectoryEntry& entry) const {
        require(entry.size <= header_.size());
        return static_cast<std::size_t>(entry.size);
    }

    // No two streams share a place of the file, so that all of them together are smaller than it.
    Bytes bytesOf(const DirectoryEntry& entry) {
        require(entry.size <= bytesLeft_);
        bytesLeft_ -= static_cast<std::size_t>(entry.size);
        const bool isSmall = entry.size < numberAt<std::uint32_t>(header_, 56);
        const Sectors& place = isSmall ? miniSectors_ : sectors_;
        return place.chain(entry.start, static_cast<std::size_t>(entry.size));
    }

    std::span<const std::byte> header_;
    bool hasLongSizes_ = false;
    Sectors sectors_;
    Bytes directory_;
    Bytes miniStream_;
    Sectors miniSectors_;
    std::vector<bool> isVisited_;
    std::vector<Visit> toVisit_;
    std::size_t bytesLeft_ = 0;
};

} // namespace

HRESULT parseCompoundFile(std::span<const std::byte> file, StorageEntry& root) {
    if (file.size() < headerSize ||
        std::memcmp(file.data(), signature.data(), signature.size()) != 0)
        return STG_E_FILEALREADYEXISTS;
    try {
        CompoundReader(file).readInto(root);
        return S_OK;
    } catch (const Damage&) {
        return STG_E_DOCFILECORRUPT;
    }
}

} // namespace platform
