// What every preference store does. Include it once, after naming the backends to try as the
// type list `KeyValueDomains`.
#pragma once

#include <gmock/gmock.h>

#include <memory>
#include <vector>

#include "platform/key_value_store.h"

namespace pintle {
namespace {

using ::testing::ElementsAre;

template <typename Domain>
class KeyValueStoreContract : public ::testing::Test {
  protected:
    Domain domain_;
    std::unique_ptr<KeyValueStore> store_ = domain_.open();
};
TYPED_TEST_SUITE(KeyValueStoreContract, KeyValueDomains);

TYPED_TEST(KeyValueStoreContract, AKeyThatNobodyStoredIsAbsent) {
    EXPECT_FALSE(this->store_->object("nothing"));
}

TYPED_TEST(KeyValueStoreContract, ARegisteredDefaultAnswersUntilAValueIsStored) {
    this->store_->registerDefaults({{"scale", 1.0}});
    EXPECT_EQ(this->store_->object("scale"), PropertyValue(1.0));
    this->store_->set("scale", 1.5);
    EXPECT_EQ(this->store_->object("scale"), PropertyValue(1.5));
    this->store_->remove("scale");
    EXPECT_EQ(this->store_->object("scale"), PropertyValue(1.0));
}

TYPED_TEST(KeyValueStoreContract, ALaterRegistrationReplacesAndAdds) {
    this->store_->registerDefaults({{"a", 1}, {"b", 2}});
    this->store_->registerDefaults({{"b", 3}, {"c", 4}});
    EXPECT_EQ(this->store_->object("a"), PropertyValue(1));
    EXPECT_EQ(this->store_->object("b"), PropertyValue(3));
    EXPECT_EQ(this->store_->object("c"), PropertyValue(4));
}

TYPED_TEST(KeyValueStoreContract, RegisteredDefaultsAreNeverStored) {
    this->store_->registerDefaults({{"scale", 1.0}});
    this->store_->set("other", true);
    this->store_->synchronize();
    EXPECT_FALSE(this->domain_.open()->object("scale"));
}

TYPED_TEST(KeyValueStoreContract, ValuesOfEveryTypeAreThereAtTheNextStart) {
    const PropertyDictionary values = {
        {"bool", true},
        {"integer", std::int64_t{-5}},
        {"one", 1},
        {"real", 0.85},
        {"whole real", 1.0},
        {"string", "bibata-modern-ice <&> \xC3\xA4"},
        {"empty string", ""},
        {"data", PropertyData{0, 1, 255}},
        {"date", PropertyDate{700000000}},
        {"array", PropertyArray{"Safari", "Final Cut Pro"}},
        {"empty array", PropertyArray{}},
        {"dictionary",
         PropertyDictionary{{"bibata", "The request timed out."}, {"nested", PropertyArray{1, 2.5}}}},
        {"empty dictionary", PropertyDictionary{}},
    };
    for (const auto& [key, value] : values) this->store_->set(key, value);
    const auto next = this->domain_.open();
    for (const auto& [key, value] : values) EXPECT_EQ(next->object(key), value) << key;
}

TYPED_TEST(KeyValueStoreContract, AFlagANumberAndARealStayApart) {
    this->store_->set("flag", true);
    this->store_->set("integer", 1);
    this->store_->set("real", 1.0);
    const auto next = this->domain_.open();
    EXPECT_TRUE(next->object("flag")->template as<bool>());
    EXPECT_TRUE(next->object("integer")->template as<std::int64_t>());
    EXPECT_TRUE(next->object("real")->template as<double>());
}

TYPED_TEST(KeyValueStoreContract, ARemovedValueIsAbsentAtTheNextStart) {
    this->store_->set("currentThemeId", "bibata");
    this->store_->set("kept", 1);
    this->store_->remove("currentThemeId");
    const auto next = this->domain_.open();
    EXPECT_FALSE(next->object("currentThemeId"));
    EXPECT_TRUE(next->object("kept"));
}

TYPED_TEST(KeyValueStoreContract, RemovingTheDomainLeavesTheRegisteredDefaults) {
    this->store_->registerDefaults({{"scale", 1.0}});
    this->store_->set("scale", 2.0);
    this->store_->set("theme", "x");
    this->store_->removeDomain();
    EXPECT_EQ(this->store_->object("scale"), PropertyValue(1.0));
    EXPECT_FALSE(this->store_->object("theme"));
    EXPECT_FALSE(this->domain_.open()->object("scale"));
}

TYPED_TEST(KeyValueStoreContract, AfterTheDomainIsGoneValuesCanBeStoredAgain) {
    this->store_->set("old", 1);
    this->store_->removeDomain();
    this->store_->set("cursorScale", 1.0);
    const auto next = this->domain_.open();
    EXPECT_EQ(next->object("cursorScale"), PropertyValue(1.0));
    EXPECT_FALSE(next->object("old"));
}

TYPED_TEST(KeyValueStoreContract, AnObserverIsNotifiedOfEachRealChangeOfItsKeyAlone) {
    int calls = 0;
    const Subscription observer = this->store_->observe("scale", [&] { ++calls; });
    this->store_->set("scale", 1.0);
    EXPECT_EQ(calls, 1);
    this->store_->set("scale", 1.0);
    EXPECT_EQ(calls, 1);
    this->store_->set("other", 1.0);
    EXPECT_EQ(calls, 1);
    this->store_->set("scale", 2.0);
    EXPECT_EQ(calls, 2);
    this->store_->remove("scale");
    EXPECT_EQ(calls, 3);
    this->store_->remove("scale");
    EXPECT_EQ(calls, 3);
}

TYPED_TEST(KeyValueStoreContract, AValueEqualToTheRegisteredDefaultIsNoChangeButIsStored) {
    this->store_->registerDefaults({{"scale", 1.0}});
    int calls = 0;
    const Subscription observer = this->store_->observe("scale", [&] { ++calls; });
    this->store_->set("scale", 1.0);
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(this->domain_.open()->object("scale"), PropertyValue(1.0));
    this->store_->remove("scale");
    EXPECT_EQ(calls, 0);
}

TYPED_TEST(KeyValueStoreContract, AnObserverFindsTheNewValueAlreadyStored) {
    std::vector<std::optional<PropertyValue>> seen;
    const Subscription observer = this->store_->observe("theme", [&] {
        seen.push_back(this->store_->object("theme"));
        seen.push_back(this->domain_.open()->object("theme"));
    });
    this->store_->set("theme", "bibata");
    EXPECT_THAT(seen, ElementsAre(PropertyValue("bibata"), PropertyValue("bibata")));
}

TYPED_TEST(KeyValueStoreContract, AnEndedObserverIsSilent) {
    int calls = 0;
    Subscription observer = this->store_->observe("scale", [&] { ++calls; });
    observer.end();
    this->store_->set("scale", 1.0);
    EXPECT_EQ(calls, 0);
}

TYPED_TEST(KeyValueStoreContract, RemovingTheDomainNotifiesTheObserversOfWhatWasStored) {
    this->store_->registerDefaults({{"same", 1.0}});
    this->store_->set("same", 1.0);
    this->store_->set("theme", "bibata");
    std::vector<std::string> changed;
    const Subscription same = this->store_->observe("same", [&] { changed.push_back("same"); });
    const Subscription theme = this->store_->observe("theme", [&] { changed.push_back("theme"); });
    const Subscription never = this->store_->observe("never", [&] { changed.push_back("never"); });
    this->store_->removeDomain();
    EXPECT_THAT(changed, ElementsAre("theme"));
}

TYPED_TEST(KeyValueStoreContract, AnObserverMayStoreAnotherValue) {
    const Subscription observer = this->store_->observe("a", [&] { this->store_->set("b", 2); });
    this->store_->set("a", 1);
    const auto next = this->domain_.open();
    EXPECT_EQ(next->object("a"), PropertyValue(1));
    EXPECT_EQ(next->object("b"), PropertyValue(2));
}

}  // namespace
}  // namespace pintle
