// What the type library, a resource of the module, tells of IComExpress. Loaded on first use and
// kept until the module goes.

#pragma once

#include <windows.h>

#include <oaidl.h>

#include <cstddef>
#include <memory>
#include <vector>

#include "automation/pointer.h"

namespace morandel::automation {

struct Parameter {
    VARTYPE type = VT_EMPTY;  // of an output, the type of what is written
    bool is_output = false;
};

struct Method {
    DISPID id = 0;
    std::size_t slot = 0;  // bytes from the start of the table of virtual functions
    std::vector<Parameter> parameters;
};

struct TypeInformation {
    Pointer<ITypeInfo> dispatch;  // as GetTypeInfo gives it
    std::vector<Method> methods;

    [[nodiscard]] const Method* find(DISPID id) const;
};

// Throws std::bad_alloc, or ComError.
std::shared_ptr<const TypeInformation> type_information();
void forget_type_information();

// The file of the module.
std::vector<wchar_t> module_path();

struct ComError {
    HRESULT result;
};

// Throws ComError for a result that is a failure.
void expect(HRESULT result);

}  // namespace morandel::automation
