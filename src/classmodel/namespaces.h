// The two namespaces that generated classes live in.
#pragma once

#include "host/class.h"

namespace axlink2 {

inline constexpr const char* comNamespace = "COM";
inline constexpr const char* interfaceNamespace = "Interface";

// A namespace that is filled from outside, by `addClass`; nothing in it is loaded on demand.
class COMNamespaceInfo : public hos::HOSNamespaceInfo {
  public:
    const char* getName() const override { return comNamespace; }
    void namespaceNotification(int, const char*) override {}
    void setPackage(hos::HOSPackage* assigned) override { package = assigned; }

    hos::HOSPackage* package = nullptr;
};

class COMInterfaceNamespaceInfo : public COMNamespaceInfo {
  public:
    const char* getName() const override { return interfaceNamespace; }
};

// Hands both to the host, COM first.
void addNamespaces();

} // namespace axlink2
