// An object's record: what it owns, and when it lets go.
#include "classmodel/class_description.h"
#include "classmodel/instance_record.h"
#include "support/server_fixture.h"

namespace {

using namespace axlink2;
using namespace axlink2::test;

class Plain : public kit::DispatchObject {
  public:
    Plain() : DispatchObject(definition()) {}
    static const kit::ClassDefinition& definition() {
        static const auto made =
            kit::ClassBuilder<Plain>("Plain", kit::guid("3D1F0C11-7C0B-4C55-8B85-2C7F9E0AA041"),
                                     kit::guid("3D1F0C11-7C0B-4C55-8B85-2C7F9E0AA042"))
                .build();
        return *made;
    }
};

struct InstanceRecord : ServerTest {};

ULONG references(IDispatch* object) {
    object->AddRef();
    return object->Release();
}

TEST_F(InstanceRecord, OwnsOneReferenceFromTheFirstObjectOn) {
    for (int i = 0; i < 2; ++i) {
        const Array object = i == 0 ? start<Plain>("Test.Plain") : startRegistered("Test.Plain");
        const COMInstanceRecord* record = recordOf(hoGetArrayElement(object.get(), 0));
        ASSERT_NE(record, nullptr);
        EXPECT_EQ(references(record->dispatch), 1u);
        EXPECT_EQ(record->sink, nullptr);
        EXPECT_EQ(record->connectionPoint, nullptr);
        EXPECT_TRUE(record->parents.empty() && record->children.empty());
    }
}

TEST_F(InstanceRecord, LetsGoWhenTheObjectEndsAndNotWithTheArray) {
    Array object = start<Plain>("Test.Plain");
    const int before = kit::liveObjects();
    const Array copy(hxCreateSharedDataCopy(object.get()));
    object.reset();
    EXPECT_EQ(kit::liveObjects(), before);
    const hos::HOSInterfacePtr handle = hoGetArrayElement(copy.get(), 0);
    handle->destroy(hos::HOSGetPublicClient());
    EXPECT_EQ(kit::liveObjects(), before - 1);
    EXPECT_TRUE(handle->isDeleted());
    handle->destroy(hos::HOSGetPublicClient());
    EXPECT_EQ(kit::liveObjects(), before - 1);
}

TEST_F(InstanceRecord, ReleasesSinkServerAndConnectionPointInThisOrder) {
    std::vector<std::string> order;
    class Ordered : public IDispatch {
      public:
        Ordered(std::vector<std::string>& order, std::string name)
            : order_(order), name_(std::move(name)) {}
        virtual ~Ordered() = default;
        HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOTIMPL; }
        ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
        ULONG STDMETHODCALLTYPE Release() override {
            order_.push_back(name_);
            return 1;
        }
        HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
        HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override {
            return E_NOTIMPL;
        }
        HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
            return E_NOTIMPL;
        }
        HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*,
                                         EXCEPINFO*, UINT*) override {
            return E_NOTIMPL;
        }

      private:
        std::vector<std::string>& order_;
        std::string name_;
    };
    Ordered sink(order, "sink");
    Ordered server(order, "server");
    Ordered point(order, "point");
    COMInstanceRecord record;
    record.dispatch = &server;
    record.sink = &sink;
    record.connectionPoint = &point;
    releaseServerReferences(record);
    EXPECT_EQ(order, (std::vector<std::string>{"sink", "server", "point"}));
    releaseServerReferences(record);
    EXPECT_EQ(order.size(), 3u);
}

TEST_F(InstanceRecord, IsThereForObjectsOfTheModuleOnly) {
    EXPECT_EQ(recordOf(nullptr), nullptr);
    const Array noObject = scalar(1);
    const hxArray* inputs[] = {noObject.get()};
    EXPECT_EQ(errorOf([&] { requireValidHandle(inputs); }), "VELMAR:class:InvalidHandle");
}

} // namespace
