#include "arraySim/control/simulator.h"

#include "arraySim/control/words.h"

namespace arraysim {

namespace {

using protoIPCMsg::GPBIPCMsg;

bool IsEvent(Verb verb) {
    return verb == Verb::kEvent || verb == Verb::kMisc || verb == Verb::kScsi;
}

/** Most calls only read; for them, a StatusWatch would take many times longer than the call. */
bool MayChangeStatus(const ApiRequest& request) {
    return request.command_type == "Method" && !request.command.starts_with("Get");
}

/** Adding, removing or loading objects causes no event. */
bool ChangesStatus(Verb verb) {
    return verb == Verb::kSet || verb == Verb::kFail || verb == Verb::kRecover;
}

}  // namespace

Simulator::Simulator(Model model, Session session, Spelling spelling)
    : catalogue_(model.catalogue()),
      session_(std::move(session)),
      spelling_(spelling),
      model_(std::move(model)) {}

Response Simulator::AnswerCommand(const RequestMessage& request, const ExchangePlan& plan) {
    if (plan.document.error) {
        return FailureResponse(plan.document.error->first, plan.document.error->second);
    }
    if (request.failure) {
        return FailureResponse(request.failure->code(), request.failure->what());
    }
    ObjectStyle style = plan.style;
    style.spelling = request.api_request.from_library ? Spelling::kClasses : spelling_;
    style.lite = request.api_request.IsLite();
    std::optional<StatusWatch> watch;
    if (hooks_.send_event && MayChangeStatus(request.api_request)) {
        watch.emplace(model_);
    }
    Response response = CarryOut(model_, request.api_request, session_, style, plan.list);
    if (watch) {
        SendChanges(*watch);
    }
    return response;
}

void Simulator::SendChanges(const StatusWatch& watch) {
    for (std::string& event : watch.Changes(model_)) {
        hooks_.send_event(std::move(event));
    }
}

// One exchange, in this order:
//  - parse the message, which needs no lock;
//  - under the lock, take the faults that affect this exchange, because each is counted down once, and carry
//    out the command with their effects on objects and lists;
//  - still under the lock, write the document, because its objects belong to the model;
//  - then count the exchange, so that its effects are in the model when WaitForExchange returns;
//  - without the lock, alter the document and put it in an envelope. The caller sends the frame, because a
//    fault may make it hang.
Exchange Simulator::Handle(const GPBIPCMsg& message) {
    const RequestMessage request = ParseRequestMessage(catalogue_, message);
    const bool is_command = request.type == RequestMessage::Type::kCommand;

    std::unique_lock<std::mutex> lock(mutex_);
    const ExchangePlan plan = PlanFor(faults_.TakeFor(is_command ? request.object : request.command));
    std::optional<Response> response;
    std::string document;
    if (is_command) {
        response = AnswerCommand(request, plan);
        document = response->result->GenerateResponseXml(request.Encoding());
    }
    statistics_.CountExchange(request.command, request.object, !response || response->successful(),
                              !plan.faults.empty());
    exchanged_.notify_all();
    lock.unlock();

    Exchange exchange;
    exchange.response = WriteResponse(request, std::move(document), plan);
    exchange.response.set_sequencenum(message.sequencenum());
    AlterEnvelope(plan.envelope, exchange.response);
    exchange.delivery = plan.delivery;
    exchange.record = RecordOf(request, response ? &*response : nullptr, plan);
    exchange.record.sequence = message.sequencenum();
    return exchange;
}

GPBIPCMsg Simulator::WriteResponse(const RequestMessage& request, std::string document,
                                   const ExchangePlan& plan) {
    GPBIPCMsg response;
    if (request.type == RequestMessage::Type::kOther) {
        response.set_msgtype(protoIPCMsg::EMPTY_RESP);
        return response;
    }
    response.set_msgtype(protoIPCMsg::APIResp);
    protoIPCMsg::APIRespMsg& message = *response.mutable_apirespmsg();
    if (request.type == RequestMessage::Type::kPing) {
        message.set_cmdtype(protoIPCMsg::Ping);
        message.mutable_ping()->set_pingdata(!plan.envelope.ping_false);
    } else {
        message.set_cmdtype(protoIPCMsg::Command);
        message.mutable_cmd()->set_respdata(AlterDocument(std::move(document), plan.document));
    }
    return response;
}

ExchangeRecord Simulator::RecordOf(const RequestMessage& request, const Response* response,
                                   const ExchangePlan& plan) {
    ExchangeRecord record;
    record.command = request.command;
    record.object = request.object;
    record.lite = request.api_request.IsLite();
    record.objects = response == nullptr ? 0 : response->objects;
    record.outcome = response == nullptr || response->successful() ? "ok" : response->result->GetErrorCode();
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

std::string Simulator::RequestedEvent(const Command& command) const {
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
        hooks_.send_event(RequestedEvent(command));
        return {};
    }
    std::optional<StatusWatch> watch;
    if (hooks_.send_event && ChangesStatus(command.verb)) {
        watch.emplace(model_);
    }
    CommandTargets targets{model_, faults_, statistics_};
    std::string data = RunCommand(targets, command);
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
