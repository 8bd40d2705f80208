#include "source/texts.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace morandel::python {
namespace {

template <class Character>
void append_characters(const Character* characters, std::size_t count, std::string& bytes) {
    const auto add = [&bytes](std::uint32_t byte) { bytes.push_back(static_cast<char>(byte)); };
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t c = characters[i];
        if (c < 0x80) {
            add(c);
            continue;
        }
        const auto follow = [&](int shift) { add(0x80 | ((c >> shift) & 0x3F)); };
        if (c < 0x800) {
            add(0xC0 | (c >> 6));
        } else if (c < 0x10000) {
            add(0xE0 | (c >> 12));
            follow(6);
        } else {
            add(0xF0 | (c >> 18));
            follow(12);
            follow(6);
        }
        follow(0);
    }
}

}  // namespace

void append_utf8(PyObject* text, std::string& bytes) {
    const auto count = static_cast<std::size_t>(PyUnicode_GET_LENGTH(text));
    if (PyUnicode_IS_COMPACT_ASCII(text)) {
        bytes.append(static_cast<const char*>(PyUnicode_DATA(text)), count);
        return;
    }
    switch (PyUnicode_KIND(text)) {
        case PyUnicode_1BYTE_KIND:
            return append_characters(PyUnicode_1BYTE_DATA(text), count, bytes);
        case PyUnicode_2BYTE_KIND:
            return append_characters(PyUnicode_2BYTE_DATA(text), count, bytes);
        default:
            return append_characters(PyUnicode_4BYTE_DATA(text), count, bytes);
    }
}

PyObject* str_of(std::string_view bytes) {
    unsigned char most = 0;
    std::size_t count = 0;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        most = std::max(most, byte);
        count += (byte & 0xC0) != 0x80 ? 1 : 0;
    }
    // Python has a form for characters up to U+00FF, one for 16 bits and one for more.
    const bool has_16_bits = most > 0xC3 && most < 0xF0;
    PyObject* text =
        has_16_bits
            ? PyUnicode_New(static_cast<Py_ssize_t>(count), 0xFFFF)
            : PyUnicode_DecodeUTF8(bytes.data(), static_cast<Py_ssize_t>(bytes.size()), nullptr);
    if (text == nullptr) throw pybind11::error_already_set();
    if (!has_16_bits) return text;
    Py_UCS2* out = PyUnicode_2BYTE_DATA(text);
    const auto low = [](char byte) { return static_cast<unsigned>(byte) & 0x3FU; };
    for (std::size_t i = 0; i < bytes.size();) {
        unsigned character = static_cast<unsigned char>(bytes[i]);
        if (character < 0x80) {
            i += 1;
        } else if (character < 0xE0) {
            character = (character & 0x1FU) << 6 | low(bytes[i + 1]);
            i += 2;
        } else {
            character = (character & 0x0FU) << 12 | low(bytes[i + 1]) << 6 | low(bytes[i + 2]);
            i += 3;
        }
        *out++ = static_cast<Py_UCS2>(character);
    }
    return text;
}

}  // namespace morandel::python
