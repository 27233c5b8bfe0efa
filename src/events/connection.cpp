// Opening and closing connections. The source is asked in guarded calls: a fault there is a failed
// step.
#include "events/connection.h"

#include "classmodel/class_description.h"
#include "comruntime/server_call.h"
#include "events/sink.h"
#include "host/exception.h"
#include "host/message_ids.h"
#include "platform/guarded_call.h"
#include "platform/holders.h"

#include <utility>

namespace axlink2 {
namespace {

template <class Call>
bool succeeds(Call&& call) {
    HRESULT hr = E_FAIL;
    const platform::Fault fault = platform::guarded([&] { hr = call(); });
    return !fault && SUCCEEDED(hr);
}

// A reference to an interface of the source.
template <class Interface>
struct SourceTraits : platform::InterfaceTraits<Interface> {
    static void close(Interface* object) noexcept { guardedRelease(object); }
};
template <class Interface>
using SourcePtr = platform::Holder<SourceTraits<Interface>>;

// What `call` gives; empty when it fails or gives nothing.
template <class Interface, class Call>
SourcePtr<Interface> obtain(Call&& call) {
    Interface* given = nullptr;
    if (!succeeds([&] { return call(&given); })) return {};
    return SourcePtr<Interface>::adopt(given);
}

// Both ends of an open connection; the sink knows its cookie.
struct Connection {
    platform::ComPtr<CAXSink> sink;
    SourcePtr<IConnectionPoint> point;
};

template <class Step>
[[noreturn]] void failAt() {
    hmsgcore::raise(VELMAR::COM::errorregisterevents(
        hsys::i18n::MessageCatalog::get_message(Step(), hsys::i18n::HsysLocale::global())));
}

Connection open(IDispatch* server, const hos::HOSInterfacePtr& source) {
    // The object may end while its server calls back.
    const auto kept = SourcePtr<IDispatch>::borrow(server);
    const auto container = obtain<IConnectionPointContainer>([&](auto** out) {
        return server ? server->QueryInterface(IID_IConnectionPointContainer,
                                               reinterpret_cast<void**>(out))
                      : E_POINTER;
    });
    if (!container) failAt<VELMAR::COM::errorregistereventsConnectionPointContainer>();

    const auto* info = static_cast<COMBaseClassInfo*>(source->getClass()->getClassInfo());
    Connection opened;
    opened.point = obtain<IConnectionPoint>([&](IConnectionPoint** out) {
        return container->FindConnectionPoint(info->sourceIID, out);
    });
    if (!opened.point) failAt<VELMAR::COM::errorregistereventsConnectionPoint>();

    opened.sink = platform::ComPtr<CAXSink>::adopt(new CAXSink(source, info->sourceIID));
    if (!succeeds([&] { return opened.point->Advise(opened.sink.get(), &opened.sink->cookie); }))
        failAt<VELMAR::COM::errorregistereventsAdvise>();
    return opened;
}

void close(Connection connection) {
    // A server that has disconnected by itself may say so.
    succeeds([&] { return connection.point->Unadvise(connection.sink->cookie); });
}

// Only connections made here are kept in records.
CAXSink* sinkOf(const COMInstanceRecord& record) { return static_cast<CAXSink*>(record.sink); }

// What the record held, which is in order before the server hears of it.
Connection takeConnection(COMInstanceRecord& record) {
    Connection taken;
    taken.sink = platform::ComPtr<CAXSink>::adopt(sinkOf(record));
    taken.point =
        SourcePtr<IConnectionPoint>::adopt(static_cast<IConnectionPoint*>(record.connectionPoint));
    record.sink = nullptr;
    record.connectionPoint = nullptr;
    return taken;
}

} // namespace

void connectEvent(COMInstanceRecord& record, const hos::HOSInterfacePtr& source, DISPID dispid) {
    if (record.sink) return sinkOf(record)->addEvent(dispid);

    const hos::HOSInterfacePtr object(source, hos::HOSReferenceType::Strong);
    Connection opened = open(record.dispatch, object);
    // The server may have called back: the object may have ended, or have been connected.
    COMInstanceRecord* current = recordOf(object);
    if (!current || current->sink) {
        close(std::move(opened));
        if (!current) hmsgcore::raise(VELMAR::class_::InvalidHandle());
        return connectEvent(*current, object, dispid);
    }
    try {
        opened.sink->addEvent(dispid);
    } catch (...) {
        close(std::move(opened));
        throw;
    }
    current->sink = opened.sink.detach();
    current->connectionPoint = opened.point.detach();
}

void disconnectEvent(COMInstanceRecord& record, DISPID dispid) {
    if (!record.sink || sinkOf(record)->removeEvent(dispid) != 0) return;
    close(takeConnection(record));
}

} // namespace axlink2
