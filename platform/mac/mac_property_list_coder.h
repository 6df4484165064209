// Property lists by Core Foundation. Any thread.
#pragma once

#include <memory>

#include "platform/property_list_coder.h"

namespace pintle {

std::unique_ptr<PropertyListCoder> makeMacPropertyListCoder();

}  // namespace pintle
