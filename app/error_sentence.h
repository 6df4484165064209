// What went wrong with a download, in plain words. Pure; any thread.
#pragma once

#include <array>
#include <string_view>

#include "app/user_text.h"

namespace pintle {

/// The sentence for an error as it is stored with a theme; empty where there is none that says more than the
/// error itself.
UserText errorSentence(std::string_view error);

namespace error_text {

inline constexpr auto noSuchFile = translatable("Pintle", "The server has no such file");
inline constexpr auto refused = translatable("Pintle", "The server refuses to give the file");
inline constexpr auto serverTrouble = translatable("Pintle", "The server has a problem; try again later");
inline constexpr auto damaged = translatable("Pintle", "The archive is damaged");
inline constexpr auto tooLarge = translatable("Pintle", "The archive is larger than a theme can be");
inline constexpr auto noCursors = translatable("Pintle", "The archive holds no cursors");
inline constexpr auto diskFull = translatable("Pintle", "The disk is full");
inline constexpr auto notAllowed = translatable("Pintle", "The themes folder cannot be written");
inline constexpr auto noConnection = translatable("Pintle", "The server could not be reached");
inline constexpr auto broken = translatable("Pintle", "The connection broke off");
inline constexpr auto distrusted = translatable("Pintle", "The server's identity could not be proved");
inline constexpr auto badAddress = translatable("Pintle", "The theme's address is not valid");
inline constexpr std::array all = {noSuchFile, refused,    serverTrouble, damaged, tooLarge,   noCursors,
                                   diskFull,   notAllowed, noConnection,  broken,  distrusted, badAddress};

}  // namespace error_text
}  // namespace pintle
