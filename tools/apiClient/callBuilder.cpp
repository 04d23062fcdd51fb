#include "tools/apiClient/callBuilder.h"

#include <algorithm>

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiAssociations.h"
#include "apiMgmt/apiStub/base/apiObjects/base/apiObjectFactory.h"
#include "apiMgmt/common/utils/apiMethodError.h"
#include "tools/apiClient/attributeWords.h"
#include "tools/apiClient/explanation.h"
#include "tools/apiClient/filterText.h"
#include "tools/apiClient/givenArguments.h"
#include "tools/apiClient/structuredArgument.h"
#include "tools/apiClient/usageError.h"
#include "tools/apiClient/valueText.h"

namespace {

constexpr char kFilter[] = "Filter";

/** A call by its names alone, for what only the array knows. */
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
        : request_(request), given_(GroupArguments(request.arguments)) {}

    std::unique_ptr<BASEApiMethod> Build() {
        FindNames();
        CreateCall();
        for (const auto& [name, values] : given_) {
            TakeArgument(name, values);
        }
        TakeConditions();
        if (request_.lite) {
            call_->SetLiteObj();
        }
        if (request_.checked) {
            CheckNeeded();
            Validate();
        }
        EscapeTexts();
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
            throw UsageError("object and command must be names of letters and digits, checked or not");
        }
        object_ = FindNamed(ApiCatalogue().objects, request_.object);
    }

    void CreateCall() {
        if (command_ == nullptr) {
            call_ = std::make_unique<NamedCall>(request_);
        } else if (command_->isAssociation) {
            call_ = CreateAssociation(object_->name, command_->name);
        } else {
            call_ = APIObjectFactory<BASEApiMethod>::Instance().Create("API" + object_->name +
                                                                       command_->name + "Method");
        }
    }

    void TakeArgument(const std::string& name, const std::vector<GivenValue>& values) {
        if (command_ == nullptr) {
            TakeUnchecked(name, values);
            return;
        }
        const CatalogueAttribute* argument = FindNamed(command_->arguments, name);
        if (argument == nullptr) {
            throw UsageError(UnknownWords("argument of " + object_->name + " " + command_->name, name,
                                          command_->arguments, ArgumentsHint()));
        }
        if (argument->object.empty()) {
            call_->SetAttribute(argument->name, ValueText(*argument, WithoutFields(*argument, values)));
            texts_.push_back(argument->name);
        } else {
            SetStructured(*argument, values);
        }
    }

    void TakeUnchecked(const std::string& name, const std::vector<GivenValue>& values) {
        for (const GivenValue& each : values) {
            if (!each.field.empty()) {
                throw UsageError("a structured argument as " + name + "." + each.field +
                                 " can only be made of what the catalogue knows, without --no-check");
            }
            call_->SetAttribute(name, each.value);
            texts_.push_back(name);
        }
    }

    static std::vector<std::string> WithoutFields(const CatalogueAttribute& argument,
                                                  const std::vector<GivenValue>& values) {
        std::vector<std::string> plain;
        for (const GivenValue& each : values) {
            if (!each.field.empty()) {
                throw UsageError(AttributeWords(argument) + " has no field '" + each.field + "': it is " +
                                 AllowedWords(argument));
            }
            plain.push_back(each.value);
        }
        return plain;
    }

    void SetStructured(const CatalogueAttribute& argument, const std::vector<GivenValue>& values) {
        try {
            call_->SetAttribute(argument.name, StructuredText(argument, values));
        } catch (const APIMethodError& error) {
            throw UsageError("in " + argument.name + ": " + error.GetSummary());
        }
    }

    void TakeConditions() {
        if (request_.conditions.empty()) {
            return;
        }
        if (command_ != nullptr && FindNamed(command_->arguments, kFilter) == nullptr) {
            throw UsageError(object_->name + " " + command_->name + " takes no filter");
        }
        if (call_->HasAttribute(kFilter)) {
            throw UsageError("give either --filter or Filter=, not both");
        }
        call_->SetAttribute(
            kFilter,
            MakeFilter(object_, request_.conditions, request_.anyCondition, request_.checked).ToText());
        texts_.push_back(kFilter);
    }

    /** Names all that is missing at once; the library stops at the first. */
    void CheckNeeded() const {
        std::string missing;
        for (const CatalogueAttribute& each : command_->arguments) {
            if (each.IsRequired() && !call_->HasAttribute(each.name)) {
                missing += "\n  " + AttributeWords(each) + ": " + AllowedWords(each);
            }
        }
        if (!missing.empty()) {
            throw UsageError(object_->name + " " + command_->name + " needs" + missing);
        }
    }

    void Validate() const {
        try {
            call_->ValidateAttributes();
        } catch (const APIMethodError& error) {
            throw UsageError(ExplainValidation(error, *command_, *call_));
        }
    }

    /** Texts stand in the document as they are; structured arguments are escaped within. */
    void EscapeTexts() {
        std::ranges::sort(texts_);
        texts_.erase(std::unique(texts_.begin(), texts_.end()), texts_.end());
        for (const std::string& name : texts_) {
            call_->SetAttribute(name, EscapeXml(call_->GetAttribute(name), false));
        }
    }

    std::string ArgumentsHint() const {
        if (command_->arguments.empty()) {
            return "it takes none";
        }
        std::string names;
        for (const CatalogueAttribute& each : command_->arguments) {
            names += (names.empty() ? "it takes " : ", ") + each.name;
        }
        return names;
    }

    const CallRequest& request_;
    const GivenArguments given_;
    const CatalogueObject* object_ = nullptr;    ///< null: not checked, and not in the catalogue
    const CatalogueCommand* command_ = nullptr;  ///< null: not checked
    std::unique_ptr<BASEApiMethod> call_;
    std::vector<std::string> texts_;  ///< attributes whose values are not markup
};

}  // namespace

const CatalogueObject& FindObject(const std::string& name) {
    const CatalogueObject* object = FindNamed(ApiCatalogue().objects, name);
    if (object == nullptr) {
        throw UsageError(UnknownWords("object", name, ApiCatalogue().objects, "--list has all of them"));
    }
    return *object;
}

const CatalogueCommand& FindCommand(const CatalogueObject& object, const std::string& name,
                                    bool association) {
    for (const CatalogueCommand& each : object.commands) {
        if (CompareNoCase(each.name, name) == 0 && (!association || each.isAssociation)) {
            return each;
        }
    }
    throw UsageError(UnknownWords(
        association ? "association of " + object.name : "command or association of " + object.name, name,
        object.commands, "apiClient " + object.name + " --list has all of them"));
}

std::unique_ptr<BASEApiMethod> BuildCall(const CallRequest& request) {
    return CallBuilder(request).Build();
}
