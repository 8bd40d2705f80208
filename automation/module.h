// The module: its classes and their factories, the count of what keeps it loaded, registration.
// It knows nothing of a class but its row in the table that init is given.

#pragma once

#include <windows.h>

#include <unknwn.h>

#include <array>
#include <atomic>
#include <mutex>
#include <span>

#include "automation/pointer.h"

namespace morandel::automation {

using InstanceMaker = HRESULT (*)(IUnknown* outer, REFIID iid, void** object);

// A class that the module hands out.
struct ClassEntry {
    const CLSID& id;
    UINT registry_script;  // its resource of type REGISTRY
    InstanceMaker create;
};

class Module {
  public:
    static constexpr std::size_t most_classes = 4;

    void init(std::span<const ClassEntry> classes, HINSTANCE instance);
    // Lets go of the class factories.
    void terminate();

    [[nodiscard]] HINSTANCE instance() const { return m_instance; }
    [[nodiscard]] std::span<const ClassEntry> classes() const { return m_classes; }

    // The factory of a class, made on first use and kept.
    HRESULT get_class_object(REFCLSID id, REFIID iid, void** object);

    // Objects and locked factories keep the module loaded.
    void lock() { ++m_locks; }
    void unlock() { --m_locks; }
    [[nodiscard]] long locks() const { return m_locks; }

  private:
    HINSTANCE m_instance = nullptr;
    std::span<const ClassEntry> m_classes;
    std::array<Pointer<IClassFactory>, most_classes> m_factories;
    std::mutex m_factories_lock;
    std::atomic<long> m_locks = 0;
};

// The one of this library.
Module& this_module();

}  // namespace morandel::automation
