// A store of named values on one object: a struct in the added property "AppData".
//
// All four raise "VELMAR:class:InvalidHandle", and "VELMAR:COM:InvalidAppData" when a program has
// put something else into that property or the server has one of that name. The store is made when
// it is first asked for.
#pragma once

#include "builtins/builtin_declarations.h"

namespace axlink2 {

class COMSetappdataMethodInfo final
    : public Builtin<declarations::setappdata, COMAppdataBaseMethodInfo> {
  public:
    using Builtin::Builtin;

    // `setappdata(h, name, value)`: stores a value, in place of one that has that name.
    void invoke(const hos::HOSClient* client, std::uint32_t* outputCount, hos::HOSValue* outputs,
                std::int32_t inputCount, hos::HOSValue* inputs) override;
};

class COMGetappdataMethodInfo final
    : public Builtin<declarations::getappdata, COMAppdataBaseMethodInfo> {
  public:
    using Builtin::Builtin;

    // `getappdata(h)`: all values as a struct. `getappdata(h, name)`: one of them, 0-by-0 when
    // there is none.
    void invoke(const hos::HOSClient* client, std::uint32_t* outputCount, hos::HOSValue* outputs,
                std::int32_t inputCount, hos::HOSValue* inputs) override;
};

class COMRmappdataMethodInfo final
    : public Builtin<declarations::rmappdata, COMAppdataBaseMethodInfo> {
  public:
    using Builtin::Builtin;

    // `rmappdata(h, name)`: removes a value. Raises
    // "VELMAR:HostGraphics:Appdata:InvalidNameAppdata" when there is none.
    void invoke(const hos::HOSClient* client, std::uint32_t* outputCount, hos::HOSValue* outputs,
                std::int32_t inputCount, hos::HOSValue* inputs) override;
};

class COMIsappdataMethodInfo final
    : public Builtin<declarations::isappdata, COMAppdataBaseMethodInfo> {
  public:
    using Builtin::Builtin;

    // `isappdata(h, name)`: whether there is a value of that name. Letter case counts.
    void invoke(const hos::HOSClient* client, std::uint32_t* outputCount, hos::HOSValue* outputs,
                std::int32_t inputCount, hos::HOSValue* inputs) override;
};

} // namespace axlink2
