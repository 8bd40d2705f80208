// The system's own knowledge of code page 936.

#pragma once

#include <cstddef>

namespace morandel::formula {

class SystemCodePage {
  public:
    SystemCodePage();
    ~SystemCodePage();
    SystemCodePage(const SystemCodePage&) = delete;
    SystemCodePage& operator=(const SystemCodePage&) = delete;

    // False where the system has no such code page, as one without converters installed.
    [[nodiscard]] bool is_known() const { return m_handle != nullptr; }

    // The character of one or two bytes; 0 where they are none.
    char16_t convert(const char* bytes, std::size_t size);

  private:
    void* m_handle;
};

}  // namespace morandel::formula
