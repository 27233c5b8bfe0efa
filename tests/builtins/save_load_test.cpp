// save and load: which interface serves them, what counts as success, and what becomes of the file.
#include "builtins/persisting_server.h"
#include "builtins/save_load_fixture.h"
#include "servers/sample/faults.h"

namespace {

using namespace axlink2;
using namespace axlink2::test;
using platform::ComPtr;

constexpr DWORD writing = STGM_CREATE | STGM_WRITE | STGM_SHARE_EXCLUSIVE;

struct Documents : SaveLoadTest {};

TEST_F(Documents, GoThroughAFileWithEachInterfaceHoweverOften) {
    forEachDocument([&](const Array& h) {
        const std::string name = "\u00FC\u6F22.bin"; // beyond ASCII
        folder.write(name, "something else");
        for (const std::string& value :
             {"gr\u00FCn and " + std::string(5000, 'x'), std::string("x")}) {
            setText(h, value);
            ask(0, h, "set", text("Number"), scalar(2.5));
            EXPECT_EQ(save(h, name), "");
            setText(h, "lost");
            ask(0, h, "set", text("Number"), scalar(0));
            EXPECT_EQ(load(h, name), "");
            EXPECT_EQ(textOf(h), "'" + value + "'");
            EXPECT_EQ(get(h, text("Number")), "2.5");
        }
        EXPECT_EQ(folder.names(), std::vector<std::string>{name});
        EXPECT_TRUE(std::filesystem::remove(folder.file(name)));
    });
}

TEST_F(Documents, KeepTheirStateWhenAFileIsMissingShortOrForeignOrCannotBe) {
    forEachDocument([&](const Array& h) {
        setText(h, std::string(2000, 'o'));
        EXPECT_EQ(save(h), "");
        const std::string saved = folder.read("a.bin");
        setText(h, "kept");
        folder.write("empty.bin", "");
        folder.write("short.bin", saved.substr(0, saved.size() / 2));
        folder.write("stub.bin", saved.substr(0, 10));
        folder.write("foreign.bin", "not made by this at all");
        std::filesystem::create_directories(folder.file("folder"));
        const std::vector<std::string> names = folder.names();
        for (const char* name : {"missing.bin", "missing/a.bin", "folder", "empty.bin", "short.bin",
                                 "stub.bin", "foreign.bin"})
            EXPECT_EQ(load(h, name), serializationError) << name;
        for (const char* name : {"missing/a.bin", "folder"})
            EXPECT_EQ(save(h, name), serializationError) << name;
        EXPECT_EQ(textOf(h), "'kept'");
        EXPECT_EQ(folder.names(), names);
        EXPECT_EQ(save(h), "");
        EXPECT_EQ(load(h), "");
        EXPECT_EQ(textOf(h), "'kept'");
    });
}

TEST_F(Documents, OfAnotherClassAreNotLoadedFromStreams) {
    const Array one = start<sample::StreamDocument>("Sample.StreamDocument.1");
    const Array other = start<sample::StreamInitDocument>("Sample.StreamInitDocument.1");
    setText(one, "one");
    setText(other, "other");
    EXPECT_EQ(save(one), "");
    EXPECT_EQ(load(other), serializationError);
    EXPECT_EQ(textOf(other), "'other'");
}

class Persisting : public SaveLoadTest {
  protected:
    ~Persisting() override { script = {}; }

    Array h = start<PersistingServer>("Test.Persisting");
    PersistingServer::Script& script = PersistingServer::script;

    std::string callsOf(const std::function<void()>& action) {
        script.calls.clear();
        action();
        return script.calls;
    }
    bool isUsable() { return get(h, text("Value")) == "42"; }
};

TEST_F(Persisting, GoesThroughTheFirstInterfaceThatIsOfferedOnly) {
    struct Row {
        std::vector<IID> offered;
        const char* saving;
        const char* loading;
    };
    const Row rows[] = {
        {{IID_IPersistStream, IID_IPersistStorage, IID_IPersistFile}, "File.Save ", "File.Load "},
        {{IID_IPersistStreamInit, IID_IPersistStorage},
         "GetClassID Storage.Save Completed ",
         "Storage.Load HandsOff "},
        {{IID_IPersistStreamInit}, "GetClassID Stream.Save ", "GetClassID Stream.Load "},
        {{IID_IPersistStream}, "GetClassID Stream.Save ", "GetClassID Stream.Load "},
        {{}, "", ""},
    };
    for (const Row& row : rows) {
        script.offered = row.offered;
        EXPECT_EQ(callsOf([&] { EXPECT_EQ(save(h), ""); }), row.saving);
        EXPECT_EQ(callsOf([&] { EXPECT_EQ(load(h), ""); }), row.loading);
    }
    script.offered = {};
    EXPECT_EQ(save(h, "none.bin"), "");
    EXPECT_FALSE(std::filesystem::exists(folder.file("none.bin")));
}

TEST_F(Persisting, IsAnErrorWhereTheServerCannotEvenSayWhatItOffers) {
    const std::pair<HRESULT, const char*> rows[] = {{E_NOINTERFACE, ""},
                                                    {E_NOTIMPL, ""},
                                                    {E_FAIL, serializationError},
                                                    {E_OUTOFMEMORY, serializationError}};
    for (const auto& [refusal, error] : rows) {
        script.refusal = refusal;
        EXPECT_EQ(save(h), error);
        EXPECT_EQ(load(h), error);
    }
    EXPECT_EQ(folder.names(), std::vector<std::string>());
    // One that lacks the first interface in such a way is asked for the next.
    script.offered = {IID_IPersistStorage};
    EXPECT_EQ(save(h), "");
    EXPECT_EQ(load(h), "");
}

TEST_F(Persisting, GetsAStorageThatIsOpenedAsItsFileNeeds) {
    script.offered = {IID_IPersistStorage};
    DWORD mode = 0;
    script.withStorage = [&](IStorage* root) {
        STATSTG stat{};
        EXPECT_EQ(root->Stat(&stat, STATFLAG_NONAME), S_OK);
        mode = stat.grfMode;
    };
    EXPECT_EQ(save(h), "");
    EXPECT_EQ(mode, DWORD{STGM_TRANSACTED | STGM_SHARE_EXCLUSIVE | STGM_READWRITE});
    EXPECT_EQ(load(h), "");
    EXPECT_EQ(mode, DWORD{STGM_TRANSACTED | STGM_SHARE_DENY_WRITE | STGM_READ});
}

TEST_F(Persisting, CanDoEverythingWithItsStorageUntilTheCallEnds) {
    script.offered = {IID_IPersistStorage};
    ComPtr<IStorage> kept;
    script.withStorage = [&](IStorage* root) {
        constexpr DWORD mode = STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE;
        ComPtr<IStorage> sub;
        ASSERT_EQ(root->CreateStorage(OLESTR("sub"), mode, 0, 0, sub.put()), S_OK);
        ComPtr<IStream> stream;
        ASSERT_EQ(sub->CreateStream(OLESTR("inner"), mode, 0, 0, stream.put()), S_OK);
        ASSERT_EQ(root->CreateStream(OLESTR("gone"), mode, 0, 0, stream.put()), S_OK);
        stream.reset();
        sub.reset();
        EXPECT_EQ(root->DestroyElement(OLESTR("gone")), S_OK);
        EXPECT_EQ(root->RenameElement(OLESTR("sub"), OLESTR("renamed")), S_OK);
        EXPECT_EQ(root->OpenStorage(OLESTR("renamed"), nullptr,
                                    STGM_READWRITE | STGM_SHARE_EXCLUSIVE, nullptr, 0, sub.put()),
                  S_OK);
        ComPtr<IEnumSTATSTG> elements;
        EXPECT_EQ(root->EnumElements(0, nullptr, 0, elements.put()), S_OK);
        kept = platform::queryInterface<IStorage>(root, IID_IStorage);
        EXPECT_TRUE(kept);
        // What else a storage offers, here and elsewhere.
        constexpr IID properties = {0x0000013A, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
        const auto offers = [&](IStorage* storage) {
            return static_cast<bool>(platform::queryInterface<IUnknown>(storage, properties));
        };
        ComPtr<IStorage> copy;
        ASSERT_EQ(StgCreateDocfile(folder.path("copy.bin").c_str(), mode, 0, copy.put()), S_OK);
        EXPECT_EQ(offers(root), offers(copy.get()));
        sub.reset();
        EXPECT_EQ(root->CopyTo(0, nullptr, nullptr, copy.get()), S_OK);
        EXPECT_EQ(copy->DestroyElement(OLESTR("renamed")), S_OK);
        EXPECT_FALSE(platform::queryInterface<IStream>(root, IID_IStream));
    };
    EXPECT_EQ(save(h), "");
    EXPECT_EQ(kept->Commit(STGC_DEFAULT), STG_E_REVERTED);
    EXPECT_EQ(kept->Revert(), STG_E_REVERTED);
    EXPECT_EQ(kept->DestroyElement(OLESTR("renamed")), STG_E_REVERTED);

    script.withStorage = [&](IStorage* root) {
        ComPtr<IStorage> sub;
        EXPECT_EQ(root->OpenStorage(OLESTR("renamed"), nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE,
                                    nullptr, 0, sub.put()),
                  S_OK);
        EXPECT_EQ(root->OpenStorage(OLESTR("sub"), nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE,
                                    nullptr, 0, sub.put()),
                  STG_E_FILENOTFOUND);
    };
    EXPECT_EQ(load(h), "");
}

TEST_F(Persisting, CountsEveryResultButZeroAsAFailureAndOneOfThemAsSuccess) {
    struct Row {
        IID offered;
        const char* call;
        HRESULT result;
        bool isLoad;
        bool isError;
        const char* calls;
    };
    const Row rows[] = {
        {IID_IPersistFile, "File.Save", S_FALSE, false, true, "File.Save "},
        {IID_IPersistFile, "File.Save", E_INVALIDARG, false, true, "File.Save "},
        {IID_IPersistFile, "File.Load", E_FAIL, true, true, "File.Load "},
        {IID_IPersistStorage, "Storage.Save", S_FALSE, false, true, "GetClassID Storage.Save "},
        {IID_IPersistStorage, "Storage.Save", E_FAIL, false, true, "GetClassID Storage.Save "},
        {IID_IPersistStorage, "Storage.Save", E_INVALIDARG, false, false,
         "GetClassID Storage.Save "},
        {IID_IPersistStorage, "Completed", E_FAIL, false, true,
         "GetClassID Storage.Save Completed "},
        {IID_IPersistStorage, "Completed", E_INVALIDARG, false, false,
         "GetClassID Storage.Save Completed "},
        {IID_IPersistStorage, "Storage.Load", E_INVALIDARG, true, false, "Storage.Load "},
        {IID_IPersistStorage, "Storage.Load", E_FAIL, true, true, "Storage.Load "},
        {IID_IPersistStorage, "Storage.Load", S_FALSE, true, false, "Storage.Load HandsOff "},
        {IID_IPersistStorage, "HandsOff", S_FALSE, true, true, "Storage.Load HandsOff "},
        {IID_IPersistStream, "Stream.Save", S_FALSE, false, true, "GetClassID Stream.Save "},
        {IID_IPersistStreamInit, "Stream.Save", S_FALSE, false, true, "GetClassID Stream.Save "},
        {IID_IPersistStream, "GetClassID", E_NOTIMPL, false, true, "GetClassID "},
        {IID_IPersistStreamInit, "GetClassID", E_NOTIMPL, false, true, "GetClassID "},
        {IID_IPersistStream, "Stream.Load", E_INVALIDARG, true, true, "GetClassID Stream.Load "},
        {IID_IPersistStream, "Stream.Load", S_FALSE, true, true, "GetClassID Stream.Load "},
    };
    for (const Row& row : rows) {
        script.results.clear();
        script.offered = {row.offered};
        ASSERT_EQ(save(h), "");
        script.results = {{row.call, row.result}};
        const auto act = [&] {
            EXPECT_EQ(row.isLoad ? load(h) : save(h), row.isError ? serializationError : "")
                << row.call << ' ' << row.result;
        };
        EXPECT_EQ(callsOf(act), row.calls) << row.call << ' ' << row.result;
        EXPECT_TRUE(isUsable());
    }
}

TEST_F(Persisting, IsRefusedByTheFileWhateverTheCodeIs) {
    script.offered = {IID_IPersistStorage};
    EXPECT_EQ(callsOf([&] { EXPECT_EQ(load(h, "missing.bin"), serializationError); }), "");
    EXPECT_EQ(callsOf([&] { EXPECT_EQ(save(h, "missing/a.bin"), serializationError); }), "");
    EXPECT_EQ(callsOf([&] { EXPECT_EQ(errorIn(h, "save", text("")), serializationError); }), "");
}

// A server that stops in the middle of what it writes or reads, in every way there is.
class Failing : public Persisting {
  protected:
    // Runs `test` with a saved file and a server that fails in that way from now on.
    void inEveryWay(const std::function<void()>& test) {
        const std::pair<const char*, std::function<void()>> ends[] = {
            {"an error", [] {}},
            {"a fault", [] { sample::writeThroughNull(); }},
            {"an exception", [] { sample::throwException(); }},
        };
        for (const IID& iid :
             {IID_IPersistFile, IID_IPersistStorage, IID_IPersistStreamInit, IID_IPersistStream})
            for (const auto& [name, end] : ends) {
                SCOPED_TRACE(name);
                succeedAgain(iid);
                EXPECT_EQ(save(h), "");
                failFromNowOn(end);
                test();
                succeedAgain(iid);
                EXPECT_EQ(save(h), "");
                EXPECT_EQ(load(h), "");
                EXPECT_TRUE(std::filesystem::remove(folder.file("a.bin")));
                stream_.reset();
                storage_.reset();
            }
    }

  private:
    void succeedAgain(const IID& iid) {
        script = {};
        script.offered = {iid};
        script.withFile = [this](LPCOLESTR) { folder.write("a.bin", "the server's"); };
    }

    // What the server holds when it fails stays held.
    void failFromNowOn(const std::function<void()>& end) {
        for (const char* call : {"File.Save", "File.Load", "Storage.Save", "Storage.Load",
                                 "Stream.Save", "Stream.Load"})
            script.results[call] = E_FAIL;
        script.withFile = [end](LPCOLESTR) { end(); };
        script.withStorage = [this, end](IStorage* given) {
            storage_ = ComPtr<IStorage>::borrow(given);
            given->CreateStream(OLESTR("half"), writing, 0, 0, stream_.put());
            if (stream_) stream_->Write("half", 4, nullptr);
            end();
        };
        script.withStream = [this, end](IStream* given) {
            stream_ = ComPtr<IStream>::borrow(given);
            stream_->Write("half", 4, nullptr);
            end();
        };
    }

    ComPtr<IStream> stream_;
    ComPtr<IStorage> storage_;
};

TEST_F(Failing, IsAnErrorAfterWhichItGoesOnAndHoldsNoFile) {
    inEveryWay([this] {
        EXPECT_EQ(save(h), serializationError);
        EXPECT_TRUE(isUsable());
        EXPECT_EQ(load(h), serializationError);
        EXPECT_TRUE(isUsable());
    });
}

TEST_F(Failing, LeavesTheOldFile) {
    inEveryWay([this] {
        const std::string before = folder.read("a.bin");
        save(h);
        EXPECT_TRUE(folder.read("a.bin") == before);
        load(h);
        EXPECT_TRUE(folder.read("a.bin") == before);
        EXPECT_EQ(folder.names(), std::vector<std::string>{"a.bin"});
    });
}

TEST_F(Persisting, FindsWhatItKeepsBeyondTheCallTakenBack) {
    script.offered = {IID_IPersistStorage};
    ComPtr<IStorage> storage;
    ComPtr<IStream> stream;
    script.withStorage = [&](IStorage* given) {
        storage = ComPtr<IStorage>::borrow(given);
        EXPECT_EQ(given->CreateStream(OLESTR("s"), writing, 0, 0, stream.put()), S_OK);
        EXPECT_EQ(stream->Write("text", 4, nullptr), S_OK);
    };
    EXPECT_EQ(save(h), "");
    ULONG count = 0;
    EXPECT_EQ(stream->Write("x", 1, &count), STG_E_REVERTED);
    STATSTG stat{};
    EXPECT_EQ(storage->Stat(&stat, STATFLAG_NONAME), STG_E_REVERTED);
    EXPECT_EQ(storage->SetClass(CLSID{}), STG_E_REVERTED);
    EXPECT_EQ(storage->Commit(STGC_DEFAULT), STG_E_REVERTED);

    script.withStorage = [&](IStorage* given) {
        storage = ComPtr<IStorage>::borrow(given);
        EXPECT_EQ(given->OpenStream(OLESTR("s"), nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE, 0,
                                    stream.put()),
                  S_OK);
        char bytes[4] = {};
        EXPECT_EQ(stream->Read(bytes, 4, &count), S_OK);
        EXPECT_EQ(std::string(bytes, count), "text");
        CLSID clsid{};
        EXPECT_EQ(ReadClassStg(given, &clsid), S_OK);
        EXPECT_TRUE(IsEqualCLSID(clsid, PersistingServer::clsid()));
    };
    EXPECT_EQ(load(h), "");
    EXPECT_EQ(storage->Stat(&stat, STATFLAG_NONAME), STG_E_REVERTED);
    EXPECT_TRUE(std::filesystem::remove(folder.file("a.bin")));
}

TEST_F(Persisting, IsHeldWhileItIsAskedThoughItsObjectEnds) {
    const Array path = text(folder.narrowPath("a.bin"));
    const std::pair<const char*, std::vector<const hxArray*>> rows[] = {
        {"save", {path.get()}}, {"load", {path.get()}}, {"propedit", {}}, {"interfaces", {}}};
    for (const auto& [member, inputs] : rows) {
        h = startRegistered("Test.Persisting");
        int alive = 0;
        script.whenAsked = [&] {
            alive = kit::liveObjects();
            ask(0, h, "delete");
            EXPECT_EQ(kit::liveObjects(), alive) << member;
        };
        warnings([&, name = member, inputs = inputs] { call(h, name, 0, inputs); });
        EXPECT_TRUE(isDeleted(h)) << member;
        EXPECT_EQ(kit::liveObjects(), alive - 1) << member;
    }
}

TEST_F(Persisting, OfADeletedObjectIsRefused) {
    ask(0, h, "delete");
    EXPECT_EQ(save(h), invalidHandle);
    EXPECT_EQ(load(h), invalidHandle);
}

} // namespace
