// What a listener gets, and what it may do.
#include "events/source.h"
#include "host/text.h"

#include <cstring>

namespace {

using namespace axlink2;
using namespace axlink2::test;

struct Delivery : EventTest {
    // Sends `Last`, whose first parameter takes anything, and gives that argument as it arrived.
    std::string received(VARIANT argument) {
        const auto listener = listen(h, "Last");
        VARIANT arguments[] = {VARIANT{}, argument};
        VARIANT before[2];
        std::memcpy(before, arguments, sizeof before);
        DISPPARAMS params{arguments, nullptr, 2, 0};
        server(h).fireRaw(Source::last, params);
        EXPECT_EQ(std::memcmp(before, arguments, sizeof before), 0);
        listener->remove();
        const std::string line = heard.empty() ? "nothing" : heard.back();
        heard.clear();
        const std::size_t from = line.find("Arg1=");
        return from == std::string::npos ? line
                                         : line.substr(from + 5, line.find(" Arg2=") - from - 5);
    }
};

TEST_F(Delivery, IsAStructureWithTheParametersInOrder) {
    listen(h, "Tick");
    listen(h, "Renamed");
    listen(h, "Done");
    server(h).fireTick(-4);
    server(h).fire(Source::renamed, platform::OleString(OLESTR("a")),
                   platform::OleString(OLESTR("b")));
    server(h).fire(Source::done);
    listen(h, "Last");
    server(h).fire(Source::last);
    EXPECT_EQ(heard,
              (std::vector{ticked(-4), event("Renamed", Source::renamed, "OldName='a' NewName='b'"),
                           event("Done", Source::done, ""),
                           event("Last", Source::last, "Arg1=null Arg2=null")}));
    velmar::addListener(handle(h), "Tick", [this](const hxArray* source, const hxArray* data) {
        EXPECT_TRUE(hoststring::isString(hxGetField(data, 0, "Type")));
        EXPECT_EQ(hoGetArrayElement(hxGetField(data, 0, "Source"), 0), handle(h));
        EXPECT_EQ(hoGetArrayElement(source, 0), handle(h));
        EXPECT_EQ(hxGetClassID(hxGetField(data, 0, "EventID")), hxDOUBLE_CLASS);
        EXPECT_EQ(hxGetClassID(hxGetField(data, 0, "Count")), hxINT32_CLASS);
    });
    server(h).fireTick(1);
}

TEST_F(Delivery, TakesNamedArgumentsInDeclaredOrderAndAnyNumberOfThem) {
    listen(h, "Renamed");
    VARIANT texts[] = {variant(VT_I4, 1).get(), variant(VT_I4, 2).get(), variant(VT_I4, 3).get()};
    DISPID names[] = {0, 1, 2};
    const struct {
        DISPPARAMS params;
        const char* fields;
    } cases[] = {
        {{texts, nullptr, 2, 0}, "OldName=2 NewName=1"},
        {{texts, names, 2, 2}, "OldName=1 NewName=2"},
        {{texts, names, 2, 1}, "OldName=1 NewName=2"},
        {{texts, nullptr, 1, 0}, "OldName=1 NewName=null"},
        {{texts, names, 1, 1}, "OldName=1 NewName=null"},
        {{texts, nullptr, 3, 0}, "OldName=3 NewName=2"},
        {{texts, names, 3, 3}, "OldName=1 NewName=2"},
        {{nullptr, nullptr, 0, 0}, "OldName=null NewName=null"},
        {{nullptr, nullptr, 2, 0}, "OldName=null NewName=null"},
    };
    for (const auto& row : cases) {
        DISPPARAMS params = row.params;
        server(h).fireRaw(Source::renamed, params);
        EXPECT_EQ(heard.back(), event("Renamed", Source::renamed, row.fields));
    }
    EXPECT_EQ(
        record(h).sink->Invoke(Source::renamed, IID_NULL, 0, 0, nullptr, nullptr, nullptr, nullptr),
        S_OK);
    EXPECT_EQ(heard.back(), event("Renamed", Source::renamed, "OldName=null NewName=null"));
}

TEST_F(Delivery, ConvertsArgumentsByWhatTheyAreAndWritesNothingBack) {
    LONG n = 7;
    ScopedVariant inner = variant(VT_BOOL, -1);
    const double doubles[] = {1, 2};
    const std::pair<ScopedVariant, std::string> cases[] = {
        {variant(VT_I2, 5), "5"},
        {variant(VT_EMPTY), "nan"},
        {bstr(OLESTR("text")), "'text'"},
        {real(2, VT_DATE), "'1/1/1900'"},
        {reference(VT_I4, &n), "7"},
        {reference(VT_VARIANT, inner.inOut()), "1"},
        {reference(VT_I4, nullptr), "nan"},
        {reference(VT_ARRAY | VT_R8, nullptr), "nan"},
        {variant(VT_UNKNOWN), "nan"},
        {variant(VT_DISPATCH), "nan"},
        {variant(VT_RECORD), "nan"},
        {variantOf(VT_R8, safeArray(VT_R8, {{2}}, doubles)), "[](1x2)"},
    };
    const auto noWarnings = warnings([&] {
        for (const auto& [argument, expected] : cases) {
            const std::string seen = received(argument.get());
            EXPECT_EQ(seen == "-nan" ? "nan" : seen, expected) << argument->vt;
        }
    });
    EXPECT_TRUE(noWarnings.empty());
    EXPECT_EQ(n, 7);
}

TEST_F(Delivery, GivesObjectsAReferenceOfTheirOwn) {
    const auto child = kit::create<Gadget>();
    IDispatch* dispatch = child.get();
    const ScopedVariant byReference = reference(VT_DISPATCH, &dispatch);
    VARIANT direct{};
    direct.vt = VT_DISPATCH;
    direct.pdispVal = dispatch;
    for (const VARIANT& argument : {direct, byReference.get()}) {
        EXPECT_EQ(received(argument).substr(0, 11), "<Interface.");
        EXPECT_EQ(child->references(), 1u);
    }
    IDispatch* elements[] = {platform::ComPtr<IDispatch>::borrow(dispatch).detach(), nullptr};
    const ScopedVariant array = variantOf(VT_DISPATCH, safeArray(VT_DISPATCH, {{2}}, elements));
    const std::string seen = received(array.get());
    EXPECT_EQ(seen.substr(0, 12), "{<Interface.");
    EXPECT_TRUE(seen.ends_with("(2x1)")) << seen;
    EXPECT_EQ(child->references(), 2u); // the array's is the second
}

TEST_F(Delivery, ReachesListenersInTheirOrderInsideTheServersCall) {
    listen(h, "Tick", [&] { heard.push_back("first"); });
    listen(h, "Tick");
    const auto silent = listen(h, "Tick");
    silent->setEnabled(false);
    call(h, "FireTick", 0, {scalar(3).get()});
    EXPECT_EQ(heard, (std::vector<std::string>{"first", ticked(3)}));
    silent->setEnabled(true);
    server(h).fireTick(4);
    EXPECT_EQ(heard.size(), 5u);
}

TEST_F(Delivery, LetsAListenerAddAndRemoveListeners) {
    std::shared_ptr<velmar::Listener> own;
    own = listen(h, "Tick", [&] {
        own->remove();
        listen(h, "Tick");
        listen(h, "Done");
        heard.push_back("changed");
    });
    server(h).fireTick(1);
    EXPECT_EQ(heard, std::vector<std::string>{"changed"});
    server(h).fireTick(2);
    server(h).fire(Source::done);
    EXPECT_EQ(heard,
              (std::vector<std::string>{"changed", ticked(2), event("Done", Source::done, "")}));
}

TEST_F(Delivery, LetsAListenerCallTheServerBack) {
    listen(h, "Tick");
    int depth = 0;
    listen(h, "Tick", [&] {
        if (++depth < 4) call(h, "FireTick", 0, {scalar(depth).get()});
    });
    server(h).fireTick(0);
    EXPECT_EQ(heard, (std::vector{ticked(0), ticked(1), ticked(2), ticked(3)}));
}

// Errors and faults in listeners are reported; the server and the other listeners don't notice.
TEST_F(Delivery, GoesOnBehindAListenerThatFails) {
    listen(h, "Tick", [] { velmar::raiseError("Test:oops", "went wrong"); });
    listen(h, "Tick", [] { throw 5; });
    listen(h, "Tick", [&] { call(h, "Crash", 0); });
    listen(h, "Tick");
    std::vector<std::string> texts;
    velmar::setWarningWriter([&](const std::string& identifier, const std::u16string& text) {
        EXPECT_EQ(identifier, "VELMAR:class:ListenerFailed");
        texts.push_back(hsys::i18n::to_string(text));
    });
    server(h).fireTick(1);
    ASSERT_EQ(texts.size(), 3u);
    EXPECT_NE(texts[0].find("'Tick'"), std::string::npos) << texts[0];
    EXPECT_NE(texts[0].find("went wrong"), std::string::npos) << texts[0];
    EXPECT_EQ(heard, std::vector{ticked(1)});
}

TEST_F(Delivery, OfOneServerReachesEveryObjectThatListens) {
    // A second object for the same server.
    hos::HOSInterfacePtr twin;
    handle(h)->getClass()->newInstance(&twin);
    recordOf(twin)->dispatch = platform::ComPtr<IDispatch>::borrow(record(h).dispatch).detach();
    listen(h, "Tick");
    int twinHeard = 0;
    velmar::addListener(twin, "Tick", [&](const hxArray* source, const hxArray*) {
        EXPECT_EQ(hoGetArrayElement(source, 0), twin);
        ++twinHeard;
    });
    EXPECT_EQ(server(h).events().connections(), 2u);
    server(h).fireTick(1);
    EXPECT_EQ(heard, std::vector{ticked(1)});
    EXPECT_EQ(twinHeard, 1);
    twin = {};
    server(h).fireTick(2);
    EXPECT_EQ(heard.size(), 2u);
    EXPECT_EQ(twinHeard, 1);
}

} // namespace
