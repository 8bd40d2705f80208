#include "cli/file_problem.h"

#include <algorithm>
#include <iterator>

namespace morandel::cli {
namespace {

struct Reason {
    int number;
    Message (*words)();
};

constexpr Reason reasons[] = {
    {ENOENT, [] { return say("there is no such file or folder"); }},
    {ENOTDIR, [] { return say("there is no such file or folder"); }},
    {EACCES, [] { return say("no permission"); }},
    {EPERM, [] { return say("no permission"); }},
    {EROFS, [] { return say("no permission"); }},
    {EISDIR, [] { return say("it is a folder"); }},
    {ENOSPC, [] { return say("the disk is full"); }},
};

Message with_reason(const Message& message, int number) {
    const auto* reason = std::ranges::find(reasons, number, &Reason::number);
    return reason == std::end(reasons) ? message : say("{0}: {1}", message, reason->words());
}

}  // namespace

Message cannot_read(std::string_view file, int reason) {
    return with_reason(say("cannot read {0}", file), reason);
}

Message cannot_write(std::string_view file, int reason) {
    return with_reason(say("cannot write {0}", file), reason);
}

Message cannot_write_output(int reason) {
    return with_reason(say("standard output cannot be written"), reason);
}

}  // namespace morandel::cli
