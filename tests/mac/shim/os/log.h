// The unified log for checks on other systems: the one macro that the backend uses.
#pragma once

#include <stdint.h>

typedef struct os_log_s* os_log_t;
typedef uint8_t os_log_type_t;
enum : os_log_type_t { OS_LOG_TYPE_DEFAULT = 0 };
extern "C" os_log_t pintle_os_log_default(void);
extern "C" void pintle_os_log(os_log_t log, os_log_type_t type, const char* format, ...)
    __attribute__((format(os_log, 3, 4)));
#define OS_LOG_DEFAULT pintle_os_log_default()
#define os_log_with_type(log, type, format, ...) pintle_os_log(log, type, format __VA_OPT__(, ) __VA_ARGS__)
