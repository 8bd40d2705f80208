// The floating-point environment that results are defined in: rounding to the nearest, full
// precision, no traps. Hosts may have changed theirs.

#pragma once

#if defined(__linux__) && defined(__SSE2__)
#include <xmmintrin.h>
#else
#include <cfenv>
#endif

namespace morandel {

// Sets that environment while it lives, and then gives the host's back.
class DefaultFloatingPoint {
  public:
#if defined(__linux__) && defined(__SSE2__)
    // All arithmetic here is in SSE registers, whose environment is quick to read.
    DefaultFloatingPoint() : m_host(_mm_getcsr()) {
        if (is_changed()) _mm_setcsr(defaults);
    }
    ~DefaultFloatingPoint() {
        if (is_changed()) _mm_setcsr(m_host);
    }

  private:
    static constexpr unsigned defaults = 0x1F80;
    static constexpr unsigned flags = 0x3F;  // what has happened, not what is to happen
    [[nodiscard]] bool is_changed() const {
        return (m_host & ~flags) != defaults;
    }

    unsigned m_host;
#else
    DefaultFloatingPoint() {
        std::fegetenv(&m_host);
        std::fesetenv(FE_DFL_ENV);
    }
    ~DefaultFloatingPoint() {
        std::fesetenv(&m_host);
    }

  private:
    std::fenv_t m_host;
#endif

  public:
    DefaultFloatingPoint(const DefaultFloatingPoint&) = delete;
    DefaultFloatingPoint& operator=(const DefaultFloatingPoint&) = delete;
};

}  // namespace morandel
