// The file that makes the desktop start a program at login where the login-item service does not: one
// program, started once at login and not restarted when it ends. Main thread only.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "base/result.h"

namespace pintle {

class LoginAgent {
  public:
    virtual ~LoginAgent() = default;
    /// Where the file is or would be.
    virtual std::filesystem::path path() const = 0;
    /// Whether the file is there and in force.
    virtual bool exists() const = 0;
    /// The program that the file in force starts; absent when there is none or it names none.
    virtual std::optional<std::string> program() const = 0;
    /// Writes the file for the program at the absolute path `executable`; replaces an older one. It takes
    /// effect at the next login.
    virtual Status write(const std::string& executable) = 0;
    virtual Status remove() = 0;
};

}  // namespace pintle
