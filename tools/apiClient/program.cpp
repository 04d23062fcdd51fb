#include "tools/apiClient/program.h"

#include <CLI/CLI.hpp>
#include <chrono>
#include <ostream>
#include <thread>

#include "apiMgmt/apiStub/client/client.h"
#include "apiMgmt/common/utils/pathConstants.h"
#include "apiMgmt/common/wirelink/accessKey.h"
#include "tools/apiClient/arrayConnection.h"
#include "tools/apiClient/callBuilder.h"
#include "tools/apiClient/catalogueDescription.h"
#include "tools/apiClient/completion.h"
#include "tools/apiClient/resultFormatter.h"
#include "tools/apiClient/terminalOutput.h"
#include "tools/commandLine/completion.h"
#include "tools/commandLine/nearestName.h"
#include "tools/commandLine/usageError.h"

namespace apiclient {

using commandline::UsageError;

namespace {

enum ExitStatus { kExecuted = 0, kNoResponse = 1, kUsage = 2, kRejected = 3 };

constexpr long kMaximumTimeout_s = 86400;
constexpr long kTimeout_s = 60;

constexpr const char* kDescription =
    "Command-line client for the array's API: executes any command or association of any object.\n";

constexpr const char* kFooter =
    "Exit status:\n"
    "  0  the array has executed the call\n"
    "  1  the API manager cannot be reached or its response is malformed; or the output could not be\n"
    "     written\n"
    "  2  the command line is wrong, or there is no session key; the array was not asked to do anything,\n"
    "     unless the message is about a column of the response\n"
    "  3  the array rejected the call, or the call failed; the message contains the error state\n"
    "\nExamples:\n"
    "  apiClient --list\n"
    "  apiClient TsDisk --list\n"
    "  apiClient TsDisk GetList --filter 'Status = Down' --columns Name,Status,StatusMessage\n"
    "  apiClient TsDisk Get InstanceId=64702.17 --format json\n"
    "  apiClient TsController FanSensorList InstanceId=64702.1\n"
    "  apiClient Tessera Modify InstanceId=64702 Location='rack 4'\n"
    "  apiClient TsDisk GetHistoricalIoUsage InstanceId=64702.17 HistoricalFilter.UseCurrent=True\n";

/** The options of the command line. */
struct Options {
    CallRequest call;
    bool list = false;
    std::string enumeration;
    std::string format = "table";
    FormatOptions output;
    std::string sort;
    long watch_s = 0;  ///< 0: execute the call once
    std::string socket_path = kApiMgrSocket;
    std::string key_file = kAccessKeyFile;
    std::string locale;
    long timeout_s = kTimeout_s;
    bool no_check = false;
    bool print = false;
};

class Program {
  public:
    Program(std::ostream& out, std::ostream& err) : out_(out), err_(err) {
        app_.footer(kFooter);
        commandline::AddVersionOption(app_);
        AddCallOptions();
        AddOutputOptions();
        AddConnectionOptions();
    }

    int Run(int argc, const char* const* argv) {
        if (commandline::PrintCandidates(app_, argc, argv, out_, FindCandidates)) {
            return kExecuted;
        }
        try {
            app_.parse(argc, argv);
            options_.call.checked = !options_.no_check;
            return Execute();
        } catch (const CLI::ParseError& error) {
            return app_.exit(error, out_, err_) == 0 ? kExecuted : kUsage;
        } catch (const UsageError& error) {
            err_ << "apiClient: " << error.what() << '\n';
            return kUsage;
        }
    }

  private:
    void AddCallOptions() {
        CallRequest& call = options_.call;
        app_.add_option("OBJECT", call.object, "Object, for example TsDisk; see --list");
        app_.add_option("COMMAND", call.command, "Command or association of the object; see OBJECT --list");
        app_.add_option("NAME=VALUE", call.arguments,
                        "Arguments; NAME.FIELD=VALUE for structured ones; see OBJECT COMMAND --list");
        app_.add_option(
                "--filter", call.conditions,
                "Return only objects that meet the condition, for example 'Status = Down'; may be repeated. "
                "Operators: = > >= < <=, iqs (the attribute contains the value), iqin (the value contains "
                "the attribute)")
            ->type_name("CONDITION")
            ->allow_extra_args(false);
        app_.add_flag("--any", call.any_condition,
                      "Return objects that meet any of the conditions instead of all");
        app_.add_flag("--association", call.association, "Interpret COMMAND as an association only");
        app_.add_flag("--lite", call.lite, "Request reduced objects");
        app_.add_flag(
            "--no-check", options_.no_check,
            "Send the call verbatim, even if the program does not know the object, command or argument");
        app_.add_flag("--print", options_.print, "Print the document of the call instead of sending it");
    }

    void AddOutputOptions() {
        app_.add_flag(
            "--list", options_.list,
            "List all objects; or the commands, associations and attributes of OBJECT; or the arguments of "
            "COMMAND");
        app_.add_option("--enumeration", options_.enumeration, "List the values of an enumeration")
            ->type_name("NAME");
        app_.add_option("--format", options_.format,
                        "Output format: table, csv, json, or xml for the response as received")
            ->check(CLI::IsMember({"table", "csv", "json", "xml"}))
            ->capture_default_str();
        app_.add_option("--columns", options_.output.columns,
                        "Show only these attributes, separated by commas, or all. By default, a table shows "
                        "as many as fit")
            ->type_name("NAME,...")
            ->delimiter(',')
            ->allow_extra_args(false);
        app_.add_option("--sort", options_.sort,
                        "Sort the objects of a list by this attribute, in the order of filters")
            ->type_name("COLUMN");
        app_.add_flag("--readable", options_.output.readable,
                      "In a table or CSV, show sizes with units, names instead of references, and "
                      "human-readable names of enumerated values");
        app_.add_option("--width", options_.output.width,
                        "Maximum width of a table without --columns, in characters")
            ->capture_default_str();
        app_.add_option("--watch", options_.watch_s,
                        "Repeat a call that reads the array, with this number of seconds in between")
            ->type_name("SECONDS")
            ->check(CLI::Range(1L, kMaximumTimeout_s));
    }

    void AddConnectionOptions() {
        app_.add_option("--socket", options_.socket_path, "Socket of the API manager")
            ->type_name("PATH")
            ->capture_default_str();
        app_.add_option("--key-file", options_.key_file, "File with the session key")
            ->type_name("PATH")
            ->capture_default_str();
        app_.add_option("--locale", options_.locale,
                        "Language of messages in the response, for example en_US");
        app_.add_option("--timeout", options_.timeout_s, "Timeout of each step, in seconds")
            ->check(CLI::Range(1L, kMaximumTimeout_s))
            ->capture_default_str();
    }

    int Execute() {
        if (!options_.enumeration.empty()) {
            out_ << ListEnumeration(options_.enumeration);
        } else if (options_.list) {
            out_ << List();
        } else if (options_.call.object.empty()) {
            throw UsageError("missing object; see --help");
        } else if (options_.call.command.empty()) {
            throw UsageError("missing command or association; see apiClient " +
                             FindObject(options_.call.object).name + " --list");
        } else {
            return options_.watch_s == 0 ? Call() : Watch();
        }
        return kExecuted;
    }

    /** Repeats the call, whether it succeeds or not, until the output is closed. */
    int Watch() {
        const CallRequest& call = options_.call;
        if (!call.checked ||
            FindCommand(FindObject(call.object), call.command, call.association).changes_state) {
            throw UsageError("--watch repeats only calls that read the array");
        }
        int status = Call();
        while (out_.flush().good()) {
            std::this_thread::sleep_for(std::chrono::seconds(options_.watch_s));
            out_ << '\n';
            status = Call();
        }
        return status;
    }

    std::string List() const {
        const CallRequest& call = options_.call;
        if (call.object.empty()) {
            return ListObjects();
        }
        const CatalogueObject& object = FindObject(call.object);
        return call.command.empty()
                   ? ListObject(object)
                   : ListCommand(object, FindCommand(object, call.command, call.association));
    }

    int Call() {
        const std::unique_ptr<BASEApiMethod> call = BuildCall(options_.call);
        CheckColumns();
        if (options_.print) {
            out_ << tessera::PrepareCall(*call)->GenerateXml(false, true) << '\n';
            return kExecuted;
        }
        try {
            return Exchange(*call);
        } catch (const tessera::ClientError& error) {
            err_ << "apiClient: " << Printable(error.what()) << '\n';
            return kNoResponse;
        }
    }

    int Exchange(const BASEApiMethod& call) {
        ArrayConnection connection(options_.socket_path, options_.timeout_s);
        const tessera::Client client({.sessionKey = ReadSessionKey(options_.key_file),
                                      .locale = options_.locale,
                                      .channel = &connection});
        const std::unique_ptr<BASEApiMethodReturn> response = client.Execute(call);
        if (response != nullptr && !response->GetSuccessful()) {
            err_ << "apiClient: " << DescribeFailure(call, *response) << '\n';
            return kRejected;
        }
        Result result = ResultOf(response.get());
        if (!options_.sort.empty()) {
            SortRecords(result.records, options_.sort);
        }
        Print(result, connection);
        return kExecuted;
    }

    /** Rejects unknown columns before the call if it is known which class it returns. */
    void CheckColumns() const {
        const CallRequest& call = options_.call;
        const bool returns_own_class =
            CompareNoCase(call.command, "GetList") == 0 || CompareNoCase(call.command, "Get") == 0;
        if (!call.checked || !returns_own_class) {
            return;
        }
        const CatalogueObject& object = FindObject(call.object);
        std::vector<std::string> names = options_.output.columns;
        names.push_back(options_.sort.empty() ? kAllColumns : options_.sort);
        for (const std::string& name : names) {
            if (CompareNoCase(name, kAllColumns) != 0 && FindNamed(object.attributes, name) == nullptr) {
                throw UsageError(commandline::UnknownName("column", name, NamesOf(object.attributes),
                                                          "see apiClient " + object.name + " --list"));
            }
        }
    }

    void Print(const Result& result, const ArrayConnection& connection) {
        if (options_.format == "xml") {
            out_ << connection.document() << '\n';
            return;
        }
        if (options_.format == "json") {
            out_ << FormatJson(result, options_.output.columns);
        } else if (options_.format == "csv") {
            out_ << FormatCsv(result, options_.output);
        } else {
            out_ << FormatTable(result, options_.output);
        }
        // The library skips objects of classes that it does not know.
        if (result.skipped > 0) {
            err_ << "apiClient: skipped " << result.skipped
                 << " objects of unknown classes; see --format xml\n";
        }
    }

    std::ostream& out_;
    std::ostream& err_;
    Options options_;
    CLI::App app_{kDescription, "apiClient"};
};

}  // namespace

int RunProgram(int argc, const char* const* argv, std::ostream& out, std::ostream& err) {
    return Program(out, err).Run(argc, argv);
}

}  // namespace apiclient
