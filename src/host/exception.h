// The exceptions by which every failure is reported to the host.
#pragma once

#include "host/message.h"

#include <boost/exception/all.hpp>

#include <exception>
#include <string>
#include <utility>

namespace hbase::core::except {

class IException : public boost::exception_detail::clone_base {
  public:
    // The message's text, made when it is asked for.
    virtual std::string GetMessageTxt() const = 0;
    virtual std::u16string GetUnicodeMessageTxt() const = 0;
};

class IUserException : public IException {
  public:
    // The error's identifier, "VELMAR:COM:numargs".
    virtual const std::string& GetErrorId() const = 0;
};

class IMsgIDException : public IUserException {
  public:
    virtual const hmsgcore::BaseMsgID& GetMsgID() const = 0;

    static std::string get_error_id(const hmsgcore::BaseMsgID& message) {
        return message.component + ":" + message.key;
    }
    static std::string get_error_id(const std::string& identifier) { return identifier; }
};

// The error of key class `M`. Holds a copy of the message and the identifier.
template <class M, class Base = std::exception, class Extra = void>
class Exception : public IMsgIDException, public boost::exception, public Base {
  public:
    explicit Exception(const M& message) : message_(message), identifier_(get_error_id(message)) {}
    Exception(const std::string& identifier, const M& message)
        : message_(message), identifier_(get_error_id(identifier)) {}

    const M& message() const { return message_; }
    const hmsgcore::BaseMsgID& GetMsgID() const override { return message_; }
    const std::string& GetErrorId() const override { return identifier_; }
    std::u16string GetUnicodeMessageTxt() const override;
    std::string GetMessageTxt() const override;
    const char* what() const noexcept override;

    const clone_base* clone() const override { return new Exception(*this); }
    void rethrow() const override { throw Exception(*this); }

  private:
    M message_;
    std::string identifier_;
    mutable std::string text_; // what `what` points at
};

// The text of a message, as narrow text.
std::string narrowMessageText(const hmsgcore::BaseMsgID& message);

template <class M, class Base, class Extra>
std::u16string Exception<M, Base, Extra>::GetUnicodeMessageTxt() const {
    return hsys::i18n::MessageCatalog::get_message(message_, hsys::i18n::HsysLocale::global());
}

template <class M, class Base, class Extra>
std::string Exception<M, Base, Extra>::GetMessageTxt() const {
    return narrowMessageText(message_);
}

template <class M, class Base, class Extra>
const char* Exception<M, Base, Extra>::what() const noexcept {
    try {
        if (text_.empty()) text_ = GetMessageTxt();
        return text_.c_str();
    } catch (...) {
        return identifier_.c_str();
    }
}

} // namespace hbase::core::except

namespace hmsgcore {

// Throws the error of `message`, with the key's own identifier or another one.
template <class M>
[[noreturn]] void raise(const M& message) {
    throw hbase::core::except::Exception<M, std::exception, void>(message);
}
template <class M>
[[noreturn]] void raise(const std::string& identifier, const M& message) {
    throw hbase::core::except::Exception<M, std::exception, void>(identifier, message);
}

} // namespace hmsgcore

namespace harray::detail {

// The host's errors for wrong numbers of inputs and outputs of a function.
[[noreturn]] void error_maxlhs();
[[noreturn]] void error_maxrhs();
[[noreturn]] void error_minrhs();

// The older way to report an error. Raises it.
void do_legacy_hx_error(const hbase::core::except::IUserException& error);

} // namespace harray::detail
