// Objects whose state a file keeps: one class for each interface through which that can be asked.
#pragma once

#include "servers/kit/dispatch_object.h"

namespace sample {

// What a document holds and how it stands in a stream.
struct DocumentState {
    platform::OleString text;
    double number = 0;

    HRESULT writeTo(IStream* stream) const;
    // STG_E_READFAULT for a stream that ends before its time; then nothing has changed.
    HRESULT readFrom(IStream* stream);
};

// The members that all documents have. Their state changes as a whole or not at all.
class DocumentBase : public kit::DispatchObject {
  public:
    platform::OleString text() const { return state_.text; }
    void setText(platform::OleString text) {
        state_.text = std::move(text);
        isDirty_ = true;
    }
    double number() const { return state_.number; }
    void setNumber(double number) {
        state_.number = number;
        isDirty_ = true;
    }

  protected:
    explicit DocumentBase(const kit::ClassDefinition& definition) : DispatchObject(definition) {}

    HRESULT read(IStream* stream);
    HRESULT write(IStream* stream, bool clearDirty);
    void markClean() { isDirty_ = false; }
    HRESULT dirtyResult() const { return isDirty_ ? S_OK : S_FALSE; }
    HRESULT giveClass(CLSID* clsid) const;

  private:
    DocumentState state_;
    bool isDirty_ = false;
};

// What every interface of persistence has in common.
template <class Interface, const IID& iid>
class Document : public DocumentBase, public Interface {
  public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID wanted, void** object) override {
        return DispatchObject::QueryInterface(wanted, object);
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return DispatchObject::AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return DispatchObject::Release(); }

    HRESULT STDMETHODCALLTYPE GetClassID(CLSID* clsid) override { return giveClass(clsid); }
    HRESULT STDMETHODCALLTYPE IsDirty() override { return dirtyResult(); }

  protected:
    using DocumentBase::DocumentBase;

  private:
    void* findInterface(REFIID wanted) override {
        return wanted == iid || wanted == IID_IPersist ? static_cast<Interface*>(this) : nullptr;
    }
};

// "Sample.FileDocument.1": writes its files by itself.
class FileDocument final : public Document<IPersistFile, IID_IPersistFile> {
  public:
    FileDocument() : Document(definition()) {}
    static const kit::ClassDefinition& definition();

    HRESULT STDMETHODCALLTYPE Load(LPCOLESTR fileName, DWORD mode) override;
    // A null name is the file that was loaded or saved last.
    HRESULT STDMETHODCALLTYPE Save(LPCOLESTR fileName, BOOL remember) override;
    HRESULT STDMETHODCALLTYPE SaveCompleted(LPCOLESTR) override { return S_OK; }
    // E_NOTIMPL: a document proposes no name.
    HRESULT STDMETHODCALLTYPE GetCurFile(LPOLESTR* fileName) override;

  private:
    platform::OleString fileName_;
};

// "Sample.StorageDocument.1": writes a stream into a storage that it is given.
class StorageDocument final : public Document<IPersistStorage, IID_IPersistStorage> {
  public:
    StorageDocument() : Document(definition()) {}
    static const kit::ClassDefinition& definition();

    HRESULT STDMETHODCALLTYPE InitNew(IStorage*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Load(IStorage* storage) override;
    HRESULT STDMETHODCALLTYPE Save(IStorage* storage, BOOL sameAsLoad) override;
    // It keeps no storage between calls.
    HRESULT STDMETHODCALLTYPE SaveCompleted(IStorage*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE HandsOffStorage() override { return S_OK; }
};

template <class Interface, const IID& iid>
class AnyStreamDocument : public Document<Interface, iid> {
  public:
    HRESULT STDMETHODCALLTYPE Load(IStream* stream) override { return this->read(stream); }
    HRESULT STDMETHODCALLTYPE Save(IStream* stream, BOOL clearDirty) override {
        return this->write(stream, clearDirty);
    }
    HRESULT STDMETHODCALLTYPE GetSizeMax(ULARGE_INTEGER*) override { return E_NOTIMPL; }

  protected:
    using Document<Interface, iid>::Document;
};

// "Sample.StreamInitDocument.1".
class StreamInitDocument final
    : public AnyStreamDocument<IPersistStreamInit, IID_IPersistStreamInit> {
  public:
    StreamInitDocument() : AnyStreamDocument(definition()) {}
    static const kit::ClassDefinition& definition();

    HRESULT STDMETHODCALLTYPE InitNew() override { return S_OK; }
};

// "Sample.StreamDocument.1".
class StreamDocument final : public AnyStreamDocument<IPersistStream, IID_IPersistStream> {
  public:
    StreamDocument() : AnyStreamDocument(definition()) {}
    static const kit::ClassDefinition& definition();
};

} // namespace sample
