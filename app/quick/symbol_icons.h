// Which of the drawings in app/quick/icons stands for a symbol that a model names. Any thread.
#pragma once

#include <string_view>

namespace pintle {

/// The name of the drawing's file without its suffix; empty for a symbol that has none.
std::string_view iconOfSymbol(std::string_view symbol);

}  // namespace pintle
