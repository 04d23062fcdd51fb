#include <CLI/CLI.hpp>
#include <cstdio>
#include <iostream>
#include <map>
#include <string>
#include <vector>

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiEnumsIDStrList.h"
#include "apiMgmt/common/utils/pathConstants.h"
#include "apiMgmt/common/utils/standardOutput.h"
#include "arraySim/control/controlSocket.h"
#include "arraySim/control/words.h"
#include "arraySim/model/modelFile.h"
#include "arraySim/model/presets.h"
#include "arraySim/scenario/scenario.h"
#include "arraySim/serve.h"
#include "tools/commandLine/completion.h"

using namespace arraysim;

namespace {

constexpr const char* kDescription =
    "Simulated storage array: acts as the API manager on its local socket, with faults on request.";

constexpr const char* kFooter =
    "Exit status:\n"
    "  0  success\n"
    "  1  the command was rejected, a step of the scenario failed, the scenario contains an error, or the\n"
    "     output could not be written\n"
    "  2  the command line is invalid\n"
    "  3  the simulator could not start because of its model, key, scenario or sockets, or no simulator\n"
    "     responded to `tell`\n"
    "\nExamples:\n"
    "  arraySim serve --preset small --key test --socket /tmp/d/api --control /tmp/d/ctl --trace &\n"
    "  arraySim tell --control /tmp/d/ctl fail TsDisk 3\n"
    "  arraySim tell --control /tmp/d/ctl fault hang on TsVolume for 2\n"
    "  arraySim serve --preset small --events --trace        # next to the daemon, in its sandbox\n";

std::vector<std::string> PresetNames() {
    std::vector<std::string> names;
    for (const Preset& preset : Presets()) {
        names.emplace_back(preset.name);
    }
    return names;
}

void PrintError(const std::exception& error) {
    std::fprintf(stderr, "arraySim: %s\n", error.what());
}

/** Adds the options that `serve` and `dump` share. */
void AddModelOptions(CLI::App& command, ServeOptions& options) {
    command.add_option("--preset", options.preset, "Size of the array")
        ->check(CLI::IsMember(PresetNames()))
        ->capture_default_str();
    command.add_option("--seed", options.seed, "The same seed generates the same array")
        ->capture_default_str();
    command
        .add_option("--serial", options.serial, "Serial number of the array, which is part of instance IDs")
        ->capture_default_str();
}

/** Adds an option with named values. The help shows only the names. */
template <class Value>
void AddChoice(CLI::App& app, const std::string& option, Value& value, const std::string& meaning,
               const std::map<std::string, Value>& choices, const std::string& shown_default) {
    std::string names;
    for (const auto& [name, each] : choices) {
        names += (names.empty() ? "" : ",") + name;
    }
    app.add_option(option, value, meaning)
        ->transform(CLI::CheckedTransformer(choices).description(""))
        ->type_name("TEXT:{" + names + "}")
        ->default_str(shown_default);
}

CLI::App* AddServe(CLI::App& app, ServeOptions& options) {
    CLI::App* serve = app.add_subcommand("serve", "Run the simulator until SIGINT, SIGTERM or `tell quit`");
    AddModelOptions(*serve, options);
    serve
        ->add_option("--model", options.model_file,
                     "Model file written by `dump`, instead of a preset and a serial number")
        ->excludes("--preset")
        ->excludes("--serial");
    serve->add_option("--socket", options.socket_path, "Socket of the API manager")->capture_default_str();
    serve->add_option("--control", options.control_path, "Socket for commands")->capture_default_str();
    serve->add_option("--key", options.key,
                      "Session key that requests must contain; default: the first line of "
                      "/etc/wirelink.key");
    std::map<std::string, int> privileges;
    for (const ENUMRow& row : APIEnumsIDStrList::gUserPrivilegeEnumIdStrList) {
        privileges.emplace(row.Description, row.Value);
    }
    AddChoice(*serve, "--privilege", options.privilege, "Privilege of the session key", privileges, "Admin");
    const std::map<std::string, Spelling> spellings = {{"api", Spelling::kApi},
                                                       {"library", Spelling::kLibrary}};
    AddChoice(*serve, "--spelling", options.spelling, "Object elements as tsDisk (api) or TsDisk (library)",
              spellings, "api");
    serve->add_option("--scenario", options.scenario_file, "Timeline to run; see README.md");
    serve
        ->add_option("--events", options.events_path,
                     "Report status changes to the daemon that listens at SOCKET; "
                     "default: /tmp/snmpsubagent.sock")
        ->type_name("[SOCKET]")
        ->expected(0, 1)
        ->default_str(kSnmpSubagentSocket);
    serve->add_flag("--trace", options.trace, "Print one line per exchange and event");
    return serve;
}

/** Joins the arguments of `tell`: a single one is a whole command, otherwise each is one word. */
std::string CommandLine(const std::vector<std::string>& words) {
    if (words.size() == 1) {
        return words[0];
    }
    std::string line;
    for (const std::string& word : words) {
        line += (line.empty() ? "" : " ") + QuoteWord(word);
    }
    return line;
}

ExitStatus RunTell(const std::string& path, const std::vector<std::string>& words) {
    try {
        const Reply reply = Tell(path, CommandLine(words));
        if (!reply.good) {
            std::fprintf(stderr, "error: %s\n", reply.text.c_str());
            return kFailed;
        }
        std::fputs(reply.text.empty() ? "ok\n" : reply.text.c_str(), stdout);
        return kGood;
    } catch (const ControlError& error) {
        PrintError(error);
        return kNoStart;
    }
}

ExitStatus RunDump(const ServeOptions& options) {
    const Model model =
        BuildPreset(Catalogue::Builtin(), *FindPreset(options.preset), options.seed, options.serial);
    std::fputs(WriteModel(model).c_str(), stdout);
    return kGood;
}

ExitStatus RunCheck(const std::string& path) {
    try {
        const Scenario scenario = ReadScenarioFile(Catalogue::Builtin(), path);
        std::printf("%s: %zu steps\n", path.c_str(), scenario.steps.size());
        return kGood;
    } catch (const ScenarioError& error) {
        PrintError(error);
        return kFailed;
    }
}

ExitStatus RunProgram(int argc, char** argv) {
    CLI::App app(kDescription, "arraySim");
    app.footer(kFooter);
    app.require_subcommand(1);
    commandline::AddVersionOption(app);

    ServeOptions options;
    std::string control_path = options.control_path;
    std::vector<std::string> words;
    std::string scenario_file;
    const CLI::App* serve = AddServe(app, options);
    CLI::App* tell =
        app.add_subcommand("tell", "Send one command to a running simulator; `tell help` lists them");
    tell->add_option("--control", control_path, "Socket on which the simulator accepts commands")
        ->capture_default_str();
    tell->add_option("COMMAND", words, "The command and its arguments")->required();
    CLI::App* dump = app.add_subcommand("dump", "Print the model of a preset as JSON");
    AddModelOptions(*dump, options);
    CLI::App* check = app.add_subcommand("check", "Read a scenario and report its first error");
    check->add_option("FILE", scenario_file, "Scenario file")->required();

    if (commandline::PrintCandidates(app, argc, argv, std::cout)) {
        return kGood;
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? kGood : kUsage;
    }
    if (serve->parsed()) {
        return Serve(options);
    }
    if (tell->parsed()) {
        return RunTell(control_path, words);
    }
    return dump->parsed() ? RunDump(options) : RunCheck(scenario_file);
}

}  // namespace

int main(int argc, char** argv) {
    return StatusAfterOutput("arraySim", RunProgram(argc, argv), kFailed);
}
