#include "arraySim/protocol/argumentValue.h"

#include <charconv>

#include "apiMgmt/apiStub/base/apiAttributes/apiAttributes.h"
#include "apiMgmt/common/utils/stringUtil.h"
#include "arraySim/protocol/apiRequest.h"

namespace arraysim {

namespace {

[[noreturn]] void Refuse(const BASEApiAttribute& attribute, const std::string& text, const char* wanted) {
    throw ApiFailure("InvalidValue", "Attribute \"" + attribute.GetXmlName() + "\" was \"" + text +
                                         "\", but must be " + wanted);
}

bool IsInteger(std::string_view text) {
    int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size();
}

std::string Word(const ENUMTABLEApiAttribute& attribute, const std::string& word, const std::string& text) {
    if (attribute.GetTable().size() == 0) {
        return word;
    }
    const ENUMRow* row = attribute.GetTable().FindDescription(word);
    if (row == nullptr) {
        Refuse(attribute, text, "of its enumeration");
    }
    return std::string(row->Description);
}

/** Addresses and references come back as they are when they are good. */
template <class Attribute>
bool Survives(const BASEApiAttribute& attribute, const std::string& text) {
    const auto* kind = dynamic_cast<const Attribute*>(&attribute);
    return kind == nullptr || kind->ToText(kind->FromText(text)) == text;
}

std::string ReferenceText(const OBJECTApiAttribute& attribute, const std::string& text) {
    const std::unique_ptr<APIObjectInstance> reference = attribute.FromText(text);
    return attribute.ToText(reference.get());
}

}  // namespace

std::string ArgumentValue(const BASEApiAttribute& attribute, const std::string& text) {
    if (const auto* flag = dynamic_cast<const BOOLEANApiAttribute*>(&attribute)) {
        for (const char* known : {"1", "0", "true", "false"}) {
            if (CompareNoCase(text, known) == 0) {
                return flag->ToText(flag->FromText(text));
            }
        }
        Refuse(attribute, text, "True or False");
    }
    if (dynamic_cast<const INTApiAttribute*>(&attribute) != nullptr && !IsInteger(text)) {
        Refuse(attribute, text, "a whole number");
    }
    if (const auto* size = dynamic_cast<const SIZEApiAttribute*>(&attribute)) {
        return size->ToText(size->FromText(text));
    }
    if (text.empty()) {
        return text;
    }
    if (const auto* word = dynamic_cast<const ENUMApiAttribute*>(&attribute)) {
        return Word(*word, word->FromText(text), text);
    }
    if (const auto* mask = dynamic_cast<const ENUMMASKApiAttribute*>(&attribute)) {
        std::vector<std::string> words = mask->FromText(text);
        for (std::string& each : words) {
            each = Word(*mask, each, text);
        }
        return mask->ToText(words);
    }
    if (!Survives<IPV4ADDRESSApiAttribute>(attribute, text) ||
        !Survives<IPV6ADDRESSApiAttribute>(attribute, text)) {
        Refuse(attribute, text, "an address");
    }
    const auto* reference = dynamic_cast<const OBJECTApiAttribute*>(&attribute);
    if (reference != nullptr && ReferenceText(*reference, text).empty()) {
        Refuse(attribute, text, "a reference: id, type and name of an object");
    }
    return text;
}

}  // namespace arraysim
