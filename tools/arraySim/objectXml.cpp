#include <algorithm>

#include "apiMgmt/common/utils/stringUtil.h"
#include "tools/arraySim/apiDocument.h"
#include "tools/arraySim/xmlText.h"

namespace arraysim {

namespace {

/** `Tessera` has one spelling only. */
std::string ElementName(const Kind& kind, Spelling spelling) {
    if (spelling == Spelling::kClasses && kind.list->mixed && !kind.alone) {
        return kind.list->name;
    }
    std::string name = kind.name;
    if (spelling == Spelling::kApi && name.starts_with("Ts")) {
        name[0] = 't';
    }
    return name;
}

bool IsOmitted(const ObjectStyle& style, const std::string& attribute) {
    return std::any_of(style.omitted.begin(), style.omitted.end(),
                       [&](const std::string& each) { return CompareNoCase(each, attribute) == 0; });
}

const std::string* Replacement(const ObjectStyle& style, const std::string& attribute) {
    for (const auto& [name, value] : style.replaced) {
        if (CompareNoCase(name, attribute) == 0) {
            return &value;
        }
    }
    return nullptr;
}

}  // namespace

void AppendObject(std::string& xml, const Object& object, const ObjectStyle& style) {
    const std::string element = ElementName(*object.kind, style.spelling);
    xml.append("<").append(element).append(">");
    for (size_t i = 0; i < object.values.size(); ++i) {
        const Attribute& attribute = object.kind->attributes[i];
        if (!object.values[i] || (style.lite && !attribute.in_reduced) || IsOmitted(style, attribute.name)) {
            continue;
        }
        const std::string* replacement = Replacement(style, attribute.name);
        AppendElement(xml, attribute.name, replacement != nullptr ? *replacement : *object.values[i]);
    }
    xml.append("</").append(element).append(">");
}

}  // namespace arraysim
