// The one kind of method signature that there is.
#pragma once

#include "host/member_info.h"

namespace hos {

class Signature final : public HOSMethodSignature {
  public:
    Enumeration<id>* getInputs(Enumeration<id>* out) const override;
    Enumeration<id>* getOutputs(Enumeration<id>* out) const override;
    void addInput(id type) override { inputs.push_back(type); }
    void addInput(id type, id) override { inputs.push_back(type); }
    void addOutput(id type) override { outputs.push_back(type); }
    void setVariableInput() override { variableInput = true; }
    void setOptionalInputCount(std::size_t count) override { optionalInputs = count; }
    void setVariableOutput() override { variableOutput = true; }

    std::vector<id> inputs;
    std::vector<id> outputs;
    std::size_t optionalInputs = 0;
    bool variableInput = false;
    bool variableOutput = false;
};

} // namespace hos
