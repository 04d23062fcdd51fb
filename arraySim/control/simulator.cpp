#include "arraySim/control/simulator.h"

#include "arraySim/model/events.h"
#include "arraySim/protocol/answers.h"

namespace arraysim {

namespace {

using protoIPCMsg::GPBIPCMsg;

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

bool IsEvent(Verb verb) {
    return verb == Verb::kEvent || verb == Verb::kMisc || verb == Verb::kScsi;
}

/** Calls that only look are asked often, and to watch the whole model costs many times their answer. */
bool MayChangeStatus(const ApiRequest& request) {
    return request.command_type == "Method" && !request.command.starts_with("Get");
}

/** Objects that come, go or are loaded are no event. */
bool ChangesStatus(Verb verb) {
    return verb == Verb::kSet || verb == Verb::kFail || verb == Verb::kRecover;
}

}  // namespace

Simulator::Simulator(Model model, Session session, Spelling spelling)
    : catalogue_(model.catalogue()),
      session_(std::move(session)),
      spelling_(spelling),
      model_(std::move(model)) {}

Answer Simulator::AnswerCommand(const Question& question, const ExchangePlan& plan) {
    if (plan.document.error) {
        return FailureAnswer(plan.document.error->first, plan.document.error->second);
    }
    if (question.failure) {
        return FailureAnswer(question.failure->code(), question.failure->what());
    }
    ObjectStyle style = plan.style;
    style.spelling = question.request.from_library ? Spelling::kClasses : spelling_;
    style.lite = question.request.IsLite();
    std::optional<StatusWatch> watch;
    if (hooks_.send_event && MayChangeStatus(question.request)) {
        watch.emplace(model_);
    }
    Answer answer = CarryOut(model_, question.request, session_, style, plan.list);
    if (watch) {
        SendChanges(*watch);
    }
    return answer;
}

void Simulator::SendChanges(const StatusWatch& watch) {
    for (std::string& event : watch.Changes(model_)) {
        hooks_.send_event(std::move(event));
    }
}

Exchange Simulator::Handle(const GPBIPCMsg& request) {
    const Question question = Interpret(catalogue_, request);
    const bool is_command = question.sort == Question::Sort::kCommand;

    std::unique_lock<std::mutex> lock(mutex_);
    const ExchangePlan plan = PlanFor(faults_.TakeFor(is_command ? question.object : question.command));
    std::optional<Answer> answer;
    std::string document;
    if (is_command) {
        answer = AnswerCommand(question, plan);
        document = answer->result->GenerateResponseXml(question.Encoding());
    }
    statistics_.CountExchange(question.command, question.object, !answer || answer->successful(),
                              !plan.faults.empty());
    exchanged_.notify_all();
    lock.unlock();

    Exchange exchange;
    exchange.response = WriteResponse(question, std::move(document), plan);
    exchange.response.set_sequencenum(request.sequencenum());
    BendEnvelope(plan.envelope, exchange.response);
    exchange.delivery = plan.delivery;
    exchange.record = RecordOf(question, answer ? &*answer : nullptr, plan);
    exchange.record.sequence = request.sequencenum();
    return exchange;
}

GPBIPCMsg Simulator::WriteResponse(const Question& question, std::string document, const ExchangePlan& plan) {
    GPBIPCMsg response;
    if (question.sort == Question::Sort::kOther) {
        response.set_msgtype(protoIPCMsg::EMPTY_RESP);
        return response;
    }
    response.set_msgtype(protoIPCMsg::APIResp);
    protoIPCMsg::APIRespMsg& message = *response.mutable_apirespmsg();
    if (question.sort == Question::Sort::kPing) {
        message.set_cmdtype(protoIPCMsg::Ping);
        message.mutable_ping()->set_pingdata(!plan.envelope.ping_false);
    } else {
        message.set_cmdtype(protoIPCMsg::Command);
        message.mutable_cmd()->set_respdata(BendDocument(std::move(document), plan.document));
    }
    return response;
}

ExchangeRecord Simulator::RecordOf(const Question& question, const Answer* answer, const ExchangePlan& plan) {
    ExchangeRecord record;
    record.command = question.command;
    record.object = question.object;
    record.lite = question.request.IsLite();
    record.objects = answer == nullptr ? 0 : answer->objects;
    record.outcome = answer == nullptr || answer->successful() ? "ok" : answer->result->GetErrorCode();
    record.outcome += plan.faults.empty() ? "" : " fault:" + plan.faults;
    return record;
}

bool Simulator::TakeRefusal() {
    const std::lock_guard<std::mutex> guard(mutex_);
    const bool refused = faults_.TakeRefusal();
    statistics_.CountConnection(refused);
    return refused;
}

bool Simulator::Listening() {
    const std::lock_guard<std::mutex> guard(mutex_);
    return faults_.Listening();
}

std::string Simulator::EventByHand(const Command& command) const {
    if (!hooks_.send_event) {
        throw CommandError("events are off; start the simulator with --events");
    }
    switch (command.verb) {
        case Verb::kMisc:
            return MiscEvent(model_, command.text);
        case Verb::kScsi:
            return ScsiDeviceEvent(model_, command.device_type, command.device_status, command.disk_row);
        default:
            return command.text;
    }
}

std::string Simulator::Run(const Command& command) {
    if (IsEvent(command.verb)) {
        hooks_.send_event(EventByHand(command));
        return {};
    }
    std::optional<StatusWatch> watch;
    if (hooks_.send_event && ChangesStatus(command.verb)) {
        watch.emplace(model_);
    }
    CommandWorld world{model_, faults_, statistics_};
    std::string data = RunCommand(world, command);
    if (watch) {
        SendChanges(*watch);
    }
    if (command.verb == Verb::kStats && hooks_.describe_events) {
        data += hooks_.describe_events();
    }
    return data;
}

Reply Simulator::Execute(std::string_view line) {
    Command command;
    std::string data;
    try {
        command = ParseCommand(catalogue_, SplitWords(line));
        const std::lock_guard<std::mutex> guard(mutex_);
        data = Run(command);
    } catch (const CommandError& error) {
        return {false, error.what()};
    }
    if ((command.verb == Verb::kFault || command.verb == Verb::kClear) && hooks_.listen) {
        hooks_.listen();
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
