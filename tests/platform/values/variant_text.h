// VARIANTs as the recorded tables write them: "BYREF|I4 -> 77", "BSTR "a\000b"", "CY 12345/10000".
#pragma once

#include "test_object.h"

#include <deque>
#include <string>
#include <string_view>

namespace values_test {

// A VARIANT built from its text, with everything it refers to.
class WrittenVariant {
  public:
    WrittenVariant(std::string_view type, std::string_view value);
    explicit WrittenVariant(std::string_view typeAndValue);
    WrittenVariant(const WrittenVariant&) = delete;
    WrittenVariant& operator=(const WrittenVariant&) = delete;
    ~WrittenVariant();

    const VARIANT& get() const { return variant_; }

  private:
    VARIANT build(VARTYPE vt, std::string_view value);
    VARIANT buildDirect(VARTYPE vt, std::string_view value);
    VARIANT& keep(VARIANT value);

    std::deque<VARIANT> kept_; // what references lead to
    VARIANT variant_{};
};

VARTYPE parseType(std::string_view text); // raises when it is none
std::string typeName(VARTYPE vt);
std::string valueText(const VARIANT& value);
std::string hexText(HRESULT result); // 0x80020005
std::string quoted(BSTR text);       // in quotes, C escapes; null without quotes
std::string shapeText(const SAFEARRAY* array);

// "0x00000000 I4 77"; the value is left out where there is none.
std::string outcome(HRESULT result, const VARIANT& value);

} // namespace values_test
