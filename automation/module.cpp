#include "automation/module.h"

#include <algorithm>

#include "automation/class_factory.h"

namespace morandel::automation {

Module& this_module() {
    static Module the_module;
    return the_module;
}

void Module::init(std::span<const ClassEntry> classes, HINSTANCE instance) {
    m_classes = classes.first(std::min(classes.size(), most_classes));
    m_instance = instance;
}

void Module::terminate() {
    for (auto& factory : m_factories) factory = {};
}

HRESULT Module::get_class_object(REFCLSID id, REFIID iid, void** object) {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    for (std::size_t i = 0; i < m_classes.size(); ++i) {
        if (!IsEqualCLSID(m_classes[i].id, id)) continue;
        const std::lock_guard guard(m_factories_lock);
        Pointer<IClassFactory>& factory = m_factories[i];
        if (!factory) {
            const HRESULT result = create_class_factory(m_classes[i].create, factory.fill());
            if (FAILED(result)) return result;
        }
        return factory->QueryInterface(iid, object);
    }
    return CLASS_E_CLASSNOTAVAILABLE;
}

}  // namespace morandel::automation
