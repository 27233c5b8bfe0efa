// An object's record: the order in which it lets go, and who has one.
#include "support/com_double.h"
#include "support/server_fixture.h"

namespace {

using namespace axlink2;
using namespace axlink2::test;

struct InstanceRecord : ServerTest {};

TEST_F(InstanceRecord, ReleasesSinkServerAndConnectionPointInThisOrder) {
    std::vector<std::string> order;
    class Ordered : public Silent<IDispatch> {
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
