// What most files of the core use.
#pragma once

#include <fmt/format.h>

#include "cmake/precompiled/standard.h"
