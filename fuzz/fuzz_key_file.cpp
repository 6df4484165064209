// The input is a settings file that somebody wrote, with a value that is set in it.
#include <optional>
#include <string>

#include "fuzz/choices.h"
#include "platform/wayland/key_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    using namespace pintle;
    using namespace pintle::wayland;
    Choices choices({bytes, count});
    auto value = choices.text();
    std::erase_if(value, [](char c) { return static_cast<unsigned char>(c) <= ' '; });
    const auto text = std::string(textOf(choices.rest()));

    const auto with = withKeyFileValue(text, "Mouse", "theme", value);
    require(keyFileValue(with, "Mouse", "theme") == value);
    require(keyFileValue(with, "Mouse", "size") == keyFileValue(text, "Mouse", "size"));
    require(keyFileValue(with, "Icons", "theme") == keyFileValue(text, "Icons", "theme"));
    // Setting it twice is setting it once.
    require(withKeyFileValue(with, "Mouse", "theme", value) == with);

    const auto without = withKeyFileValue(with, "Mouse", "theme", std::nullopt);
    require(!keyFileValue(without, "Mouse", "theme"));
    require(keyFileValue(without, "Mouse", "size") == keyFileValue(text, "Mouse", "size"));
    require(keyFileValue(without, "Icons", "theme") == keyFileValue(text, "Icons", "theme"));
    require(without.size() <= with.size());
    if (!keyFileValue(text, "Mouse", "theme")) {
        // Every byte of the file is still there, in its order, around what was put in.
        std::size_t at = 0;
        for (std::size_t i = 0; i < with.size() && at < text.size(); ++i)
            if (with[i] == text[at]) ++at;
        require(at == text.size());
    }
    return 0;
}
