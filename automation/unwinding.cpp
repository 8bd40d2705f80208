// Exceptions of the library through the frames of a host, on 32-bit Windows. There MinGW finds its
// way by tables that each module hands to the runtime that it is linked with, so the library's own
// runtime knows nothing of its host: an exception that left the library ended the process. Where
// nobody takes an exception, the runtime is told of the modules that the stack leads through. Their
// tables are copied, so that no module needs to stay for it, and say that the library's runtime is
// to be asked what a frame does with an exception; a host's own would have to be in use already.

#include <windows.h>

#include <psapi.h>
#include <unwind.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <mutex>
#include <span>

#include "automation/frame_table.h"

extern "C" {
const void* _Unwind_Find_FDE(void* code, void* bases);
void __register_frame_info(const void* table, void* object);
void* __deregister_frame_info(const void* table);
void __gxx_personality_v0();
_Unwind_Reason_Code __real__Unwind_RaiseException(_Unwind_Exception* exception);
_Unwind_Reason_Code __wrap__Unwind_RaiseException(_Unwind_Exception* exception);
}

namespace morandel::automation {
namespace {

HMODULE own_module() {
    HMODULE module = nullptr;
    GetModuleHandleExW(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
        reinterpret_cast<LPCWSTR>(&__wrap__Unwind_RaiseException), &module);
    return module;
}

const IMAGE_NT_HEADERS& headers_of(HMODULE module) {
    const auto* const base = reinterpret_cast<const BYTE*>(module);
    const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    return *reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
}

// Tells a module from another that was loaded to its place later.
struct Identity {
    HMODULE module = nullptr;
    DWORD time = 0;
    DWORD size = 0;
    DWORD checksum = 0;
    DWORD entry = 0;

    static Identity of(HMODULE module) {
        const IMAGE_NT_HEADERS& headers = headers_of(module);
        const auto& optional = headers.OptionalHeader;
        return {module, headers.FileHeader.TimeDateStamp, optional.SizeOfImage, optional.CheckSum,
                optional.AddressOfEntryPoint};
    }
    bool operator==(const Identity&) const = default;
};

struct Known {
    Identity identity;
    void* copy = nullptr;
    std::array<void*, 16> object{};  // what the runtime notes of the table
};

// Without memory of the heap, which may be what the exception is about.
class HostFrames {
  public:
    ~HostFrames() {
        for (Known& known : m_known) forget(known);
    }

    // A host with a shared runtime takes the library's own table, too, for that.
    void learn_own() {
        static void* bases[4];
        auto* const code = reinterpret_cast<BYTE*>(&__wrap__Unwind_RaiseException) + 1;
        const std::lock_guard guard(m_lock);
        if (_Unwind_Find_FDE(code, bases) == nullptr) learn(own_module());
    }

    void learn_stack() {
        const std::lock_guard guard(m_lock);
        const std::span<const HMODULE> modules = loaded();
        // Whatever on the stack looks like a place in a module may be an address of return to it.
        std::array<bool, most_modules> seen{};
        void* here = nullptr;
        MEMORY_BASIC_INFORMATION stack{};
        VirtualQuery(&here, &stack, sizeof stack);
        const auto* const end = static_cast<BYTE*>(stack.BaseAddress) + stack.RegionSize;
        for (void** word = &here; reinterpret_cast<BYTE*>(word) < end; ++word) {
            for (std::size_t i = 0; i < modules.size(); ++i) {
                const auto begin = reinterpret_cast<std::uintptr_t>(modules[i]);
                if (reinterpret_cast<std::uintptr_t>(*word) - begin < m_sizes[i]) seen[i] = true;
            }
        }
        for (std::size_t i = 0; i < modules.size(); ++i) {
            if (seen[i] && modules[i] != own_module()) learn(modules[i]);
        }
    }

  private:
    static constexpr std::size_t most_modules = 512;
    static constexpr std::size_t most_known = 64;

    std::span<const HMODULE> loaded() {
        DWORD bytes = 0;
        if (EnumProcessModules(GetCurrentProcess(), m_modules.data(), sizeof m_modules, &bytes) ==
            0) {
            return {};
        }
        const std::size_t count = std::min<std::size_t>(bytes / sizeof(HMODULE), most_modules);
        for (std::size_t i = 0; i < count; ++i) {
            m_sizes[i] = headers_of(m_modules[i]).OptionalHeader.SizeOfImage;
        }
        return std::span(m_modules).first(count);
    }

    void learn(HMODULE module) {
        const Identity identity = Identity::of(module);
        const auto place = std::ranges::find(
            m_known, module, [](const Known& known) { return known.identity.module; });
        if (place != m_known.end()) {
            if (place->identity == identity) return;
            forget(*place);
        }
        const FrameTable table = frame_table(module);
        if (table.empty()) return;
        const auto free = std::ranges::find(m_known, nullptr, &Known::copy);
        if (free == m_known.end()) return;
        free->copy = VirtualAlloc(nullptr, table.size() + sizeof(DWORD), MEM_COMMIT | MEM_RESERVE,
                                  PAGE_READWRITE);
        if (free->copy == nullptr) return;
        std::memcpy(free->copy, table.data(), table.size());
        const FrameTable copy(static_cast<BYTE*>(free->copy), table.size());
        if (!adapt(copy, table.data(), reinterpret_cast<const void*>(&__gxx_personality_v0))) {
            VirtualFree(free->copy, 0, MEM_RELEASE);
            free->copy = nullptr;
            return;
        }
        free->identity = identity;
        __register_frame_info(free->copy, free->object.data());
    }

    static void forget(Known& known) {
        if (known.copy == nullptr) return;
        __deregister_frame_info(known.copy);
        VirtualFree(known.copy, 0, MEM_RELEASE);
        known = {};
    }

    std::mutex m_lock;
    std::array<HMODULE, most_modules> m_modules{};
    std::array<DWORD, most_modules> m_sizes{};
    std::array<Known, most_known> m_known{};
};

HostFrames host_frames;

}  // namespace
}  // namespace morandel::automation

// The linker has all that raise an exception come here first.
_Unwind_Reason_Code __wrap__Unwind_RaiseException(_Unwind_Exception* exception) {
    using morandel::automation::host_frames;
    host_frames.learn_own();
    // Comes back where nobody takes it.
    __real__Unwind_RaiseException(exception);
    host_frames.learn_stack();
    return __real__Unwind_RaiseException(exception);
}
