// The three assertion forms: contract in every build, with the condition's own text.
//
// A condition has no side effects; the checked form evaluates it twice. What is reported as the
// source path is the path of the source file without its extension. This header includes nothing,
// so that it can stand anywhere.
#pragma once

/// The functions behind the macros; `file` is __FILE__. None of them is called directly.
__attribute__((visibility("default"))) void KOVReportFailedCheck(char const* condition,
                                                                 char const* file, int line);
[[noreturn]] __attribute__((visibility("default"))) void KOVEndFailedCheck(bool stillFails,
                                                                           char const* condition,
                                                                           char const* file,
                                                                           int line);
[[noreturn]] __attribute__((visibility("default"))) void KOVFailFatally(char const* message,
                                                                        char const* file, int line);
__attribute__((visibility("default"))) void KOVThrowFailedCheck(char const* condition,
                                                                char const* file, int line);

// A literal that carries a message, as in !"message", is a condition like any other.
#ifdef __clang__
#define KOV_ASSERT_BEGIN \
    _Pragma("clang diagnostic push") _Pragma("clang diagnostic ignored \"-Wstring-conversion\"")
#define KOV_ASSERT_END _Pragma("clang diagnostic pop")
#else
#define KOV_ASSERT_BEGIN
#define KOV_ASSERT_END
#endif

/// The checked form. On a false condition: reports, evaluates the condition again, and raises a
/// KOVBasAssertException if it is still false. The process ends with status 1 in any case, whether
/// or not a handler stands above.
#define KOV_UTT_ASSERT(...)                                                      \
    do {                                                                         \
        KOV_ASSERT_BEGIN                                                         \
        if (!(__VA_ARGS__)) {                                                    \
            KOVReportFailedCheck(#__VA_ARGS__, __FILE__, __LINE__);              \
            KOVEndFailedCheck(!(__VA_ARGS__), #__VA_ARGS__, __FILE__, __LINE__); \
        }                                                                        \
        KOV_ASSERT_END                                                           \
    } while (false)

/// The fatal form. On a false condition: HostFatalError with a message that begins
/// "AssertionFailed:"; the process aborts.
#define KOV_FATAL_ASSERT(...)                                                    \
    do {                                                                         \
        KOV_ASSERT_BEGIN                                                         \
        if (!(__VA_ARGS__)) {                                                    \
            KOVFailFatally("AssertionFailed:" #__VA_ARGS__, __FILE__, __LINE__); \
        }                                                                        \
        KOV_ASSERT_END                                                           \
    } while (false)

/// The plain throwing form. On a false condition: raises a KOVBasAssertException and does nothing
/// else.
#define KOV_THROW_ASSERT(...)                                      \
    do {                                                           \
        KOV_ASSERT_BEGIN                                           \
        if (!(__VA_ARGS__)) {                                      \
            KOVThrowFailedCheck(#__VA_ARGS__, __FILE__, __LINE__); \
        }                                                          \
        KOV_ASSERT_END                                             \
    } while (false)
