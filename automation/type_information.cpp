#include "automation/type_information.h"

#include <algorithm>
#include <iterator>
#include <mutex>

#include "automation/module.h"
#include "morandel_com.h"

namespace morandel::automation {
namespace {

// The side of a dual interface that has the table of virtual functions.
constexpr UINT implementation_side = static_cast<UINT>(-1);

std::mutex lock;
std::shared_ptr<const TypeInformation> kept;

Parameter read_parameter(const ELEMDESC& element) {
    const bool is_output = (element.paramdesc.wParamFlags & PARAMFLAG_FOUT) != 0;
    return {is_output ? element.tdesc.lptdesc->vt : element.tdesc.vt, is_output};
}

std::vector<Method> read_methods(ITypeInfo* implementation) {
    TYPEATTR* attributes = nullptr;
    expect(implementation->GetTypeAttr(&attributes));
    const UINT count = attributes->cFuncs;
    implementation->ReleaseTypeAttr(attributes);

    std::vector<Method> methods(count);
    for (UINT i = 0; i < count; ++i) {
        FUNCDESC* description = nullptr;
        expect(implementation->GetFuncDesc(i, &description));
        methods[i].id = description->memid;
        methods[i].slot = static_cast<std::size_t>(description->oVft);
        const auto parameters = static_cast<std::size_t>(description->cParams);
        methods[i].parameters.reserve(parameters);
        std::transform(description->lprgelemdescParam, description->lprgelemdescParam + parameters,
                       std::back_inserter(methods[i].parameters), read_parameter);
        implementation->ReleaseFuncDesc(description);
    }
    return methods;
}

std::shared_ptr<const TypeInformation> load() {
    Pointer<ITypeLib> library;
    expect(LoadTypeLibEx(module_path().data(), REGKIND_NONE, library.fill()));
    auto information = std::make_shared<TypeInformation>();
    expect(library->GetTypeInfoOfGuid(IID_IComExpress, information->dispatch.fill()));
    HREFTYPE reference = 0;
    expect(information->dispatch->GetRefTypeOfImplType(implementation_side, &reference));
    Pointer<ITypeInfo> implementation;
    expect(information->dispatch->GetRefTypeInfo(reference, implementation.fill()));
    information->methods = read_methods(implementation.get());
    return information;
}

}  // namespace

void expect(HRESULT result) {
    if (FAILED(result)) throw ComError{result};
}

const Method* TypeInformation::find(DISPID id) const {
    const auto found = std::ranges::find(methods, id, &Method::id);
    return found == methods.end() ? nullptr : &*found;
}

std::shared_ptr<const TypeInformation> type_information() {
    const std::lock_guard guard(lock);
    if (kept == nullptr) kept = load();
    return kept;
}

void forget_type_information() {
    const std::lock_guard guard(lock);
    kept.reset();
}

std::vector<wchar_t> module_path() {
    std::vector<wchar_t> path(MAX_PATH);
    while (GetModuleFileNameW(this_module().instance(), path.data(),
                              static_cast<DWORD>(path.size())) == path.size()) {
        path.resize(2 * path.size());
    }
    return path;
}

}  // namespace morandel::automation
