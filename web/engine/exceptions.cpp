// What C++ exceptions need at run time. The C++ library for WebAssembly that Debian has comes
// without it. Types are told apart as far as this library throws any: classes of one base at most.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <new>
#include <typeinfo>

namespace {

// In front of each object that is thrown.
struct Header {
    const std::type_info* type;
    void* (*destroy)(void*);
    Header* outer;  // of the exceptions that are being handled
    std::size_t handlers;
};

Header* innermost = nullptr;

// For what is thrown because there is no memory.
struct alignas(16) Reserve {
    bool is_taken;
    alignas(16) unsigned char room[256];
};
Reserve reserves[4];

void* take_room(std::size_t size) {
    if (void* const room = std::malloc(size)) return room;
    for (Reserve& reserve : reserves) {
        if (reserve.is_taken || size > sizeof reserve.room) continue;
        reserve.is_taken = true;
        return reserve.room;
    }
    __builtin_trap();
}

void give_room_back(void* room) {
    for (Reserve& reserve : reserves) {
        if (room != reserve.room) continue;
        reserve.is_taken = false;
        return;
    }
    std::free(room);
}

Header& header_of(void* object) { return *(static_cast<Header*>(object) - 1); }

// What is behind the address that the compiler hands over for a function: how its landing pads are
// numbered, what they do, and the types that they catch.
class Table {
  public:
    explicit Table(const std::uint8_t* next) : m_next(next) {
        constexpr std::uint8_t left_out = 0xFF;
        if (*m_next++ != left_out) read_unsigned();
        if (*m_next++ != left_out) {
            const std::size_t size = read_unsigned();
            m_types = m_next + size;
        }
        ++m_next;  // how the pads are encoded: always so
        const std::size_t size = read_unsigned();
        m_actions = m_next + size;
    }

    // Which of a pad's handlers takes the type; 0 for none, so that it only cleans up.
    std::uintptr_t handler(std::size_t pad, const std::type_info& thrown) {
        for (std::size_t i = 0; i < pad; ++i) {
            read_unsigned();
            read_unsigned();
        }
        read_unsigned();
        const std::size_t first = read_unsigned();
        if (first == 0) return 0;
        m_next = m_actions + first - 1;
        for (;;) {
            const std::ptrdiff_t index = read_signed();
            if (index > 0 && takes(type_at(static_cast<std::size_t>(index)), thrown)) {
                return static_cast<std::uintptr_t>(index);
            }
            const std::uint8_t* const here = m_next;
            const std::ptrdiff_t step = read_signed();
            if (step == 0) return 0;
            m_next = here + step;
        }
    }

  private:
    std::size_t read_unsigned() {
        std::size_t value = 0;
        unsigned shift = 0;
        while ((*m_next & 0x80U) != 0) {
            value |= (*m_next++ & 0x7FU) << shift;
            shift += 7;
        }
        return value | static_cast<std::size_t>(*m_next++) << shift;
    }

    std::ptrdiff_t read_signed() {
        std::size_t value = 0;
        unsigned shift = 0;
        std::uint8_t byte = 0;
        do {
            byte = *m_next++;
            value |= static_cast<std::size_t>(byte & 0x7FU) << shift;
            shift += 7;
        } while ((byte & 0x80U) != 0);
        if ((byte & 0x40U) != 0 && shift < 32) value |= ~std::size_t{0} << shift;
        return static_cast<std::ptrdiff_t>(value);
    }

    // Null for what catches everything. They stand one before the other.
    [[nodiscard]] const std::type_info* type_at(std::size_t index) const {
        const std::type_info* type = nullptr;
        std::memcpy(&type, m_types - index * sizeof type, sizeof type);
        return type;
    }

    // What the compiler tells of a class; the last where it has one base.
    struct Layout {
        const void* kind;
        const char* name;
        const std::type_info* base;
    };

    static Layout layout_of(const std::type_info& type, bool has_base) {
        Layout layout{};
        std::memcpy(&layout, static_cast<const void*>(&type),
                    has_base ? sizeof layout : offsetof(Layout, base));
        return layout;
    }

    static bool takes(const std::type_info* wanted, const std::type_info& thrown) {
        if (wanted == nullptr) return true;
        const void* const with_base = layout_of(typeid(std::bad_alloc), true).kind;
        for (const std::type_info* type = &thrown;;) {
            if (*type == *wanted) return true;
            const bool has_base = layout_of(*type, false).kind == with_base;
            if (!has_base) return false;
            type = layout_of(*type, true).base;
        }
    }

    const std::uint8_t* m_next;
    const std::uint8_t* m_types = nullptr;
    const std::uint8_t* m_actions = nullptr;
};

}  // namespace

extern "C" {

// The compiler writes the first two, and reads the last.
struct LandingPad {
    std::size_t index;
    const std::uint8_t* table;
    std::uintptr_t handler;
};
LandingPad __wasm_lpad_context;

int _Unwind_CallPersonality(void* object) {
    Table table(__wasm_lpad_context.table);
    __wasm_lpad_context.handler = table.handler(__wasm_lpad_context.index, *header_of(object).type);
    return 0;
}

void* __cxa_allocate_exception(std::size_t size) {
    return static_cast<Header*>(take_room(sizeof(Header) + size)) + 1;
}

void __cxa_free_exception(void* object) { give_room_back(&header_of(object)); }

[[noreturn]] void __cxa_throw(void* object, std::type_info* type, void* (*destroy)(void*)) {
    header_of(object) = {type, destroy, nullptr, 0};
    __builtin_wasm_throw(0, object);
}

void* __cxa_begin_catch(void* object) {
    Header& header = header_of(object);
    if (header.handlers++ == 0) {
        header.outer = innermost;
        innermost = &header;
    }
    return object;
}

void __cxa_end_catch() {
    Header* const header = innermost;
    if (--header->handlers > 0) return;
    innermost = header->outer;
    if (header->destroy != nullptr) header->destroy(header + 1);
    give_room_back(header);
}

// Where the C++ library would write why it ends: nobody is there to read it.
[[noreturn]] void abort_message(const char* /*format*/, ...) { __builtin_trap(); }

// The one thread never ends.
int __cxa_thread_atexit(void (* /*destroy*/)(void*), void* /*object*/, void* /*library*/) {
    return 0;
}

void* __cxa_get_exception_ptr(void* object) { return object; }

}  // extern "C"

// Likewise; the C++ library means it to be replaced.
void std::__libcpp_verbose_abort(const char* /*format*/, ...) { __builtin_trap(); }

void* operator new(std::size_t size) {
    void* const room = std::malloc(size == 0 ? 1 : size);
    if (room == nullptr) throw std::bad_alloc();
    return room;
}

void* operator new(std::size_t size, const std::nothrow_t& /*unused*/) noexcept {
    return std::malloc(size == 0 ? 1 : size);
}

void operator delete(void* room) noexcept { std::free(room); }

void operator delete(void* room, std::size_t /*size*/) noexcept { std::free(room); }
