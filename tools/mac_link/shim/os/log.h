// The unified log for the cross link, whose compiler comes without its header: the one macro that the backend
// uses, made of the compiler's own formatting and the two names that the system's library has.
#pragma once

#include <stdint.h>

typedef struct os_log_s* os_log_t;
typedef uint8_t os_log_type_t;
enum : os_log_type_t { OS_LOG_TYPE_DEFAULT = 0 };
extern "C" {
extern struct os_log_s _os_log_default;
extern struct mach_header __dso_handle;
void _os_log_impl(void* library, os_log_t log, os_log_type_t type, const char* format, uint8_t* arguments,
                  uint32_t size);
}
#define OS_LOG_DEFAULT (&_os_log_default)
#define os_log_with_type(log, type, format, ...)                                                             \
    do {                                                                                                     \
        static const char pintleFormat[] __attribute__((section("__TEXT,__oslogstring,cstring_literals"))) = \
            format;                                                                                          \
        alignas(16) uint8_t pintleArguments[__builtin_os_log_format_buffer_size(format, __VA_ARGS__)];       \
        __builtin_os_log_format(pintleArguments, format, __VA_ARGS__);                                       \
        _os_log_impl(&__dso_handle, log, type, pintleFormat, pintleArguments, sizeof pintleArguments);       \
    } while (false)
