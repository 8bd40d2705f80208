// Why a file cannot be read or written, in words.

#pragma once

#include <cerrno>
#include <string_view>

#include "cli/messages.h"

namespace morandel::cli {

// The reason is one of errno's; one that is not known is left out.
Message cannot_read(std::string_view file, int reason = errno);
Message cannot_write(std::string_view file, int reason = errno);
Message cannot_write_output(int reason = errno);

}  // namespace morandel::cli
