// The contents of .reg files in the system's registry, for as long as the program runs.
#include "platform/registry_files.h"

#include "platform/fold_case.h"
#include "platform/holders.h"
#include "platform/registry_changes.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <map>
#include <mutex>

namespace platform {
namespace {

struct KeyTraits : PointerTraits<HKEY> {
    static void close(HKEY key) noexcept {
        if (key) RegCloseKey(key);
    }
};
using ScopedKey = Holder<KeyTraits>;

// A key as the system's calls take it: a root and a path below it.
struct KeyPlace {
    HKEY root = nullptr;
    OleString path;
};

void raiseUnlessDone(LSTATUS status, const OleString& path) {
    if (status == ERROR_SUCCESS) return;
    const _com_error error(HRESULT_FROM_WIN32(static_cast<DWORD>(status)));
    throw std::runtime_error("the key \"" + toNarrow(path) +
                             "\" cannot be changed: " + toNarrow(error.ErrorMessage()));
}

// The root that takes classes. Programs that may write the machine's classes look for classes
// only there; all others have the user's.
HKEY classesRoot() {
    static const HKEY root = [] {
        ScopedKey key;
        const LSTATUS status = RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"Software\\Classes", 0,
                                             KEY_READ | KEY_WRITE, key.put());
        return status == ERROR_SUCCESS ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
    }();
    return root;
}

OleString join(RegistryPath::const_iterator begin, RegistryPath::const_iterator end) {
    OleString path;
    for (auto name = begin; name != end; ++name)
        path += (path.empty() ? L"" : L"\\") + *name;
    return path;
}

KeyPlace placeOf(const RegistryPath& path) {
    static const std::array<std::pair<OleView, HKEY>, 4> roots{
        {{L"HKEY_CURRENT_USER", HKEY_CURRENT_USER},
         {L"HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE},
         {L"HKEY_USERS", HKEY_USERS},
         {L"HKEY_CURRENT_CONFIG", HKEY_CURRENT_CONFIG}}};
    const OleString below = join(path.begin() + 1, path.end());
    for (const auto& [name, root] : roots)
        if (equalNoCase(name, path.front())) return {root, below};
    return {classesRoot(), L"Software\\Classes\\" + below};
}

// What was done, so that it can be undone: keys made, and values as they were before.
class Journal {
  public:
    ~Journal() { undoFrom(0); }

    std::size_t mark() const { return entries_.size(); }

    // Opens a key, making it and those above it where they are missing.
    ScopedKey make(const KeyPlace& place) {
        ScopedKey key;
        for (std::size_t end = 0; end != OleString::npos;) {
            end = place.path.find(L'\\', end == 0 ? 0 : end + 1);
            const KeyPlace step{place.root, place.path.substr(0, end)};
            entries_.push_back({step, std::nullopt, std::nullopt}); // so that it can't be forgotten
            DWORD disposition = REG_OPENED_EXISTING_KEY;
            const LSTATUS status =
                RegCreateKeyExW(step.root, step.path.c_str(), 0, nullptr, REG_OPTION_VOLATILE,
                                KEY_READ | KEY_WRITE, nullptr, key.put(), &disposition);
            if (status != ERROR_SUCCESS || disposition != REG_CREATED_NEW_KEY) entries_.pop_back();
            // A key on the way may be closed to writing and yet let keys be made further below.
            if (status != ERROR_ACCESS_DENIED || end == OleString::npos)
                raiseUnlessDone(status, place.path);
        }
        return key;
    }

    void set(const KeyPlace& place, HKEY key, const ValueChange& change) {
        entries_.push_back({place, change.name, read(key, change.name)});
        const LSTATUS status = write(key, change.name, change.value);
        if (status != ERROR_SUCCESS) entries_.pop_back();
        raiseUnlessDone(status, place.path);
    }

    void remove(const KeyPlace& place) {
        ScopedKey key;
        if (RegOpenKeyExW(place.root, place.path.c_str(), 0, KEY_READ, key.put()) != ERROR_SUCCESS)
            return;
        const bool isOurs = std::any_of(entries_.begin(), entries_.end(), [&](const Entry& entry) {
            return !entry.name && entry.place.root == place.root &&
                   equalNoCase(entry.place.path, place.path);
        });
        if (!isOurs) raiseUnlessDone(ERROR_ACCESS_DENIED, place.path);
        raiseUnlessDone(RegDeleteTreeW(place.root, place.path.c_str()), place.path);
    }

    void undoFrom(std::size_t mark) {
        while (entries_.size() > mark) {
            const Entry& entry = entries_.back();
            ScopedKey key;
            if (!entry.name)
                RegDeleteKeyW(entry.place.root, entry.place.path.c_str());
            else if (RegOpenKeyExW(entry.place.root, entry.place.path.c_str(), 0, KEY_WRITE,
                                   key.put()) == ERROR_SUCCESS)
                write(key.get(), *entry.name, entry.before);
            entries_.pop_back();
        }
    }

  private:
    struct Entry {
        KeyPlace place;
        std::optional<OleString> name; // of a value; none when the key was made
        std::optional<RegistryValue> before;
    };

    static std::optional<RegistryValue> read(HKEY key, const OleString& name) {
        RegistryValue value;
        DWORD size = 0;
        if (RegQueryValueExW(key, name.c_str(), nullptr, &value.type, nullptr, &size)) return {};
        value.data.resize(size);
        if (RegQueryValueExW(key, name.c_str(), nullptr, nullptr, value.data.data(), &size))
            return {};
        return value;
    }

    static LSTATUS write(HKEY key, const OleString& name,
                         const std::optional<RegistryValue>& value) {
        if (value)
            return RegSetValueExW(key, name.c_str(), 0, value->type, value->data.data(),
                                  static_cast<DWORD>(value->data.size()));
        const LSTATUS status = RegDeleteValueW(key, name.c_str());
        return status == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : status;
    }

    std::vector<Entry> entries_;
};

std::mutex journalMutex;

BOOL WINAPI clearAtInterrupt(DWORD) {
    clearRegistry();
    return FALSE; // the next handler ends the program
}

Journal& journal() {
    static Journal journal;
    // An interrupted program doesn't run its destructors.
    static const BOOL installed = SetConsoleCtrlHandler(clearAtInterrupt, TRUE);
    static_cast<void>(installed);
    return journal;
}

void apply(Journal& journal, const std::vector<RegistryChange>& changes) {
    KeyPlace place;
    ScopedKey key;
    for (const RegistryChange& change : changes) {
        if (const auto* value = std::get_if<ValueChange>(&change)) {
            journal.set(place, key.get(), *value);
            continue;
        }
        const auto& keyChange = std::get<KeyChange>(change);
        place = placeOf(keyChange.path);
        key.reset();
        if (keyChange.remove)
            journal.remove(place);
        else
            key = journal.make(place);
    }
}

} // namespace

std::filesystem::path userDataDirectory() {
    const wchar_t* data = _wgetenv(L"LOCALAPPDATA");
    return data ? std::filesystem::path(data) : std::filesystem::path();
}

void loadRegistryFile(const std::filesystem::path& file) {
    const std::vector<RegistryChange> changes = parseRegistryFile(file);
    const std::lock_guard lock(journalMutex);
    Journal& done = journal();
    const std::size_t mark = done.mark();
    try {
        apply(done, changes);
    } catch (const std::exception& error) {
        done.undoFrom(mark);
        throw RegistryFileError(std::filesystem::absolute(file).string() + ":0: " + error.what());
    }
}

void clearRegistry() {
    const std::lock_guard lock(journalMutex);
    journal().undoFrom(0);
}

} // namespace platform
