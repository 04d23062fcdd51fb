#include "tools/commandLine/completion.h"

#include <CLI/CLI.hpp>
#include <ostream>
#include <string_view>

#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/common/utils/version.h"

namespace commandline {

namespace {

// --help does not show it, because only scripts use it.
constexpr std::string_view kComplete = "--complete";

std::vector<const CLI::App*> Subcommands(const CLI::App& app) {
    return app.get_subcommands([](const CLI::App*) { return true; });
}

const CLI::App* FindSubcommand(const CLI::App& app, const std::string& name) {
    for (const CLI::App* each : Subcommands(app)) {
        if (each->check_name(name)) {
            return each;
        }
    }
    return nullptr;
}

/** Finds an option of the subcommand or of the program. */
const CLI::Option* FindOption(const CLI::App& app, const CLI::App& command, const std::string& word) {
    if (!word.starts_with('-')) {
        return nullptr;
    }
    const CLI::Option* option = command.get_option_no_throw(word);
    return option == nullptr ? app.get_option_no_throw(word) : option;
}

UnfinishedLine Interpret(const CLI::App& app, const std::vector<std::string>& words) {
    UnfinishedLine line{.command = &app, .option = nullptr, .arguments = {}, .last = words.back()};
    for (size_t i = 0; i + 1 < words.size(); ++i) {
        const CLI::Option* option = FindOption(app, *line.command, words[i]);
        const CLI::App* subcommand = line.command == &app ? FindSubcommand(app, words[i]) : nullptr;
        const bool has_value = option != nullptr && option->get_items_expected_max() > 0;
        if (has_value && !words[i + 1].starts_with('-')) {
            ++i;
            line.option = i + 1 == words.size() ? option : nullptr;
        } else if (subcommand != nullptr) {
            line.command = subcommand;
        } else if (!words[i].starts_with('-')) {
            line.arguments.push_back(words[i]);
        }
    }
    return line;
}

/** The values that the option's check allows; CLI11 describes them as "TEXT:{table,csv}". */
Candidates AllowedValues(const CLI::Option& option) {
    const std::string type = option.get_type_name();
    const size_t begin = type.find('{');
    Candidates values;
    if (begin != std::string::npos) {
        SplitChar(type.substr(begin + 1, type.find('}') - begin - 1), ',', values);
    }
    return values;
}

void AddOptionNames(const CLI::App& app, Candidates& names) {
    for (const CLI::Option* option : app.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            names.push_back("--" + name);
        }
    }
}

/** Candidates for a positional argument: subcommands, or the values that the description allows. */
Candidates DescribedArguments(const CLI::App& app, const UnfinishedLine& line) {
    Candidates candidates;
    if (line.command == &app && line.arguments.empty()) {
        for (const CLI::App* each : Subcommands(app)) {
            candidates.push_back(each->get_name());
        }
    }
    const auto positionals =
        line.command->get_options([](const CLI::Option* o) { return o->get_positional(); });
    if (line.arguments.size() < positionals.size()) {
        for (const std::string& value : AllowedValues(*positionals[line.arguments.size()])) {
            candidates.push_back(value);
        }
    }
    return candidates;
}

Candidates DescribedCandidates(const CLI::App& app, const UnfinishedLine& line) {
    if (line.option != nullptr) {
        return AllowedValues(*line.option);
    }
    if (!line.last.starts_with('-')) {
        return DescribedArguments(app, line);
    }
    Candidates names;
    AddOptionNames(*line.command, names);
    if (line.command != &app) {
        AddOptionNames(app, names);
    }
    return names;
}

}  // namespace

bool PrintCandidates(const CLI::App& app, int argc, const char* const* argv, std::ostream& out,
                     const CandidateSource& source) {
    if (argc < 3 || argv[1] != kComplete) {
        return false;
    }
    const UnfinishedLine line = Interpret(app, {argv + 2, argv + argc});
    const std::optional<Candidates> own = source ? source(line) : std::nullopt;
    for (const std::string& each : own ? *own : DescribedCandidates(app, line)) {
        if (CompareNoCase(each.substr(0, line.last.size()), line.last) == 0) {
            out << each << '\n';
        }
    }
    return true;
}

void AddVersionOption(CLI::App& app) {
    app.set_version_flag("--version", app.get_name() + " " + kVersion, "Print the version and exit");
}

}  // namespace commandline
