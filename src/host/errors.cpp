// Errors of programs, the host's errors for wrong counts, and errors of any kind as text.
#include "host/embedding.h"
#include "host/exception.h"
#include "host/host_messages.h"
#include "platform/com.h"
#include "platform/text.h"

#include <boost/algorithm/string/trim.hpp>

#include <cstdint>
#include <new>
#include <type_traits>

namespace velmar {
namespace {

// An error whose text is no message of the catalogue.
class ProgramError final : public hbase::core::except::IUserException, public std::exception {
  public:
    ProgramError(std::string identifier, std::string text)
        : identifier_(std::move(identifier)), text_(std::move(text)) {}

    std::string GetMessageTxt() const override { return text_; }
    std::u16string GetUnicodeMessageTxt() const override { return platform::utf16FromUtf8(text_); }
    const std::string& GetErrorId() const override { return identifier_; }
    const char* what() const noexcept override { return text_.c_str(); }
    const clone_base* clone() const override { return new ProgramError(*this); }
    void rethrow() const override { throw ProgramError(*this); }

  private:
    std::string identifier_;
    std::string text_;
};

// The text of a COM support error, which is narrow or wide as the system has it; null is no text.
template <class Unit>
std::string narrowText(const Unit* text) {
    if (!text) return {};
    if constexpr (std::is_same_v<Unit, char>)
        return text;
    else
        return platform::toNarrow(text);
}

} // namespace

void raiseError(const std::string& identifier, const std::string& text) {
    throw ProgramError(identifier, text);
}

ErrorText describeError(std::exception_ptr error) {
    static constexpr const char* internal = "VELMAR:internal";
    try {
        std::rethrow_exception(std::move(error));
    } catch (const hbase::core::except::IUserException& raised) {
        // Texts of the system, which messages may end with, have line ends.
        return {raised.GetErrorId(), boost::algorithm::trim_right_copy(raised.GetMessageTxt())};
    } catch (const _com_error& failed) {
        const auto code = static_cast<std::uint32_t>(failed.Error());
        return {"VELMAR:COM:E" + std::to_string(code), narrowText(failed.ErrorMessage())};
    } catch (const std::bad_alloc&) {
        return {"VELMAR:nomem", "There is not enough memory."};
    } catch (const std::exception& failed) {
        return {internal, failed.what()};
    } catch (...) {
        return {internal, "An error of an unknown kind occurred."};
    }
}

} // namespace velmar

namespace harray::detail {

void error_maxlhs() { velmar::fail(velmar::keys::maxlhs); }
void error_maxrhs() { velmar::fail(velmar::keys::maxrhs); }
void error_minrhs() { velmar::fail(velmar::keys::minrhs); }

void do_legacy_hx_error(const hbase::core::except::IUserException& error) { error.rethrow(); }

} // namespace harray::detail
