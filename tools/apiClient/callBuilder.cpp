#include "tools/apiClient/callBuilder.h"

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiAssociations.h"
#include "apiMgmt/apiStub/base/apiObjects/base/apiObjectFactory.h"
#include "apiMgmt/apiStub/client/clientError.h"
#include "apiMgmt/apiStub/client/preparedCall.h"
#include "apiMgmt/common/utils/apiMethodError.h"
#include "tools/apiClient/argumentParser.h"
#include "tools/apiClient/catalogueDescription.h"
#include "tools/apiClient/filterParser.h"
#include "tools/apiClient/valueParser.h"
#include "tools/commandLine/nearestName.h"
#include "tools/commandLine/usageError.h"

namespace apiclient {

using commandline::UsageError;

namespace {

constexpr char kFilter[] = "Filter";

/** Reports the argument that the library has rejected, and the allowed values. */
std::string ExplainRejection(const tessera::InvalidArgument& error, const CatalogueCommand& command,
                             const BASEApiMethod& call) {
    const CatalogueAttribute* argument = FindNamed(command.arguments, error.GetAttribute());
    if (argument == nullptr) {
        return error.what();
    }
    const std::string value = call.GetAttribute(argument->name);
    const std::string expected = DescribeLegalValues(*argument);
    const bool is_limited = expected.find(" byte") != std::string::npos;
    return "invalid value '" + value + "'" +
           (is_limited ? " (" + std::to_string(value.size()) + " bytes)" : "") + " for " +
           DescribeAttribute(*argument) + "; expected " + expected;
}

/** A call of an object and command that the catalogue need not know. */
class NamedCall : public BASEApiMethod {
  public:
    explicit NamedCall(const CallRequest& request)
        : BASEApiMethod(request.association), object_(request.object), command_(request.command) {}
    const std::string& GetObjectName() const override { return object_; }
    const std::string& GetCommandName() const override { return command_; }

  private:
    const std::string object_;
    const std::string command_;
};

class CallBuilder {
  public:
    explicit CallBuilder(const CallRequest& request)
        : request_(request), given_(ParseArguments(request.arguments)) {}

    std::unique_ptr<BASEApiMethod> Build() {
        FindNames();
        CreateCall();
        for (const auto& [name, values] : given_) {
            AddArgument(name, values);
        }
        AddConditions();
        if (request_.lite) {
            call_->SetLiteObj();
        }
        if (request_.checked) {
            CheckRequired();
            Validate();
        }
        return std::move(call_);
    }

  private:
    void FindNames() {
        if (request_.checked) {
            object_ = &FindObject(request_.object);
            command_ = &FindCommand(*object_, request_.command, request_.association);
            return;
        }
        if (!IsElementName(request_.object) || !IsElementName(request_.command)) {
            throw UsageError("object and command must consist of letters and digits, even with --no-check");
        }
        object_ = FindNamed(ApiCatalogue().objects, request_.object);
    }

    void CreateCall() {
        if (command_ == nullptr) {
            call_ = std::make_unique<NamedCall>(request_);
        } else if (command_->is_association) {
            call_ = CreateAssociation(object_->name, command_->name);
        } else {
            call_ = APIObjectFactory<BASEApiMethod>::Instance().Create(
                MethodClass(object_->name, command_->name));
        }
    }

    void AddArgument(const std::string& name, const std::vector<GivenValue>& values) {
        if (command_ == nullptr) {
            AddUnchecked(name, values);
            return;
        }
        const CatalogueAttribute* argument = FindNamed(command_->arguments, name);
        if (argument == nullptr) {
            throw UsageError(commandline::UnknownName("argument of " + object_->name + " " + command_->name,
                                                      name, NamesOf(command_->arguments), ArgumentsHint()));
        }
        if (argument->object.empty()) {
            call_->SetAttribute(argument->name, ParseValue(*argument, WithoutFields(*argument, values)));
        } else {
            AddStructure(*argument, values);
        }
    }

    void AddUnchecked(const std::string& name, const std::vector<GivenValue>& values) {
        for (const GivenValue& each : values) {
            if (!each.field.empty()) {
                throw UsageError("structured argument " + name + "." + each.field +
                                 " cannot be used with --no-check");
            }
            call_->SetAttribute(name, each.value);
        }
    }

    static std::vector<std::string> WithoutFields(const CatalogueAttribute& argument,
                                                  const std::vector<GivenValue>& values) {
        std::vector<std::string> plain;
        for (const GivenValue& each : values) {
            if (!each.field.empty()) {
                throw UsageError(DescribeAttribute(argument) + " has no field '" + each.field + "'; it is " +
                                 DescribeLegalValues(argument));
            }
            plain.push_back(each.value);
        }
        return plain;
    }

    void AddStructure(const CatalogueAttribute& argument, const std::vector<GivenValue>& values) {
        try {
            call_->SetAttribute(argument.name, BuildStructure(argument, values));
        } catch (const APIMethodError& error) {
            throw UsageError("in " + argument.name + ": " + error.GetSummary());
        }
    }

    void AddConditions() {
        if (request_.conditions.empty()) {
            return;
        }
        if (command_ != nullptr && FindNamed(command_->arguments, kFilter) == nullptr) {
            throw UsageError(object_->name + " " + command_->name + " does not accept a filter");
        }
        if (call_->HasAttribute(kFilter)) {
            throw UsageError("give either --filter or Filter=, not both");
        }
        call_->SetAttribute(
            kFilter,
            ParseFilter(object_, request_.conditions, request_.any_condition, request_.checked).ToText());
    }

    /** Reports all missing arguments together; the library reports only the first. */
    void CheckRequired() const {
        std::string missing;
        for (const CatalogueAttribute& each : command_->arguments) {
            if (each.IsRequired() && !call_->HasAttribute(each.name)) {
                missing += "\n  " + DescribeAttribute(each) + ": " + DescribeLegalValues(each);
            }
        }
        if (!missing.empty()) {
            throw UsageError(object_->name + " " + command_->name + " needs:" + missing);
        }
    }

    void Validate() const {
        try {
            tessera::PrepareCall(*call_);
        } catch (const tessera::InvalidArgument& error) {
            throw UsageError(ExplainRejection(error, *command_, *call_));
        }
    }

    std::string ArgumentsHint() const {
        if (command_->arguments.empty()) {
            return "it has no arguments";
        }
        std::string names;
        for (const CatalogueAttribute& each : command_->arguments) {
            names += (names.empty() ? "it accepts " : ", ") + each.name;
        }
        return names;
    }

    const CallRequest& request_;
    const GivenArguments given_;
    const CatalogueObject* object_ = nullptr;    ///< null if it is not checked and not in the catalogue
    const CatalogueCommand* command_ = nullptr;  ///< null if it is not checked
    std::unique_ptr<BASEApiMethod> call_;
};

}  // namespace

const CatalogueObject& FindObject(const std::string& name) {
    const CatalogueObject* object = FindNamed(ApiCatalogue().objects, name);
    if (object == nullptr) {
        throw UsageError(
            commandline::UnknownName("object", name, NamesOf(ApiCatalogue().objects), "see --list"));
    }
    return *object;
}

const CatalogueCommand& FindCommand(const CatalogueObject& object, const std::string& name,
                                    bool association) {
    for (const CatalogueCommand& each : object.commands) {
        if (CompareNoCase(each.name, name) == 0 && (!association || each.is_association)) {
            return each;
        }
    }
    throw UsageError(commandline::UnknownName(
        association ? "association of " + object.name : "command or association of " + object.name, name,
        NamesOf(object.commands), "see apiClient " + object.name + " --list"));
}

std::unique_ptr<BASEApiMethod> BuildCall(const CallRequest& request) {
    return CallBuilder(request).Build();
}

}  // namespace apiclient
