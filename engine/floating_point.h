// The floating-point environment that results are defined in: rounding to the nearest, full
// precision, no traps. Hosts may have changed theirs.

#pragma once

#include <cfenv>

#if defined(__SSE2__) || defined(_M_X64)
#include <xmmintrin.h>
#endif

namespace morandel {

#if defined(__SSE2__) || defined(_M_X64)
// Of the SSE registers, where all arithmetic of this library is. Reading it costs next to nothing.
class DefaultSse {
  public:
    DefaultSse() : m_host(_mm_getcsr()) {
        if (is_changed()) _mm_setcsr(defaults);
    }
    ~DefaultSse() {
        if (is_changed()) _mm_setcsr(m_host);
    }
    DefaultSse(const DefaultSse&) = delete;
    DefaultSse& operator=(const DefaultSse&) = delete;

  private:
    static constexpr unsigned defaults = 0x1F80;
    static constexpr unsigned flags = 0x3F;  // what has happened, not what is to happen
    [[nodiscard]] bool is_changed() const { return (m_host & ~flags) != defaults; }

    unsigned m_host;
};
#endif

// Of the processor as the C library knows it.
class DefaultEnvironment {
  public:
    DefaultEnvironment() {
        std::fegetenv(&m_host);
        std::fesetenv(FE_DFL_ENV);
    }
    ~DefaultEnvironment() { std::fesetenv(&m_host); }
    DefaultEnvironment(const DefaultEnvironment&) = delete;
    DefaultEnvironment& operator=(const DefaultEnvironment&) = delete;

  private:
    std::fenv_t m_host;
};

// Sets that environment while it lives, and then gives the host's back. On Linux nothing but the
// SSE registers computes; on Windows the C library uses the x87 as well, and resets nothing else.
class DefaultFloatingPoint {
  public:
    DefaultFloatingPoint() = default;
    ~DefaultFloatingPoint() = default;
    DefaultFloatingPoint(const DefaultFloatingPoint&) = delete;
    DefaultFloatingPoint& operator=(const DefaultFloatingPoint&) = delete;

  private:
#if !defined(__linux__) || !defined(__SSE2__)
    DefaultEnvironment m_environment;
#endif
#if defined(__SSE2__) || defined(_M_X64)
    DefaultSse m_sse;
#endif
};

}  // namespace morandel
