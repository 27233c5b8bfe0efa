// Each function of the COM layer with each of its allocations failing once: it answers its code,
// raises nothing, leaves nothing behind, and works when it is called again.
#include "platform/registry_files.h"
#include "platform/registry_key.h"
#include "platform/typeinfo_holders.h"
#include "servers/kit/kit.h"
#include "servers/sample/identities.h"
#include "support/registry_keys.h"
#include "support/temporary_folder.h"
#include "torture/points.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

namespace platform {
namespace {

using axlink2::test::registryKey;

// Results of any kind; a pointer counts as 1.
using Result = std::int64_t;

struct Row {
    const char* name;
    std::function<Result()> call; // gives back what it got
    Result right = S_OK;
    Result noMemory = E_OUTOFMEMORY;
    std::vector<Result> orElse = {}; // for what a library below it didn't get
};

// A call with an out-parameter, whose value is given back.
template <class Holder, class Call>
std::function<Result()> into(Call call) {
    return [call] {
        Holder made;
        return Result{call(made.put())};
    };
}

// A call that gives a new text or array.
template <class Holder, class Call>
std::function<Result()> making(Call call) {
    return [call] { return Result{Holder::adopt(call()) ? 1 : 0}; };
}

template <class Out>
void** untyped(Out* out) {
    return reinterpret_cast<void**>(out);
}

LPOLESTR text(const OLECHAR* fixed) { return const_cast<LPOLESTR>(fixed); }

constexpr CLSID server = sample::serverClass;
constexpr CLSID plainClass = {0x6F1C0C0E, 0x3A52, 0x4D0B, {0x9A, 0x53, 1, 2, 3, 4, 5, 6}};
constexpr GUID standardLibrary = {0x00020430, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
// Longer than what a string holds in itself.
constexpr OleView words = OLESTR("words that are longer than any small string");
constexpr auto wordCount = static_cast<int>(words.size());

class ExhaustedMemory : public ::testing::Test {
  protected:
    ExhaustedMemory() {
        clearRegistry();
        loadRegistryFile(std::filesystem::path(SAMPLE_LIBRARY).parent_path() / "sample_server.reg");
        OLECHAR id[39];
        StringFromGUID2(plainClass, id, 39);
        axlink2::test::registerKeys(
            registryKey("CLSID\\" + toNarrow(id) + "\\InprocServer32", PLAIN_LIBRARY));
        CoInitialize(nullptr);
    }
    ~ExhaustedMemory() override {
        CoUninitialize();
        clearRegistry();
    }

    // Fails each allocation in turn; gives how many there were.
    static int tryEach(const Row& row) {
        EXPECT_EQ(row.call(), row.right) << row.name; // what is made once is there
        auto& memory = torture::anyMemory;
        for (int point = 0;; ++point) {
            memory.failingCall = point;
            memory.calls = 0;
            memory.counting = true;
            const Result result = row.call();
            memory.counting = false;
            if (memory.calls <= point) return point;
            EXPECT_TRUE(result == row.noMemory || std::ranges::count(row.orElse, result))
                << row.name << ", allocation " << point << ": " << std::hex << result;
            EXPECT_EQ(row.call(), row.right) << row.name << ", behind allocation " << point;
        }
    }

    static void tryAll(const std::vector<Row>& rows) {
        for (const Row& row : rows) {
            [[maybe_unused]] const int points = tryEach(row);
#ifndef __SANITIZE_ADDRESS__ // where malloc doesn't fail
            EXPECT_GT(points, 0) << row.name;
#endif
        }
    }
};

TEST_F(ExhaustedMemory, isTheAnswerOfTheRegistry) {
    const RegistryKey classes = openKey(HKEY_CLASSES_ROOT, OLESTR("CLSID"));
    HKEY key = classes.get();
    OLECHAR name[64];
    DWORD size = 0;
    const Result none = ERROR_NOT_ENOUGH_MEMORY;
    tryAll({{"RegOpenKeyExW", into<RegistryKey>([&](HKEY* opened) {
                 return RegOpenKeyExW(key, OLESTR(""), 0, KEY_READ, opened);
             }),
             ERROR_SUCCESS, none},
            {"RegEnumKeyExW",
             [&] {
                 size = 64;
                 return RegEnumKeyExW(key, 0, name, &size, nullptr, nullptr, nullptr, nullptr);
             },
             ERROR_SUCCESS, none},
            {"RegQueryValueExW",
             [&] { return RegQueryValueExW(key, OLESTR("?"), nullptr, nullptr, nullptr, nullptr); },
             ERROR_FILE_NOT_FOUND, none}});
}

TEST_F(ExhaustedMemory, isTheAnswerOfClassNamesAndActivation) {
    const auto object = kit::makeClassFactory([]() -> ComPtr<IDispatch> { return {}; });
    constexpr const OLECHAR* progId = OLESTR("Sample.Server.1");
    CLSID found;
    using Unknown = ComPtr<IUnknown>;
    const auto classObject = [](const CLSID& clsid) {
        return into<Unknown>([&clsid](IUnknown** out) {
            return CoGetClassObject(clsid, CLSCTX_ALL, nullptr, IID_IUnknown, untyped(out));
        });
    };
    const auto registering = [&](auto enter, auto revoke) {
        return [=] {
            DWORD cookie = 0;
            const HRESULT hr = enter(&cookie);
            if (SUCCEEDED(hr)) revoke(cookie);
            return hr;
        };
    };
    tryAll({{"CLSIDFromProgID", [&] { return CLSIDFromProgID(progId, &found); }},
            {"CLSIDFromString", [&] { return CLSIDFromString(progId, &found); }},
            {"ProgIDFromCLSID",
             [] {
                 LPOLESTR given = nullptr;
                 const HRESULT hr = ProgIDFromCLSID(server, &given);
                 CoTaskMemFree(given);
                 return hr;
             }},
            {"CoGetClassObject", classObject(server)},
            {"CoGetClassObject, of what is no server",
             classObject(plainClass),
             CO_E_DLLNOTFOUND,
             E_OUTOFMEMORY,
             {HRESULT_FROM_WIN32(ERROR_MOD_NOT_FOUND), CO_E_DLLNOTFOUND}},
            {"CoCreateInstance", into<Unknown>([](IUnknown** out) {
                 return CoCreateInstance(server, nullptr, CLSCTX_ALL, IID_IUnknown, untyped(out));
             })},
            {"CoCreateInstanceEx", into<Unknown>([](IUnknown** out) {
                 MULTI_QI wanted{&IID_IUnknown, nullptr, S_OK};
                 const HRESULT hr =
                     CoCreateInstanceEx(server, nullptr, CLSCTX_ALL, nullptr, 1, &wanted);
                 *out = wanted.pItf;
                 return hr;
             })},
            {"CoRegisterClassObject", registering(
                                          [&](DWORD* cookie) {
                                              return CoRegisterClassObject(
                                                  plainClass, object.get(), CLSCTX_ALL,
                                                  REGCLS_MULTIPLEUSE, cookie);
                                          },
                                          CoRevokeClassObject)},
            {"RegisterActiveObject",
             registering(
                 [&](DWORD* cookie) {
                     return RegisterActiveObject(object.get(), plainClass, 0, cookie);
                 },
                 [](DWORD cookie) { RevokeActiveObject(cookie, nullptr); })}});
    // What could not be registered is not kept.
    object->AddRef();
    EXPECT_EQ(object->Release(), 1u);
}

TEST_F(ExhaustedMemory, isTheAnswerOfTextsAndArrays) {
    using Variant = ScopedVariant;
    const ScopedBstr source = makeBstr(words);
    ScopedSafeArray bytes;
    ASSERT_EQ(VectorFromBstr(source.get(), bytes.put()), S_OK);
    VARIANT value{};
    value.vt = VT_BSTR;
    value.bstrVal = source.get();
    VARIANT number{};
    number.vt = VT_R8;
    number.dblVal = -1.0 / 3;
    SAFEARRAYBOUND bound{3, 0};
    LONG index = 0;
    const auto texts = ScopedSafeArray::adopt(SafeArrayCreate(VT_BSTR, 1, &bound));
    ASSERT_EQ(SafeArrayPutElement(texts.get(), &index, source.get()), S_OK);
    char narrow[100];
    OLECHAR wide[200];
    const auto narrowWords = toNarrow(words);
    tryAll(
        {{"SysAllocString", making<ScopedBstr>([] { return SysAllocString(words.data()); }), 1, 0},
         {"SysReAllocString",
          into<ScopedBstr>([](BSTR* out) { return SysReAllocString(out, words.data()); }), 1, 0},
         {"SafeArrayCreate",
          making<ScopedSafeArray>([&] { return SafeArrayCreate(VT_I4, 1, &bound); }), 1, 0},
         {"SafeArrayCreateVector",
          making<ScopedSafeArray>([] { return SafeArrayCreateVector(VT_I4, 0, 3); }), 1, 0},
         {"SafeArrayCopy",
          into<ScopedSafeArray>([&](SAFEARRAY** out) { return SafeArrayCopy(texts.get(), out); })},
         {"SafeArrayGetElement", into<ScopedBstr>([&](BSTR* out) {
              return SafeArrayGetElement(texts.get(), &index, out);
          })},
         {"SafeArrayPutElement",
          [&] { return SafeArrayPutElement(texts.get(), &index, source.get()); }},
         {"VectorFromBstr", into<ScopedSafeArray>([&](SAFEARRAY** out) {
              return VectorFromBstr(source.get(), out);
          })},
         {"BstrFromVector",
          into<ScopedBstr>([&](BSTR* out) { return BstrFromVector(bytes.get(), out); })},
         {"VariantCopy", into<Variant>([&](VARIANT* out) { return VariantCopy(out, &value); })},
         {"VariantChangeType",
          into<Variant>([&](VARIANT* out) { return VariantChangeType(out, &number, 0, VT_BSTR); })},
         {"FormatMessageW",
          [&] {
              return FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, 0, 0, wide, 200, nullptr) >
                     0;
          },
          1, 0},
         {"WideCharToMultiByte",
          [&] {
              return WideCharToMultiByte(CP_ACP, 0, words.data(), wordCount, narrow, 100, nullptr,
                                         nullptr);
          },
          wordCount, 0},
         {"MultiByteToWideChar",
          [&] { return MultiByteToWideChar(CP_UTF8, 0, narrowWords.data(), wordCount, wide, 200); },
          wordCount, 0}});
    EXPECT_EQ(GetLastError(), ERROR_NOT_ENOUGH_MEMORY);
}

TEST_F(ExhaustedMemory, isTheAnswerOfTypeInformation) {
    using Library = ComPtr<ICreateTypeLib2>;
    using Type = ComPtr<ICreateTypeInfo>;
    TYPEDESC pointed{.lptdesc = nullptr, .vt = VT_I4};
    TYPEDESC pointer{.lptdesc = &pointed, .vt = VT_PTR};
    FUNCDESC function{};
    function.funckind = FUNC_DISPATCH;
    function.elemdescFunc.tdesc = pointer;
    VARDESC variable{};
    variable.varkind = VAR_DISPATCH;
    LPOLESTR name = text(words.data());
    const auto makeLibrary = [](ICreateTypeLib2** out) {
        return CreateTypeLib2(SYS_WIN64, OLESTR("x"), out);
    };
    const auto makeType = [&](TYPEKIND kind, ICreateTypeInfo** out) {
        Library library;
        const HRESULT hr = makeLibrary(library.put());
        return SUCCEEDED(hr) ? library->CreateTypeInfo(name, kind, out) : hr;
    };
    Type type;
    ASSERT_EQ(makeType(TKIND_DISPATCH, type.put()), S_OK);
    ASSERT_EQ(type->AddFuncDesc(0, &function), S_OK);
    ASSERT_EQ(type->AddVarDesc(0, &variable), S_OK);
    const auto reading = queryInterface<ITypeInfo>(type.get(), IID_ITypeInfo);
    tryAll({{"CreateTypeLib2", into<Library>(makeLibrary)},
            {"LoadRegTypeLib",
             into<ComPtr<ITypeLib>>(
                 [](ITypeLib** out) { return LoadRegTypeLib(standardLibrary, 2, 0, 0, out); }),
             S_OK,
             E_OUTOFMEMORY,
             {TYPE_E_UNDEFINEDTYPE}},
            {"CreateTypeInfo",
             into<Type>([&](ICreateTypeInfo** out) { return makeType(TKIND_ENUM, out); })},
            {"SetTypeDescAlias", into<Type>([&](ICreateTypeInfo** out) {
                 const HRESULT hr = makeType(TKIND_ALIAS, out);
                 return SUCCEEDED(hr) ? (*out)->SetTypeDescAlias(&pointer) : hr;
             })},
            {"SetFuncAndParamNames", [&] { return type->SetFuncAndParamNames(0, &name, 1); }},
            {"SetVarName", [&] { return type->SetVarName(0, name); }},
            {"SetFuncDocString", [&] { return type->SetFuncDocString(0, name); }},
            {"SetDocString", [&] { return type->SetDocString(name); }},
            {"GetTypeAttr",
             [&] {
                 TYPEATTR* attributes = nullptr;
                 const HRESULT hr = reading->GetTypeAttr(&attributes);
                 reading->ReleaseTypeAttr(attributes);
                 return hr;
             }},
            {"GetNames", into<ScopedBstr>([&](BSTR* out) {
                 UINT count = 0;
                 return reading->GetNames(0, out, 1, &count);
             })},
            {"GetDocumentation", into<ScopedBstr>([&](BSTR* out) {
                 ScopedBstr doc; // given together or not at all
                 return reading->GetDocumentation(MEMBERID_NIL, doc.put(), out, nullptr, nullptr);
             })},
            {"AddFuncDesc", [&] { return type->AddFuncDesc(1, &function); }},
            {"AddVarDesc", [&] { return type->AddVarDesc(1, &variable); }}});
    EXPECT_EQ(outstandingTypeDescriptions(), 0);
}

TEST_F(ExhaustedMemory, isTheAnswerOfStoragesAndStreams) {
    const axlink2::test::TemporaryFolder folder;
    const OleString path = folder.path("file");
    using Storage = ComPtr<IStorage>;
    constexpr DWORD writing = STGM_TRANSACTED | STGM_CREATE | STGM_SHARE_EXCLUSIVE | STGM_READWRITE;
    constexpr DWORD reading = STGM_TRANSACTED | STGM_SHARE_DENY_WRITE | STGM_READ;
    const Result none = STG_E_INSUFFICIENTMEMORY;
    tryAll({{"StgCreateDocfile",
             [&] {
                 Storage made;
                 const HRESULT hr = StgCreateDocfile(path.c_str(), writing, 0, made.put());
                 return SUCCEEDED(hr) ? made->Commit(STGC_DEFAULT) : hr;
             },
             S_OK,
             none,
             {STG_E_WRITEFAULT}},
            {"StgOpenStorage",
             into<Storage>([&](IStorage** out) {
                 return StgOpenStorage(path.c_str(), nullptr, reading, nullptr, 0, out);
             }),
             S_OK,
             none,
             {STG_E_WRITEFAULT}},
            {"CreateStreamOnHGlobal", into<ComPtr<IStream>>([](IStream** out) {
                 return CreateStreamOnHGlobal(nullptr, TRUE, out);
             })}});
}

} // namespace
} // namespace platform
