#include "platform/trace.h"

#include "default_platform/host_settings.h"
#include "default_platform/trace_line.h"
#include "text/owned_text.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <mutex>

#include <sys/uio.h>
#include <unistd.h>

namespace {

/// What every request writes stands apart from what every request reads.
constexpr std::size_t kCacheLine = 64;

} // namespace

alignas(kCacheLine) char g_login_debug_function_name[64];
alignas(kCacheLine) int g_login_debug_line;

namespace koine {
namespace {

/// Where the lines go. The mutex is held while a line is written, so that the sink is entered by one thread
/// at a time and is never used again once it has been replaced.
struct Sink {
    // Recursive: a callback may replace the sink that it is.
    std::recursive_mutex mutex;
    TraceCallback callback = nullptr;
    void* context = nullptr;
};

// A line that nobody reads must cost nothing: this is all it looks at.
alignas(kCacheLine) std::atomic<bool> g_wanted{false};

Sink g_sink;

void replaceSink(TraceCallback callback, void* context) {
    const std::lock_guard<std::recursive_mutex> guard(g_sink.mutex);
    g_sink.callback = callback;
    g_sink.context = context;
    g_wanted.store(callback != nullptr, std::memory_order_relaxed);
}

/// Tells a line that the sink's own callback traces.
thread_local bool t_inSink = false;

void writeOut(char* line, std::size_t length) {
    platform::tidyTraceLine(line, length);
    const std::lock_guard<std::recursive_mutex> guard(g_sink.mutex);
    if (g_sink.callback == nullptr)
        return;
    t_inSink = true;
    g_sink.callback(line, g_sink.context);
    t_inSink = false;
}

/// Formats a line of any length: most fit here, longer ones are `malloc`ed. When even that fails the part
/// that fits is better than nothing.
__attribute__((format(printf, 1, 0))) void traceLine(const char* format, va_list arguments) {
    std::array<char, 1024> inPlace{};
    va_list again;
    va_copy(again, arguments);
    const int printed = std::vsnprintf(inPlace.data(), inPlace.size(), format, arguments);
    const auto length = static_cast<std::size_t>(printed < 0 ? 0 : printed);
    OwnedText longer;
    if (length >= inPlace.size())
        longer.reset(static_cast<char*>(std::malloc(length + 1)));
    if (longer) {
        std::vsnprintf(longer.get(), length + 1, format, again);
        writeOut(longer.get(), length);
    } else {
        writeOut(inPlace.data(), std::min(length, inPlace.size() - 1));
    }
    va_end(again);
}

/// Line and line end in one write, so that lines of several processes do not mix.
void writeToStandardError(const char* line, void* /*context*/) {
    const char end = '\n';
    const std::array<iovec, 2> parts = {iovec{const_cast<char*>(line), std::strlen(line)},
                                        iovec{const_cast<char*>(&end), 1}};
    // Nobody is left to be told when this fails.
    static_cast<void>(!::writev(STDERR_FILENO, parts.data(), static_cast<int>(parts.size())));
}

} // namespace

void traceToStandardError() { replaceSink(&writeToStandardError, nullptr); }

void traceToNowhere() { replaceSink(nullptr, nullptr); }

void traceToCallback(TraceCallback callback, void* context) { replaceSink(callback, context); }

} // namespace koine

void dbg_trace(const char* format, ...) {
    if (!koine::g_wanted.load(std::memory_order_relaxed) || koine::t_inSink || format == nullptr)
        return;
    const int errnoBefore = errno;
    va_list arguments;
    va_start(arguments, format);
    koine::traceLine(format, arguments);
    va_end(arguments);
    errno = errnoBefore;
}
