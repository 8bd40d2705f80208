// A reference to a COM object, given back when it goes.

#pragma once

#include <unknwn.h>

#include <utility>

namespace morandel::automation {

template <class Interface>
class Pointer {
  public:
    Pointer() = default;
    Pointer(const Pointer& other) : m_object(other.m_object) {
        if (m_object != nullptr) m_object->AddRef();
    }
    Pointer(Pointer&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
    Pointer& operator=(Pointer other) noexcept {
        std::swap(m_object, other.m_object);
        return *this;
    }
    ~Pointer() {
        if (m_object != nullptr) m_object->Release();
    }

    // For a call that fills it; what it held is given back first.
    Interface** fill() {
        *this = Pointer();
        return &m_object;
    }
    void** fill_untyped() { return reinterpret_cast<void**>(fill()); }

    [[nodiscard]] Interface* get() const { return m_object; }
    Interface* operator->() const { return m_object; }
    explicit operator bool() const { return m_object != nullptr; }

  private:
    Interface* m_object = nullptr;
};

}  // namespace morandel::automation
