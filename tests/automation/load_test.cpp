// The object under load: apartments side by side, and calls without end.

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <vector>

#include "automation/pointer.h"
#include "tests/automation/host.h"

namespace {

using morandel::automation::Pointer;
using namespace morandel::hosts;

char* bytes(const std::string& text) { return const_cast<char*>(text.c_str()); }

// Requests whose calls leave numbers for one another, all answers in a row.
std::wstring work(int number, int rounds) {
    std::wstring log;
    Pointer<IComExpress> object;
    if (CoCreateInstance(CLSID_ComExpress, nullptr, CLSCTX_INPROC_SERVER, IID_IComExpress,
                         object.fill_untyped()) != S_OK) {
        return L"no object";
    }
    for (int round = 0; round < rounds; ++round) {
        object->Clear();
        object->SetValue(1, bytes("x"), number + round % 7, bytes(""));
        object->SetStringValue(1, bytes("s"), bytes("text of " + std::to_string(number)),
                               bytes(""));
        object->SetValue(0, bytes("y"), 0.0, bytes("mod(x, 3)+preci(x/3, 2)"));
        object->SetValue(0, bytes("z"), 0.0, bytes("y*2+strlen(strsub(s, 2, 4))"));
        for (const char* name : {"y", "z"}) {
            double value = 0.0;
            object->GetValue(bytes(name), &value);
            log += std::to_wstring(value) + L';';
        }
        int result = 0;
        int faults = 0;
        object->ExpressionCheck(bytes("sqrt(\"a\")+mod(1)"), &result, &faults);
        log += std::to_wstring(faults);
        if (log.size() > 4096) log.erase(0, 2048);
    }
    return log;
}

struct Thread {
    int number;
    std::wstring log;

    static DWORD WINAPI run(void* self) {
        auto* thread = static_cast<Thread*>(self);
        const Apartment apartment;
        thread->log = work(thread->number, 3000);
        return 0;
    }
};

// The first of all, while nobody else in this process keeps the library loaded.
TEST(Load, AThreadThatAloneUsesComEnds) {
    Thread thread{0, {}};
    const HANDLE handle = CreateThread(nullptr, 0, Thread::run, &thread, 0, nullptr);
    ASSERT_EQ(WaitForSingleObject(handle, 60'000), WAIT_OBJECT_0);
    CloseHandle(handle);
    EXPECT_NE(thread.log, L"no object");
}

TEST(Load, ApartmentsWorkSideBySide) {
    std::vector<std::wstring> alone;
    {
        const Apartment apartment;
        for (int i = 0; i < 3; ++i) alone.push_back(work(i, 3000));
    }
    Thread threads[3] = {{0, {}}, {1, {}}, {2, {}}};
    HANDLE handles[3];
    for (int i = 0; i < 3; ++i) {
        handles[i] = CreateThread(nullptr, 0, Thread::run, &threads[i], 0, nullptr);
    }
    ASSERT_NE(WaitForMultipleObjects(3, handles, TRUE, 240'000), WAIT_TIMEOUT);
    for (std::size_t i = 0; i < 3; ++i) {
        CloseHandle(handles[i]);
        EXPECT_EQ(threads[i].log, alone[i]);
    }
}

// Of texts that make it compute for seconds.
struct Busy {
    HANDLE begins = CreateEvent(nullptr, TRUE, FALSE, nullptr);
    std::atomic<bool> has_ended = false;

    static DWORD WINAPI run(void* self) {
        auto* busy = static_cast<Busy*>(self);
        const Apartment apartment;
        Pointer<IComExpress> object;
        CoCreateInstance(CLSID_ComExpress, nullptr, CLSCTX_INPROC_SERVER, IID_IComExpress,
                         object.fill_untyped());
        const std::string text(std::size_t{4} << 20, 'a');
        object->SetStringValue(1, bytes("t"), bytes(text), bytes(""));
        const std::string joined = "strcat(t,t,t,t,t,t,t,t)";
        for (int i = 0; i < 40; ++i) {
            const std::string name = "u" + std::to_string(i);
            const std::string formula = "strlen(strreplace(strreplace(strreplace(" + joined +
                                        ",\"a\",\"b\"),\"b\",\"c\"),\"c\",\"d\"))";
            object->SetValue(0, bytes(name), 0.0, bytes(formula));
        }
        SetEvent(busy->begins);
        double value = 0.0;
        object->GetValue(bytes("u1"), &value);
        busy->has_ended = true;
        return 0;
    }
};

TEST(Load, AnApartmentWaitsForNoOther) {
    const Apartment apartment;
    Busy busy;
    const HANDLE handle = CreateThread(nullptr, 0, Busy::run, &busy, 0, nullptr);
    ASSERT_EQ(WaitForSingleObject(busy.begins, 60'000), WAIT_OBJECT_0);
    Sleep(20);
    EXPECT_NE(work(1, 1), L"no object");
    EXPECT_FALSE(busy.has_ended);
    ASSERT_EQ(WaitForSingleObject(handle, 240'000), WAIT_OBJECT_0);
    CloseHandle(handle);
    CloseHandle(busy.begins);
}

TEST(Load, AMillionCallsLeaveNothingBehind) {
    const Apartment apartment;
    work(1, 5000);
    const std::size_t before = memory_in_use();
    work(1, 110'000);  // of nine calls
    const Host host;
    ASSERT_EQ(host.created, S_OK);
    const Variant name(std::wstring(L"x"));
    for (int i = 0; i < 10'000; ++i) {
        host.call(L"Clear", {});
        Variant value(0.0);
        host.call(L"GetValue", {name, value.by_reference()});
    }
    EXPECT_LT(memory_in_use(), before + 65'536);
}

// Calls from there cross to an apartment of the object's own; texts of bytes cross only as
// IDispatch has them.
TEST(Load, AMultithreadedApartmentReachesTheObjectThroughIDispatchOnly) {
    ASSERT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
    {
        const Host host;
        ASSERT_EQ(host.created, S_OK);
        EXPECT_EQ(six_times_seven(host), 42.0);
        void* early = nullptr;
        EXPECT_EQ(host.get()->QueryInterface(IID_IComExpress, &early), E_NOINTERFACE);
    }
    CoUninitialize();
}

}  // namespace
