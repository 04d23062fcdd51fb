#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tools/arraySim/apiRequest.h"
#include "tools/arraySim/model.h"

namespace arraysim {

/** First letter of the object elements. */
enum class Spelling {
    kApi,     ///< lower case: tsDisk
    kLibrary  ///< as the object library writes them: TsDisk
};

/** How objects are written; the second half is there for faults. */
struct ObjectStyle {
    Spelling spelling = Spelling::kApi;
    bool lite = false;

    std::vector<std::string> omitted;                             ///< attributes that are left out
    std::vector<std::pair<std::string, std::string>> replaced;  ///< attributes with a value of the fault's own
};

/** The parts of an answer before they are put together. */
struct ApiAnswer {
    std::string error_code = "None";
    std::string error_text;
    std::string result;  ///< the result element; empty when there is none
    size_t objects = 0;

    bool Successful() const { return error_code == "None"; }
};

/** Appends one object element. */
void AppendObject(std::string& xml, const Object& object, const ObjectStyle& style);

/** The ApiMethodReturn element; `successful` is the text of its Successful, none leaves the element out. */
std::string MethodReturnElement(const ApiAnswer& answer, std::optional<std::string_view> successful);

/** The whole answer document. */
std::string WriteDocument(const ApiAnswer& answer);

inline constexpr std::string_view kXmlDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

}  // namespace arraysim
