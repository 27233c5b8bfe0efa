// The one kind of method signature that there is.
#pragma once

#include "host/member_info.h"

namespace hos {

class Signature final : public HOSMethodSignature {
  public:
    Enumeration<id>* getInputs(Enumeration<id>* out) const override;
    Enumeration<id>* getOutputs(Enumeration<id>* out) const override;
    void addInput(id type) override { addInput(type, id()); }
    void addInput(id type, id label) override {
        inputs.push_back(type);
        inputLabels.push_back(label);
    }
    void addOutput(id type) override { addOutput(type, id()); }
    void setVariableInput() override { variableInput = true; }
    void setOptionalInputCount(std::size_t count) override { optionalInputs = count; }
    void setVariableOutput() override { variableOutput = true; }
    void addOutput(id type, id label) override {
        outputs.push_back(type);
        outputLabels.push_back(label);
    }

    std::vector<id> inputs;
    std::vector<id> outputs;
    std::vector<id> inputLabels; // one for each input, empty where it has none
    std::vector<id> outputLabels;
    std::size_t optionalInputs = 0;
    bool variableInput = false;
    bool variableOutput = false;
};

} // namespace hos
