// A host that catches what the library documents that it throws: from the linked classes and
// through the early-bound interface, again and again, rethrown, and from a thread. Late bound, an
// error comes back.

#include <initguid.h>

#include "morandel.h"
#include "morandel/automation/morandel_com.h"

#include <cstdio>
#include <stdexcept>
#include <thread>

namespace {

int destroyed = 0;

struct Witness {
    ~Witness() { ++destroyed; }
};

int linked() {
    const Witness witness;
    CExpressionCheck check;
    check.Reset();
    check.GetExpressionError(0);
    return 0;
}

int early_bound(IComExpress* object) {
    const Witness witness;
    object->GetExpressionError(nullptr, nullptr, nullptr, nullptr, nullptr);
    return 0;
}

int late_bound(IComExpress* object) {
    int errors = 0;
    for (int i = 0; i < 100; ++i) {
        DISPPARAMS none{};
        EXCEPINFO exception{};
        errors += object->Invoke(15, IID{}, 0, DISPATCH_METHOD, &none, nullptr, &exception,
                                 nullptr) == DISP_E_EXCEPTION
                      ? 1
                      : 0;
        SysFreeString(exception.bstrDescription);
        SysFreeString(exception.bstrSource);
    }
    return errors;
}

template <class Call>
int caught(const Call& call) {
    int count = 0;
    for (int i = 0; i < 100; ++i) {
        try {
            try {
                call();
            } catch (const std::exception&) {
                throw;
            }
        } catch (const std::invalid_argument& problem) {
            count += problem.what()[0] != '\0' ? 1 : 0;
        }
    }
    return count;
}

}  // namespace

int main() {
    CoInitialize(nullptr);
    IComExpress* object = nullptr;
    if (FAILED(CoCreateInstance(CLSID_ComExpress, nullptr, CLSCTX_INPROC_SERVER, IID_IComExpress,
                                reinterpret_cast<void**>(&object)))) {
        std::puts("no object");
        return 1;
    }
    const int errors = late_bound(object);
    int in_thread = 0;
    std::thread([&] { in_thread = caught(linked); }).join();
    const int from_classes = caught(linked);
    const int from_interface = caught([&] { return early_bound(object); });
    std::printf("late %d, linked %d, in a thread %d, early %d; destroyed %d\n", errors,
                from_classes, in_thread, from_interface, destroyed);
    object->Release();
    CoUninitialize();
}
