// A server with events that counts what a client does to connect, and fails on demand; and the
// fixture that listens to it.
#pragma once

#include "builtins/builtin_fixture.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace axlink2::test {

enum class Step { None, Query, Find, Advise, Unadvise };
enum class Failure { Code, NullWithSuccess, Fault };

// What clients have done; starts anew with each test.
struct Traffic {
    int queries = 0; // for the container
    int finds = 0;
    std::vector<DWORD> advised = {}; // cookies
    std::vector<DWORD> unadvised = {};
    int aliveBehindTick = 0; // COM objects when the last one had been fired

    Step failing = Step::None;
    Failure failure = Failure::Code;
    std::function<void()> onAdvise = {}; // what else happens meanwhile
};

class Source : public Served<Source> {
  public:
    static constexpr const char* className = "Source";
    static void declare(Builder& builder) {
        builder.method("FireTick", &Source::fireTick, {"count"})
            .method("Crash", &Source::crash)
            .source("DSourceEvents", guidOf("DSourceEvents"))
            .event("Tick", {{"Count", VT_I4}})
            .event("Renamed", {{"OldName", VT_BSTR}, {"NewName", VT_BSTR}})
            .event("Done")
            .event("Last", {{"", VT_VARIANT}, {"Type", VT_DISPATCH}})
            .dispid(last);
    }
    static constexpr DISPID tick = 1;
    static constexpr DISPID renamed = 2;
    static constexpr DISPID done = 3;
    static constexpr DISPID last = -7; // by number the first

    static inline Traffic traffic;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID iid, IConnectionPoint** point) override;

    void fireTick(LONG count) {
        fire(tick, count);
        traffic.aliveBehindTick = kit::liveObjects();
    }
    void crash();
};

class EventTest : public BuiltinTest {
  protected:
    EventTest() { Source::traffic = {}; }
    ~EventTest() override { velmar::setWarningWriter({}); }

    // A listener that writes down the structures it gets, one line each.
    std::shared_ptr<velmar::Listener> listen(const Array& object, const std::string& event);
    static std::shared_ptr<velmar::Listener> listen(const Array& object, const std::string& event,
                                                    std::function<void()> action);

    static Source& server(const Array& object) {
        return *static_cast<Source*>(record(object).dispatch);
    }
    // The text of a structure of the source's object, as `listen` writes it.
    static std::string event(const std::string& name, DISPID dispid, const std::string& fields);
    static std::string ticked(int count) {
        return event("Tick", Source::tick, "Count=" + std::to_string(count));
    }
    static HRESULT invoke(IDispatch* sink, DISPID dispid, DISPPARAMS params = {},
                          VARIANT* result = nullptr, const IID& iid = IID_NULL);

    std::vector<std::string> heard;
    Array h = start<Source>("Test.Source");
};

} // namespace axlink2::test
