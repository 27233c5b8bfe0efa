// IStorage over the entries of a compound file.
#include "platform/portable/storage.h"

#include "platform/counted.h"
#include "platform/portable/storage_calls.h"
#include "platform/portable/stream.h"

#include <algorithm>

namespace platform {

namespace {

bool sameContent(const StorageEntry& a, const StorageEntry& b);
bool sameContent(const StreamEntry& a, const StreamEntry& b) { return a.bytes == b.bytes; }

bool sameContent(const Element& a, const Element& b) {
    return std::visit(
        [](const auto& left, const auto& right) {
            if constexpr (std::is_same_v<decltype(left), decltype(right)>)
                return sameContent(*left, *right);
            else
                return false;
        },
        a, b);
}

bool sameContent(const StorageEntry& a, const StorageEntry& b) {
    const auto sameElement = [](const auto& left, const auto& right) {
        return left.first == right.first && sameContent(left.second, right.second);
    };
    return a.clsid == b.clsid && std::equal(a.elements.begin(), a.elements.end(),
                                            b.elements.begin(), b.elements.end(), sameElement);
}

const OpenableEntry& openable(const Element& element) {
    return std::visit([](const auto& entry) -> const OpenableEntry& { return *entry; }, element);
}

class Storage final : public CountedInterface<IStorage> {
  public:
    explicit Storage(StorageOpening opening)
        : opened_(std::move(opening)), isTransacted_((opened_.mode & STGM_TRANSACTED) != 0),
          working_(worksOnCopy() ? copyOf(*opened_.entry) : opened_.entry),
          elementsLifetime_(std::make_shared<Lifetime>(opened_.lifetime)) {
        opened_.entry->openedFor = opened_.lifetime;
    }

    HRESULT STDMETHODCALLTYPE CreateStream(const OLECHAR* name, DWORD mode, DWORD reserved1,
                                           DWORD reserved2, IStream** stream) override {
        return create(
            name, mode, STGM_CREATE, reserved1 | reserved2, stream,
            [&](auto& entry, auto lifetime) {
                return makeStream(entry, name, mode & ~DWORD{STGM_CREATE}, std::move(lifetime));
            },
            std::make_shared<StreamEntry>);
    }

    HRESULT STDMETHODCALLTYPE OpenStream(const OLECHAR* name, void* reserved1, DWORD mode,
                                         DWORD reserved2, IStream** stream) override {
        return open<StreamEntry>(name, mode, 0, reserved1 || reserved2, stream,
                                 [&](auto& entry, auto lifetime) {
                                     return makeStream(entry, name, mode, std::move(lifetime));
                                 });
    }

    HRESULT STDMETHODCALLTYPE CreateStorage(const OLECHAR* name, DWORD mode, DWORD reserved1,
                                            DWORD reserved2, IStorage** storage) override {
        if (opened_.depth >= maximumDepth) return STG_E_INSUFFICIENTMEMORY;
        return create(
            name, mode, STGM_CREATE | STGM_TRANSACTED, reserved1 | reserved2, storage,
            [&](auto& entry, auto lifetime) {
                return makeInner(name, mode & ~DWORD{STGM_CREATE}, entry, std::move(lifetime));
            },
            std::make_shared<StorageEntry>);
    }

    HRESULT STDMETHODCALLTYPE OpenStorage(const OLECHAR* name, IStorage* priority, DWORD mode,
                                          SNB exclude, DWORD reserved,
                                          IStorage** storage) override {
        return open<StorageEntry>(name, mode, STGM_TRANSACTED, priority || exclude || reserved,
                                  storage, [&](auto& entry, auto lifetime) {
                                      return makeInner(name, mode, entry, std::move(lifetime));
                                  });
    }

    HRESULT STDMETHODCALLTYPE CopyTo(DWORD excludedCount, const IID* excludedIids,
                                     SNB excludedNames, IStorage* target) override {
        if (!target || (excludedCount && !excludedIids)) return STG_E_INVALIDPOINTER;
        if (target == this) return STG_E_ACCESSDENIED;
        if (const HRESULT hr = check(true, canRead(opened_.mode)); FAILED(hr)) return hr;
        const auto isExcluded = [&](REFIID iid) {
            return std::find(excludedIids, excludedIids + excludedCount, iid) !=
                   excludedIids + excludedCount;
        };
        if (const HRESULT hr = target->SetClass(working_->clsid); FAILED(hr)) return hr;
        return copyElements(this, target, excludedNames, !isExcluded(IID_IStorage),
                            !isExcluded(IID_IStream));
    }

    HRESULT STDMETHODCALLTYPE MoveElementTo(const OLECHAR* name, IStorage* target,
                                            const OLECHAR* newName, DWORD flags) override {
        if (!target) return STG_E_INVALIDPOINTER;
        if (flags != STGMOVE_MOVE && flags != STGMOVE_COPY) return STG_E_INVALIDFLAG;
        const bool isMove = flags == STGMOVE_MOVE;
        const bool isAllowed = canRead(opened_.mode) && (!isMove || canChange());
        if (const HRESULT hr = check(true, isAllowed); FAILED(hr)) return hr;
        if (!name || !isElementName(name)) return STG_E_INVALIDNAME;
        const auto found = working_->elements.find(OleView(name));
        if (found == working_->elements.end()) return STG_E_FILENOTFOUND;
        const bool isStream = std::holds_alternative<std::shared_ptr<StreamEntry>>(found->second);
        const HRESULT hr =
            copyElement(this, name, isStream ? STGTY_STREAM : STGTY_STORAGE, target, newName, 0);
        return SUCCEEDED(hr) && isMove ? DestroyElement(name) : hr;
    }

    HRESULT STDMETHODCALLTYPE Commit(DWORD flags) override {
        constexpr DWORD known = STGC_OVERWRITE | STGC_ONLYIFCURRENT |
                                STGC_DANGEROUSLYCOMMITMERELYTODISKCACHE | STGC_CONSOLIDATE;
        if (flags & ~known) return STG_E_INVALIDFLAG;
        if (const HRESULT hr = check(true, canWrite(opened_.mode)); FAILED(hr)) return hr;
        return withoutRaising([&] { return commit(); });
    }

    HRESULT STDMETHODCALLTYPE Revert() override {
        if (const HRESULT hr = check(); FAILED(hr)) return hr;
        if (!isTransacted_ || !worksOnCopy()) return S_OK;
        return withoutRaising([&] {
            working_ = copyOf(*opened_.entry);
            elementsLifetime_->end();
            elementsLifetime_ = std::make_shared<Lifetime>(opened_.lifetime);
            return S_OK;
        });
    }

    HRESULT STDMETHODCALLTYPE EnumElements(DWORD, void*, DWORD,
                                           IEnumSTATSTG** enumerator) override {
        if (!enumerator) return STG_E_INVALIDPOINTER;
        *enumerator = nullptr;
        if (const HRESULT hr = check(true, canRead(opened_.mode)); FAILED(hr)) return hr;
        return withoutRaising([&] {
            auto elements = std::make_shared<std::vector<ElementDescription>>();
            for (const auto& [name, element] : working_->elements)
                elements->push_back(describeElement(name, element));
            *enumerator = makeElementEnumerator(std::move(elements)).detach();
            return S_OK;
        });
    }

    HRESULT STDMETHODCALLTYPE DestroyElement(const OLECHAR* name) override {
        const auto found = findForChange(name);
        if (FAILED(found.first)) return found.first;
        openable(found.second->second).close();
        working_->elements.erase(found.second);
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE RenameElement(const OLECHAR* name, const OLECHAR* newName) override {
        if (!newName || !isElementName(newName)) return STG_E_INVALIDNAME;
        const auto found = findForChange(name);
        if (FAILED(found.first)) return found.first;
        if (openable(found.second->second).isOpen()) return STG_E_ACCESSDENIED;
        const auto taken = working_->elements.find(OleView(newName));
        if (taken != working_->elements.end() && taken != found.second)
            return STG_E_FILEALREADYEXISTS;
        return withoutRaising([&] {
            OleString copy = newName;
            auto node = working_->elements.extract(found.second);
            node.key() = std::move(copy);
            working_->elements.insert(std::move(node));
            return S_OK;
        });
    }

    HRESULT STDMETHODCALLTYPE SetElementTimes(const OLECHAR*, const FILETIME*, const FILETIME*,
                                              const FILETIME*) override {
        return STG_E_UNIMPLEMENTEDFUNCTION;
    }

    HRESULT STDMETHODCALLTYPE SetClass(REFCLSID clsid) override {
        if (const HRESULT hr = check(true, canChange()); FAILED(hr)) return hr;
        working_->clsid = clsid;
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE SetStateBits(DWORD, DWORD) override {
        return STG_E_UNIMPLEMENTEDFUNCTION;
    }

    HRESULT STDMETHODCALLTYPE Stat(STATSTG* stat, DWORD flags) override {
        if (const HRESULT hr = check(); FAILED(hr)) return hr;
        return describe(stat, flags, STGTY_STORAGE, opened_.name, opened_.mode, 0, working_->clsid);
    }

  private:
    ~Storage() override {
        if (worksOnCopy() && !isTransacted_ && canWrite(opened_.mode) &&
            !opened_.lifetime->isOver())
            withoutRaising(
                [&] { return sameContent(*working_, *opened_.entry) ? S_OK : commit(); });
        elementsLifetime_->end();
        opened_.lifetime->end();
    }

    bool isOffered(REFIID iid) const override { return iid == IID_IStorage; }

    // In a transaction that is open for reading, changes are possible; to commit them isn't.
    bool canChange() const { return isTransacted_ || canWrite(opened_.mode); }

    // A storage that can't be changed needs no copy.
    bool worksOnCopy() const { return canChange() && (isTransacted_ || opened_.write != nullptr); }

    HRESULT check(bool isValid = true, bool isAllowed = true) const {
        if (opened_.lifetime->isOver()) return STG_E_REVERTED;
        if (!isValid) return STG_E_INVALIDPARAMETER;
        return isAllowed ? S_OK : STG_E_ACCESSDENIED;
    }

    // Whether an element may be opened in that way.
    HRESULT checkOpening(const OLECHAR* name, DWORD mode, DWORD flags, bool isReserved,
                         bool isWriting) const {
        if (const HRESULT hr = check(!isReserved); FAILED(hr)) return hr;
        if (!name || !isElementName(name)) return STG_E_INVALIDNAME;
        if (!isMode(mode, flags) || sharing(mode) != STGM_SHARE_EXCLUSIVE) return STG_E_INVALIDFLAG;
        // A storage gives no more than it was opened for.
        const bool isDenied =
            (isWriting && !canChange()) || (canRead(mode) && !canRead(opened_.mode) && !isWriting);
        return isDenied ? STG_E_ACCESSDENIED : S_OK;
    }

    // Opens an entry with a lifetime of its own and gives it out.
    template <class Entry, class Interface, class Make>
    HRESULT giveOpened(std::shared_ptr<Entry> entry, Interface** out, Make make) {
        auto lifetime = std::make_shared<Lifetime>(elementsLifetime_);
        entry->openedFor = lifetime;
        *out = make(entry, std::move(lifetime)).detach();
        return S_OK;
    }

    template <class Interface, class Make, class MakeEntry>
    HRESULT create(const OLECHAR* name, DWORD mode, DWORD flags, bool isReserved, Interface** out,
                   Make make, MakeEntry makeEntry) {
        if (!out) return STG_E_INVALIDPOINTER;
        *out = nullptr;
        if (const HRESULT hr = checkOpening(name, mode, flags, isReserved, true); FAILED(hr))
            return hr;
        return withoutRaising([&]() -> HRESULT {
            const auto found = working_->elements.find(OleView(name));
            const bool isThere = found != working_->elements.end();
            if (isThere && !(mode & STGM_CREATE)) return STG_E_FILEALREADYEXISTS;
            const auto entry = makeEntry();
            giveOpened(entry, out, make);
            if (isThere) {
                openable(found->second).close();
                found->second = entry;
            } else {
                working_->elements.emplace(name, entry);
            }
            return S_OK;
        });
    }

    template <class Entry, class Interface, class Make>
    HRESULT open(const OLECHAR* name, DWORD mode, DWORD flags, bool isReserved, Interface** out,
                 Make make) {
        if (!out) return STG_E_INVALIDPOINTER;
        *out = nullptr;
        if (const HRESULT hr = checkOpening(name, mode, flags, isReserved, canWrite(mode));
            FAILED(hr))
            return hr;
        return withoutRaising([&]() -> HRESULT {
            const auto found = working_->elements.find(OleView(name));
            if (found == working_->elements.end()) return STG_E_FILENOTFOUND;
            const auto* const entry = std::get_if<std::shared_ptr<Entry>>(&found->second);
            if (!entry) return STG_E_FILENOTFOUND;
            if ((*entry)->isOpen()) return STG_E_ACCESSDENIED;
            return giveOpened(*entry, out, make);
        });
    }

    ComPtr<IStorage> makeInner(const OLECHAR* name, DWORD mode, std::shared_ptr<StorageEntry> entry,
                               std::shared_ptr<Lifetime> lifetime) const {
        return makeStorage({.name = name,
                            .mode = mode,
                            .depth = opened_.depth + 1,
                            .entry = std::move(entry),
                            .write = {},
                            .lifetime = std::move(lifetime)});
    }

    HRESULT commit() {
        if (!worksOnCopy()) return S_OK;
        auto copy = copyOf(*working_);
        if (opened_.write)
            if (const HRESULT hr = opened_.write(*copy); FAILED(hr)) return hr;
        opened_.entry->clsid = copy->clsid;
        opened_.entry->elements = std::move(copy->elements);
        return S_OK;
    }

    using Elements = decltype(StorageEntry::elements);
    std::pair<HRESULT, Elements::iterator> findForChange(const OLECHAR* name) {
        const auto none = working_->elements.end();
        if (const HRESULT hr = check(true, canChange()); FAILED(hr)) return {hr, none};
        if (!name || !isElementName(name)) return {STG_E_INVALIDNAME, none};
        const auto found = working_->elements.find(OleView(name));
        return {found == none ? STG_E_FILENOTFOUND : S_OK, found};
    }

    static ElementDescription describeElement(const OleString& name, const Element& element) {
        if (const auto* stream = std::get_if<std::shared_ptr<StreamEntry>>(&element))
            return {name, STGTY_STREAM, (*stream)->bytes.size(), CLSID_NULL};
        return {name, STGTY_STORAGE, 0, std::get<std::shared_ptr<StorageEntry>>(element)->clsid};
    }

    StorageOpening opened_;
    const bool isTransacted_;
    std::shared_ptr<StorageEntry> working_;
    std::shared_ptr<Lifetime> elementsLifetime_;
};

} // namespace

ComPtr<IStorage> makeStorage(StorageOpening opening) {
    return ComPtr<IStorage>::adopt(new Storage(std::move(opening)));
}

} // namespace platform
