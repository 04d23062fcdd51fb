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

/** What an exchange was, for the trace. */
struct ExchangeRecord {
    uint32_t sequence = 0;
    std::string command;  ///< GetList, Get, Modify, Ping, or "other"
    std::string object;   ///< "-" where there is none, "?" for an unknown one
    bool lite = false;
    size_t objects = 0;
    std::string outcome;  ///< ok or an error code, and the faults that struck
};

/** An answer and how to send it. */
struct Exchange {
    protoIPCMsg::GPBIPCMsg response;
    Delivery delivery;
    ExchangeRecord record;
};

/** The reply to a command. */
struct Reply {
    bool good = false;
    std::string text;  ///< data, or what went wrong
};

/**
 * Where the effects of commands go that are no part of the model. Those for events are called under the
 * simulator's lock, so that events keep the order of the changes: they neither block nor call back. The
 * others are called without any lock.
 */
struct SimulatorHooks {
    std::function<void()> listen = {};  ///< Listening() may have changed; returns when the socket follows
    std::function<void(const std::string& text)> say = {};
    std::function<void()> quit = {};
    std::function<void(std::string text)> send_event = {};  ///< none: events are off
    std::function<std::string()> describe_events = {};      ///< for `stats`
};

/**
 * The simulated array as a whole: model, faults and counts behind one mutex. It does not know how requests
 * and commands reach it, so that tests need no socket. All operations may be called from any thread.
 */
class Simulator {
  public:
    Simulator(Model model, Session session, Spelling spelling);

    /** Must be set before other threads use the simulator. */
    void SetHooks(SimulatorHooks hooks) { hooks_ = std::move(hooks); }

    const Catalogue& catalogue() const { return catalogue_; }

    /** Answers one message of the API channel. */
    Exchange Handle(const protoIPCMsg::GPBIPCMsg& message);
    /** Returns true if the new connection must be closed immediately. */
    bool TakeRefusal();

    /** Whether the socket must exist. */
    bool Listening();

    /** Carries out one line of the command language. */
    Reply Execute(std::string_view line);

    size_t Exchanges(const std::string& command, const std::string& object);
    /** Blocks until more than `seen` such exchanges have been, or until StopWaiting; false then. */
    bool WaitForExchange(const std::string& command, const std::string& object, size_t seen);
    void StopWaiting();

  private:
    std::string Run(const Command& command);
    /** The trap command that a user has asked for. Throws CommandError if events are off. */
    std::string EventByHand(const Command& command) const;

    /** Carries a command out and reports what it changes. */
    Answer AnswerCommand(const RequestMessage& request, const ExchangePlan& plan);
    static protoIPCMsg::GPBIPCMsg WriteResponse(const RequestMessage& request, std::string document,
                                                const ExchangePlan& plan);
    /** answer: null for anything but a command. */
    static ExchangeRecord RecordOf(const RequestMessage& request, const Answer* answer,
                                   const ExchangePlan& plan);
    void SendChanges(const StatusWatch& watch);

    const Catalogue& catalogue_;
    const Session session_;
    const Spelling spelling_;
    SimulatorHooks hooks_;

    std::mutex mutex_;  ///< guards all below
    std::condition_variable exchanged_;
    Model model_;
    FaultList faults_;
    Statistics statistics_;
    bool stop_waiting_ = false;
};

}  // namespace arraysim
