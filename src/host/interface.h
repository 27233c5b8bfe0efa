// Objects of the host and the handles that keep them. Modules call the virtual operations by
// position: none may be removed or moved.
#pragma once

#include "host/interned.h"

#include <cstdint>
#include <stdexcept>
#include <utility>
#include <vector>

namespace hos {

class HOSClass;
class HOSEventData;
class HOSGenericProp;
class HOSInterfacePtr;
class HOSIterator;

// Whoever asks the object system for something: the public client is any program.
class HOSClient;
const HOSClient* HOSGetPublicClient();

enum class HOSReferenceType : int {
    None = 0,
    Strong = 1, // keeps the object alive
    Weak = 2,   // casts to null once the object has gone
};

// An object, or the object's face of a class, a data type or a member. Objects end when the last
// strong handle goes or when `destroy` is called; they are used on the interpreter thread only.
class HOSInterface {
  public:
    HOSInterface(const HOSInterface&) = delete;
    HOSInterface& operator=(const HOSInterface&) = delete;

    // True once the object has ended: the handle is no longer valid.
    virtual bool isDeleted() const = 0;
    // Runs the enabled listeners of that event on this object, in the order they were added.
    virtual void notifyListeners(const HOSClient* client, const id& eventName,
                                 HOSEventData* data) = 0;
    // Ends the object now: listeners first, then its instance data. On a dynamic property's handle
    // it takes the property off its object.
    virtual void destroy(const HOSClient* client) = 0;
    virtual HOSIterator* getDynamicProperties(HOSIterator* out) = 0;
    // The property of that name; a null handle when there is none. Returns `out`.
    virtual HOSInterfacePtr* findDynamicProperty(HOSInterfacePtr* out, id name) = 0;
    // The same among the class's and the dynamic properties.
    virtual HOSInterfacePtr* findProperty(HOSInterfacePtr* out, id name) = 0;
    // The object's class; null for what is no object of a class.
    virtual HOSClass* getClass() = 0;
    // What the class's `createInstanceData` made for this object, when `classId` is its class.
    virtual void* getInstanceData(id classId) = 0;
    // Adds a property to this object only, and takes ownership of it.
    virtual void addDynamicProperty(HOSGenericProp* property) = 0;

  protected:
    HOSInterface() = default;
    virtual ~HOSInterface() = default;
    // Called when the last strong handle goes, with weak ones perhaps still there.
    virtual void lastStrongHandleGone() = 0;

  private:
    friend class HOSInterfacePtr;
    void retain(HOSReferenceType kind);
    void release(HOSReferenceType kind);

    std::uint32_t strong_ = 0;
    std::uint32_t weak_ = 0;
};

// Reference-counted handle to a `HOSInterface`. Tests false when null, and also when it is weak and
// its object has gone.
class HOSInterfacePtr {
  public:
    HOSInterfacePtr() = default;
    HOSInterfacePtr(HOSInterface* object) : HOSInterfacePtr(object, HOSReferenceType::Strong) {}
    HOSInterfacePtr(const HOSInterfacePtr& other) : HOSInterfacePtr(other.object_, other.kind_) {}
    // A copy whose kind of reference is `kind`.
    HOSInterfacePtr(const HOSInterfacePtr& other, HOSReferenceType kind)
        : HOSInterfacePtr(static_cast<HOSInterface*>(other), kind) {}
    HOSInterfacePtr(HOSInterfacePtr&& other) noexcept
        : object_(std::exchange(other.object_, nullptr)), kind_(other.kind_) {}
    HOSInterfacePtr& operator=(HOSInterfacePtr other) noexcept {
        std::swap(object_, other.object_);
        std::swap(kind_, other.kind_);
        return *this;
    }
    ~HOSInterfacePtr() {
        if (object_) object_->release(kind_);
    }

    operator HOSInterface*() const {
        return object_ && (kind_ == HOSReferenceType::Strong || !object_->isDeleted()) ? object_
                                                                                       : nullptr;
    }
    HOSInterface* operator->() const { return static_cast<HOSInterface*>(*this); }
    explicit operator bool() const { return static_cast<HOSInterface*>(*this) != nullptr; }

  private:
    HOSInterfacePtr(HOSInterface* object, HOSReferenceType kind) : object_(object), kind_(kind) {
        if (object_) object_->retain(kind_);
    }

    HOSInterface* object_ = nullptr;
    HOSReferenceType kind_ = HOSReferenceType::Strong;
};

inline void HOSInterface::retain(HOSReferenceType kind) {
    ++(kind == HOSReferenceType::Weak ? weak_ : strong_);
}

inline void HOSInterface::release(HOSReferenceType kind) {
    if (kind == HOSReferenceType::Weak) {
        if (--weak_ == 0 && strong_ == 0) delete this;
        return;
    }
    if (strong_ > 1) {
        --strong_;
        return;
    }
    // The count stays at one while the object ends, so that a handle made meanwhile can't end it
    // a second time.
    lastStrongHandleGone();
    if (--strong_ == 0 && weak_ == 0) delete this;
}

// Walks a snapshot of handles, in order.
class HOSIterator {
  public:
    HOSIterator() = default;
    explicit HOSIterator(std::vector<HOSInterfacePtr> elements) : elements_(std::move(elements)) {}

    bool hasMoreElements() const { return next_ < elements_.size(); }
    // The next handle; a null handle past the end.
    HOSInterfacePtr nextElement() {
        return hasMoreElements() ? elements_[next_++] : HOSInterfacePtr();
    }

  private:
    std::vector<HOSInterfacePtr> elements_;
    std::size_t next_ = 0;
};

// Raised by an enumeration that is read past its end.
class ENoElements : public std::out_of_range {
  public:
    ENoElements() : std::out_of_range("The enumeration has no more elements.") {}
};

// A sequence that the host fills and the caller reads once.
template <class T>
class Enumeration {
  public:
    Enumeration() = default;
    explicit Enumeration(std::vector<T> elements) : elements_(std::move(elements)) {}
    virtual ~Enumeration() = default;

    virtual bool hasMoreElements() const { return next_ < elements_.size(); }
    // The next element; throws `ENoElements` past the end.
    virtual T nextElement() {
        if (!hasMoreElements()) throw ENoElements();
        return elements_[next_++];
    }

  private:
    std::vector<T> elements_;
    std::size_t next_ = 0;
};

} // namespace hos
