// The window server's private functions, by name. Any thread.
#pragma once

namespace pintle {

/// Asks Core Graphics first and Application Services only if that has nothing; null where neither has it.
/// Both libraries are opened once; callers keep the answer for the life of the process.
void* findPrivateFunction(const char* name);

template <typename Function>
Function* privateFunction(const char* name) {
    return reinterpret_cast<Function*>(findPrivateFunction(name));
}

}  // namespace pintle
