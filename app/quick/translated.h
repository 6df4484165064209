// The models' texts in the user's language. Main thread only.
#pragma once

#include <QString>

#include <vector>

#include "app/user_text.h"

namespace pintle {

QString translated(const UserText& text);
/// A source without "%1".
QString translated(std::string_view source);
/// Each translated, with commas between them.
QString joined(const std::vector<UserText>& texts);

}  // namespace pintle
