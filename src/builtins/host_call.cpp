// Calls back into the host's language, through its dispatcher.
#include "builtins/host_call.h"

#include "builtins/call_support.h"
#include "host/dispatcher.h"

#include <algorithm>
#include <utility>

namespace axlink2 {

std::vector<harray::unique_array> callHost(const char* name, std::uint32_t outputCount,
                                           std::span<const hxArray* const> inputs) {
    const std::size_t room = std::max(outputCount, 1u);
    std::vector<hxArray*> results(room);
    std::vector<harray::unique_array> owned(room);
    Hdispatcher& dispatcher = Hdispatcher::getDispatcher();
    const auto inputCount = static_cast<int>(inputs.size());
    dispatcher
        .lookup(dispatcher.GetCurrentlyExecutingFunctionScope(), dispatcher.symbol(name),
                inputCount, inputs.data())
        ->call(static_cast<int>(outputCount), results.data(), inputCount, inputs.data());
    for (std::size_t i = 0; i < room; ++i)
        owned[i].reset(results[i]);
    return owned;
}

void giveOrShow(harray::unique_array value, std::uint32_t* outputCount, hos::HOSValue* outputs) {
    if (*outputCount > 0) return giveOutput(std::move(value), outputCount, outputs);
    const hxArray* shown[] = {value.get()};
    callHost("disp", 0, shown);
}

} // namespace axlink2
