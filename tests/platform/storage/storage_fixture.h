// A folder for the files of one test, and short calls on storages.
#pragma once

#include "platform/holders.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <string>

namespace storage_test {

using platform::ComPtr;
using platform::OleString;

inline constexpr CLSID someClass = {1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}};

inline constexpr DWORD exclusive = STGM_READWRITE | STGM_SHARE_EXCLUSIVE;
inline constexpr DWORD reading = STGM_READ | STGM_SHARE_EXCLUSIVE;
// As a program that saves and one that loads open their files.
inline constexpr DWORD saving = STGM_TRANSACTED | STGM_CREATE | exclusive;
inline constexpr DWORD changing = STGM_TRANSACTED | exclusive;
inline constexpr DWORD loading = STGM_TRANSACTED | STGM_SHARE_DENY_WRITE | STGM_READ;

class StorageTest : public ::testing::Test {
  protected:
    ComPtr<IStorage> create(const std::string& name = "a.bin", DWORD mode = saving) const;
    ComPtr<IStorage> open(const std::string& name = "a.bin", DWORD mode = loading) const;
    HRESULT openResult(const std::string& name, DWORD mode = loading) const;
    // A committed file with one stream "s".
    void makeFile(const std::string& name, const std::string& content) const;

    axlink2::test::TemporaryFolder folder;
};

// Fail the test where the call fails.
ComPtr<IStream> createStream(IStorage* storage, const OLECHAR* name,
                             DWORD mode = exclusive | STGM_CREATE);
void writeStream(IStorage* storage, const OLECHAR* name, const std::string& content);
void write(IStream* stream, const std::string& content);
ComPtr<IStorage> createStorage(IStorage* storage, const OLECHAR* name, DWORD mode = exclusive);
ComPtr<IStorage> openStorage(IStorage* storage, const OLECHAR* name, DWORD mode = exclusive);

// What stands there; "?" and the result where that can't be read.
std::string readStream(IStorage* storage, const OLECHAR* name);
std::string readAll(IStream* stream);
// "s3 d" for a stream of three bytes and a storage, in the storage's order.
std::string listing(IStorage* storage);

LARGE_INTEGER offset(LONGLONG distance);
ULARGE_INTEGER size(ULONGLONG bytes);

} // namespace storage_test
