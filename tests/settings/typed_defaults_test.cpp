#include "settings/typed_defaults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <locale>

#include "platform/fake/fake_key_value_store.h"

namespace pintle {
namespace {

using testing::ElementsAre;
using testing::Optional;

struct TypedDefaultsTest : testing::Test {
    FakeKeyValueStore store;
    void stored(PropertyValue value) { store.domain->insert_or_assign("key", std::move(value)); }
    bool asBool(PropertyValue value) {
        stored(std::move(value));
        return boolValue(store, "key");
    }
    double asDouble(PropertyValue value) {
        stored(std::move(value));
        return doubleValue(store, "key");
    }
    std::optional<std::string> asString(PropertyValue value) {
        stored(std::move(value));
        return stringValue(store, "key");
    }
};

TEST_F(TypedDefaultsTest, AMissingValueReadsAsFalseZeroOrAbsent) {
    EXPECT_FALSE(boolValue(store, "key"));
    EXPECT_EQ(doubleValue(store, "key"), 0.0);
    EXPECT_EQ(stringValue(store, "key"), std::nullopt);
    EXPECT_EQ(stringArrayValue(store, "key"), std::nullopt);
    EXPECT_EQ(stringDictionaryValue(store, "key"), std::nullopt);
}

TEST_F(TypedDefaultsTest, ARegisteredDefaultAnswersForAMissingValue) {
    store.registerDefaults({{"key", 0.85}});
    EXPECT_EQ(doubleValue(store, "key"), 0.85);
}

TEST_F(TypedDefaultsTest, ARegisteredDefaultDoesNotAnswerForAnIllTypedValue) {
    store.registerDefaults({{"key", 0.85}});
    stored(PropertyArray{});
    EXPECT_EQ(doubleValue(store, "key"), 0.0);
    store.registerDefaults({{"key", true}});
    EXPECT_FALSE(boolValue(store, "key"));
}

TEST_F(TypedDefaultsTest, ANumberIsTrueUnlessItIsZero) {
    EXPECT_TRUE(asBool(true));
    EXPECT_FALSE(asBool(false));
    EXPECT_TRUE(asBool(1));
    EXPECT_TRUE(asBool(-3));
    EXPECT_TRUE(asBool(std::int64_t{1} << 32));
    EXPECT_FALSE(asBool(0));
    EXPECT_TRUE(asBool(0.5));
    EXPECT_FALSE(asBool(0.0));
}

TEST_F(TypedDefaultsTest, OnlyTextsThatSayYesAreTrue) {
    for (const auto* text : {"YES", "yes", "true", "TRUE", "True", "1"}) EXPECT_TRUE(asBool(text)) << text;
    for (const auto* text : {"NO", "false", "0", "", "yes please", "10", " YES", "on"})
        EXPECT_FALSE(asBool(text)) << text;
}

TEST_F(TypedDefaultsTest, ABoolOfNoTypeThatConvertsIsFalse) {
    EXPECT_FALSE(asBool(PropertyArray{true}));
    EXPECT_FALSE(asBool(PropertyDictionary{{"key", true}}));
    EXPECT_FALSE(asBool(PropertyData{1}));
    EXPECT_FALSE(asBool(PropertyDate{1}));
}

TEST_F(TypedDefaultsTest, ADoubleReadsFromNumbersAndBools) {
    EXPECT_EQ(asDouble(1.25), 1.25);
    EXPECT_EQ(asDouble(2), 2.0);
    EXPECT_EQ(asDouble(true), 1.0);
    EXPECT_EQ(asDouble(false), 0.0);
}

TEST_F(TypedDefaultsTest, ADoubleReadsFromTheNumberThatATextBeginsWith) {
    EXPECT_EQ(asDouble("1.5"), 1.5);
    EXPECT_EQ(asDouble(" \t1.5x"), 1.5);
    EXPECT_EQ(asDouble("-0.75"), -0.75);
    EXPECT_EQ(asDouble("+2"), 2.0);
    EXPECT_EQ(asDouble(".5"), 0.5);
    EXPECT_EQ(asDouble("3."), 3.0);
    EXPECT_EQ(asDouble("1e-2"), 0.01);
    EXPECT_EQ(asDouble("1e"), 1.0);
    EXPECT_EQ(asDouble("1e+x"), 1.0);
    EXPECT_EQ(asDouble("1,5"), 1.0);
    EXPECT_EQ(asDouble("0x10"), 0.0);
    EXPECT_EQ(asDouble("1_000"), 1.0);
    EXPECT_EQ(asDouble("0.1"), 0.1);
    EXPECT_EQ(asDouble("1.7976931348623157e308"), 1.7976931348623157e308);
    EXPECT_EQ(asDouble(std::string(400, '9') + "e-400"), 1.0);
}

TEST_F(TypedDefaultsTest, ADoubleThatCannotBeReadIsZero) {
    for (const auto* text : {"", " ", "large", "-", "+", ".", "e5", "-.e5", "nan", "inf", "1e999", "-1e999"})
        EXPECT_EQ(asDouble(text), 0.0) << text;
    EXPECT_EQ(asDouble(PropertyArray{1.5}), 0.0);
    EXPECT_EQ(asDouble(PropertyDictionary{}), 0.0);
    EXPECT_EQ(asDouble(PropertyData{}), 0.0);
    EXPECT_EQ(asDouble(PropertyDate{3}), 0.0);
}

TEST_F(TypedDefaultsTest, ANumberTooCloseToZeroIsNotAnError) {
    EXPECT_EQ(leadingDouble("1e-999"), 0.0);
    EXPECT_EQ(leadingDouble("5e-324"), 5e-324);
    EXPECT_EQ(leadingDouble("1e999"), std::nullopt);
}

TEST_F(TypedDefaultsTest, NumbersReadTheSameUnderALocaleWithADecimalComma) {
    struct CommaPoint : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    const auto before = std::locale::global(std::locale(std::locale::classic(), new CommaPoint));
    const auto read = asDouble("1234.5");
    const auto written = asString(1234.5);
    const auto whole = asString(1234567);
    std::locale::global(before);
    EXPECT_EQ(read, 1234.5);
    EXPECT_EQ(written, "1234.5");
    EXPECT_EQ(whole, "1234567");
}

TEST_F(TypedDefaultsTest, AStringReadsFromTextsAndNumbersOnly) {
    EXPECT_THAT(asString("bibata"), Optional(std::string("bibata")));
    EXPECT_THAT(asString(""), Optional(std::string()));
    EXPECT_THAT(asString(7), Optional(std::string("7")));
    EXPECT_THAT(asString(1.5), Optional(std::string("1.5")));
    EXPECT_THAT(asString(2.0), Optional(std::string("2")));
    EXPECT_THAT(asString(true), Optional(std::string("1")));
    EXPECT_EQ(asString(PropertyArray{"bibata"}), std::nullopt);
    EXPECT_EQ(asString(PropertyDictionary{}), std::nullopt);
    EXPECT_EQ(asString(PropertyData{'a'}), std::nullopt);
    EXPECT_EQ(asString(PropertyDate{1}), std::nullopt);
}

TEST_F(TypedDefaultsTest, AnArrayReadsWholeOrNotAtAll) {
    stored(PropertyArray{"a", "b"});
    EXPECT_THAT(stringArrayValue(store, "key"), Optional(ElementsAre("a", "b")));
    stored(PropertyArray{});
    EXPECT_THAT(stringArrayValue(store, "key"), Optional(ElementsAre()));
    stored(PropertyArray{"a", 1});
    EXPECT_EQ(stringArrayValue(store, "key"), std::nullopt);
    stored("a");
    EXPECT_EQ(stringArrayValue(store, "key"), std::nullopt);
}

TEST_F(TypedDefaultsTest, ADictionaryReadsWholeOrNotAtAll) {
    stored(PropertyDictionary{{"a", "1"}, {"b", "2"}});
    EXPECT_THAT(stringDictionaryValue(store, "key"),
                Optional(ElementsAre(std::pair("a", "1"), std::pair("b", "2"))));
    stored(PropertyDictionary{{"a", "1"}, {"b", 2}});
    EXPECT_EQ(stringDictionaryValue(store, "key"), std::nullopt);
    stored(PropertyArray{"a"});
    EXPECT_EQ(stringDictionaryValue(store, "key"), std::nullopt);
}

}  // namespace
}  // namespace pintle
