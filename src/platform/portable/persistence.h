// Streams, storages and the interfaces of objects that save themselves into them.
#pragma once

#include "platform/portable/base_types.h"
#include "platform/portable/guid.h"
#include "platform/portable/unknown.h"

using HGLOBAL = void*;

extern "C" const IID IID_ISequentialStream;
extern "C" const IID IID_IStream;
extern "C" const IID IID_IStorage;
extern "C" const IID IID_IEnumSTATSTG;
extern "C" const IID IID_IPersist;
extern "C" const IID IID_IPersistFile;
extern "C" const IID IID_IPersistStream;
extern "C" const IID IID_IPersistStreamInit;
extern "C" const IID IID_IPersistStorage;

typedef enum tagSTGTY {
    STGTY_STORAGE = 1,
    STGTY_STREAM = 2,
    STGTY_LOCKBYTES = 3,
    STGTY_PROPERTY = 4
} STGTY;

typedef enum tagSTREAM_SEEK {
    STREAM_SEEK_SET = 0,
    STREAM_SEEK_CUR = 1,
    STREAM_SEEK_END = 2
} STREAM_SEEK;

typedef enum tagSTATFLAG {
    STATFLAG_DEFAULT = 0,
    STATFLAG_NONAME = 1,
    STATFLAG_NOOPEN = 2
} STATFLAG;

typedef enum tagSTGC {
    STGC_DEFAULT = 0,
    STGC_OVERWRITE = 1,
    STGC_ONLYIFCURRENT = 2,
    STGC_DANGEROUSLYCOMMITMERELYTODISKCACHE = 4,
    STGC_CONSOLIDATE = 8
} STGC;

typedef enum tagSTGMOVE { STGMOVE_MOVE = 0, STGMOVE_COPY = 1 } STGMOVE;

#define STGM_DIRECT 0x00000000
#define STGM_TRANSACTED 0x00010000
#define STGM_SIMPLE 0x08000000
#define STGM_READ 0x00000000
#define STGM_WRITE 0x00000001
#define STGM_READWRITE 0x00000002
#define STGM_SHARE_DENY_NONE 0x00000040
#define STGM_SHARE_DENY_READ 0x00000030
#define STGM_SHARE_DENY_WRITE 0x00000020
#define STGM_SHARE_EXCLUSIVE 0x00000010
#define STGM_PRIORITY 0x00040000
#define STGM_DELETEONRELEASE 0x04000000
#define STGM_NOSCRATCH 0x00100000
#define STGM_CREATE 0x00001000
#define STGM_CONVERT 0x00020000
#define STGM_FAILIFTHERE 0x00000000
#define STGM_NOSNAPSHOT 0x00200000

typedef struct tagSTATSTG {
    LPOLESTR pwcsName;
    DWORD type;
    ULARGE_INTEGER cbSize;
    FILETIME mtime;
    FILETIME ctime;
    FILETIME atime;
    DWORD grfMode;
    DWORD grfLocksSupported;
    CLSID clsid;
    DWORD grfStateBits;
    DWORD reserved;
} STATSTG;

using SNB = LPOLESTR*;

struct ISequentialStream : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE Read(void* buffer, ULONG size, ULONG* read) = 0;
    virtual HRESULT STDMETHODCALLTYPE Write(const void* buffer, ULONG size, ULONG* written) = 0;
};

struct IStream : ISequentialStream {
    virtual HRESULT STDMETHODCALLTYPE Seek(LARGE_INTEGER move, DWORD origin,
                                           ULARGE_INTEGER* position) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetSize(ULARGE_INTEGER size) = 0;
    virtual HRESULT STDMETHODCALLTYPE CopyTo(IStream* target, ULARGE_INTEGER size,
                                             ULARGE_INTEGER* read, ULARGE_INTEGER* written) = 0;
    virtual HRESULT STDMETHODCALLTYPE Commit(DWORD flags) = 0;
    virtual HRESULT STDMETHODCALLTYPE Revert() = 0;
    virtual HRESULT STDMETHODCALLTYPE LockRegion(ULARGE_INTEGER offset, ULARGE_INTEGER size,
                                                 DWORD lockType) = 0;
    virtual HRESULT STDMETHODCALLTYPE UnlockRegion(ULARGE_INTEGER offset, ULARGE_INTEGER size,
                                                   DWORD lockType) = 0;
    virtual HRESULT STDMETHODCALLTYPE Stat(STATSTG* stat, DWORD flags) = 0;
    virtual HRESULT STDMETHODCALLTYPE Clone(IStream** clone) = 0;
};

struct IEnumSTATSTG : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE Next(ULONG count, STATSTG* items, ULONG* fetched) = 0;
    virtual HRESULT STDMETHODCALLTYPE Skip(ULONG count) = 0;
    virtual HRESULT STDMETHODCALLTYPE Reset() = 0;
    virtual HRESULT STDMETHODCALLTYPE Clone(IEnumSTATSTG** clone) = 0;
};

struct IStorage : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE CreateStream(const OLECHAR* name, DWORD mode, DWORD reserved1,
                                                   DWORD reserved2, IStream** stream) = 0;
    virtual HRESULT STDMETHODCALLTYPE OpenStream(const OLECHAR* name, void* reserved1, DWORD mode,
                                                 DWORD reserved2, IStream** stream) = 0;
    virtual HRESULT STDMETHODCALLTYPE CreateStorage(const OLECHAR* name, DWORD mode,
                                                    DWORD reserved1, DWORD reserved2,
                                                    IStorage** storage) = 0;
    virtual HRESULT STDMETHODCALLTYPE OpenStorage(const OLECHAR* name, IStorage* priority,
                                                  DWORD mode, SNB exclude, DWORD reserved,
                                                  IStorage** storage) = 0;
    virtual HRESULT STDMETHODCALLTYPE CopyTo(DWORD excludedCount, const IID* excludedIids,
                                             SNB excludedNames, IStorage* target) = 0;
    virtual HRESULT STDMETHODCALLTYPE MoveElementTo(const OLECHAR* name, IStorage* target,
                                                    const OLECHAR* newName, DWORD flags) = 0;
    virtual HRESULT STDMETHODCALLTYPE Commit(DWORD flags) = 0;
    virtual HRESULT STDMETHODCALLTYPE Revert() = 0;
    virtual HRESULT STDMETHODCALLTYPE EnumElements(DWORD reserved1, void* reserved2,
                                                   DWORD reserved3, IEnumSTATSTG** enumerator) = 0;
    virtual HRESULT STDMETHODCALLTYPE DestroyElement(const OLECHAR* name) = 0;
    virtual HRESULT STDMETHODCALLTYPE RenameElement(const OLECHAR* name,
                                                    const OLECHAR* newName) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetElementTimes(const OLECHAR* name, const FILETIME* created,
                                                      const FILETIME* accessed,
                                                      const FILETIME* modified) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetClass(REFCLSID clsid) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetStateBits(DWORD bits, DWORD mask) = 0;
    virtual HRESULT STDMETHODCALLTYPE Stat(STATSTG* stat, DWORD flags) = 0;
};

struct IPersist : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE GetClassID(CLSID* clsid) = 0;
};

struct IPersistStream : IPersist {
    virtual HRESULT STDMETHODCALLTYPE IsDirty() = 0;
    virtual HRESULT STDMETHODCALLTYPE Load(IStream* stream) = 0;
    virtual HRESULT STDMETHODCALLTYPE Save(IStream* stream, BOOL clearDirty) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetSizeMax(ULARGE_INTEGER* size) = 0;
};

struct IPersistStreamInit : IPersist {
    virtual HRESULT STDMETHODCALLTYPE IsDirty() = 0;
    virtual HRESULT STDMETHODCALLTYPE Load(IStream* stream) = 0;
    virtual HRESULT STDMETHODCALLTYPE Save(IStream* stream, BOOL clearDirty) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetSizeMax(ULARGE_INTEGER* size) = 0;
    virtual HRESULT STDMETHODCALLTYPE InitNew() = 0;
};

struct IPersistStorage : IPersist {
    virtual HRESULT STDMETHODCALLTYPE IsDirty() = 0;
    virtual HRESULT STDMETHODCALLTYPE InitNew(IStorage* storage) = 0;
    virtual HRESULT STDMETHODCALLTYPE Load(IStorage* storage) = 0;
    virtual HRESULT STDMETHODCALLTYPE Save(IStorage* storage, BOOL sameAsLoad) = 0;
    virtual HRESULT STDMETHODCALLTYPE SaveCompleted(IStorage* storage) = 0;
    virtual HRESULT STDMETHODCALLTYPE HandsOffStorage() = 0;
};

struct IPersistFile : IPersist {
    virtual HRESULT STDMETHODCALLTYPE IsDirty() = 0;
    virtual HRESULT STDMETHODCALLTYPE Load(LPCOLESTR fileName, DWORD mode) = 0;
    virtual HRESULT STDMETHODCALLTYPE Save(LPCOLESTR fileName, BOOL remember) = 0;
    virtual HRESULT STDMETHODCALLTYPE SaveCompleted(LPCOLESTR fileName) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetCurFile(LPOLESTR* fileName) = 0;
};

extern "C" {
// Compound files. The whole file is kept in memory. A transacted root reaches the disk with Commit
// and not before, also when the file is new; one that isn't transacted with Commit and with its
// last release. The file is written beside the old one and takes its place, so that a failure
// leaves the old one. Sharing is watched within the process only. A null path, STGM_SIMPLE,
// STGM_PRIORITY, STGM_CONVERT and STGM_DELETEONRELEASE aren't offered. A file that isn't a compound
// file answers STG_E_FILEALREADYEXISTS; one that is damaged, STG_E_DOCFILECORRUPT.
HRESULT StgCreateDocfile(const OLECHAR* path, DWORD mode, DWORD reserved, IStorage** storage);
HRESULT StgOpenStorage(const OLECHAR* path, IStorage* priority, DWORD mode, SNB exclude,
                       DWORD reserved, IStorage** storage);

// A stream in memory of its own; `memory` must be null.
HRESULT CreateStreamOnHGlobal(HGLOBAL memory, BOOL deleteOnRelease, IStream** stream);

HRESULT WriteClassStg(IStorage* storage, REFCLSID clsid);
HRESULT ReadClassStg(IStorage* storage, CLSID* clsid);
HRESULT WriteClassStm(IStream* stream, REFCLSID clsid);
// A stream that ends before answers STG_E_READFAULT.
HRESULT ReadClassStm(IStream* stream, CLSID* clsid);

// The object's class and state, and for OleSave the commit; the first result other than S_OK ends
// it and is the answer, so that only what was saved as a whole is committed.
HRESULT OleSave(IPersistStorage* object, IStorage* storage, BOOL sameAsLoad);
HRESULT OleSaveToStream(IPersistStream* object, IStream* stream);
}
