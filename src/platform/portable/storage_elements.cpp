// Going through the elements of a storage: the enumerator, and copies into another storage.
#include "platform/counted.h"
#include "platform/portable/activation.h"
#include "platform/portable/storage.h"
#include "platform/portable/storage_calls.h"

#include <algorithm>

namespace platform {

namespace {

using Elements = std::shared_ptr<const std::vector<ElementDescription>>;

class ElementEnumerator final : public CountedInterface<IEnumSTATSTG> {
  public:
    ElementEnumerator(Elements elements, std::size_t position)
        : elements_(std::move(elements)), position_(position) {}

    HRESULT STDMETHODCALLTYPE Next(ULONG count, STATSTG* items, ULONG* fetched) override {
        if (fetched) *fetched = 0;
        if (!items) return STG_E_INVALIDPOINTER;
        if (!fetched && count != 1) return STG_E_INVALIDPARAMETER;
        ULONG given = 0;
        for (; given < count && position_ < elements_->size(); ++given, ++position_) {
            const ElementDescription& element = (*elements_)[position_];
            const HRESULT hr = describe(&items[given], STATFLAG_DEFAULT, element.type, element.name,
                                        0, element.size, element.clsid);
            if (FAILED(hr)) {
                while (given > 0)
                    CoTaskMemFree(items[--given].pwcsName);
                return hr;
            }
        }
        if (fetched) *fetched = given;
        return given == count ? S_OK : S_FALSE;
    }

    HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
        const std::size_t left = elements_->size() - position_;
        position_ += std::min<std::size_t>(count, left);
        return count <= left ? S_OK : S_FALSE;
    }

    HRESULT STDMETHODCALLTYPE Reset() override {
        position_ = 0;
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE Clone(IEnumSTATSTG** clone) override {
        if (!clone) return STG_E_INVALIDPOINTER;
        *clone = nullptr;
        return withoutRaising([&] {
            *clone = makeElementEnumerator(elements_, position_).detach();
            return S_OK;
        });
    }

  private:
    bool isOffered(REFIID iid) const override { return iid == IID_IEnumSTATSTG; }

    Elements elements_;
    std::size_t position_;
};

// A description whose name is given back at the end.
struct Description {
    Description() = default;
    Description(const Description&) = delete;
    Description& operator=(const Description&) = delete;
    ~Description() { CoTaskMemFree(stat.pwcsName); }

    STATSTG stat{};
};

bool isNamedIn(SNB names, OleView name) {
    for (; names && *names; ++names)
        if (equalNoCase(*names, name)) return true;
    return false;
}

constexpr DWORD readMode = STGM_READ | STGM_SHARE_EXCLUSIVE;
constexpr DWORD writeMode = STGM_READWRITE | STGM_SHARE_EXCLUSIVE;

HRESULT copyStream(IStorage* source, const OLECHAR* name, IStorage* target, const OLECHAR* newName,
                   DWORD creating) {
    ComPtr<IStream> from;
    ComPtr<IStream> to;
    HRESULT hr = source->OpenStream(name, nullptr, readMode, 0, from.put());
    if (SUCCEEDED(hr)) hr = target->CreateStream(newName, writeMode | creating, 0, 0, to.put());
    ULARGE_INTEGER all;
    all.QuadPart = ~ULONGLONG{0};
    return SUCCEEDED(hr) ? from->CopyTo(to.get(), all, nullptr, nullptr) : hr;
}

// With STGM_CREATE an inner storage that is there already takes the elements in.
HRESULT copyStorage(IStorage* source, const OLECHAR* name, IStorage* target, const OLECHAR* newName,
                    DWORD creating) {
    ComPtr<IStorage> from;
    ComPtr<IStorage> to;
    HRESULT hr = source->OpenStorage(name, nullptr, readMode, nullptr, 0, from.put());
    if (FAILED(hr)) return hr;
    hr = target->CreateStorage(newName, writeMode, 0, 0, to.put());
    if (hr == STG_E_FILEALREADYEXISTS && creating)
        hr = target->OpenStorage(newName, nullptr, writeMode, nullptr, 0, to.put());
    return SUCCEEDED(hr) ? from->CopyTo(0, nullptr, nullptr, to.get()) : hr;
}

} // namespace

ComPtr<IEnumSTATSTG> makeElementEnumerator(Elements elements, std::size_t position) {
    return ComPtr<IEnumSTATSTG>::adopt(new ElementEnumerator(std::move(elements), position));
}

HRESULT copyElements(IStorage* source, IStorage* target, SNB excluded, bool withStorages,
                     bool withStreams) {
    ComPtr<IEnumSTATSTG> elements;
    HRESULT hr = source->EnumElements(0, nullptr, 0, elements.put());
    while (SUCCEEDED(hr)) {
        Description element;
        hr = elements->Next(1, &element.stat, nullptr);
        if (hr != S_OK) break;
        const OLECHAR* name = element.stat.pwcsName;
        const DWORD type = element.stat.type;
        if (isNamedIn(excluded, name) || !(type == STGTY_STREAM ? withStreams : withStorages))
            continue;
        hr = copyElement(source, name, type, target, name, STGM_CREATE);
    }
    return FAILED(hr) ? hr : S_OK;
}

HRESULT copyElement(IStorage* source, const OLECHAR* name, DWORD type, IStorage* target,
                    const OLECHAR* newName, DWORD creating) {
    return (type == STGTY_STREAM ? copyStream : copyStorage)(source, name, target, newName,
                                                             creating);
}

} // namespace platform
