#include "tools/apiClient/argumentParser.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <memory>

#include "apiMgmt/apiStub/base/apiAttributes/baseApiAttribute.h"
#include "apiMgmt/apiStub/base/apiObjects/base/apiObjectFactory.h"
#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethodObject.h"
#include "apiMgmt/common/utils/stringUtil.h"
#include "tools/apiClient/catalogueDescription.h"
#include "tools/apiClient/valueParser.h"
#include "tools/commandLine/nearestName.h"
#include "tools/commandLine/usageError.h"

namespace apiclient {

using commandline::UsageError;

namespace {

/** Values by the name of their field as given. */
using Fields = std::map<std::string, std::vector<std::string>>;

std::string BuildElement(const CatalogueAttribute& attribute, const Fields& fields) {
    const CatalogueObject& type = *FindNamed(ApiCatalogue().method_objects, attribute.object);
    const std::unique_ptr<BASEApiMethodObject> object =
        APIObjectFactory<BASEApiMethodObject>::Instance().Create(type.name);
    for (const auto& [name, values] : fields) {
        const CatalogueAttribute* field = FindNamed(type.attributes, name);
        if (field == nullptr) {
            throw UsageError(commandline::UnknownName("field of " + attribute.name, name,
                                                      NamesOf(type.attributes),
                                                      "OBJECT COMMAND --list shows the fields"));
        }
        const std::string text = ParseValue(*field, values);
        field->descriptor->Validate(text);
        object->SetAttribute(field->name, text);
    }
    return object->ToXml(true);
}

[[noreturn]] void FailStructure(const CatalogueAttribute& attribute) {
    throw UsageError(DescribeAttribute(attribute) + " is " + DescribeLegalValues(attribute));
}

/** Removes the element number from the beginning of a list's field and returns it. */
size_t TakeElementNumber(const CatalogueAttribute& attribute, std::string& field) {
    const size_t stop = field.find('.');
    const int number = ParseInt(field);
    if (stop == std::string::npos || number < 1 || std::to_string(number) != field.substr(0, stop)) {
        FailStructure(attribute);
    }
    field.erase(0, stop + 1);
    return static_cast<size_t>(number);
}

}  // namespace

GivenArguments ParseArguments(const std::vector<std::string>& words) {
    GivenArguments given;
    for (const std::string& word : words) {
        const size_t equals = word.find('=');
        const std::string path = word.substr(0, equals);
        const size_t stop = path.find('.');
        const std::string name = path.substr(0, stop);
        if (equals == std::string::npos || !IsElementName(name)) {
            throw UsageError("invalid argument '" + word + "'; expected NAME=VALUE");
        }
        auto found = std::ranges::find_if(
            given, [&](const auto& each) { return CompareNoCase(each.first, name) == 0; });
        if (found == given.end()) {
            found = given.insert(given.end(), {name, {}});
        }
        found->second.push_back(
            {stop == std::string::npos ? "" : path.substr(stop + 1), word.substr(equals + 1)});
    }
    return given;
}

bool IsElementName(std::string_view name) {
    return !name.empty() && (std::isalpha(static_cast<unsigned char>(name[0])) || name[0] == '_') &&
           std::ranges::all_of(name, [](unsigned char c) { return std::isalnum(c) || c == '_' || c == '-'; });
}

std::string BuildStructure(const CatalogueAttribute& attribute, const std::vector<GivenValue>& given) {
    const bool is_list = attribute.kind == "METHODOBJECTARRAY";
    std::map<size_t, Fields> elements;
    for (GivenValue each : given) {
        if (each.field.empty()) {
            FailStructure(attribute);
        }
        const size_t number = is_list ? TakeElementNumber(attribute, each.field) : 1;
        elements[number][each.field].push_back(each.value);
    }
    std::string text;
    for (const auto& [number, fields] : elements) {
        text += BuildElement(attribute, fields);
    }
    return text;
}

}  // namespace apiclient
