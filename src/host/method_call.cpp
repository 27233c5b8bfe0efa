// Calling a method: inputs to values, the call, values to outputs.
#include "host/host_messages.h"
#include "host/method_group.h"

#include <algorithm>
#include <iterator>
#include <memory>

namespace velmar {
namespace {

// The values of one call, null at first. Most calls have few and need no allocation.
class Values {
  public:
    explicit Values(std::size_t count) : count_(count) {
        if (count <= std::size(few_)) return;
        many_ = std::make_unique<hos::HOSValue[]>(count);
        values_ = many_.get();
    }
    Values(const Values&) = delete;
    Values& operator=(const Values&) = delete;

    hos::HOSValue* data() { return values_; }
    hos::HOSValue& operator[](std::size_t i) { return values_[i]; }
    std::size_t size() const { return count_; }

  private:
    const std::size_t count_;
    hos::HOSValue few_[8];
    std::unique_ptr<hos::HOSValue[]> many_;
    hos::HOSValue* values_ = few_;
};

// The input values of one call; ends those that were made for it.
class InputValues {
  public:
    InputValues(const MethodPlan& plan, Inputs inputs)
        : plan_(plan), inputs_(inputs), values_(inputs.size()) {
        try {
            for (; made_ < inputs.size(); ++made_)
                values_[made_] = plan.input(made_).valueOf(inputs[made_]);
        } catch (...) {
            release();
            throw;
        }
    }
    InputValues(const InputValues&) = delete;
    InputValues& operator=(const InputValues&) = delete;
    ~InputValues() { release(); }

    hos::HOSValue* data() { return values_.data(); }

  private:
    void release() {
        for (std::size_t i = 0; i < made_; ++i)
            plan_.input(i).endInput(values_[i], inputs_[i]);
    }

    const MethodPlan& plan_;
    const Inputs inputs_;
    Values values_;
    std::size_t made_ = 0;
};

// The output values of one call; ends what nobody took.
class OutputValues {
  public:
    OutputValues(const MethodPlan& plan, std::size_t room) : plan_(plan), values_(room) {}
    OutputValues(const OutputValues&) = delete;
    OutputValues& operator=(const OutputValues&) = delete;
    ~OutputValues() {
        for (std::size_t i = 0; i < values_.size(); ++i)
            if (const TypeEntry* type = values_[i].isNull() ? nullptr : typeOf(i))
                type->releaseValue(values_[i]);
    }

    hos::HOSValue* data() { return values_.data(); }
    std::size_t size() const { return values_.size(); }

    // Null for a value that stands for no array.
    harray::unique_array take(std::size_t i) {
        const TypeEntry* type = typeOf(i);
        return type ? type->takeArray(std::exchange(values_[i], {})) : nullptr;
    }

  private:
    const TypeEntry* typeOf(std::size_t i) const {
        if (plan_.outputs.empty()) return nullptr;
        if (i >= plan_.outputs.size() && !plan_.variableOutput) return nullptr;
        return &resolved(*plan_.outputs[std::min(i, plan_.outputs.size() - 1)]);
    }

    const MethodPlan& plan_;
    Values values_;
};

} // namespace

void MethodPlan::invoke(int outputCount, hxArray** results, Inputs given, hxArray* made) const {
    const auto wanted = static_cast<std::size_t>(std::max(outputCount, 0));
    harray::unique_array preset(made);
    if (!gives(wanted))
        fail(keys::TooManyOutputs, std::string(method->getName()),
             static_cast<std::int64_t>(outputs.size()));
    InputValues in(*this, given);
    OutputValues out(*this, std::max({outputs.size(), wanted, std::size_t{1}}));
    out.data()[0] = hos::HOSValue::ofPointer(preset.release());
    auto produced = static_cast<std::uint32_t>(wanted);
    method->invoke(hos::HOSGetPublicClient(), &produced, out.data(),
                   static_cast<std::int32_t>(given.size()), in.data());

    const std::size_t delivered =
        std::min({std::size_t{produced}, out.size(), std::max(wanted, std::size_t{1})});
    std::size_t i = 0;
    try {
        for (; i < std::max(delivered, wanted); ++i) {
            harray::unique_array array = i < delivered ? out.take(i) : nullptr;
            results[i] = array ? array.release() : hxCreateSharedDataCopy(nullptr);
        }
    } catch (...) {
        while (i-- > 0)
            harray::destroyArray(std::exchange(results[i], nullptr));
        throw;
    }
}

void MethodGroup::call(int outputCount, hxArray** outputs, int inputCount,
                       const hxArray* const* inputs) {
    const Inputs given(inputs, static_cast<std::size_t>(inputCount));
    choose(given, outputCount).invoke(outputCount, outputs, given);
}

} // namespace velmar
