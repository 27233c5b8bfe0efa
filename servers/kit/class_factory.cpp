// Class factories and registrations.
#include "servers/kit/class_factory.h"

#include "platform/counted.h"
#include "platform/registry_files.h"
#include "platform/text.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <random>

namespace kit {

namespace {

std::atomic<int> locks = 0;

class ClassFactory final : public platform::CountedInterface<IClassFactory>, LiveObject {
  public:
    explicit ClassFactory(std::function<platform::ComPtr<IDispatch>()> make)
        : LiveObject("ClassFactory"), make_(std::move(make)) {}

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
        if (!object) return E_POINTER;
        *object = nullptr;
        if (outer) return CLASS_E_NOAGGREGATION;
        return answer([&] {
            const auto made = make_();
            return made ? made->QueryInterface(iid, object) : E_FAIL;
        });
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
        locks += lock ? 1 : -1;
        return S_OK;
    }

  private:
    bool isOffered(REFIID iid) const override { return iid == IID_IClassFactory; }

    std::function<platform::ComPtr<IDispatch>()> make_;
};

std::string textOf(const CLSID& clsid) {
    std::array<OLECHAR, 39> text{};
    StringFromGUID2(clsid, text.data(), static_cast<int>(text.size()));
    return platform::toNarrow(text.data());
}

// A file that is gone at the end.
class TemporaryFile {
  public:
    explicit TemporaryFile(const std::string& content)
        : path_(std::filesystem::temp_directory_path() /
                ("axlink2-" + std::to_string(std::random_device()()) + ".reg")) {
        std::ofstream(path_, std::ios::binary) << content;
    }
    TemporaryFile(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }
    const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
};

} // namespace

platform::ComPtr<IClassFactory>
makeClassFactory(std::function<platform::ComPtr<IDispatch>()> make) {
    return platform::ComPtr<IClassFactory>::adopt(new ClassFactory(std::move(make)));
}

HRESULT getClassObject(std::span<const ServedClass> classes, REFCLSID clsid, REFIID iid,
                       void** object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    const auto found = std::ranges::find(classes, clsid, &ServedClass::clsid);
    if (found == classes.end()) return CLASS_E_CLASSNOTAVAILABLE;
    return answer([&] { return makeClassFactory(found->make)->QueryInterface(iid, object); });
}

HRESULT canUnloadNow() { return liveObjects() == 0 && locks == 0 ? S_OK : S_FALSE; }

ClassRegistration::ClassRegistration(const CLSID& clsid,
                                     std::function<platform::ComPtr<IDispatch>()> make) {
    const auto factory = makeClassFactory(std::move(make));
    check(CoRegisterClassObject(clsid, factory.get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                                &cookie_));
}

ClassRegistration::~ClassRegistration() { CoRevokeClassObject(cookie_); }

void registerProgId(const std::string& progId, const CLSID& clsid) {
    const std::string text = textOf(clsid);
    const TemporaryFile file("Windows Registry Editor Version 5.00\r\n\r\n"
                             "[HKEY_CLASSES_ROOT\\" +
                             progId + "\\CLSID]\r\n@=\"" + text +
                             "\"\r\n\r\n"
                             "[HKEY_CLASSES_ROOT\\CLSID\\" +
                             text + "\\ProgID]\r\n@=\"" + progId + "\"\r\n");
    platform::loadRegistryFile(file.path());
}

} // namespace kit
