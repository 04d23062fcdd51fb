#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace arraysim {

/** How a fault bends an answer's document. */
struct DocumentBend {
    std::optional<std::pair<std::string, std::string>> error;  ///< code and text in place of the answer
    bool truncated = false;
    bool empty = false;
    bool unbalanced = false;
    bool wrong_root = false;
    bool no_return = false;
    bool no_successful = false;
    bool lower_true = false;
    bool doctype = false;
    bool entities = false;
    bool external_entity = false;
    uint32_t nesting = 0;

    bool operator==(const DocumentBend&) const = default;
};

/** The bent form of a document that the library has written; all but `error`, which is no matter of form. */
std::string BendDocument(std::string document, const DocumentBend& bend);

}  // namespace arraysim
