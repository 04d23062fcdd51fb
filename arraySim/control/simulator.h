#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>

#include "apiMgmt/proto/apiMgrMsg.pb.h"
#include "arraySim/control/commandRunner.h"
#include "arraySim/control/statistics.h"
#include "arraySim/faults/faults.h"
#include "arraySim/model/events.h"
#include "arraySim/model/model.h"
#include "arraySim/protocol/apiRequest.h"
#include "arraySim/protocol/requestDispatch.h"

namespace arraysim {

/** The description of an exchange, for the trace. */
struct ExchangeRecord {
    uint32_t sequence = 0;
    std::string command;  ///< GetList, Get, Modify, Ping, or "other"
    std::string object;   ///< "-" if there is none, "?" if it is unknown
    bool lite = false;
    size_t objects = 0;
    std::string outcome;  ///< ok or an error code, then the injected faults
};

/** A response and how to send it. */
struct Exchange {
    protoIPCMsg::GPBIPCMsg response;
    Delivery delivery;
    ExchangeRecord record;
};

/** The reply to a command. */
struct Reply {
    bool good = false;
    std::string text;  ///< data or the error message
};

/**
 * Functions for effects of commands outside the model. The simulator calls those for events under its lock,
 * so that events keep the order of the changes: they must not block or call the simulator. The others are
 * called without a lock.
 */
struct SimulatorHooks {
    std::function<void()> listen = {};  ///< makes the socket follow Listening(), and returns when it does
    std::function<void(const std::string& text)> say = {};
    std::function<void()> quit = {};
    std::function<void(std::string text)> send_event = {};  ///< empty: events are off
    std::function<std::string()> describe_events = {};      ///< for `stats`
};

/**
 * The simulated array as a whole: model, faults and counts behind one mutex. It does not know about sockets,
 * so tests need none. All operations may be called from any thread.
 */
class Simulator {
  public:
    Simulator(Model model, Session session, Spelling spelling);

    /** Must be set before other threads use the simulator. */
    void SetHooks(SimulatorHooks hooks) { hooks_ = std::move(hooks); }

    const Catalogue& catalogue() const { return catalogue_; }

    /** Returns the response to one message of the API channel. */
    Exchange Handle(const protoIPCMsg::GPBIPCMsg& message);
    /** Returns true if the new connection must be closed immediately. */
    bool TakeRefusal();

    /** Returns whether the socket must exist. */
    bool Listening();

    /** Executes one line of the command language. */
    Reply Execute(std::string_view line);

    /** Returns the number of such exchanges so far. */
    size_t Exchanges(const std::string& command, const std::string& object);
    /** Blocks until there were more than `seen` such exchanges; returns false if StopWaiting was called. */
    bool WaitForExchange(const std::string& command, const std::string& object, size_t seen);
    void StopWaiting();

  private:
    std::string Run(const Command& command);
    /** Returns the trap command that a user has requested. Throws CommandError if events are off. */
    std::string RequestedEvent(const Command& command) const;

    /** Carries out a command and reports the changes as events. */
    Response AnswerCommand(const RequestMessage& request, const ExchangePlan& plan);
    static protoIPCMsg::GPBIPCMsg WriteResponse(const RequestMessage& request, std::string document,
                                                const ExchangePlan& plan);
    /** response: null if the request is not a command. */
    static ExchangeRecord RecordOf(const RequestMessage& request, const Response* response,
                                   const ExchangePlan& plan);
    void SendChanges(const StatusWatch& watch);

    const Catalogue& catalogue_;
    const Session session_;
    const Spelling spelling_;
    SimulatorHooks hooks_;

    std::mutex mutex_;  ///< guards all members below
    std::condition_variable exchanged_;
    Model model_;
    FaultList faults_;
    Statistics statistics_;
    bool stop_waiting_ = false;
};

}  // namespace arraysim
