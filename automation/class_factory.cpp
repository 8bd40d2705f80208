#include "automation/class_factory.h"

#include <atomic>
#include <new>

namespace morandel::automation {
namespace {

// Apartments share it, so its count is atomic. A reference to it does not keep the module loaded;
// LockServer does.
class ClassFactory final : public IClassFactory {
  public:
    explicit ClassFactory(InstanceMaker create) : m_create(create) {}

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
        if (object == nullptr) return E_POINTER;
        *object = nullptr;
        if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IClassFactory)) {
            return E_NOINTERFACE;
        }
        *object = static_cast<IClassFactory*>(this);
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++m_references; }
    STDMETHODIMP_(ULONG) Release() override {
        const ULONG left = --m_references;
        if (left == 0) delete this;
        return left;
    }

    STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
        if (object == nullptr) return E_POINTER;
        *object = nullptr;
        // The outer object needs the IUnknown of its member itself, to reach its interfaces by.
        if (outer != nullptr && !IsEqualIID(iid, IID_IUnknown)) return CLASS_E_NOAGGREGATION;
        return m_create(outer, iid, object);
    }
    STDMETHODIMP LockServer(BOOL lock) override {
        if (lock != FALSE) {
            this_module().lock();
        } else {
            this_module().unlock();
        }
        return S_OK;
    }

  private:
    // Without a virtual destructor only Release may delete it.
    ~ClassFactory() = default;

    const InstanceMaker m_create;
    std::atomic<ULONG> m_references = 1;
};

}  // namespace

HRESULT create_class_factory(InstanceMaker create, IClassFactory** factory) {
    *factory = new (std::nothrow) ClassFactory(create);
    return *factory == nullptr ? E_OUTOFMEMORY : S_OK;
}

}  // namespace morandel::automation
