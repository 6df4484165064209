// One line per event. Any thread.
#pragma once

#include <string_view>

namespace pintle {

class Log {
  public:
    virtual ~Log() = default;
    virtual void system(std::string_view line) = 0;
    virtual void standardOutput(std::string_view line) = 0;
};

}  // namespace pintle
