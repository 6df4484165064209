#include <gmock/gmock.h>
#include <stdlib.h>
#include <sys/wait.h>

#include <clocale>
#include <cmath>
#include <fstream>
#include <limits>
#include <memory>
#include <random>
#include <string>

#include "platform/fake/fake_property_list_coder.h"
#include "platform/plist/plist_coder.h"
#include "platform/plist/plist_guard.h"
#include "tests/support/temporary_folder.h"

namespace pintle {
namespace {

struct FakeLists {
    static std::unique_ptr<PropertyListCoder> make() { return std::make_unique<FakePropertyListCoder>(); }
};
struct LibraryLists {
    static std::unique_ptr<PropertyListCoder> make() { return makePlistCoder(); }
};

using PropertyListCoders = ::testing::Types<FakeLists, LibraryLists>;

}  // namespace
}  // namespace pintle

#include "tests/contract/property_list_coder_contract.h"

namespace pintle {
namespace {

class PlistCoder : public ::testing::Test {
  protected:
    std::optional<PropertyValue> decode(std::string_view text) { return coder_->decode(bytesOf(text)); }
    std::optional<PropertyValue> decodeBody(const std::string& body) {
        return decode("<plist version=\"1.0\">" + body + "</plist>");
    }
    std::unique_ptr<PropertyListCoder> coder_ = makePlistCoder();
};

/// A binary list of hand-made objects with one-byte references.
Bytes binaryList(const std::vector<Bytes>& objects, std::uint64_t root = 0) {
    Bytes list = bytesOf("bplist00");
    Bytes table;
    const auto append = [](Bytes& to, std::uint64_t value, int size) {
        for (int i = size - 1; i >= 0; --i) to.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    };
    for (const auto& object : objects) {
        append(table, list.size(), 4);
        list.insert(list.end(), object.begin(), object.end());
    }
    const std::uint64_t tableAt = list.size();
    list.insert(list.end(), table.begin(), table.end());
    list.insert(list.end(), 6, 0);
    list.push_back(4);
    list.push_back(1);
    append(list, objects.size(), 8);
    append(list, root, 8);
    append(list, tableAt, 8);
    return list;
}

TEST_F(PlistCoder, FormsAreTheStandardOnes) {
    const auto binary = coder_->encode(everyType(), PropertyListFormat::binary).value();
    EXPECT_EQ(std::string(binary.begin(), binary.begin() + 8), "bplist00");
    const auto xml = coder_->encode(everyType(), PropertyListFormat::xml).value();
    EXPECT_EQ(std::string(xml.begin(), xml.begin() + 38), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
}

TEST_F(PlistCoder, AnotherReaderUnderstandsBothForms) {
    if (::access("/usr/bin/python3", X_OK) != 0) GTEST_SKIP() << "no /usr/bin/python3";
    const TemporaryFolder folder;
    auto values = everyType();
    // The other reader has no dates before the year 1 or after 9999, and none of these is.
    writeFile(folder.path() / "binary", coder_->encode(values, PropertyListFormat::binary).value());
    writeFile(folder.path() / "xml", coder_->encode(values, PropertyListFormat::xml).value());
    writeFile(folder.path() / "check.py", std::string_view(R"(
import plistlib, sys, datetime
for name in ("binary", "xml"):
    with open(sys.argv[1] + "/" + name, "rb") as f:
        v = plistlib.load(f)
    assert v["true"] is True and v["false"] is False
    assert type(v["zero"]) is int and v["zero"] == 0 and v["negative"] == -1
    assert v["smallest"] == -2**63 and v["largest"] == 2**63 - 1
    assert v["byte"] == 255 and v["word"] == 65536
    assert v["real"] == 0.1 and type(v["whole real"]) is float and v["whole real"] == 1.0
    assert v["negative real"] == -1234.5678901234567
    assert v["tiny real"] == 5e-324 and v["huge real"] == 1.7976931348623157e308
    assert v["text"] == "plain" and v["empty"] == ""
    assert v["marks"] == "<key>&amp;\"'</key>\n\t", v["marks"]
    assert v["letters"] == "\u00e4\u20ac\U0001f5b1"
    assert v["\u00e4 key & <mark>"] == "value"
    assert v["data"] == bytes([0, 255, 10, 13, 60]) and v["no data"] == b""
    assert v["date"] == datetime.datetime(2001, 1, 1)
    assert v["later date"] == datetime.datetime(2026, 2, 27), v["later date"]
    assert v["earlier date"] == datetime.datetime(1970, 1, 1)
    assert v["far date"] == datetime.datetime(4001, 1, 1)
    assert v["list"] == [1, 2.0, "three", True, [], {}]
    assert v["nested"] == {"a": {"b": [[1]]}}
    for fmt, out in ((plistlib.FMT_BINARY, "/b2"), (plistlib.FMT_XML, "/x2")):
        with open(sys.argv[1] + out, "wb") as f:
            plistlib.dump(v, f, fmt=fmt)
)"));
    const std::string command =
        "/usr/bin/python3 '" + (folder.path() / "check.py").string() + "' '" + folder.path().string() + "'";
    ASSERT_EQ(std::system(command.c_str()), 0);
    for (const char* name : {"b2", "x2"}) {
        std::ifstream file(folder.path() / name, std::ios::binary);
        const Bytes bytes{std::istreambuf_iterator<char>(file), {}};
        EXPECT_EQ(coder_->decode(bytes), PropertyValue(values)) << name;
    }
}

TEST_F(PlistCoder, ADecimalCommaInTheUsersLocaleChangesNothing) {
    const TemporaryFolder folder;
    const std::string make =
        "localedef -i de_DE -f UTF-8 '" + (folder.path() / "de_DE.UTF-8").string() + "' > /dev/null 2>&1";
    [[maybe_unused]] const int made = std::system(make.c_str());
    ::setenv("LOCPATH", folder.path().c_str(), 1);
    const bool comma = std::setlocale(LC_ALL, "de_DE.UTF-8") && *std::localeconv()->decimal_point == ',';
    const auto xml = coder_->encode(0.85, PropertyListFormat::xml);
    const auto back = xml ? coder_->decode(*xml) : std::nullopt;
    std::setlocale(LC_ALL, "C.UTF-8");
    ::unsetenv("LOCPATH");
    if (!comma) GTEST_SKIP() << "no locale with a decimal comma";
    ASSERT_TRUE(xml);
    const std::string text(xml->begin(), xml->end());
    EXPECT_NE(text.find("<real>0.8"), std::string::npos) << text;
    EXPECT_EQ(back, PropertyValue(0.85));
}

TEST_F(PlistCoder, ReadsAFileAsPeopleEditIt) {
    const auto value = decode(R"(<?xml version="1.0" encoding="UTF-8"?>
<!-- by hand -->
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
  <key>glassMode</key> <true></true>
  <!-- <key>old</key> <integer>1</integer> -->
  <key>cursorScale</key><real> 1.5 </real>
  <key>hex</key><integer>0x1F</integer>
  <key>name</key><string>a<![CDATA[<b> & ]]>c &#228;</string>
  <key>excludedApps</key><array/>
</dict>
</plist>
<!-- the end -->
)");
    EXPECT_EQ(value, PropertyValue(PropertyDictionary{{"glassMode", true},
                                                      {"cursorScale", 1.5},
                                                      {"hex", 31},
                                                      {"name", "a<b> & c \xC3\xA4"},
                                                      {"excludedApps", PropertyArray{}}}));
}

TEST_F(PlistCoder, AnUnsignedIntegerAboveTheSignedRangeReadsAsTheNearestReal) {
    EXPECT_EQ(decodeBody("<integer>18446744073709551615</integer>"), PropertyValue(18446744073709551615.0));
    EXPECT_EQ(decodeBody("<integer>-9223372036854775808</integer>"),
              PropertyValue(std::numeric_limits<std::int64_t>::min()));
    Bytes wide = {0x14};
    wide.insert(wide.end(), 8, 0);
    wide.insert(wide.end(), 8, 0xff);
    EXPECT_EQ(coder_->decode(binaryList({wide})), PropertyValue(18446744073709551615.0));
}

TEST_F(PlistCoder, AUidReadsAsTheDictionaryThatStandsForIt) {
    EXPECT_EQ(coder_->decode(binaryList({{0x80, 5}})), PropertyValue(PropertyDictionary{{"CF$UID", 5}}));
    EXPECT_EQ(decodeBody("<dict><key>CF$UID</key><integer>5</integer></dict>"),
              PropertyValue(PropertyDictionary{{"CF$UID", 5}}));
}

TEST_F(PlistCoder, MicrosecondsOfADateSurviveInTheBinaryForm) {
    const PropertyDate date{700000000.25};
    EXPECT_EQ(coder_->decode(coder_->encode(date, PropertyListFormat::binary).value()), PropertyValue(date));
    EXPECT_EQ(coder_->decode(coder_->encode(date, PropertyListFormat::xml).value()),
              PropertyValue(PropertyDate{700000000}));
}

TEST_F(PlistCoder, DatesBeforeTheYear1000AreReadAsTheyWereWritten) {
    for (const auto format : {PropertyListFormat::binary, PropertyListFormat::xml})
        for (const double seconds : {-51270119408.0, -32000000000.0, -63113904000.0})
            EXPECT_EQ(coder_->decode(*coder_->encode(PropertyDate{seconds}, format)),
                      PropertyValue(PropertyDate{seconds}))
                << seconds;
}

TEST_F(PlistCoder, ADateThatNoFormCanHoldIsAbsentSoThatWhatIsReadCanBeWritten) {
    for (const auto* text : {"0001-00-00T00:00:00Z", "0001-01-00T00:00:00Z", "9999-12-31T23:59:60Z"})
        EXPECT_EQ(decodeBody("<date>" + std::string(text) + "</date>"), std::nullopt) << text;
    for (const auto* text : {"0001-01-01T00:00:00Z", "9999-12-31T23:59:59Z"}) {
        const auto date = decodeBody("<date>" + std::string(text) + "</date>");
        ASSERT_TRUE(date) << text;
        for (const auto format : {PropertyListFormat::xml, PropertyListFormat::binary})
            EXPECT_TRUE(coder_->encode(*date, format)) << text;
    }
}

TEST_F(PlistCoder, TheLastSecondBeforeTheEpochStaysBeforeIt) {
    for (const double seconds : {-0.0625, -0.999, 0.0625})
        EXPECT_EQ(coder_->decode(*coder_->encode(PropertyDate{seconds}, PropertyListFormat::binary)),
                  PropertyValue(PropertyDate{seconds}));
}

TEST_F(PlistCoder, ValuesWithoutAFormAreAbsent) {
    for (const auto format : kFormats) {
        EXPECT_FALSE(coder_->encode(std::string("a\0b", 3), format));
        EXPECT_FALSE(coder_->encode("\xff", format));
        EXPECT_FALSE(coder_->encode("\xed\xa0\x80", format));
        EXPECT_FALSE(coder_->encode(PropertyDictionary{{std::string("\0", 1), 1}}, format));
        EXPECT_FALSE(coder_->encode(PropertyDate{std::numeric_limits<double>::infinity()}, format));
        EXPECT_FALSE(coder_->encode(PropertyArray{PropertyDate{1e300}}, format));
    }
    EXPECT_FALSE(coder_->encode("\x1b[0m", PropertyListFormat::xml));
    EXPECT_TRUE(coder_->encode("\x1b[0m", PropertyListFormat::binary));
}

TEST_F(PlistCoder, DamagedXmlIsAbsent) {
    for (const char* body : {"",
                             "<dict>",
                             "<dict><key>a</key></dict>",
                             "<dict><string>a</string><string>b</string></dict>",
                             "<dict><key>a</key><key>b</key></dict>",
                             "<array><integer>1</array></integer>",
                             "<true/><true/>",
                             "<integer>twelve</integer>",
                             "<integer></integer>",
                             "<integer>12x</integer>",
                             "<real>0,85</real>",
                             "<real></real>",
                             "<date>yesterday</date>",
                             "<string>&unknown;</string>",
                             "<string>&#0;</string>",
                             "<string>&amp</string>",
                             "<string><b>x</b></string>",
                             "<set/>",
                             "<null/>",
                             "text",
                             "<array>text</array>",
                             "<key>a</key>",
                             "<true>yes</true>",
                             "<!ENTITY a \"b\">",
                             "<string>a</strin>",
                             "<array foo=\"</array>\">",
                             "<plist version=\"1.0\"></plist>"})
        EXPECT_FALSE(decodeBody(body)) << body;
    EXPECT_FALSE(decode("<true/>"));
    EXPECT_FALSE(decode("<plist version=\"1.0\"><true/></plist><plist version=\"1.0\"><true/></plist>"));
    EXPECT_FALSE(
        decode("<!DOCTYPE plist [<!ENTITY a \"b\">]><plist version=\"1.0\"><string>&a;</string></plist>"));
}

std::string nestedXml(int levels) {
    std::string body;
    for (int i = 0; i < levels; ++i) body += "<array>";
    for (int i = 0; i < levels; ++i) body += "</array>";
    return body;
}

TEST_F(PlistCoder, DeepNestingIsRefusedBeforeTheLibrarySeesIt) {
    EXPECT_TRUE(decodeBody(nestedXml(kDeepestPropertyList)));
    EXPECT_FALSE(decodeBody(nestedXml(kDeepestPropertyList + 1)));
    EXPECT_FALSE(decodeBody(nestedXml(1'000'000)));

    // A chain of arrays of one element each, with references of one byte, and one that contains itself.
    std::vector<Bytes> chain;
    for (std::uint8_t i = 0; i < kDeepestPropertyList - 1; ++i)
        chain.push_back({0xa1, static_cast<std::uint8_t>(i + 1)});
    chain.push_back({0xa0});
    EXPECT_TRUE(coder_->decode(binaryList(chain)));
    chain.back() = {0xa1, static_cast<std::uint8_t>(chain.size())};
    chain.push_back({0xa0});
    EXPECT_FALSE(coder_->decode(binaryList(chain)));
    EXPECT_FALSE(coder_->decode(binaryList({{0xa1, 0}})));

    PropertyValue deep = PropertyArray{};
    for (int i = 1; i < kDeepestPropertyList; ++i) deep = PropertyArray{deep};
    EXPECT_TRUE(coder_->encode(deep, PropertyListFormat::binary));
    EXPECT_FALSE(coder_->encode(PropertyArray{deep}, PropertyListFormat::binary));
}

TEST_F(PlistCoder, SharedObjectsThatUnfoldWithoutEndAreRefused) {
    // 32 arrays that each hold the next one twice: 4 billion values in 200 bytes.
    std::vector<Bytes> objects;
    for (std::uint8_t i = 0; i < 32; ++i)
        objects.push_back({0xa2, static_cast<std::uint8_t>(i + 1), static_cast<std::uint8_t>(i + 1)});
    objects.push_back({0x09});
    EXPECT_FALSE(coder_->decode(binaryList(objects)));
    // A megabyte of data that two hundred elements share.
    Bytes data = {0x4f, 0x12, 0x00, 0x10, 0x00, 0x00};
    data.resize(data.size() + (1U << 20), 7);
    Bytes list = {0xaf, 0x10, 200};
    list.insert(list.end(), 200, 1);
    EXPECT_FALSE(coder_->decode(binaryList({list, data})));
}

TEST_F(PlistCoder, BinaryListsThatLieAboutThemselvesAreAbsent) {
    const Bytes sound = binaryList({{0xa1, 1}, {0x09}});
    ASSERT_TRUE(coder_->decode(sound));
    EXPECT_FALSE(coder_->decode(binaryList({{0xa1, 7}, {0x09}})));
    EXPECT_FALSE(coder_->decode(binaryList({{0x09}}, 1)));
    EXPECT_FALSE(coder_->decode(binaryList({{0x5f, 0x13, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff}})));
    EXPECT_FALSE(coder_->decode(binaryList({{0xdf, 0x13, 0x40, 0, 0, 0, 0, 0, 0, 0}})));
    EXPECT_FALSE(coder_->decode(binaryList({{0xd1, 1, 1}, {0x09}})));
    EXPECT_FALSE(coder_->decode(binaryList({{0x00}})));
    EXPECT_FALSE(coder_->decode(binaryList({{0xc0}})));
    EXPECT_FALSE(coder_->decode(binaryList({{0x33, 0x7f, 0xf0, 0, 0, 0, 0, 0, 0}})));
    // Text with a NUL, with bytes beyond ASCII, with half a surrogate pair; a key that is no text.
    EXPECT_FALSE(coder_->decode(binaryList({{0x53, 'a', 0, 'b'}})));
    EXPECT_FALSE(coder_->decode(binaryList({{0xd1, 1, 2}, {0x53, 'a', 0, 'b'}, {0x09}})));
    EXPECT_FALSE(coder_->decode(binaryList({{0x62, 0, 'a', 0, 0}})));
    EXPECT_FALSE(coder_->decode(binaryList({{0x51, 0xe4}})));
    EXPECT_FALSE(coder_->decode(binaryList({{0x61, 0xd8, 0x3d}})));
    EXPECT_FALSE(coder_->decode(binaryList({{0x61, 0xdd, 0xb1}})));
    EXPECT_EQ(coder_->decode(binaryList({{0x62, 0xd8, 0x3d, 0xdd, 0xb1}})),
              PropertyValue("\xF0\x9F\x96\xB1"));
    // Each byte of the trailer at each of a few values.
    for (std::size_t i = sound.size() - 26; i < sound.size(); ++i)
        for (const int value : {0, 1, 2, 8, 9, 127, 255}) {
            Bytes damaged = sound;
            if (damaged[i] == value) continue;
            damaged[i] = static_cast<std::uint8_t>(value);
            coder_->decode(damaged);
        }
}

TEST_F(PlistCoder, RandomDamageNeverDoesHarm) {
    std::mt19937 random(7);
    for (const auto format : kFormats) {
        const auto sound = coder_->encode(everyType(), format).value();
        for (int i = 0; i < 3000; ++i) {
            auto damaged = sound;
            for (int k = 0; k < 3; ++k)
                damaged[random() % damaged.size()] = static_cast<std::uint8_t>(random() % 256);
            const auto value = coder_->decode(damaged);
            if (value) (void)coder_->encode(*value, format);
        }
    }
}

}  // namespace
}  // namespace pintle
