// The fake's numbers, data, dates and containers.
#pragma once

#include <cstdint>
#include <variant>
#include <vector>

#include "tests/mac/fake/fake_object.h"

namespace pintle::mac_fake {

class Number : public Object {
  public:
    explicit Number(std::variant<std::int64_t, double> content) : Object(Kind::number), value(content) {}
    bool equals(const Object& other) const override {
        const auto* number = dynamic_cast<const Number*>(&other);
        return number && number->value == value;
    }
    const std::variant<std::int64_t, double> value;
};

class BooleanObject : public Object {
  public:
    explicit BooleanObject(bool content) : Object(Kind::boolean, Life::immortal), value(content) {}
    const bool value;
};

class Data : public Object {
  public:
    explicit Data(std::vector<std::uint8_t> content) : Object(Kind::data), bytes(std::move(content)) {}
    bool equals(const Object& other) const override {
        const auto* data = dynamic_cast<const Data*>(&other);
        return data && data->bytes == bytes;
    }
    std::vector<std::uint8_t> bytes;
};

class Date : public Object {
  public:
    explicit Date(double at) : Object(Kind::date), seconds(at) {}
    bool equals(const Object& other) const override {
        const auto* date = dynamic_cast<const Date*>(&other);
        return date && date->seconds == seconds;
    }
    const double seconds;
};

/// Keeps a reference to each of its values.
class Array : public Object {
  public:
    Array() : Object(Kind::array) {}
    ~Array() override {
        for (const void* value : values) release(value, "the end of an array");
    }
    void append(const void* value) { values.push_back(retain(value, "CFArrayAppendValue")); }
    std::vector<const void*> values;
};

/// Keeps a reference to each of its keys and values.
class Dictionary : public Object {
  public:
    Dictionary() : Object(Kind::dictionary) {}
    ~Dictionary() override {
        for (const auto& [key, value] : entries) {
            release(key, "the end of a dictionary");
            release(value, "the end of a dictionary");
        }
    }
    const void* find(const void* key) const {
        const Object& wanted = objectOf(key, "CFDictionaryGetValue");
        for (const auto& [known, value] : entries)
            if (objectOf(known, "CFDictionaryGetValue").equals(wanted)) return value;
        return nullptr;
    }
    void put(const void* key, const void* value) {
        retain(value, "CFDictionarySetValue");
        for (auto& [known, old] : entries)
            if (objectOf(known, "CFDictionarySetValue").equals(objectOf(key, "CFDictionarySetValue"))) {
                release(old, "CFDictionarySetValue");
                old = value;
                return;
            }
        entries.emplace_back(retain(key, "CFDictionarySetValue"), value);
    }
    std::vector<std::pair<const void*, const void*>> entries;
};

}  // namespace pintle::mac_fake
