// Faces: the handles that stand for classes, data types and members.
#pragma once

#include "host/interface.h"

namespace hos {

enum class FaceKind { Class, DataType, Property, Method, Event };

// What a handle of a class, a data type or a member points at. It isn't an object of any class.
class Face : public HOSInterface {
  public:
    Face(FaceKind kind, void* subject) : kind_(kind), subject_(subject) {}

    // What the face stands for; null when it stands for something else or has gone.
    template <class Subject>
    static Subject* subjectOf(HOSInterface* handle, FaceKind kind) {
        auto* face = dynamic_cast<Face*>(handle);
        return face && face->kind_ == kind ? static_cast<Subject*>(face->subject_) : nullptr;
    }

    // The subject ends; handles to it are invalid from now on.
    void detach() { subject_ = nullptr; }

    bool isDeleted() const override { return subject_ == nullptr; }
    void notifyListeners(const HOSClient*, const id&, HOSEventData*) override {}
    void destroy(const HOSClient*) override {}
    HOSIterator* getDynamicProperties(HOSIterator* out) override;
    HOSInterfacePtr* findDynamicProperty(HOSInterfacePtr* out, id name) override;
    HOSInterfacePtr* findProperty(HOSInterfacePtr* out, id name) override;
    HOSClass* getClass() override { return nullptr; }
    void* getInstanceData(id) override { return nullptr; }
    void addDynamicProperty(HOSGenericProp* property) override;

  protected:
    void lastStrongHandleGone() override {}

  private:
    FaceKind kind_;
    void* subject_;
};

} // namespace hos
