// Objects that end when there is no memory at all.
#include "classmodel/object_tree.h"
#include "support/server_fixture.h"
#include "torture/points.h"

namespace {

using namespace axlink2;
using namespace axlink2::test;

class Parent : public Served<Parent> {
  public:
    static constexpr const char* className = "Parent";
    static void declare(Builder& builder) { builder.method("Child", &Parent::child); }
    platform::ComPtr<IDispatch> child() { return kit::createDispatch<Parent>(); }
};

struct EndWithoutMemory : ServerTest {};

TEST_F(EndWithoutMemory, LetsGoOfTheServerAndHandsTheChildrenOn) {
    const Array root = start<Parent>("Test.Parent");
    const Array middle = std::move(call(root, "Child", 1)[0]);
    std::vector<Array> children;
    std::vector<COMInstanceRecord*> expected;
    for (int i = 0; i < 100; ++i) {
        children.push_back(std::move(call(middle, "Child", 1)[0]));
        expected.push_back(&record(children.back()));
    }
    const int servers = kit::liveObjects();
    const hos::HOSInterfacePtr ending = handle(middle);
    torture::anyMemory.always = true;
    torture::anyMemory.counting = true;
    ending->destroy(hos::HOSGetPublicClient());
    torture::anyMemory.counting = false;
    torture::anyMemory.always = false;
    EXPECT_EQ(kit::liveObjects(), servers - 1);
    std::vector<COMInstanceRecord*> linked;
    for (const auto& link : record(root).children)
        linked.push_back(recordOf(link.second));
    EXPECT_EQ(linked, expected);
}

} // namespace
