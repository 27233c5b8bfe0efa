// Packages, and all classes by their names.
#include "host/class.h"
#include "host/live_class.h"
#include "host/object_array.h"
#include "host/output.h"

#include <memory>
#include <unordered_map>

namespace velmar {
namespace {

// A class of the host's own, to derive from.
class BareClassInfo final : public hos::HOSClassInfo {
  public:
    explicit BareClassInfo(const char* name) : name_(name) {}

    const char* getName() const override { return name_; }
    void populateClass(hos::HOSClass*, void*) override {}
    void* createInstanceData() override { return nullptr; }
    void destroyInstanceData(hos::HOSInterface*, void*) override {}
    bool isAbstract() const override { return true; }

  private:
    const char* name_;
};

class LivePackage final : public hos::HOSPackage {
  public:
    explicit LivePackage(hos::HOSNamespaceInfo* info) : info_(info) {}

    const char* getName() const override { return info_->getName(); }
    hos::HOSInterfacePtr* findClass(hos::HOSInterfacePtr* out, const std::string& name,
                                    int) override;
    void addClass(hos::HOSClassInfo* info, int, int) override;

    hos::HOSNamespaceInfo& info() { return *info_; }

  private:
    std::string qualified(const std::string& name) const { return getName() + ("." + name); }

    std::unique_ptr<hos::HOSNamespaceInfo> info_;
};

struct Registry {
    std::unordered_map<hos::id, std::unique_ptr<LivePackage>> packages;
    std::unordered_map<hos::id, std::unique_ptr<LiveClass>> classes;

    Registry() {
        add(std::make_unique<BareClassInfo>("COMInterfaceMethods"), nullptr,
            "velmar.internal.axlink.COMInterfaceMethods");
        add(std::make_unique<BareClassInfo>("CustomDisplay"), nullptr,
            "velmar.mixin.CustomDisplay");
    }

    // A name that is known keeps its class, and the new description ends.
    void add(std::unique_ptr<hos::HOSClassInfo> owned, hos::HOSPackage* package,
             const std::string& name) {
        std::unique_ptr<LiveClass>& slot = classes[hos::internal::makeInterned(std::string(name))];
        if (!slot) slot = std::make_unique<LiveClass>(std::move(owned), package, name);
    }
};

// Never destroyed: objects may be alive to the very end.
Registry& registry() {
    static auto& the = *new Registry;
    return the;
}

hos::HOSInterfacePtr* LivePackage::findClass(hos::HOSInterfacePtr* out, const std::string& name,
                                             int) {
    LiveClass* found = findLiveClass(hos::internal::findInterned(qualified(name).c_str()));
    *out = found ? found->face() : hos::HOSInterfacePtr();
    return out;
}

void LivePackage::addClass(hos::HOSClassInfo* info, int, int) {
    std::unique_ptr<hos::HOSClassInfo> owned(info);
    const std::string name = qualified(info->getName());
    registry().add(std::move(owned), this, name);
}

} // namespace

LiveClass* findLiveClass(hos::id name) {
    const auto& classes = registry().classes;
    const auto at = classes.find(name);
    return at == classes.end() ? nullptr : at->second.get();
}

LiveClass* classOfArray(const hxArray* array) {
    if (!hoIsHOS(array)) return nullptr;
    if (array->count > 0)
        if (hos::HOSInterface* first = array->elements<harray::detail::ObjectElement>()[0])
            if (hos::HOSClass* owner = first->getClass()) return static_cast<LiveClass*>(owner);
    return findLiveClass(array->objectClass);
}

} // namespace velmar

namespace hos {

class HOSClient {};

const HOSClient* HOSGetPublicClient() {
    static constexpr HOSClient client;
    return &client;
}

HOSClass* HOSClass::getClass(id name) { return velmar::findLiveClass(name); }

void HOSPackage::addNamespace(HOSNamespaceInfo* info) {
    std::unique_ptr<HOSNamespaceInfo> owned(info);
    auto& slot = velmar::registry().packages[internal::makeInterned(info->getName())];
    if (slot) return;
    slot = std::make_unique<velmar::LivePackage>(owned.release());
    info->setPackage(slot.get());
    info->initializePackage(slot.get());
}

HOSPackage* HOSPackage::getNamespace(id name) {
    const auto& packages = velmar::registry().packages;
    const auto at = packages.find(name);
    return at == packages.end() ? nullptr : at->second.get();
}

// Descriptions come from the host's heap.
void* HOSClassInfo::operator new(std::size_t size) { return hrtMalloc(size); }
void HOSClassInfo::operator delete(void* block) { hrtFree(block); }
void* HOSNamespaceInfo::operator new(std::size_t size) { return hrtMalloc(size); }
void HOSNamespaceInfo::operator delete(void* block) { hrtFree(block); }
void* HOSMethodInfo::operator new(std::size_t size) { return hrtMalloc(size); }
void HOSMethodInfo::operator delete(void* block) { hrtFree(block); }

} // namespace hos
