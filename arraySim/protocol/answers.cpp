#include "arraySim/protocol/answers.h"

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiEnumsIDStrList.h"
#include "apiMgmt/apiStub/base/apiObjects/base/baseApiAssociation.h"
#include "arraySim/protocol/apiCall.h"
#include "arraySim/protocol/callContext.h"

namespace arraysim {

namespace {

constexpr int kNoState = 1;

void CheckKey(const ApiRequest& request, const Session& session) {
    if (request.session_key.empty() || request.session_key != session.key) {
        throw ApiFailure("IllegalSessionKey", "The session key is not known");
    }
}

Answer Dispatch(CallContext& context) {
    const std::string& command = context.call->GetCommandName();
    if (dynamic_cast<const BASEApiAssociation*>(context.call.get()) != nullptr) {
        return AnswerAssociation(context);
    }
    if (command == "GetList") {
        return AnswerGetList(context);
    }
    if (command == "Get") {
        return AnswerGet(context);
    }
    CheckReferences(context);
    return command == "Modify" ? AnswerModify(context) : AnswerEffect(context);
}

}  // namespace

Answer FailureAnswer(const std::string& code, const std::string& text, const std::string& detail) {
    const ENUMRow* row = ENUMTable(APIEnumsIDStrList::gErrorStateEnumIdStrList).FindDescription(code);
    Answer answer;
    answer.result = std::make_unique<BASEApiMethodReturn>(false, row == nullptr ? kNoState : row->Value, text,
                                                          text, detail, nullptr);
    if (row == nullptr) {
        answer.result->SetAttribute(APIApiMethodReturn::ErrorCodeAttribute().GetXmlName(), code);
    }
    return answer;
}

Answer CarryOut(Model& model, const ApiRequest& request, const Session& session, const ObjectStyle& style,
                const ListBend& bend) {
    try {
        CheckKey(request, session);
        std::unique_ptr<BASEApiMethod> call = MakeCall(request);
        CheckPrivilege(*call, session.privilege);
        CallContext context{model, std::move(call), *model.catalogue().FindRequestable(request.object), style,
                            bend};
        return Dispatch(context);
    } catch (const ApiFailure& failure) {
        return FailureAnswer(failure.code(), failure.what(), failure.detail());
    }
}

}  // namespace arraysim
