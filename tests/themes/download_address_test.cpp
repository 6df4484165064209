#include "themes/download_address.h"

#include <gtest/gtest.h>

#include "themes/cursor_theme_info.h"

namespace pintle {
namespace {

TEST(DownloadAddress, EveryRowOfTheCatalogParses) {
    for (const auto& theme : CursorThemeInfo::catalog())
        EXPECT_TRUE(isAddress(theme.downloadURL)) << theme.id;
}

TEST(DownloadAddress, WhatIsNoAddressDoesNotParse) {
    for (const char* text :
         {"", "https://host/a b", "https://host/\n", "https://host/ü", "https://host/%", "https://host/%2",
          "https://host/%zz", "https://host/<a>", "https://host/\"", "https://host/a[1]", "https://host/#a#b",
          "https://host:port/a", "https://host:70000/", "://host", "https://host/a\\b", "https://host/{a}"})
        EXPECT_FALSE(isAddress(text)) << text;
    for (const char* text : {"https://host/a%20b?c=d#e", "https://[::1]:8080/a", "http://u:p@host:1/", "a"})
        EXPECT_TRUE(isAddress(text)) << text;
}

TEST(DownloadAddress, WithoutAMirrorItStaysAsItIs) {
    EXPECT_EQ(downloadAddress("https://host/a?b", std::nullopt), "https://host/a?b");
    EXPECT_EQ(downloadAddress("not an address", std::nullopt), std::nullopt);
}

TEST(DownloadAddress, AMirrorReplacesSchemeAndHostAndThePathStays) {
    const std::string address = "https://host.example:444/a/b.tar.xz?c=d#e";
    EXPECT_EQ(downloadAddress(address, "http://127.0.0.1:8080"), "http://127.0.0.1:8080/a/b.tar.xz?c=d#e");
    EXPECT_EQ(downloadAddress(address, "http://[::1]:8080/"), "http://[::1]:8080/a/b.tar.xz?c=d#e");
    EXPECT_EQ(downloadAddress("https://host", "http://localhost:1"), "http://localhost:1");
}

TEST(DownloadAddress, AMirrorThatIsMoreOrLessThanAnOriginIsRefused) {
    for (const char* mirror :
         {"", "127.0.0.1:8080", "http://a b", "http://host/path", "http://host?x", "//host"})
        EXPECT_EQ(downloadAddress("https://host/a", mirror), std::nullopt) << mirror;
}

}  // namespace
}  // namespace pintle
