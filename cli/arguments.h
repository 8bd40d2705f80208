// Reads the arguments of the command by the table of verbs and options.

#pragma once

#include <string>
#include <vector>

#include "cli/commands.h"
#include "cli/verbs.h"

namespace morandel::cli {

struct Arguments {
    const Verb* verb = nullptr;  // none for the prompt
    Request request;
};

// Options may stand anywhere up to "--"; a formula may begin with a sign, and one alone stands for
// eval. UsageError for what nobody can mean, with what may have been meant.
Arguments read_arguments(const std::vector<std::string>& arguments);

}  // namespace morandel::cli
