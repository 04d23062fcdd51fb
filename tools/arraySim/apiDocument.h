#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tools/arraySim/apiRequest.h"
#include "tools/arraySim/model.h"

namespace arraysim {

/** First letter of the object elements. */
enum class Spelling {
    kApi,      ///< lower case: tsDisk
    kLibrary,  ///< as the object library writes them: TsDisk
    kClasses   ///< the names of the library's classes, so that its clients know each object
};

/** How objects are written; the second half is there for faults. */
struct ObjectStyle {
    Spelling spelling = Spelling::kApi;
    bool lite = false;

    std::vector<std::string> omitted;  ///< attributes that are left out
    std::vector<std::pair<std::string, std::string>>
        replaced;  ///< attributes with a value of the fault's own
};

/** The parts of an answer before they are put together. */
struct ApiAnswer {
    bool successful = true;
    std::string error_code = "None";
    std::string error_text;
    std::string result;  ///< the result element; empty when there is none
    size_t objects = 0;
};

/** Appends one object element. */
void AppendObject(std::string& xml, const Object& object, const ObjectStyle& style);

/** How a fault bends the document around the objects. */
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
};

/** The whole answer document. */
std::string WriteDocument(const ApiAnswer& answer, const DocumentBend& bend = {});

}  // namespace arraysim
