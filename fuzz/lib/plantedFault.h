#pragma once

#include <cstdlib>
#include <string_view>

/** The active planted fault, named by the environment variable FUZZ_FAULT. */
namespace planted_fault {

inline bool is_chosen(std::string_view kind) {
    const char* chosen = std::getenv("FUZZ_FAULT");
    return chosen != nullptr && chosen == kind;
}

inline const bool logic = is_chosen("logic");
inline const bool memory = is_chosen("memory");

}  // namespace planted_fault
