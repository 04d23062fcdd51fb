#include "arraySim/protocol/apiCall.h"

#include <charconv>

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiAssociations.h"
#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiEnumsIDStrList.h"
#include "apiMgmt/apiStub/base/apiAttributes/apiAttributes.h"
#include "apiMgmt/apiStub/base/apiObjects/base/apiObjectFactory.h"
#include "apiMgmt/apiStub/base/apiObjects/base/baseApiObject.h"
#include "apiMgmt/common/utils/apiMethodError.h"
#include "apiMgmt/common/utils/stringUtil.h"
#include "arraySim/model/catalogue.h"

namespace arraysim {

namespace {

void CheckRequest(const ApiRequest& request) {
    if (request.command_type != "Method" && request.command_type != "Association") {
        throw ApiFailure("MethodNotAvailable", "'" + request.command_type + "' is not a command type");
    }
    if (ParseBool(request.async)) {
        throw ApiFailure("InvalidArguments", "Asynchronous commands are not supported");
    }
    if (request.encode_type != "xml" && request.encode_type != "csv") {
        throw ApiFailure("InvalidArguments",
                         "Unknown encoding '" + request.encode_type + "'; expected xml or csv");
    }
}

/** Compares the names, because another object and command can yield the same key. */
std::unique_ptr<BASEApiMethod> FindMethod(const std::string& object, const std::string& command) {
    auto method = APIObjectFactory<BASEApiMethod>::Instance().Create("API" + object + command + "Method");
    if (method && (method->GetObjectName() != object || method->GetCommandName() != command)) {
        return nullptr;
    }
    return method;
}

std::unique_ptr<BASEApiMethod> FindCall(const ApiRequest& request) {
    if (!Catalogue::Builtin().FindRequestable(request.object)) {
        throw ApiFailure("ObjectNotAvailable", "Object '" + request.object + "' is not known");
    }
    const bool is_relation = request.command_type == "Association";
    std::unique_ptr<BASEApiMethod> call;
    if (is_relation) {
        call = CreateAssociation(request.object, request.command);
    } else {
        call = FindMethod(request.object, request.command);
    }
    if (!call) {
        throw ApiFailure("MethodNotAvailable", request.object + " has no " +
                                                   (is_relation ? "association" : "command") + " '" +
                                                   request.command + "'");
    }
    return call;
}

/** Finds an attribute that the array has and the API catalogue lacks. Modify can change it as well. */
const BASEApiAttribute* OwnAttribute(const BASEApiMethod& call, const std::string& name) {
    if (call.GetCommandName() != "Modify") {
        return nullptr;
    }
    for (const auto& attribute : Catalogue::Builtin().KindOf(call.GetObjectName()).own) {
        if (attribute->GetXmlName() == name) {
            return attribute.get();
        }
    }
    return nullptr;
}

bool HasNoDescriptor(const std::string& name) {
    return name == "InstanceId" || name == "LiteObj" || BASEApiMethod::IsFilterAttribute(name);
}

[[noreturn]] void RejectValue(const BASEApiAttribute& attribute, const std::string& text,
                              const char* wanted) {
    throw ApiFailure("InvalidValue", "Attribute \"" + attribute.GetXmlName() + "\" was \"" + text +
                                         "\", but must be " + wanted);
}

bool IsInteger(std::string_view text) {
    int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size();
}

std::string EnumerationWord(const ENUMTABLEApiAttribute& attribute, const std::string& word,
                            const std::string& text) {
    if (attribute.GetTable().size() == 0) {
        return word;
    }
    const ENUMRow* row = attribute.GetTable().FindDescription(word);
    if (row == nullptr) {
        RejectValue(attribute, text, "in its enumeration");
    }
    return std::string(row->Description);
}

/** Returns whether conversion to the type and back preserves the string, which makes it an address. */
template <class ApiAttribute>
bool IsUnchanged(const BASEApiAttribute& attribute, const std::string& text) {
    const auto* kind = dynamic_cast<const ApiAttribute*>(&attribute);
    return kind == nullptr || kind->ToText(kind->FromText(text)) == text;
}

std::string FormatReference(const OBJECTApiAttribute& attribute, const std::string& text) {
    const std::unique_ptr<APIObjectInstance> reference = attribute.FromText(text);
    return attribute.ToText(reference.get());
}

void CheckValue(const BASEApiAttribute& attribute, const std::string& text) {
    if (!IsUnchanged<IPV4ADDRESSApiAttribute>(attribute, text) ||
        !IsUnchanged<IPV6ADDRESSApiAttribute>(attribute, text)) {
        RejectValue(attribute, text, "an address");
    }
    const auto* reference = dynamic_cast<const OBJECTApiAttribute*>(&attribute);
    if (reference != nullptr && FormatReference(*reference, text).empty()) {
        RejectValue(attribute, text, "a reference: ID, type and name of an object");
    }
}

std::string BooleanValue(const BOOLEANApiAttribute& attribute, const std::string& text) {
    for (const char* known : {"1", "0", "true", "false"}) {
        if (CompareNoCase(text, known) == 0) {
            return attribute.ToText(attribute.FromText(text));
        }
    }
    RejectValue(attribute, text, "True or False");
}

/**
 * Returns the value as the array stores it: "True" for 1, an enumeration value as its table spells it. Throws
 * ApiFailure for a string that is invalid for the attribute's type, even if the library would convert it.
 */
std::string ArgumentValue(const BASEApiAttribute& attribute, const std::string& text) {
    if (const auto* flag = dynamic_cast<const BOOLEANApiAttribute*>(&attribute)) {
        return BooleanValue(*flag, text);
    }
    if (dynamic_cast<const INTApiAttribute*>(&attribute) != nullptr && !IsInteger(text)) {
        RejectValue(attribute, text, "a whole number");
    }
    if (const auto* size = dynamic_cast<const SIZEApiAttribute*>(&attribute)) {
        return size->ToText(size->FromText(text));
    }
    if (text.empty()) {
        return text;
    }
    if (const auto* word = dynamic_cast<const ENUMApiAttribute*>(&attribute)) {
        return EnumerationWord(*word, word->FromText(text), text);
    }
    if (const auto* mask = dynamic_cast<const ENUMMASKApiAttribute*>(&attribute)) {
        std::vector<std::string> words = mask->FromText(text);
        for (std::string& each : words) {
            each = EnumerationWord(*mask, each, text);
        }
        return mask->ToText(words);
    }
    CheckValue(attribute, text);
    return text;
}

/** Rejects an unknown attribute of a call that changes something: it would be lost silently. */
void TakeArgument(BASEApiMethod& call, const std::string& name, const std::string& text) {
    const BASEApiAttribute* attribute = call.FindAttribute(name);
    if (attribute == nullptr) {
        attribute = OwnAttribute(call, name);
    }
    if (attribute == nullptr && call.ChangesState() && !HasNoDescriptor(name)) {
        throw ApiFailure("InvalidArguments", call.GetObjectName() + " " + call.GetCommandName() +
                                                 " does not accept the attribute '" + name + "'");
    }
    if (attribute != nullptr) {
        attribute->Validate(text);
        call.SetAttribute(name, ArgumentValue(*attribute, text));
    } else {
        call.SetAttribute(name, text);
    }
}

std::string DetailOf(const APIMethodError& error) {
    std::string detail = "Code " + std::to_string(error.GetErrorCode());
    for (const std::string& parameter : error.GetParameters()) {
        detail += (&parameter == &error.GetParameters().front() ? ": " : ", ") + parameter;
    }
    return detail;
}

}  // namespace

std::unique_ptr<BASEApiMethod> MakeCall(const ApiRequest& request) {
    CheckRequest(request);
    std::unique_ptr<BASEApiMethod> call = FindCall(request);
    try {
        for (const auto& [name, text] : request.attributes) {
            TakeArgument(*call, name, text);
        }
        call->ValidateAttributes();
    } catch (const APIMethodError& error) {
        const ENUMTable states = APIEnumsIDStrList::gErrorStateEnumIdStrList;
        throw ApiFailure(std::string(states.DescriptionOf(error.GetErrorState())), error.GetSummary(),
                         DetailOf(error));
    }
    return call;
}

void CheckPrivilege(const BASEApiMethod& call, int privilege) {
    if (privilege <= call.GetRequiredPrivilege()) {
        return;
    }
    const ENUMTable privileges = APIEnumsIDStrList::gUserPrivilegeEnumIdStrList;
    throw ApiFailure("UserPrivilegeError",
                     call.GetObjectName() + " " + call.GetCommandName() + " requires the privilege " +
                         std::string(privileges.DescriptionOf(call.GetRequiredPrivilege())));
}

}  // namespace arraysim
