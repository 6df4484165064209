// What the probe tries, each check by itself in a process of its own, so that one that crashes costs the
// others nothing. A check never fails: it answers what it found.
#pragma once

#include <functional>
#include <map>
#include <nlohmann/json.hpp>
#include <string>

namespace pintle {

using Check = std::function<nlohmann::json(const std::string& program)>;

/// By name. `program` is this program's path, for checks that need a second process.
const std::map<std::string, Check>& probeChecks();

/// The other half of the check of notifications: posts `name` and returns.
void postForProbe(const std::string& name);
/// The other half of the check of preferences: whether another process finds `value` under `key` of the
/// domain.
bool findForProbe(const std::string& domain, const std::string& key, const std::string& value);

}  // namespace pintle
