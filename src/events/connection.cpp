// Opening and closing connections. The source is asked in guarded calls: a fault there is a failed
// step.
#include "events/connection.h"

#include "classmodel/class_description.h"
#include "comruntime/server_call.h"
#include "events/sink.h"
#include "host/exception.h"
#include "host/message_ids.h"
#include "platform/holders.h"

#include <utility>

namespace axlink2 {
namespace {

// Both ends of an open connection; the sink knows its cookie, and goes first.
struct Connection {
    ServerPtr<IConnectionPoint> point;
    platform::ComPtr<CAXSink> sink;
};

template <class Step>
[[noreturn]] void failAt() {
    hmsgcore::raise(VELMAR::COM::errorregisterevents(
        hsys::i18n::MessageCatalog::get_message(Step(), hsys::i18n::HsysLocale::global())));
}

Connection open(IDispatch* server, const hos::HOSInterfacePtr& source) {
    // The object may end while its server calls back.
    const auto kept = ServerPtr<IDispatch>::borrow(server);
    const auto container =
        queryServer<IConnectionPointContainer>(server, IID_IConnectionPointContainer);
    if (!container) failAt<VELMAR::COM::errorregistereventsConnectionPointContainer>();

    const auto* info = static_cast<COMBaseClassInfo*>(source->getClass()->getClassInfo());
    Connection opened;
    opened.point = obtain<IConnectionPoint>([&](IConnectionPoint** out) {
        return container->FindConnectionPoint(info->sourceIID, out);
    });
    if (!opened.point) failAt<VELMAR::COM::errorregistereventsConnectionPoint>();

    opened.sink = platform::ComPtr<CAXSink>::adopt(new CAXSink(source, info->sourceIID));
    if (FAILED(askServer(
            [&] { return opened.point->Advise(opened.sink.get(), &opened.sink->cookie); })))
        failAt<VELMAR::COM::errorregistereventsAdvise>();
    return opened;
}

void close(Connection connection) {
    // A server that has disconnected by itself may say so.
    askServer([&] { return connection.point->Unadvise(connection.sink->cookie); });
}

// Only connections made here are kept in records.
CAXSink* sinkOf(const COMInstanceRecord& record) { return static_cast<CAXSink*>(record.sink); }

// What the record held, which is in order before the server hears of it.
Connection takeConnection(COMInstanceRecord& record) {
    Connection taken;
    taken.sink = platform::ComPtr<CAXSink>::adopt(sinkOf(record));
    taken.point =
        ServerPtr<IConnectionPoint>::adopt(static_cast<IConnectionPoint*>(record.connectionPoint));
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
        if (!current) raiseInvalidHandle();
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
