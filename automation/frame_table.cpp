#include "automation/frame_table.h"

#include <cstdint>
#include <cstring>
#include <optional>
#include <string_view>

namespace morandel::automation {
namespace {

constexpr BYTE absolute = 0x00;
constexpr BYTE relative = 0x1B;  // to the place of the pointer
constexpr BYTE indirect = 0x80;
constexpr std::size_t word = 4;

class Reader {
  public:
    explicit Reader(FrameTable bytes) : m_rest(bytes) {}

    [[nodiscard]] bool failed() const { return m_failed; }
    [[nodiscard]] std::size_t left() const { return m_rest.size(); }
    BYTE* skip(std::size_t count) {
        static BYTE nothing[8];
        if (count > m_rest.size()) {
            m_failed = true;
            return nothing;
        }
        BYTE* const place = m_rest.data();
        m_rest = m_rest.subspan(count);
        return place;
    }
    std::uint32_t number() {
        std::uint32_t value = 0;
        std::memcpy(&value, skip(word), word);
        return value;
    }
    // Of seven bits a byte; only its size matters here.
    void skip_packed() {
        while ((*skip(1) & 0x80U) != 0 && !m_failed) {
        }
    }
    std::string_view text() {
        const auto* const begin = reinterpret_cast<const char*>(m_rest.data());
        const auto* const end = static_cast<const char*>(std::memchr(begin, 0, m_rest.size()));
        if (end == nullptr) {
            m_failed = true;
            return {};
        }
        const auto size = static_cast<std::size_t>(end - begin);
        skip(size + 1);
        return {begin, size};
    }

  private:
    FrameTable m_rest;
    bool m_failed = false;
};

// What the head of a group of entries says of the pointers in them.
struct Head {
    BYTE code = absolute;
    std::optional<BYTE> language_data;
    BYTE* personality_kind = nullptr;
    BYTE* personality = nullptr;
};

std::optional<Head> read_head(Reader reader) {
    Head head;
    const BYTE version = *reader.skip(1);
    const std::string_view letters = reader.text();
    if (version != 1 || letters.empty() || letters.front() != 'z') return std::nullopt;
    reader.skip_packed();  // alignment of code
    reader.skip_packed();  // and of data
    reader.skip(1);        // the register of the return address
    reader.skip_packed();  // size of what the letters stand for
    for (const char letter : letters.substr(1)) {
        switch (letter) {
            case 'R':
                head.code = *reader.skip(1);
                break;
            case 'L':
                head.language_data = *reader.skip(1);
                break;
            case 'P':
                head.personality_kind = reader.skip(1);
                head.personality = reader.skip(word);
                break;
            case 'S':
                break;
            default:
                return std::nullopt;
        }
    }
    const auto is_known = [](BYTE kind) { return kind == absolute || kind == relative; };
    if (reader.failed() || !is_known(head.code)) return std::nullopt;
    if (head.language_data && !is_known(*head.language_data)) return std::nullopt;
    if (head.personality_kind != nullptr &&
        !is_known(static_cast<BYTE>(*head.personality_kind & ~indirect))) {
        return std::nullopt;
    }
    return head;
}

void add(BYTE* place, std::uint32_t difference) {
    std::uint32_t value = 0;
    std::memcpy(&value, place, word);
    if (value == 0) return;  // points nowhere
    value += difference;
    std::memcpy(place, &value, word);
}

std::uint32_t address(const void* pointer) {
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(pointer));
}

void set_personality(const Head& head, const void* personality) {
    if (head.personality == nullptr) return;
    *head.personality_kind = absolute;
    const std::uint32_t value = address(personality);
    std::memcpy(head.personality, &value, word);
}

}  // namespace

FrameTable frame_table(HMODULE module) {
    auto* const base = reinterpret_cast<BYTE*>(module);
    const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const IMAGE_SECTION_HEADER* const first = IMAGE_FIRST_SECTION(headers);
    for (WORD i = 0; i < headers->FileHeader.NumberOfSections; ++i) {
        const IMAGE_SECTION_HEADER& section = first[i];
        const std::string_view name(reinterpret_cast<const char*>(section.Name), 8);
        // A name of more than 8 letters is cut, or kept in the file only.
        const bool may_be = name == ".eh_fram" || name.front() == '/';
        constexpr DWORD unlike = IMAGE_SCN_MEM_EXECUTE | IMAGE_SCN_MEM_DISCARDABLE;
        if (!may_be || (section.Characteristics & unlike) != 0) continue;
        const FrameTable table(base + section.VirtualAddress, section.Misc.VirtualSize);
        Reader reader(table);
        reader.number();
        if (reader.number() == 0 && !reader.failed() && read_head(reader)) return table;
    }
    return {};
}

bool adapt(FrameTable copy, const BYTE* original, const void* personality) {
    const std::uint32_t moved = address(original) - address(copy.data());
    for (Reader reader(copy); reader.left() >= word;) {
        const std::uint32_t size = reader.number();
        if (size == 0) return true;
        BYTE* const begin = reader.skip(size);
        if (reader.failed()) return false;
        Reader entry(FrameTable(begin, size));
        const std::uint32_t distance = entry.number();
        if (distance == 0) {
            const std::optional<Head> head = read_head(entry);
            if (!head) return false;
            set_personality(*head, personality);
            continue;
        }
        if (distance > static_cast<std::size_t>(begin - copy.data())) return false;
        BYTE* const head_begin = begin - distance;
        const std::optional<Head> head = read_head(Reader(
            FrameTable(head_begin + 2 * word, static_cast<std::size_t>(begin - head_begin))));
        if (!head) return false;
        BYTE* const code = entry.skip(word);
        entry.skip(word);  // size of the code
        entry.skip_packed();
        BYTE* const language_data = head->language_data ? entry.skip(word) : nullptr;
        if (entry.failed()) return false;
        if (head->code == relative) add(code, moved);
        if (language_data != nullptr && *head->language_data == relative) {
            add(language_data, moved);
        }
    }
    return true;
}

}  // namespace morandel::automation
