#include "arraySim/protocol/apiCall.h"

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiAssociations.h"
#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiEnumsIDStrList.h"
#include "apiMgmt/apiStub/base/apiObjects/base/apiObjectFactory.h"
#include "apiMgmt/apiStub/base/apiObjects/base/baseApiObject.h"
#include "apiMgmt/common/utils/apiMethodError.h"
#include "apiMgmt/common/utils/stringUtil.h"
#include "arraySim/model/catalogue.h"
#include "arraySim/protocol/argumentValue.h"

namespace arraysim {

namespace {

void CheckForm(const ApiRequest& request) {
    if (request.command_type != "Method" && request.command_type != "Association") {
        throw ApiFailure("MethodNotAvailable", "'" + request.command_type + "' is no type of command");
    }
    if (ParseBool(request.async)) {
        throw ApiFailure("InvalidArguments", "Commands are carried out at once, not asynchronously");
    }
    if (request.encode_type != "xml" && request.encode_type != "csv") {
        throw ApiFailure("InvalidArguments",
                         "Objects are written as xml or csv, not as '" + request.encode_type + "'");
    }
}

/** The names of two other commands can be run together into the same key. */
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

/** What the array has beyond the API's catalogue can be changed like the rest. */
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

/** A change that says more than the call takes is refused: part of it would be lost in silence. */
void TakeArgument(BASEApiMethod& call, const std::string& name, const std::string& text) {
    const BASEApiAttribute* attribute = call.FindAttribute(name);
    if (attribute == nullptr) {
        attribute = OwnAttribute(call, name);
    }
    if (attribute == nullptr && call.ChangesState() && !HasNoDescriptor(name)) {
        throw ApiFailure("InvalidArguments", call.GetObjectName() + " " + call.GetCommandName() +
                                                 " takes no attribute '" + name + "'");
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
    CheckForm(request);
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
                     call.GetObjectName() + " " + call.GetCommandName() + " is for the privilege " +
                         std::string(privileges.DescriptionOf(call.GetRequiredPrivilege())));
}

}  // namespace arraysim
