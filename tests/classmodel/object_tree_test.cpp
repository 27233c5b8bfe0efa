// The links between objects, and the two ways to end them.
#include "classmodel/object_tree.h"
#include "support/server_fixture.h"

#include <map>

namespace {

using namespace axlink2;
using namespace axlink2::test;
using hos::HOSInterfacePtr;

class Node : public Served<Node> {
  public:
    static constexpr const char* className = "TreeNode";
    static void declare(Builder& builder) { builder.method("Child", &Node::child); }
    static inline std::vector<const void*> ended; // in that order
    ~Node() override { ended.push_back(static_cast<IDispatch*>(this)); }
    platform::ComPtr<IDispatch> child() { return kit::createDispatch<Node>(); }
};

// A tree of objects by names: "ab" is a child of "a".
struct ObjectTree : ServerTest {
    std::map<std::string, Array> nodes;

    ObjectTree() {
        nodes.emplace("a", start<Node>("Test.TreeNode"));
        for (const char* name : {"ab", "abc", "abd", "ae"})
            nodes.emplace(name, std::move(call(nodes.at(parentOf(name)), "Child", 1)[0]));
    }
    static std::string parentOf(const std::string& name) { return name.substr(0, name.size() - 1); }

    COMInstanceRecord& record(const std::string& name) {
        return ServerTest::record(nodes.at(name));
    }
    std::string nameOf(const HOSInterfacePtr& link) {
        const COMInstanceRecord* linked = recordOf(link);
        for (const auto& [name, array] : nodes)
            if (linked && recordOf(handle(array)) == linked) return name;
        return "-";
    }
    std::string linksOf(const std::string& name) {
        std::string result = "<";
        for (const auto& link : record(name).parents)
            if (link.object) result += " " + nameOf(link.object);
        result += " >";
        for (const auto& link : record(name).children)
            if (link.second) result += " " + nameOf(link.second);
        return result;
    }
    std::string alive() {
        std::string result;
        for (const auto& [name, array] : nodes)
            if (handle(array) && !handle(array)->isDeleted()) result += name + " ";
        return result;
    }
};

TEST_F(ObjectTree, LinksObjectsToWhereTheyCameFrom) {
    EXPECT_EQ(linksOf("a"), "< > ab ae");
    EXPECT_EQ(linksOf("ab"), "< a > abc abd");
    EXPECT_EQ(linksOf("abc"), "< ab >");
}

TEST_F(ObjectTree, EndingAnObjectTakesItOut) {
    destroy(nodes.at("ab"));
    EXPECT_EQ(alive(), "a abc abd ae ");
    EXPECT_EQ(linksOf("a"), "< > ae abc abd");
    EXPECT_EQ(linksOf("abd"), "< >");
    // Released before, it no longer leads to its parent.
    deleteTree(record("abd"), hos::HOSGetPublicClient());
    EXPECT_EQ(alive(), "a abc abd ae ");
}

TEST_F(ObjectTree, EveryParentGetsTheChildrenOfOneThatEnds) {
    linkToOwner(handle(nodes.at("ab")), handle(nodes.at("ae")));
    EXPECT_EQ(linksOf("ab"), "< a ae > abc abd");
    destroy(nodes.at("ab"));
    EXPECT_EQ(linksOf("a"), "< > ae abc abd");
    EXPECT_EQ(linksOf("ae"), "< a > abc abd");
}

TEST_F(ObjectTree, EndsChildrenThenParentsThenWhatTheyHungOn) {
    std::vector<const void*> expected;
    for (const char* name : {"abc", "abd", "ae", "a"})
        expected.push_back(record(name).dispatch);
    Node::ended.clear();
    deleteTree(record("ab"), hos::HOSGetPublicClient());
    EXPECT_EQ(alive(), "ab ");
    EXPECT_EQ(Node::ended, expected);
}

TEST_F(ObjectTree, KeepsTheOrderOfManyWhileSomeLeave) {
    std::vector<Array> children;
    std::vector<COMInstanceRecord*> expected;
    Array owner = std::move(call(nodes.at("a"), "Child", 1)[0]);
    for (int i = 0; i < 500; ++i) {
        children.push_back(std::move(call(owner, "Child", 1)[0]));
        expected.push_back(&ServerTest::record(children.back()));
        if (i % 3 == 0) continue;
        const auto leaving = static_cast<std::size_t>(i * 7 % static_cast<int>(children.size()));
        children.erase(children.begin() + static_cast<std::ptrdiff_t>(leaving));
        expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(leaving));
    }
    std::vector<COMInstanceRecord*> linked;
    for (const auto& link : ServerTest::record(owner).children)
        if (link.second) linked.push_back(recordOf(link.second));
    EXPECT_EQ(linked, expected);
}

TEST_F(ObjectTree, PassesOverLinksThatLeadNowhere) {
    record("ab").children.add({});
    record("ab").parents.push_back({});
    record("a").children.clear();  // the parent doesn't know its child
    record("abd").parents.clear(); // so that it stays among the children when it has gone
    nodes.erase("abd");
    EXPECT_EQ(linksOf("ab"), "< a > abc");
    detachFromTree(record("ab"));
    EXPECT_EQ(linksOf("a"), "< > abc");

    record("ae").parents.push_back({});
    record("ae").children.add({});
    deleteTree(record("ae"), hos::HOSGetPublicClient());
    EXPECT_EQ(linksOf("ae"), "< >");
}

TEST_F(ObjectTree, AChainOfManyEndsAtOnce) {
    Array last(hxCreateSharedDataCopy(nodes.at("abc").get()));
    for (int i = 0; i < 2000; ++i) {
        Array next = std::move(call(last, "Child", 1)[0]);
        nodes["chain" + std::to_string(i)] = std::move(last);
        last = std::move(next);
    }
    deleteTree(ServerTest::record(last), hos::HOSGetPublicClient());
    EXPECT_EQ(alive(), "");
}

} // namespace
