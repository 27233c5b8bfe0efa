// A server with a member of every sort that the built-in methods tell apart.
#pragma once

#include "support/served.h"

#include <functional>
#include <map>

namespace axlink2::test {

enum class Shade : LONG {};

class Gadget : public Served<Gadget> {
  public:
    static constexpr const char* className = "Gadget";
    static void declare(Builder& builder) {
        builder.enumeration<Shade>("Shade", {{"dark", 0}, {"bright", 1}, {"gloomy", 0}})
            .property("Name", &Gadget::name, &Gadget::setName)
            .property("NameSpace", &Gadget::nameSpace)
            .property("Width", &Gadget::width, &Gadget::setWidth)
            .property("Shade", &Gadget::shade, &Gadget::setShade)
            .property("Count", &Gadget::count)
            .property("Bad", &Gadget::bad)
            .property("Secret", &Gadget::secret, &Gadget::setSecret)
            .hidden()
            .property("Item", &Gadget::item, &Gadget::setItem, {"index"})
            .raw({.name = "WriteOnly", .kind = INVOKE_PROPERTYPUT, .params = {{"value", VT_R8}}},
                 [](Gadget&, kit::Call&) { return S_OK; })
            .method("Reset", &Gadget::reset)
            .method("Add", &Gadget::add, {"a", "b"})
            .method("Both", &Gadget::both, {"other"})
            .method("Hidden", &Gadget::negative, {"x"})
            .hidden()
            .method("NewGadget", &Gadget::newGadget);
    }

    platform::OleString name() { return name_; }
    void setName(platform::OleString name) { name_ = std::move(name); }
    platform::OleString nameSpace() { return OLESTR("space"); }
    LONG width() { return width_; }
    void setWidth(LONG width) { width_ = width; }
    Shade shade() { return shade_; }
    void setShade(Shade shade) { shade_ = shade; }
    LONG count() {
        if (onCount) onCount();
        return 7;
    }
    LONG bad() { throw kit::ServerError{.description = OLESTR("Not now."), .wCode = 12}; }
    void setSecret(LONG secret) { secret_ = secret; }
    LONG secret() { return secret_; }
    platform::OleString item(LONG index) { return items_[index]; }
    void setItem(LONG index, platform::OleString text) { items_[index] = std::move(text); }

    void reset() { width_ = 0; }
    double add(double a, double b) { return a + b; }
    double both(kit::Out<LONG> other) { return other = 2, 1.5; }
    double negative(double x) { return -x; }
    platform::ComPtr<IDispatch> newGadget() { return kit::createDispatch<Gadget>(); }

    static inline std::function<void()> onCount; // what else happens when the count is read

  private:
    platform::OleString name_ = OLESTR("first");
    LONG width_ = 10;
    LONG secret_ = 5;
    Shade shade_{1};
    std::map<LONG, platform::OleString> items_;
};

} // namespace axlink2::test
