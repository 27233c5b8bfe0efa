// Small members that only objects of servers have.
#include "builtins/server_members.h"

#include "builtins/call_support.h"
#include "builtins/coclass_interfaces.h"
#include "classmodel/instance_record.h"
#include "comruntime/interned.h"
#include "comruntime/server_call.h"
#include "host/message_ids.h"

#include <utility>

namespace axlink2 {
namespace {

// An array of GUIDs that a server has allocated for its caller.
struct PageList : CAUUID {
    PageList() : CAUUID{} {}
    PageList(const PageList&) = delete;
    PageList& operator=(const PageList&) = delete;
    ~PageList() {
        if (cElems != 0) CoTaskMemFree(pElems);
    }
};

} // namespace

void COMMoveMethodInfo::invoke(const hos::HOSClient*, std::uint32_t* outputCount,
                               hos::HOSValue* outputs, std::int32_t, hos::HOSValue*) {
    constexpr std::size_t row[] = {1, 4};
    giveOutput(
        harray::unique_array(harray::detail::do_create_numeric(2, row, hxDOUBLE_CLASS, hxREAL)),
        outputCount, outputs);
}

void COMSendMethodInfo::invoke(const hos::HOSClient* client, std::uint32_t* outputCount,
                               hos::HOSValue* outputs, std::int32_t inputCount,
                               hos::HOSValue* inputs) {
    hos::HOSIterator methods;
    firstObject(inputs)->getClass()->findMethods(&methods, internedId("events"));
    hos::hosiToMethod(methods.nextElement())
        ->invoke(client, outputCount, outputs, inputCount, inputs);
}

void COMPropeditMethodInfo::invoke(const hos::HOSClient*, std::uint32_t*, hos::HOSValue*,
                                   std::int32_t, hos::HOSValue* inputs) {
    const hos::HOSInterfacePtr object = liveObject(inputs);
    if (!object) return;
    const auto server = serverOf(object);
    const auto paged = queryServer<ISpecifyPropertyPages>(server.get(), IID_ISpecifyPropertyPages);
    if (!paged) return hxWarningMsgId(VELMAR::COM::noPropPage());
    PageList pages;
    if (askServer([&] { return paged->GetPages(&pages); }) != S_OK)
        hxWarningMsgId(VELMAR::COM::propPageError());
    else if (pages.cElems == 0)
        hxWarningMsgId(VELMAR::COM::noPropPage());
}

void COMInterfacesMethodInfo::invoke(const hos::HOSClient*, std::uint32_t* outputCount,
                                     hos::HOSValue* outputs, std::int32_t, hos::HOSValue* inputs) {
    const auto names = coclassInterfaceNames(serverOf(firstObject(inputs)).get());
    harray::unique_array cell(hxCreateCellMatrix(names.size(), 1));
    for (std::size_t i = 0; i < names.size(); ++i)
        hxSetCell(cell.get(), i, hxCreateString(names[i].c_str()));
    giveOutput(std::move(cell), outputCount, outputs);
}

} // namespace axlink2
