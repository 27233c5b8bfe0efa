// A server object whose members are only described, for tests of what a description says.
#pragma once

#include "comruntime/type_description.h"
#include "support/served.h"

namespace axlink2::test {

class Probe : public kit::DispatchObject {
  public:
    using Builder = kit::ClassBuilder<Probe>;
    explicit Probe(const kit::ClassDefinition& definition) : DispatchObject(definition) {}

    static Builder builder() { return Builder("Probe", guidOf("Probe"), guidOf("IProbe")); }
    static HRESULT nothing(Probe&, kit::Call&) { return S_OK; }
    VARIANT_BOOL flag = VARIANT_FALSE;
    LONG number = 0;
};

inline std::unique_ptr<COMTypeDescription> describe(const kit::ClassDefinition& definition) {
    const auto server = kit::createDispatch<Probe>(definition);
    return COMTypeDescription::ofServer(server.get());
}

} // namespace axlink2::test
