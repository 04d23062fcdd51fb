#include "tools/apiClient/program.h"

#include <CLI/CLI.hpp>
#include <ostream>

#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethodReturn.h"
#include "apiMgmt/common/utils/pathConstants.h"
#include "apiMgmt/common/wirelink/accessKey.h"
#include "tools/apiClient/arrayConnection.h"
#include "tools/apiClient/attributeWords.h"
#include "tools/apiClient/callBuilder.h"
#include "tools/apiClient/completion.h"
#include "tools/apiClient/csvText.h"
#include "tools/apiClient/explanation.h"
#include "tools/apiClient/jsonText.h"
#include "tools/apiClient/listing.h"
#include "tools/apiClient/tableText.h"
#include "tools/apiClient/usageError.h"

namespace {

enum ExitStatus { kAnswered = 0, kNotReached = 1, kUsage = 2, kRefused = 3 };

// Hidden from --help: for the completion of the shell.
constexpr char kComplete[] = "--complete";

constexpr long kLongestTimeout_s = 86400;
constexpr long kTimeout_s = 60;

constexpr const char* kDescription =
    "Asks the array's API manager, and has it change things: any command or association of any object.\n";

constexpr const char* kFooter =
    "Exit status:\n"
    "  0  the array has done what was asked\n"
    "  1  the API manager cannot be reached, or gives no answer of the API; or the output could not\n"
    "     be written\n"
    "  2  the command line is wrong, or there is no session key; the array was not asked to do anything, "
    "except\n"
    "     when the message is about a column of an answer\n"
    "  3  the array has refused or failed; the message holds its error state\n"
    "\nExamples:\n"
    "  apiClient --list\n"
    "  apiClient TsDisk --list\n"
    "  apiClient TsDisk GetList --filter 'Status = Down' --columns Name,Status,StatusMessage\n"
    "  apiClient TsDisk Get InstanceId=64702.17 --format json\n"
    "  apiClient TsController FanSensorList InstanceId=64702.1\n"
    "  apiClient Tessera Modify InstanceId=64702 Location='rack 4'\n"
    "  apiClient TsDisk GetHistoricalIoUsage InstanceId=64702.17 HistoricalFilter.UseCurrent=True\n";

/** What the command line asks for. */
struct Options {
    CallRequest call;
    bool list = false;
    std::string enumeration;
    std::string format = "table";
    TableOptions table;
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
        AddCall();
        AddOutput();
        AddConnection();
    }

    int Run(int argc, const char* const* argv) {
        try {
            app_.parse(argc, argv);
            options_.call.checked = !options_.no_check;
            return Act();
        } catch (const CLI::ParseError& error) {
            return app_.exit(error, out_, err_) == 0 ? kAnswered : kUsage;
        } catch (const UsageError& error) {
            err_ << "apiClient: " << error.what() << '\n';
            return kUsage;
        } catch (const WireLinkError& error) {
            err_ << "apiClient: the API manager cannot be reached: " << error.what() << '\n';
            return kNotReached;
        } catch (const AnswerError& error) {
            err_ << "apiClient: " << error.what() << '\n';
            return kNotReached;
        }
    }

    int Complete(std::vector<std::string> words) {
        if (!words.empty()) {
            const std::string last = words.back();
            words.pop_back();
            for (const std::string& each : Completions(app_, words, last)) {
                out_ << each << '\n';
            }
        }
        return kAnswered;
    }

  private:
    void AddCall() {
        CallRequest& call = options_.call;
        app_.add_option("OBJECT", call.object, "The object, as in TsDisk; --list has all of them");
        app_.add_option("COMMAND", call.command, "Its command or association; OBJECT --list has all of them");
        app_.add_option(
            "NAME=VALUE", call.arguments,
            "Arguments; of a structured one NAME.FIELD=VALUE. OBJECT COMMAND --list has all of them");
        app_.add_option(
                "--filter", call.conditions,
                "Only objects with this, as in 'Status = Down'; may be repeated. Operators: = > >= < <=, iqs "
                "for a piece of the attribute, iqin for an attribute that is a piece of the value")
            ->type_name("CONDITION")
            ->allow_extra_args(false);
        app_.add_flag("--any", call.anyCondition, "One of the conditions is enough");
        app_.add_flag("--association", call.association, "COMMAND is an association, never a command");
        app_.add_flag("--lite", call.lite, "Ask for the objects in their reduced form");
        app_.add_flag("--no-check", options_.no_check,
                      "Send it as it stands, also what this program's catalogue does not know");
        app_.add_flag("--print", options_.print, "Print the call's document in place of sending it");
    }

    void AddOutput() {
        app_.add_flag(
            "--list", options_.list,
            "Print what there is: objects; of OBJECT, its commands, associations and attributes; of OBJECT "
            "COMMAND, the arguments");
        app_.add_option("--enumeration", options_.enumeration, "Print the words of an enumeration")
            ->type_name("NAME");
        app_.add_option("--format", options_.format, "table, csv, json, or xml: the answer as it came")
            ->check(CLI::IsMember({"table", "csv", "json", "xml"}))
            ->capture_default_str();
        app_.add_option(
                "--columns", options_.table.columns,
                "Attributes to show, with commas between them; all for all. Otherwise a table has what fits")
            ->type_name("NAME,...")
            ->delimiter(',')
            ->allow_extra_args(false);
        app_.add_flag("--readable", options_.table.readable,
                      "In a table: sizes with units, names of references, texts of enumerations");
        app_.add_option("--width", options_.table.width,
                        "Of a table whose columns are not chosen, in characters")
            ->capture_default_str();
    }

    void AddConnection() {
        app_.add_option("--socket", options_.socket_path, "Where the API manager listens")
            ->type_name("PATH")
            ->capture_default_str();
        app_.add_option("--key-file", options_.key_file, "The file with the session key")
            ->type_name("PATH")
            ->capture_default_str();
        app_.add_option("--locale", options_.locale, "Of the answer's texts, as in en_US");
        app_.add_option("--timeout", options_.timeout_s, "Seconds to wait for each step")
            ->check(CLI::Range(1L, kLongestTimeout_s))
            ->capture_default_str();
    }

    int Act() {
        if (!options_.enumeration.empty()) {
            out_ << EnumerationListing(options_.enumeration);
        } else if (options_.list) {
            out_ << Listing();
        } else if (options_.call.object.empty()) {
            throw UsageError("what is to be asked? --help tells");
        } else if (options_.call.command.empty()) {
            throw UsageError("which command or association? apiClient " +
                             FindObject(options_.call.object).name + " --list has them");
        } else {
            return Call();
        }
        return kAnswered;
    }

    std::string Listing() const {
        const CallRequest& call = options_.call;
        if (call.object.empty()) {
            return ObjectsListing();
        }
        const CatalogueObject& object = FindObject(call.object);
        return call.command.empty()
                   ? ObjectListing(object)
                   : CommandListing(object, FindCommand(object, call.command, call.association));
    }

    int Call() {
        const std::unique_ptr<BASEApiMethod> call = BuildCall(options_.call);
        CheckColumns();
        if (options_.print) {
            out_ << call->GenerateXml(false, true) << '\n';
            return kAnswered;
        }
        ArrayConnection connection(options_.socket_path, options_.timeout_s);
        const std::unique_ptr<BASEApiMethodReturn> answer =
            connection.Call(*call, SessionKey(options_.key_file), options_.locale);
        if (answer != nullptr && !answer->GetSuccessful()) {
            err_ << "apiClient: " << ExplainFailure(*call, *answer) << '\n';
            return kRefused;
        }
        Print(ResultOf(answer.get()), connection);
        return kAnswered;
    }

    /** Before the call, where it is known which objects come. */
    void CheckColumns() const {
        const CallRequest& call = options_.call;
        const bool is_own =
            CompareNoCase(call.command, "GetList") == 0 || CompareNoCase(call.command, "Get") == 0;
        if (!call.checked || !is_own) {
            return;
        }
        const CatalogueObject& object = FindObject(call.object);
        for (const std::string& name : options_.table.columns) {
            if (CompareNoCase(name, kAllColumns) != 0 && FindNamed(object.attributes, name) == nullptr) {
                throw UsageError(UnknownWords("column", name, object.attributes,
                                              "apiClient " + object.name + " --list has the attributes"));
            }
        }
    }

    void Print(const Result& result, const ArrayConnection& connection) {
        if (options_.format == "xml") {
            out_ << connection.Document() << '\n';
            return;
        }
        if (options_.format == "json") {
            out_ << JsonText(result, options_.table.columns);
        } else if (options_.format == "csv") {
            out_ << CsvText(result, options_.table.columns);
        } else {
            out_ << TableText(result, options_.table);
        }
        // The library leaves out objects of classes that it does not know.
        const size_t count = connection.CountObjects();
        if (count > result.records.size()) {
            err_ << "apiClient: " << count - result.records.size()
                 << " objects of the answer are of kinds that this program does not know; --format xml shows "
                    "them\n";
        }
    }

    std::ostream& out_;
    std::ostream& err_;
    Options options_;
    CLI::App app_{kDescription, "apiClient"};
};

}  // namespace

int RunProgram(int argc, const char* const* argv, std::ostream& out, std::ostream& err) {
    if (argc > 1 && std::string_view(argv[1]) == kComplete) {
        return Program(out, err).Complete({argv + 2, argv + argc});
    }
    return Program(out, err).Run(argc, argv);
}
