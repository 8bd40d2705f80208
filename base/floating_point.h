// The floating-point environment that results are defined in: rounding to the nearest, full
// precision, no traps. Hosts may have changed theirs.

#pragma once

#include <cfenv>
#include <optional>

#if defined(__SSE2__) || defined(_M_X64)
#include <xmmintrin.h>
#endif

namespace morandel {

// Sets that environment while it lives, and then gives the host's back. On Linux nothing but the
// SSE registers computes, and reading theirs takes some nanoseconds; on Windows the C library uses
// the x87 as well, and resets nothing else.
class DefaultFloatingPoint {
  public:
    DefaultFloatingPoint() {
#if !defined(__linux__) || !defined(__SSE2__)
        std::fegetenv(&m_host);
        std::fesetenv(FE_DFL_ENV);
#endif
#if defined(__SSE2__) || defined(_M_X64)
        m_host_sse = _mm_getcsr();
        if (is_changed()) _mm_setcsr(defaults);
#endif
    }
    ~DefaultFloatingPoint() {
#if defined(__SSE2__) || defined(_M_X64)
        if (is_changed()) _mm_setcsr(m_host_sse);
#endif
#if !defined(__linux__) || !defined(__SSE2__)
        std::fesetenv(&m_host);
#endif
    }
    DefaultFloatingPoint(const DefaultFloatingPoint&) = delete;
    DefaultFloatingPoint& operator=(const DefaultFloatingPoint&) = delete;

  private:
#if defined(__SSE2__) || defined(_M_X64)
    static constexpr unsigned defaults = 0x1F80;
    static constexpr unsigned flags = 0x3F;  // what has happened, not what is to happen
    [[nodiscard]] bool is_changed() const { return (m_host_sse & ~flags) != defaults; }

    unsigned m_host_sse;
#endif
#if !defined(__linux__) || !defined(__SSE2__)
    std::fenv_t m_host;
#endif
};

// For what mostly computes nothing: set when something is first computed.
using DefaultFloatingPointIfNeeded = std::optional<DefaultFloatingPoint>;

}  // namespace morandel
