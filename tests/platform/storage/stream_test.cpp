// Streams in memory and in storages, and the class identifiers that stand in them.
#include "storage_fixture.h"

#include <functional>

namespace storage_test {
namespace {

ComPtr<IStream> memoryStream() {
    ComPtr<IStream> stream;
    EXPECT_EQ(CreateStreamOnHGlobal(nullptr, TRUE, stream.put()), S_OK);
    return stream;
}

ULONGLONG seek(IStream* stream, LONGLONG distance, DWORD origin) {
    ULARGE_INTEGER position = size(12345);
    EXPECT_EQ(stream->Seek(offset(distance), origin, &position), S_OK);
    return position.QuadPart;
}

std::string content(IStream* stream) {
    seek(stream, 0, STREAM_SEEK_SET);
    return readAll(stream);
}

class Streams : public StorageTest {
  protected:
    // The same for a stream in memory and one in a storage.
    void forBoth(const std::function<void(IStream*)>& test) {
        test(memoryStream().get());
        const auto root = create();
        test(createStream(root.get(), OLESTR("s")).get());
    }
};

TEST_F(Streams, AreReadAndWrittenAtTheirPosition) {
    forBoth([](IStream* stream) {
        write(stream, "hello world");
        EXPECT_EQ(seek(stream, -5, STREAM_SEEK_END), 6u);
        EXPECT_EQ(readAll(stream), "world");
        EXPECT_EQ(seek(stream, 4, STREAM_SEEK_SET), 4u);
        write(stream, "0 W");
        EXPECT_EQ(seek(stream, -1, STREAM_SEEK_CUR), 6u);
        EXPECT_EQ(content(stream), "hell0 World");
        ULONG count = 5;
        EXPECT_TRUE(SUCCEEDED(stream->Read(&count, 0, nullptr)));
        STATSTG stat{};
        EXPECT_EQ(stream->Stat(&stat, STATFLAG_NONAME), S_OK);
        EXPECT_EQ(stat.type, DWORD{STGTY_STREAM});
        EXPECT_EQ(stat.cbSize.QuadPart, 11u);
        EXPECT_EQ(stat.pwcsName, nullptr);
    });
}

TEST_F(Streams, GrowAndShrink) {
    forBoth([](IStream* stream) {
        write(stream, "ab");
        EXPECT_EQ(stream->SetSize(size(1)), S_OK);
        EXPECT_EQ(content(stream), "a");
        seek(stream, 3, STREAM_SEEK_SET);
        write(stream, "d");
        const std::string grown = content(stream);
        EXPECT_EQ(grown.size(), 4u);
        EXPECT_EQ(grown[3], 'd');
    });
}

TEST_F(Streams, RefusePlacesAndSizesThatCannotBe) {
    forBoth([](IStream* stream) {
        write(stream, "abc");
        EXPECT_TRUE(FAILED(stream->Seek(offset(-4), STREAM_SEEK_END, nullptr)));
        EXPECT_TRUE(FAILED(stream->Seek(offset(-1), STREAM_SEEK_SET, nullptr)));
        EXPECT_TRUE(FAILED(stream->Seek(offset(0), 3, nullptr)));
        EXPECT_EQ(seek(stream, 0, STREAM_SEEK_CUR), 3u);
        EXPECT_TRUE(FAILED(stream->SetSize(size(ULONGLONG{1} << 40))));
        EXPECT_EQ(content(stream), "abc");
    });
}

TEST_F(Streams, CopyFromWhereTheyStand) {
    forBoth([](IStream* stream) {
        const std::string text(40'000, 'x');
        write(stream, "1" + text);
        const auto target = memoryStream();
        seek(stream, 1, STREAM_SEEK_SET);
        ULARGE_INTEGER read{};
        ULARGE_INTEGER written{};
        EXPECT_EQ(stream->CopyTo(target.get(), size(~ULONGLONG{0}), &read, &written), S_OK);
        EXPECT_EQ(read.QuadPart, text.size());
        EXPECT_EQ(written.QuadPart, text.size());
        EXPECT_EQ(content(target.get()), text);
        seek(stream, 0, STREAM_SEEK_SET);
        EXPECT_EQ(stream->CopyTo(target.get(), size(1), nullptr, nullptr), S_OK);
        EXPECT_EQ(content(target.get()), text + "1");
    });
}

TEST_F(Streams, ACloneSharesTheBytesAndNotThePosition) {
    const auto stream = memoryStream();
    write(stream.get(), "abc");
    seek(stream.get(), 1, STREAM_SEEK_SET);
    ComPtr<IStream> clone;
    ASSERT_EQ(stream->Clone(clone.put()), S_OK);
    EXPECT_EQ(readAll(clone.get()), "bc");
    write(clone.get(), "d");
    EXPECT_EQ(readAll(stream.get()), "bcd");
}

TEST_F(Streams, CarryAClassIdentifier) {
    forBoth([](IStream* stream) {
        CLSID clsid{};
        EXPECT_EQ(WriteClassStm(stream, someClass), S_OK);
        EXPECT_EQ(content(stream).size(), 16u);
        seek(stream, 0, STREAM_SEEK_SET);
        EXPECT_EQ(ReadClassStm(stream, &clsid), S_OK);
        EXPECT_EQ(clsid, someClass);
        seek(stream, 1, STREAM_SEEK_SET);
        EXPECT_EQ(ReadClassStm(stream, &clsid), STG_E_READFAULT);
    });
}

} // namespace
} // namespace storage_test
