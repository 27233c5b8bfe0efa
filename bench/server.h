// The server that the cases call, once bare and once as an object of its generated class.
#pragma once

#include "host/array.h"
#include "servers/kit/kit.h"

namespace axlink2::bench {

class Server : public kit::DispatchObject {
  public:
    static constexpr DISPID add = 1;
    static constexpr DISPID concat = 2;
    static constexpr DISPID width = 3;

    Server() : DispatchObject(definition()) {}
    static const kit::ClassDefinition& definition();

    double sum(double a, double b) { return a + b; }
    platform::OleString joined(platform::OleView a, platform::OleView b);
    double currentWidth() { return width_; }
    void setWidth(double width) { width_ = width; }

  private:
    double width_ = 1;
};

// A new server, as an object of its generated class.
harray::unique_array newServerObject();
// One server in both forms; made once, alive to the end of the program.
IDispatch* bareServer();
hxArray* serverObject();

} // namespace axlink2::bench
