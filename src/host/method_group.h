// The methods of one name that a class has, made ready for calls.
#pragma once

#include "host/dispatcher.h"
#include "host/embedding.h"
#include "host/member_info.h"
#include "host/type_entry.h"

#include <boost/container/small_vector.hpp>

#include <cstdint>
#include <vector>

namespace velmar {

// A method with its signature taken apart.
struct MethodPlan {
    MethodPlan(hos::HOSMethodInfo& method);

    hos::HOSMethodInfo* method;
    boost::container::small_vector<const TypeEntry*, 4> inputs;
    boost::container::small_vector<const TypeEntry*, 2> outputs;
    std::size_t required = 0; // inputs that can't be left out
    bool variableInput = false;
    bool variableOutput = false;
    bool callable = false; // by any program
    hos::Precedence precedence = hos::Precedence::Usual;

    bool takes(std::size_t count) const {
        return count >= required && (count <= inputs.size() || variableInput);
    }
    bool gives(std::size_t count) const { return count <= outputs.size() || variableOutput; }
    const TypeEntry& input(std::size_t i) const {
        return resolved(*inputs[i < inputs.size() ? i : inputs.size() - 1]);
    }
    // Calls the method; its inputs must fit. `made` is what stands in the first output before the
    // call and belongs to it. Outputs as in `Hfunction_handle::call`; none is set when it raises.
    void invoke(int outputCount, hxArray** outputs, Inputs inputs, hxArray* made = nullptr) const;
};

class MethodGroup final : public Hfunction_handle {
  public:
    MethodGroup(hos::id name, std::vector<MethodPlan> plans)
        : name_(name), plans_(std::move(plans)) {}

    void call(int outputCount, hxArray** outputs, int inputCount,
              const hxArray* const* inputs) override;
    // Of the highest precedence that has a method whose inputs fit, the method that fits best,
    // among those that give as many outputs as are wanted where one does. Raises when none fits the
    // inputs.
    const MethodPlan& choose(Inputs inputs, int outputCount) const;
    bool isCallable() const;
    const std::vector<MethodPlan>& plans() const { return plans_; }

  private:
    // Null when none fits.
    const MethodPlan* closest(hos::Precedence precedence, Inputs inputs, std::size_t wanted) const;

    hos::id name_;
    std::vector<MethodPlan> plans_;
};

} // namespace velmar
