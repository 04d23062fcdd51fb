#include "tools/arraySim/simulator.h"

#include "tools/arraySim/answers.h"
#include "tools/arraySim/apiRequest.h"

namespace arraysim {

namespace {

using protoIPCMsg::GPBIPCMsg;

constexpr const char* kNoObject = "-";
constexpr const char* kUnknownObject = "?";

/** The command in the words of the statistics. */
std::string CommandLabel(const std::string& command) {
    for (const char* known : {"GetList", "Get", "Modify"}) {
        if (command == known) {
            return command;
        }
    }
    return "other";
}

ApiAnswer FailureAnswer(const std::string& code, const std::string& text) {
    ApiAnswer answer;
    answer.successful = false;
    answer.error_code = code;
    answer.error_text = text;
    return answer;
}

void BendEnvelope(const EnvelopeBend& bend, GPBIPCMsg& response) {
    if (bend.wrong_sequence) {
        response.set_sequencenum(response.sequencenum() + 1);
    }
    if (bend.wrong_type) {
        response.set_msgtype(protoIPCMsg::CAResp);
    }
    if (bend.no_command && response.has_apirespmsg()) {
        response.mutable_apirespmsg()->clear_cmd();
    }
    if (bend.no_response) {
        response.clear_apirespmsg();
    }
}

}  // namespace

/** A message as far as it can be understood without the model. */
struct Simulator::Question {
    enum class Sort { kPing, kCommand, kOther };

    Sort sort = Sort::kOther;
    std::string command = "other";
    std::string object = kNoObject;
    ApiRequest request;
    std::optional<ApiAnswer> failure;  ///< when the document is none
};

Simulator::Simulator(Model model, std::string session_key, Spelling spelling)
    : catalogue_(model.catalogue()),
      session_key_(std::move(session_key)),
      spelling_(spelling),
      model_(std::move(model)) {}

Simulator::Question Simulator::Interpret(const GPBIPCMsg& message) const {
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
            question.failure = FailureAnswer(failure.code(), failure.what());
        }
        question.command = CommandLabel(question.request.command);
        const bool known = catalogue_.FindRequestable(question.request.object).has_value();
        question.object = known ? question.request.object : kUnknownObject;
    }
    return question;
}

ApiAnswer Simulator::AnswerCommand(const Question& question, const ExchangePlan& plan) {
    if (plan.document.error) {
        return FailureAnswer(plan.document.error->first, plan.document.error->second);
    }
    if (question.failure) {
        return *question.failure;
    }
    ObjectStyle style = plan.style;
    style.spelling = spelling_;
    style.lite = question.request.IsLite();
    try {
        return CarryOut(model_, question.request, session_key_, style, plan.list);
    } catch (const ApiFailure& failure) {
        return FailureAnswer(failure.code(), failure.what());
    }
}

Exchange Simulator::Handle(const GPBIPCMsg& request) {
    const Question question = Interpret(request);
    Exchange exchange;
    GPBIPCMsg& response = exchange.response;
    std::string outcome = "ok";

    std::unique_lock<std::mutex> lock(mutex_);
    const std::string topic = question.sort == Question::Sort::kPing ? std::string(kPingTopic) : question.object;
    const ExchangePlan plan = PlanFor(faults_.TakeFor(topic));
    ApiAnswer answer;
    if (question.sort == Question::Sort::kCommand) {
        answer = AnswerCommand(question, plan);
        outcome = answer.successful ? "ok" : answer.error_code;
    }
    statistics_.CountExchange(question.command, question.object, answer.successful, !plan.faults.empty());
    exchanged_.notify_all();
    lock.unlock();

    response.set_sequencenum(request.sequencenum());
    switch (question.sort) {
        case Question::Sort::kPing:
            response.set_msgtype(protoIPCMsg::APIResp);
            response.mutable_apirespmsg()->set_cmdtype(protoIPCMsg::Ping);
            response.mutable_apirespmsg()->mutable_ping()->set_pingdata(!plan.envelope.ping_false);
            break;
        case Question::Sort::kCommand:
            response.set_msgtype(protoIPCMsg::APIResp);
            response.mutable_apirespmsg()->set_cmdtype(protoIPCMsg::Command);
            response.mutable_apirespmsg()->mutable_cmd()->set_respdata(WriteDocument(answer, plan.document));
            break;
        case Question::Sort::kOther:
            response.set_msgtype(protoIPCMsg::EMPTY_RESP);
            outcome = "not a request";
            break;
    }
    BendEnvelope(plan.envelope, response);
    exchange.delivery = plan.delivery;
    exchange.record.sequence = request.sequencenum();
    exchange.record.command = question.command;
    exchange.record.object = question.object;
    exchange.record.lite = question.request.IsLite();
    exchange.record.objects = answer.objects;
    exchange.record.outcome = plan.faults.empty() ? outcome : outcome + " fault:" + plan.faults;
    return exchange;
}

bool Simulator::TakeRefusal() {
    const std::lock_guard<std::mutex> guard(mutex_);
    const bool refused = faults_.TakeRefusal();
    statistics_.CountConnection(refused);
    return refused;
}

Reply Simulator::Execute(std::string_view line) {
    Command command;
    std::string data;
    bool listening = true;
    try {
        command = ParseCommand(catalogue_, SplitWords(line));
        const std::lock_guard<std::mutex> guard(mutex_);
        CommandWorld world{model_, faults_, statistics_};
        data = RunCommand(world, command);
        listening = faults_.Listening();
    } catch (const CommandError& error) {
        return {false, error.what()};
    }
    if ((command.verb == Verb::kFault || command.verb == Verb::kClear) && hooks_.listen) {
        hooks_.listen(listening);
    }
    if (command.verb == Verb::kSay && hooks_.say) {
        hooks_.say(command.text);
    }
    if (command.verb == Verb::kQuit && hooks_.quit) {
        hooks_.quit();
    }
    return {true, data};
}

size_t Simulator::Exchanges(const std::string& command, const std::string& object) {
    const std::lock_guard<std::mutex> guard(mutex_);
    return statistics_.Exchanges(command, object);
}

bool Simulator::WaitForExchange(const std::string& command, const std::string& object, size_t seen) {
    std::unique_lock<std::mutex> lock(mutex_);
    exchanged_.wait(lock, [&] { return stop_waiting_ || statistics_.Exchanges(command, object) > seen; });
    return !stop_waiting_;
}

void Simulator::StopWaiting() {
    const std::lock_guard<std::mutex> guard(mutex_);
    stop_waiting_ = true;
    exchanged_.notify_all();
}

}  // namespace arraysim
