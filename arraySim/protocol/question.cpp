#include "arraySim/protocol/question.h"

#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethodReturn.h"
#include "arraySim/faults/faults.h"

namespace arraysim {

namespace {

/** The command in the words of the statistics. */
std::string CommandLabel(const std::string& command) {
    for (const char* known : {"GetList", "Get", "Modify"}) {
        if (command == known) {
            return command;
        }
    }
    return "other";
}

}  // namespace

int Question::Encoding() const {
    return request.encode_type == "csv" ? object_encoding::kCsv : object_encoding::kXml;
}

Question Interpret(const Catalogue& catalogue, const protoIPCMsg::GPBIPCMsg& message) {
    Question question;
    if (message.msgtype() != protoIPCMsg::APIRequest || !message.has_apireqmsg()) {
        return question;
    }
    const protoIPCMsg::APIReqMsg& request = message.apireqmsg();
    if (request.cmdtype() == protoIPCMsg::Ping) {
        question.sort = Question::Sort::kPing;
        question.command = kPingTopic;
    } else if (request.cmdtype() == protoIPCMsg::Command) {
        question.sort = Question::Sort::kCommand;
        try {
            ParseApiRequest(request.cmd().cmddata(), question.request);
        } catch (const ApiFailure& failure) {
            question.failure = failure;
        }
        question.command = CommandLabel(question.request.command);
        const bool known = catalogue.FindRequestable(question.request.object).has_value();
        question.object = known ? question.request.object : "?";
    }
    return question;
}

}  // namespace arraysim
