#include "tools/apiClient/completion.h"

#include <CLI/CLI.hpp>

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiEnumsIDStrList.h"
#include "tools/apiClient/apiCatalogue.h"
#include "tools/apiClient/filterParser.h"

namespace apiclient {

namespace {

using Words = std::vector<std::string>;

Words Prefixed(const std::string& prefix, const Words& words) {
    Words prefixed;
    for (const std::string& word : words) {
        prefixed.push_back(prefix + word);
    }
    return prefixed;
}

Words Identifiers(const ENUMTable& table) {
    Words words;
    for (const ENUMRow& row : table) {
        words.emplace_back(row.Description);
    }
    return words;
}

Words ValuesOf(const CatalogueAttribute& attribute) {
    return attribute.kind == "BOOLEAN" ? Words{"True", "False"} : Identifiers(attribute.Rows());
}

class Completer {
  public:
    explicit Completer(const commandline::UnfinishedLine& line)
        : option_(line.option), arguments_(line.arguments), last_(line.last) {
        object_ = arguments_.empty() ? nullptr : FindNamed(ApiCatalogue().objects, arguments_[0]);
        command_ =
            object_ == nullptr || arguments_.size() < 2 ? nullptr : object_->FindCommand(arguments_[1]);
    }

    std::optional<Words> Find() const {
        if (option_ != nullptr) {
            return OptionValues();
        }
        if (last_.starts_with('-')) {
            return std::nullopt;
        }
        if (arguments_.empty()) {
            return NamesOf(ApiCatalogue().objects);
        }
        if (arguments_.size() == 1) {
            return object_ == nullptr ? Words{} : NamesOf(object_->commands);
        }
        return command_ == nullptr ? Words{} : Arguments();
    }

  private:
    std::optional<Words> OptionValues() const {
        const auto is = [&](const char* name) { return option_->check_name(name); };
        if (is("--locale")) {
            return Identifiers(APIEnumsIDStrList::gLanguageLocaleEnumIdStrList);
        }
        if (is("--enumeration")) {
            Words names;
            for (const ENUMNamedTable& each : APIEnumsIDStrList::gAllEnumTables) {
                names.emplace_back(each.name);
            }
            return names;
        }
        if (is("--columns") || is("--filter") || is("--sort")) {
            return object_ == nullptr ? Words{} : is("--filter") ? Conditions() : Columns();
        }
        return std::nullopt;
    }

    Words Columns() const {
        Words names = NamesOf(object_->attributes);
        names.emplace_back("all");
        return Prefixed(last_.substr(0, last_.rfind(',') + 1), names);
    }

    /** Completes first the attribute, then the operator, then the value. */
    Words Conditions() const {
        const Condition condition = SplitCondition(last_);
        const bool has_name = !condition.comparison.empty() || last_.ends_with(' ');
        const CatalogueAttribute* attribute = FindNamed(object_->attributes, condition.attribute);
        if (!has_name) {
            return ConditionNames();
        }
        if (attribute == nullptr) {
            return {};
        }
        const Words operators = OperatorsOf(attribute->kind);
        const bool has_operator =
            !condition.value.empty() || (!condition.comparison.empty() && last_.ends_with(' '));
        if (!has_operator) {
            return Enclosed(attribute->name + " ", operators, " ");
        }
        return operators.empty()
                   ? Words{}
                   : Prefixed(attribute->name + " " + condition.comparison + " ", ValuesOf(*attribute));
    }

    Words ConditionNames() const {
        Words names;
        for (const CatalogueAttribute& each : object_->attributes) {
            const Words operators = OperatorsOf(each.kind);
            if (operators.size() == 1) {
                names.push_back(each.name + " " + operators[0] + " ");
            } else if (!operators.empty()) {
                names.push_back(each.name + " ");
            }
        }
        return names;
    }

    static Words Enclosed(const std::string& prefix, const Words& words, const std::string& suffix) {
        Words enclosed = Prefixed(prefix, words);
        for (std::string& each : enclosed) {
            each += suffix;
        }
        return enclosed;
    }

    /** Completes first the name with "=", then the value; for structured arguments the name with ".", then
     * the field. */
    Words Arguments() const {
        const size_t equals = last_.find('=');
        const std::string path = last_.substr(0, equals);
        const size_t stop = path.find('.');
        const CatalogueAttribute* argument = FindNamed(command_->arguments, path.substr(0, stop));
        if (equals == std::string::npos && stop == std::string::npos) {
            return ArgumentNames();
        }
        if (argument == nullptr) {
            return {};
        }
        if (stop == std::string::npos) {
            return Prefixed(argument->name + "=", ValuesOf(*argument));
        }
        return Fields(*argument, path, equals != std::string::npos);
    }

    Words ArgumentNames() const {
        Words names;
        for (const CatalogueAttribute& each : command_->arguments) {
            if (each.object.empty()) {
                names.push_back(each.name + "=");
            } else {
                names.push_back(each.name + (each.kind == "METHODOBJECTARRAY" ? ".1." : "."));
            }
        }
        return names;
    }

    static Words Fields(const CatalogueAttribute& argument, const std::string& path, bool has_name) {
        const CatalogueObject* type = FindNamed(ApiCatalogue().method_objects, argument.object);
        if (type == nullptr) {
            return {};
        }
        const std::string prefix = path.substr(0, path.rfind('.') + 1);
        if (!has_name) {
            return Enclosed(prefix, NamesOf(type->attributes), "=");
        }
        const CatalogueAttribute* field = FindNamed(type->attributes, path.substr(prefix.size()));
        return field == nullptr ? Words{} : Prefixed(prefix + field->name + "=", ValuesOf(*field));
    }

    const CLI::Option* option_;
    const Words& arguments_;
    const std::string& last_;
    const CatalogueObject* object_ = nullptr;
    const CatalogueCommand* command_ = nullptr;
};

}  // namespace

std::optional<commandline::Candidates> FindCandidates(const commandline::UnfinishedLine& line) {
    return Completer(line).Find();
}

}  // namespace apiclient
