#include "tools/apiClient/explanation.h"

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiEnumsIDStrList.h"
#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethod.h"
#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethodReturn.h"
#include "apiMgmt/common/utils/apiMethodError.h"
#include "tools/apiClient/attributeWords.h"
#include "tools/apiClient/printableText.h"

namespace {

std::string StateWords(int state) {
    const ENUMRow* row = ENUMTable(APIEnumsIDStrList::gErrorStateEnumIdStrList).FindValue(state);
    if (row == nullptr) {
        return "an error state that is not known";
    }
    return UiText(*row) + " (" + std::string(row->Description) + ", " + std::to_string(state) + ")";
}

}  // namespace

std::string ExplainValidation(const APIMethodError& error, const CatalogueCommand& command,
                              const BASEApiMethod& call) {
    const CatalogueAttribute* argument =
        error.GetParameters().empty() ? nullptr : FindNamed(command.arguments, error.GetParameters().front());
    if (argument == nullptr) {
        return error.GetSummary();
    }
    const std::string given = call.GetAttribute(argument->name);
    const std::string length =
        argument->minLength || argument->maxLength ? " (" + std::to_string(given.size()) + " bytes)" : "";
    return AttributeWords(*argument) + " was given '" + given + "'" + length + ", but is " +
           AllowedWords(*argument);
}

std::string ExplainFailure(const BASEApiMethod& call, const BASEApiMethodReturn& answer) {
    std::string words =
        call.GetObjectName() + " " + call.GetCommandName() + " failed: " + StateWords(answer.GetErrorState());
    std::string last;
    for (const std::string& text : {answer.GetError(), answer.GetLocalizedError(), answer.GetErrorDetail()}) {
        if (!text.empty() && text != last) {
            words += "\n  " + PrintableText(text);
            last = text;
        }
    }
    return words;
}
