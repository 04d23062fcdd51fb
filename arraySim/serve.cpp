#include "arraySim/serve.h"

#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <optional>
#include <thread>

#include "apiMgmt/common/utils/stringUtil.h"
#include "arraySim/control/controlSocket.h"
#include "arraySim/control/eventSender.h"
#include "arraySim/control/service.h"
#include "arraySim/control/trace.h"
#include "arraySim/model/modelFile.h"
#include "arraySim/model/presets.h"
#include "arraySim/scenario/scenario.h"

namespace arraysim {

namespace {

/** Blocks the signals before any thread starts, so that only the sigwait of the main thread gets them. */
sigset_t BlockEndingSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    return signals;
}

Model LoadModel(const ServeOptions& options) {
    const Catalogue& catalogue = Catalogue::Builtin();
    if (!options.model_file.empty()) {
        return ReadModelFile(catalogue, options.model_file);
    }
    const std::optional<Preset> preset = FindPreset(options.preset);
    if (!preset) {
        throw ModelFileError("unknown preset '" + options.preset + "'");
    }
    return BuildPreset(catalogue, *preset, options.seed, options.serial);
}

std::string SessionKey(const ServeOptions& options) {
    std::string key = options.key.empty() ? WireLinkEndpoint::GetAccessKey() : options.key;
    if (key.empty()) {
        throw ControlError(
            "no session key: /etc/wirelink.key is missing, invalid or accessible to others; "
            "pass one with --key");
    }
    return key;
}

std::string ReadyLine(const ServeOptions& options, const Model& model) {
    size_t objects = 0;
    for (const ObjectList& list : model.catalogue().lists()) {
        objects += model.Objects(list).size();
    }
    std::string line =
        FormatString("arraySim ready: array %u with %zu objects, API at %s, control at %s", model.serial(),
                     objects, options.socket_path.c_str(), options.control_path.c_str());
    return options.events_path.empty() ? line : line + ", events to " + options.events_path;
}

/** A scenario that runs in real time, in its own thread. */
class ScenarioThread {
  public:
    ScenarioThread(Scenario scenario, Simulator& simulator, Trace& trace)
        : scenario_(std::move(scenario)),
          simulator_(simulator),
          clock_(simulator),
          thread_([this, &trace] { Run(trace); }) {}

    /** Stops the scenario. Returns whether no step has failed so far. */
    bool Stop() {
        clock_.Stop();
        thread_.join();
        return good_;
    }

  private:
    void Run(Trace& trace) {
        ScenarioRunner runner(scenario_, simulator_, clock_,
                              [&trace](const std::string& text) { trace.PrintText("scenario " + text); });
        const std::optional<size_t> failures = runner.Run();
        good_ = runner.failures() == 0;
        if (failures) {
            trace.PrintText(
                FormatString("scenario done, %zu of %zu steps failed", *failures, scenario_.steps.size()));
        }
    }

    const Scenario scenario_;
    Simulator& simulator_;
    RealTimeClock clock_;
    bool good_ = false;  ///< written by the thread, read when it is joined
    std::thread thread_;
};

// Files are read before any socket is created, so that an error in them leaves no socket behind. The parts
// are then created: the simulator, its observers and its servers. They are started in the order of their
// dependencies and stopped in reverse order:
//  - events, because a command can cause one as soon as commands are accepted;
//  - the control socket, which detects another running simulator;
//  - the API's socket, and with it the line that says that both sockets exist;
//  - the scenario, whose steps use all of the above.
ExitStatus Run(const ServeOptions& options, const sigset_t& signals) {
    if (options.socket_path == options.control_path) {
        throw ControlError(options.socket_path + ": --socket and --control must differ");
    }
    std::optional<Scenario> scenario;
    if (!options.scenario_file.empty()) {
        scenario = ReadScenarioFile(Catalogue::Builtin(), options.scenario_file);
    }
    Model model = LoadModel(options);
    const std::string ready = ReadyLine(options, model);
    Simulator simulator(std::move(model), {SessionKey(options), options.privilege}, options.spelling);
    Trace trace(stdout, options.trace);
    EventSender events(
        options.events_path, {}, [&trace](const SentEvent& event) { trace.PrintEvent(event); },
        [](const std::string& text) { std::fprintf(stderr, "arraySim: %s\n", text.c_str()); });
    Service service(simulator, options.socket_path,
                    [&trace](const ServedExchange& exchange) { trace.PrintExchange(exchange); });
    ControlServer control(simulator, options.control_path);
    SimulatorHooks hooks = {.listen = [&service] { service.FollowListening(); },
                            .say = [&trace](const std::string& text) { trace.PrintText(text); },
                            .quit = [] { kill(getpid(), SIGTERM); }};
    if (!options.events_path.empty()) {
        hooks.send_event = [&events](std::string text) { events.Push(std::move(text)); };
        hooks.describe_events = [&events] { return events.Describe(); };
        events.Start();
    }
    simulator.SetHooks(std::move(hooks));
    control.Start();
    service.Start();
    std::printf("%s\n", ready.c_str());
    std::fflush(stdout);
    trace.PrintLegend();

    std::optional<ScenarioThread> scenario_thread;
    if (scenario) {
        scenario_thread.emplace(std::move(*scenario), simulator, trace);
    }
    int signal = 0;
    sigwait(&signals, &signal);

    control.Stop();
    const bool good = !scenario_thread || scenario_thread->Stop();
    events.Stop();  // before the service, which the daemon queries about events
    service.Stop();
    return good ? kGood : kFailed;
}

}  // namespace

ExitStatus Serve(const ServeOptions& options) {
    const sigset_t signals = BlockEndingSignals();
    try {
        return Run(options, signals);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "arraySim: %s\n", error.what());
        return kNoStart;
    }
}

}  // namespace arraysim
