// Preloaded into Python, it makes an allocation of C++ fail: the first, second, third ..., once or
// from then on.

#include <cstdlib>
#include <new>

namespace {

long left_to_fail = 0;  // allocations until one fails; 0 where none does
bool fails_on = false;  // and all after it do
long failures = 0;

bool fails() {
    if (left_to_fail == 0 || --left_to_fail > 0) return false;
    left_to_fail = fails_on ? 1 : 0;
    ++failures;
    return true;
}

}  // namespace

extern "C" {
void fail_from_now(long which, int lasting) {
    left_to_fail = which;
    fails_on = lasting != 0;
    failures = 0;
}

long stop_failing() {
    left_to_fail = 0;
    return failures;
}
}

void* operator new(std::size_t size) {
    void* room = fails() ? nullptr : std::malloc(size == 0 ? 1 : size);
    if (room == nullptr) throw std::bad_alloc();
    return room;
}
void operator delete(void* room) noexcept { std::free(room); }
void operator delete(void* room, std::size_t) noexcept { std::free(room); }
