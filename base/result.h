// An answer or an error with a description that someone reads. Used where a failure is shown or logged;
// operations whose failure says nothing more than "absent" return std::optional instead.
#pragma once

#include <string>
#include <utility>
#include <variant>

namespace pintle {

struct Error {
    std::string domain;
    int code = 0;
    std::string description;
    friend bool operator==(const Error&, const Error&) = default;
};

template <typename T>
class [[nodiscard]] Result {
  public:
    Result(T value) : state_(std::in_place_index<0>, std::move(value)) {}
    Result(Error error) : state_(std::in_place_index<1>, std::move(error)) {}

    explicit operator bool() const { return state_.index() == 0; }
    /// Only when the result holds a value.
    const T& value() const& { return std::get<0>(state_); }
    T&& value() && { return std::get<0>(std::move(state_)); }
    /// Only when the result holds an error.
    const Error& error() const { return std::get<1>(state_); }

  private:
    std::variant<T, Error> state_;
};

struct Done {};
using Status = Result<Done>;

}  // namespace pintle
