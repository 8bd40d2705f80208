// The arguments of one call through Invoke: from the caller's VARIANTs to what a method takes, and
// its outputs back. Only the type information says what a method takes.

#pragma once

#include <oaidl.h>

#include <array>
#include <string>

#include "automation/type_information.h"

namespace morandel::automation {

class Arguments {
  public:
    static constexpr std::size_t most = 8;

    // Where the call went wrong: the place in rgvarg of an argument.
    struct Failure {
        HRESULT result;
        UINT argument;
    };

    Arguments(const Method& method, LCID locale) : m_method(method), m_locale(locale) {}
    ~Arguments();
    Arguments(const Arguments&) = delete;
    Arguments& operator=(const Arguments&) = delete;

    // Throws Failure where the arguments do not fit the method, EncodingError, std::bad_alloc.
    void take(const DISPPARAMS& given);

    // Calls the method of object that takes them.
    HRESULT call(IUnknown* object);

    // Writes the outputs into the caller's variables, and the last one, if it was left out, into
    // result, which may be null; where several were, and all of them, an array of all. What the
    // method left unwritten stays as it was. All that can be written is, then Failure is thrown for
    // the first that could not.
    void hand_back(VARIANT* result);

  private:
    struct Argument {
        VARIANTARG* given = nullptr;  // by the caller; null if left out
        UINT place = 0;               // in rgvarg
        VARIANT value{};              // what the method takes
        VARIANT output{};             // what value points to, if that is an output
        std::string bytes;            // what value points to, if that is a text
    };

    static bool left_out(const Argument& argument);
    void place(const DISPPARAMS& given);
    void convert_input(Argument& argument, VARTYPE type);
    void prepare_output(Argument& argument, VARTYPE type);
    HRESULT make_array(VARIANT& array);

    const Method& m_method;
    const LCID m_locale;  // of the caller
    std::array<Argument, most> m_arguments;
    bool m_all_left_out = false;  // of several outputs
};

}  // namespace morandel::automation
