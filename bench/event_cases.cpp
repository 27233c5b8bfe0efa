// Events from the server's call to the listener, beside building the same structure in the host.
#include "bench/cases.h"
#include "classmodel/class_description.h"
#include "classmodel/instance_record.h"
#include "classmodel/object_creation.h"
#include "host/embedding.h"
#include "host/object_array.h"
#include "host/text.h"
#include "platform/holders.h"
#include "servers/kit/kit.h"

namespace axlink2::bench {
namespace {

constexpr DISPID tick = 1;
constexpr DISPID renamed = 2;
constexpr DISPID unheard = 3;

class Source : public kit::DispatchObject {
  public:
    Source() : DispatchObject(definition()) {}
    static const kit::ClassDefinition& definition() {
        static const auto made =
            kit::ClassBuilder<Source>("Source", kit::guid("5D1D8A51-7B0E-4D8B-8E3B-1C0C3A9EB031"),
                                      kit::guid("5D1D8A51-7B0E-4D8B-8E3B-1C0C3A9EB032"))
                .source("DSourceEvents", kit::guid("5D1D8A51-7B0E-4D8B-8E3B-1C0C3A9EB033"))
                .event("Tick", {{"Count", VT_I4}})
                .event("Renamed", {{"OldName", VT_BSTR}, {"NewName", VT_BSTR}})
                .event("Unheard")
                .build();
        return *made;
    }
};

std::size_t heard = 0;

// An object with a listener of two of its events.
const hos::HOSInterfacePtr& source() {
    static const hos::HOSInterfacePtr object = [] {
        const auto server = kit::createDispatch<Source>();
        const NewObject made = makeObjectFrom(
            addClass("Interface",
                     std::make_unique<COMInterfaceClassInfo>("BenchSource", server.get())),
            server.get());
        made.record->dispatch = platform::ComPtr<IDispatch>::borrow(server.get()).detach();
        for (const char* event : {"Tick", "Renamed"})
            velmar::addListener(made.object, event,
                                [](const hxArray*, const hxArray*) { ++heard; });
        return made.object;
    }();
    return object;
}

void send(std::size_t count, DISPID dispid, DISPPARAMS params) {
    static IDispatch* const sink = recordOf(source())->sink;
    for (; count > 0; --count)
        sink->Invoke(dispid, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params, nullptr,
                     nullptr, nullptr);
}

// The structure of an event, whose parameters `fill` adds as fields 3 and up.
template <class Fill>
void build(const char* name, DISPID dispid, std::initializer_list<const char*> parameters,
           Fill&& fill) {
    std::vector<const char*> fields{"Type", "Source", "EventID"};
    fields.insert(fields.end(), parameters);
    const harray::unique_array data(
        hxCreateStructMatrix(1, 1, static_cast<int>(fields.size()), fields.data()));
    hxSetFieldByNumber(data.get(), 0, 0,
                       hoststring::createStringArray(hsys::i18n::to_ustring(name)).release());
    hos::id classId;
    source()->getClass()->getID(&classId);
    harray::unique_array object(hoCreateHOSMatrix(1, 1, classId));
    hoSetArrayElement(object.get(), 0, source());
    hxSetFieldByNumber(data.get(), 0, 1, object.release());
    hxSetFieldByNumber(data.get(), 0, 2, hxCreateDoubleScalar(dispid));
    fill(data.get());
}

void buildTicks(std::size_t count) {
    for (; count > 0; --count)
        build("Tick", tick, {"Count"}, [](hxArray* data) {
            constexpr std::size_t scalar[] = {1, 1};
            harray::unique_array value(hxCreateNumericArray(2, scalar, hxINT32_CLASS, hxREAL));
            *static_cast<std::int32_t*>(hxGetWritableData(value.get())) = 5;
            hxSetFieldByNumber(data, 0, 3, value.release());
        });
}

void sendTicks(std::size_t count) {
    VARIANT argument{};
    argument.vt = VT_I4;
    argument.lVal = 5;
    send(count, tick, {&argument, nullptr, 1, 0});
}

void buildRenamed(std::size_t count) {
    for (; count > 0; --count)
        build("Renamed", renamed, {"OldName", "NewName"}, [](hxArray* data) {
            hxSetFieldByNumber(data, 0, 3, hxCreateString_UTF16(u"the old name"));
            hxSetFieldByNumber(data, 0, 4, hxCreateString_UTF16(u"the new name"));
        });
}

void sendRenamed(std::size_t count) {
    static const auto from = platform::makeBstr(OLESTR("the old name"));
    static const auto to = platform::makeBstr(OLESTR("the new name"));
    VARIANT arguments[2]{};
    arguments[0].vt = arguments[1].vt = VT_BSTR;
    arguments[0].bstrVal = to.get();
    arguments[1].bstrVal = from.get();
    send(count, renamed, {arguments, nullptr, 2, 0});
}

void sendUnheard(std::size_t count) { send(count, unheard, {}); }

} // namespace

std::vector<Case> eventCases() {
    constexpr std::size_t batch = 1000;
    return {
        {"event with a number, one listener", buildTicks, sendTicks, 3, batch},
        {"event with texts, one listener", buildRenamed, sendRenamed, 3, batch},
        // It must be small beside any event that is delivered.
        {"event that nobody listens to", buildTicks, sendUnheard, 0.5, batch},
    };
}

} // namespace axlink2::bench
