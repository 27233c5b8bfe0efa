// Compound files on the disk: opening, sharing, and writing them.
#include "platform/file_replacement.h"
#include "platform/portable/compound_file.h"
#include "platform/portable/storage.h"
#include "platform/portable/storage_calls.h"

#include <algorithm>
#include <list>
#include <mutex>

namespace platform {

namespace {

namespace fs = std::filesystem;

HRESULT resultOf(const std::error_code& error) {
    struct Row {
        std::errc error;
        HRESULT result;
    };
    constexpr Row rows[] = {
        {std::errc::no_space_on_device, STG_E_MEDIUMFULL},
        {std::errc::file_too_large, STG_E_MEDIUMFULL},
        {std::errc::permission_denied, STG_E_ACCESSDENIED},
        {std::errc::operation_not_permitted, STG_E_ACCESSDENIED},
        {std::errc::read_only_file_system, STG_E_ACCESSDENIED},
        {std::errc::is_a_directory, STG_E_ACCESSDENIED},
        {std::errc::not_a_directory, STG_E_PATHNOTFOUND},
        {std::errc::no_such_file_or_directory, STG_E_FILENOTFOUND},
        {std::errc::filename_too_long, STG_E_INVALIDNAME},
        {std::errc::too_many_symbolic_link_levels, STG_E_PATHNOTFOUND},
        {std::errc::not_enough_memory, STG_E_INSUFFICIENTMEMORY},
    };
    if (!error) return S_OK;
    const auto row = std::find_if(std::begin(rows), std::end(rows), [&](const Row& r) {
        return error == std::make_error_condition(r.error);
    });
    return row == std::end(rows) ? STG_E_WRITEFAULT : row->result;
}

// One opening of a file of this process, as long as it lasts.
class Opening {
  public:
    static std::shared_ptr<Opening> tryOpen(const fs::path& file, DWORD mode) {
        auto opening = std::make_shared<Opening>(file, mode);
        const std::lock_guard lock(mutex());
        const bool isFree = std::ranges::none_of(all(), [&](const Opening* other) {
            return other->file_ == file &&
                   (other->excludes(mode) || opening->excludes(other->mode_));
        });
        if (!isFree) return nullptr;
        opening->place_ = all().insert(all().end(), opening.get());
        opening->isListed_ = true;
        return opening;
    }

    Opening(fs::path file, DWORD mode) : file_(std::move(file)), mode_(mode) {}
    Opening(const Opening&) = delete;
    Opening& operator=(const Opening&) = delete;
    ~Opening() {
        const std::lock_guard lock(mutex());
        if (isListed_) all().erase(place_);
    }

    const fs::path& file() const { return file_; }

  private:
    bool excludes(DWORD mode) const {
        const DWORD denied = sharing(mode_);
        const bool deniesReading = denied == STGM_SHARE_EXCLUSIVE || denied == STGM_SHARE_DENY_READ;
        const bool deniesWriting =
            denied == STGM_SHARE_EXCLUSIVE || denied == STGM_SHARE_DENY_WRITE;
        return (deniesReading && canRead(mode)) || (deniesWriting && canWrite(mode));
    }

    static std::mutex& mutex() {
        static std::mutex made;
        return made;
    }
    static std::list<const Opening*>& all() {
        static std::list<const Opening*> openings;
        return openings;
    }

    fs::path file_;
    DWORD mode_;
    bool isListed_ = false;
    std::list<const Opening*>::iterator place_;
};

// Without transactions nobody else may write meanwhile, and a writer wants the file alone.
bool isFileMode(DWORD mode, DWORD others) {
    if (!isMode(mode, others | STGM_TRANSACTED | STGM_NOSCRATCH | STGM_NOSNAPSHOT)) return false;
    if (mode & STGM_TRANSACTED) return true;
    return sharing(mode) == STGM_SHARE_EXCLUSIVE ||
           (!canWrite(mode) && sharing(mode) == STGM_SHARE_DENY_WRITE);
}

HRESULT checkArguments(const OLECHAR* path, DWORD reserved, IStorage** storage) {
    if (!storage) return STG_E_INVALIDPOINTER;
    *storage = nullptr;
    if (reserved) return STG_E_INVALIDPARAMETER;
    return path && *path ? S_OK : STG_E_INVALIDNAME;
}

// The same file has one name, whatever the current folder is later.
HRESULT resolve(const OLECHAR* path, fs::path& file) {
    std::error_code error;
    file = fs::weakly_canonical(fs::absolute(pathOf(path), error), error);
    return resultOf(error);
}

HRESULT writeFile(const fs::path& file, const StorageEntry& content) {
    Bytes bytes;
    const HRESULT hr = makeCompoundFile(content, bytes);
    return FAILED(hr) ? hr : resultOf(replaceFile(file, bytes));
}

ComPtr<IStorage> makeRoot(const OLECHAR* path, DWORD mode, std::shared_ptr<Opening> opening,
                          std::shared_ptr<StorageEntry> entry) {
    return makeStorage({.name = path,
                        .mode = mode,
                        .entry = std::move(entry),
                        .write = [opening = std::move(opening)](const StorageEntry& content) {
                            return writeFile(opening->file(), content);
                        }});
}

HRESULT createFile(const OLECHAR* path, DWORD mode, IStorage** storage) {
    fs::path file;
    if (const HRESULT hr = resolve(path, file); FAILED(hr)) return hr;
    if (const auto error = checkReplaceable(file)) return resultOf(error);
    std::error_code ignored;
    if (!(mode & STGM_CREATE) && fs::exists(file, ignored)) return STG_E_FILEALREADYEXISTS;
    auto opening = Opening::tryOpen(file, mode);
    if (!opening) return STG_E_SHAREVIOLATION;
    auto empty = std::make_shared<StorageEntry>();
    if (!(mode & STGM_TRANSACTED))
        if (const HRESULT hr = writeFile(file, *empty); FAILED(hr)) return hr;
    *storage =
        makeRoot(path, mode & ~DWORD{STGM_CREATE}, std::move(opening), std::move(empty)).detach();
    return S_OK;
}

HRESULT openFile(const OLECHAR* path, DWORD mode, IStorage** storage) {
    fs::path file;
    if (const HRESULT hr = resolve(path, file); FAILED(hr)) return hr;
    auto opening = Opening::tryOpen(file, mode);
    if (!opening) return STG_E_SHAREVIOLATION;
    std::error_code ignored;
    if (!fs::is_directory(file.parent_path(), ignored)) return STG_E_PATHNOTFOUND;
    Bytes bytes;
    if (const auto error = readFile(file, bytes)) return resultOf(error);
    if (canWrite(mode))
        if (const auto error = checkReplaceable(file)) return resultOf(error);
    auto content = std::make_shared<StorageEntry>();
    if (const HRESULT hr = parseCompoundFile(bytes, *content); FAILED(hr)) return hr;
    *storage = makeRoot(path, mode, std::move(opening), std::move(content)).detach();
    return S_OK;
}

} // namespace

} // namespace platform

extern "C" {

HRESULT StgCreateDocfile(const OLECHAR* path, DWORD mode, DWORD reserved, IStorage** storage) {
    if (const HRESULT hr = platform::checkArguments(path, reserved, storage); FAILED(hr)) return hr;
    if (!platform::isFileMode(mode, STGM_CREATE) || !platform::canWrite(mode))
        return STG_E_INVALIDFLAG;
    return platform::withoutRaising([&] { return platform::createFile(path, mode, storage); });
}

HRESULT StgOpenStorage(const OLECHAR* path, IStorage* priority, DWORD mode, SNB exclude,
                       DWORD reserved, IStorage** storage) {
    if (const HRESULT hr = platform::checkArguments(path, reserved, storage); FAILED(hr)) return hr;
    if (priority || exclude) return STG_E_INVALIDPARAMETER;
    if (!platform::isFileMode(mode, 0)) return STG_E_INVALIDFLAG;
    return platform::withoutRaising([&] { return platform::openFile(path, mode, storage); });
}
}
