// What calls of a formula leave for one another: further arguments wait until a function takes its
// fixed number of texts and numbers, whoever they were meant for.

#pragma once

#include <cstddef>
#include <functional>
#include <string_view>
#include <vector>

#include "cli/tree.h"

namespace morandel::cli {

// Of a name; open where it is not known.
using KindOfName = std::function<Kind(std::string_view name)>;

// The kind that an operand or argument should have, by its index; open where there is none.
Kind wanted_kind(const Function& function, std::size_t argument);
Kind wanted_kind(const Tree& tree, const Node& node, std::size_t operand);

// The kind of each node.
std::vector<Kind> kinds_of(const Tree& tree, const KindOfName& kind_of_name);

struct PendingFault {
    enum class What {
        too_few_numbers,  // the call finds fewer numbers than it needs
        too_few_texts,
        takes_from_other,  // the call takes what the one around it still needs
        joins_inside,      // a strcat as a further text of a strcat
    };
    What what;
    std::size_t node;
};

struct Pending {
    std::vector<PendingFault> faults;
    bool leaves_nothing = true;  // at the end, with all kinds known
};

Pending pending_of(const Tree& tree, const KindOfName& kind_of_name);

inline bool leaves_nothing(const Tree& tree, const KindOfName& kind_of_name) {
    return pending_of(tree, kind_of_name).leaves_nothing;
}

}  // namespace morandel::cli
