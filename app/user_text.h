// Texts that people read, as the models give them: English source and what is put into it. Values; any
// thread.
//
// How they are translated: every source stands in one of the models' lists of texts as
// translatable("Pintle", "…"), which the extraction tool reads as QT_TRANSLATE_NOOP
// (lupdate -tr-function-alias QT_TRANSLATE_NOOP+=translatable). The user interface looks the source up in the
// context "Pintle" and replaces "%1" by the argument.
#pragma once

#include <string>
#include <string_view>
#include <utility>

namespace pintle {

/// Marks `text` for the extraction of texts and answers it.
constexpr std::string_view translatable(std::string_view /*context*/, std::string_view text) { return text; }

struct UserText {
    /// English, with at most one "%1". Empty: the argument is shown as it is, in every language.
    std::string source;
    std::string argument;

    UserText() = default;
    explicit UserText(std::string_view english, std::string put = {})
        : source(english), argument(std::move(put)) {}
    /// A name, an error of the system: what is never translated.
    static UserText verbatim(std::string text) { return UserText("", std::move(text)); }

    bool empty() const { return source.empty() && argument.empty(); }
    std::string english() const;
    friend bool operator==(const UserText&, const UserText&) = default;
};

/// The nearest whole percentage: 115 for 1.15, although 1.15 × 100 is less than 115.
long long wholePercent(double value);
/// "115%".
UserText percentText(double value);

/// What assistive technology learns about a control.
enum class AccessibleRole { button, link, listItem, radioButton, slider, toggle };

}  // namespace pintle
