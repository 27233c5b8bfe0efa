// A server object whose members are only described, for tests of what a description says.
#pragma once

#include "comruntime/type_description.h"
#include "servers/kit/kit.h"

namespace axlink2::test {

class Probe : public kit::DispatchObject {
  public:
    using Builder = kit::ClassBuilder<Probe>;
    explicit Probe(const kit::ClassDefinition& definition) : DispatchObject(definition) {}

    static Builder builder() {
        return Builder("Probe", kit::guid("6A1D5C6E-0B57-4E3A-9B62-0D1B5A2F7C01"),
                       kit::guid("6A1D5C6E-0B57-4E3A-9B62-0D1B5A2F7C02"));
    }
    static HRESULT nothing(Probe&, kit::Call&) { return S_OK; }
    VARIANT_BOOL flag = VARIANT_FALSE;
    LONG number = 0;
};

inline std::unique_ptr<COMTypeDescription> describe(const kit::ClassDefinition& definition) {
    const auto server = kit::createDispatch<Probe>(definition);
    return COMTypeDescription::ofServer(server.get());
}

} // namespace axlink2::test
