// Registration of the namespaces.
#include "classmodel/namespaces.h"

namespace axlink2 {

void addNamespaces() {
    hos::HOSPackage::addNamespace(new COMNamespaceInfo());
    hos::HOSPackage::addNamespace(new COMInterfaceNamespaceInfo());
}

} // namespace axlink2
