#include "app/alert_texts.h"

#include <array>
#include <string>

namespace pintle {

UserText alertText(std::string_view english) {
    constexpr std::string_view kPlace = "%1";
    for (const auto source : {alert_text::available, alert_text::replace}) {
        const auto place = source.find(kPlace);
        const auto start = source.substr(0, place);
        const auto end = source.substr(place + kPlace.size());
        if (english.size() > start.size() + end.size() && english.starts_with(start) &&
            english.ends_with(end))
            return UserText(source, std::string(english.substr(start.size(),
                                                               english.size() - start.size() - end.size())));
    }
    return UserText(english);
}

}  // namespace pintle
