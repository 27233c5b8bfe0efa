// What the sample server's members do.
#include "servers/sample/server.h"

#include "servers/sample/faults.h"
#include "servers/sample/identities.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <string>

namespace sample {

namespace {

// Errors are reported as the class's.
kit::ServerError serverError(OleString description, WORD code) {
    return {
        .source = OLESTR("Sample.Server"), .description = std::move(description), .wCode = code};
}

} // namespace

Server::Server() : Events(definition()) {}

Server::~Server() = default;

void Server::divide(LONG dividend, LONG divisor, Out<LONG> quotient, Out<LONG> remainder) {
    if (divisor == 0) {
        auto error = serverError(OLESTR("Division by zero."), 1000);
        error.helpFile = OLESTR("sample.chm");
        error.helpContext = 0x2A;
        throw error;
    }
    if (dividend == std::numeric_limits<LONG>::min() && divisor == -1)
        throw kit::ComFailure{DISP_E_OVERFLOW};
    quotient = dividend / divisor;
    remainder = dividend % divisor;
}

OleString Server::greet(Optional<OleView> name) {
    if (!name) return OLESTR("Hello!");
    return OLESTR("Hello, ") + OleString(*name) + OLESTR("!");
}

double Server::minMax(double a, double b, double c, Out<double> min, Out<double> max) {
    min = std::min({a, b, c});
    max = std::max({a, b, c});
    return (a + b + c) / 3;
}

Color Server::next(Color color) {
    switch (color) {
    case Color::Red:
        return Color::Green;
    case Color::Green:
        return Color::Blue;
    default:
        return Color::Red;
    }
}

double Server::sum(kit::ArrayView<double> values) {
    const auto elements = kit::elementsOf<double>(values.array);
    return std::accumulate(elements.begin(), elements.end(), 0.0);
}

kit::Array<double> Server::makeVector(LONG count) {
    if (count < 0) throw kit::ComFailure{E_INVALIDARG};
    kit::Array<double> result{platform::ScopedSafeArray::adopt(
        SafeArrayCreateVector(VT_R8, 0, static_cast<ULONG>(count)))};
    if (!result.array) throw std::bad_alloc();
    const auto elements = kit::elementsOf<double>(result.array.get());
    std::iota(elements.begin(), elements.end(), 1.0);
    return result;
}

void Server::reset() {
    name_ = OLESTR("Sample");
    width_ = 100;
    height_ = 50;
    color_ = Color::Red;
    visible_ = false;
    price_ = {};
    child_.reset();
    items_.clear();
    tag_.reset();
    count_ = 0;
}

void Server::raise(LONG code) {
    auto text =
        OLESTR("The server raised error ") + platform::toOle(std::to_string(code)) + OLESTR(".");
    throw serverError(std::move(text), static_cast<WORD>(code));
}

void Server::crash() { writeThroughNull(); }
void Server::crashDivide() { divideByZero(); }
void Server::crashCall() { callBadPointer(); }
void Server::crashThrow() { throwException(); }

platform::ComPtr<IDispatch> Server::newChild(Optional<OleView> name) {
    ++count_;
    return kit::createDispatch<Child>(OleString(name.value_or(OLESTR("child"))));
}

void Server::registerActive() {
    revokeActive();
    kit::check(RegisterActiveObject(static_cast<IDispatch*>(this), serverClass, ACTIVEOBJECT_STRONG,
                                    &active_));
}

void Server::revokeActive() {
    if (active_) kit::check(RevokeActiveObject(std::exchange(active_, 0), nullptr));
}

void Server::setName(OleString name) {
    const OleString old = std::exchange(name_, std::move(name));
    fire(renamedEvent, old, name_);
}

OleString Server::item(LONG index) const {
    const auto found = items_.find(index);
    return found == items_.end() ? OleString() : found->second;
}

} // namespace sample
