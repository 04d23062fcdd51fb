#include "tools/apiClient/structuredArgument.h"

#include <map>
#include <memory>

#include "apiMgmt/apiStub/base/apiAttributes/baseApiAttribute.h"
#include "apiMgmt/apiStub/base/apiObjects/base/apiObjectFactory.h"
#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethodObject.h"
#include "tools/apiClient/attributeWords.h"
#include "tools/apiClient/usageError.h"
#include "tools/apiClient/valueText.h"

namespace {

/** Values by the name of their field as a person wrote it. */
using Fields = std::map<std::string, std::vector<std::string>>;

std::string ElementText(const CatalogueAttribute& attribute, const Fields& fields) {
    const CatalogueObject& kind = *FindNamed(ApiCatalogue().methodObjects, attribute.object);
    const std::unique_ptr<BASEApiMethodObject> object =
        APIObjectFactory<BASEApiMethodObject>::Instance().Create(kind.name);
    for (const auto& [name, values] : fields) {
        const CatalogueAttribute* field = FindNamed(kind.attributes, name);
        if (field == nullptr) {
            throw UsageError(
                UnknownWords("field of " + attribute.name, name, kind.attributes, "--list names them"));
        }
        const std::string text = ValueText(*field, values);
        FindAttributeIn(object->GetAttributeList(), field->name)->Validate(text);
        object->SetAttribute(field->name, text);
    }
    return object->ToXml(true);
}

[[noreturn]] void FailFields(const CatalogueAttribute& attribute) {
    throw UsageError(AttributeWords(attribute) + " is " + AllowedWords(attribute));
}

/** The number in front of a field of a list. */
size_t CutNumber(const CatalogueAttribute& attribute, std::string& field) {
    const size_t point = field.find('.');
    const int number = ParseInt(field);
    if (point == std::string::npos || number < 1 || std::to_string(number) != field.substr(0, point)) {
        FailFields(attribute);
    }
    field.erase(0, point + 1);
    return static_cast<size_t>(number);
}

}  // namespace

std::string StructuredText(const CatalogueAttribute& attribute, const std::vector<GivenValue>& given) {
    const bool is_list = attribute.kind == "METHODOBJECTARRAY";
    std::map<size_t, Fields> elements;
    for (GivenValue each : given) {
        if (each.field.empty()) {
            FailFields(attribute);
        }
        const size_t number = is_list ? CutNumber(attribute, each.field) : 1;
        elements[number][each.field].push_back(each.value);
    }
    std::string text;
    for (const auto& [number, fields] : elements) {
        text += ElementText(attribute, fields);
    }
    return text;
}
