// The table of functions.
#include "host/functions.h"

#include "host/array_store.h"

#include <boost/container/small_vector.hpp>

#include <algorithm>
#include <memory>
#include <unordered_map>

namespace velmar {
namespace {

class FunctionEntry final : public Hfunction_handle {
  public:
    void call(int outputCount, hxArray** outputs, int inputCount,
              const hxArray* const* inputs) override {
        const auto running = function; // which may be defined anew meanwhile
        callFunction(*running, outputCount, outputs, inputCount, inputs);
    }

    std::shared_ptr<const Function> function;
};

auto& table() {
    static auto& entries = *new std::unordered_map<hos::id, std::unique_ptr<FunctionEntry>>;
    return entries;
}

// The table with the host's own functions in it.
auto& functions() {
    static bool defined = false;
    if (!std::exchange(defined, true)) defineBuiltinFunctions();
    return table();
}

} // namespace

void callFunction(const Function& function, int outputCount, hxArray** outputs, int inputCount,
                  const hxArray* const* inputs) {
    const auto wanted = static_cast<std::size_t>(std::max(outputCount, 0));
    boost::container::small_vector<harray::unique_array, 4> results(
        std::max(wanted, std::size_t{1}));
    function(outputCount, results.data(), inputCount, inputs);
    for (std::size_t i = 0; i < wanted; ++i)
        if (!results[i]) results[i].reset(hxCreateSharedDataCopy(nullptr));
    for (std::size_t i = 0; i < results.size(); ++i)
        outputs[i] = results[i].release();
}

Hfunction_handle* findFunction(hos::id name) {
    const auto& all = functions();
    const auto at = all.find(name);
    return at == all.end() ? nullptr : at->second.get();
}

void defineFunction(const std::string& name, Function function) {
    auto& entry = functions()[hos::internal::makeInterned(std::string(name))];
    if (!entry) entry = std::make_unique<FunctionEntry>();
    entry->function = std::make_shared<const Function>(std::move(function));
}

bool hasFunction(const std::string& name) {
    return findFunction(hos::internal::findInterned(name.c_str())) != nullptr;
}

harray::unique_array createFunctionHandle(std::string text, Function function) {
    static constexpr std::size_t one[] = {1, 1};
    harray::unique_array array =
        harray::detail::makeArray(hxFUNCTION_CLASS, harray::detail::ElementKind::Function, 2, one);
    *array->elements<harray::detail::FunctionElement>() =
        std::make_shared<const harray::detail::FunctionRecord>(
            harray::detail::FunctionRecord{std::move(text), std::move(function)});
    return array;
}

namespace {

const harray::detail::FunctionRecord* recordOf(const hxArray* array) {
    if (!array || array->kind != harray::detail::ElementKind::Function || array->count == 0)
        return nullptr;
    return array->elements<harray::detail::FunctionElement>()->get();
}

} // namespace

const Function* functionOfHandle(const hxArray* array) {
    const auto* record = recordOf(array);
    return record ? &record->function : nullptr;
}

const std::string& textOfHandle(const hxArray* array) {
    static const std::string none;
    const auto* record = recordOf(array);
    return record ? record->text : none;
}

} // namespace velmar
