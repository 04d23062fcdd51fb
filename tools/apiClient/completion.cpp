#include "tools/apiClient/completion.h"

#include <CLI/CLI.hpp>

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiEnumsIDStrList.h"
#include "tools/apiClient/apiCatalogue.h"
#include "tools/apiClient/filterParser.h"

namespace apiclient {

namespace {

using Words = std::vector<std::string>;

const CLI::Option* FindOption(const CLI::App& app, const std::string& word) {
    return word.starts_with('-') ? app.get_option_no_throw(word) : nullptr;
}

Words OptionNames(const CLI::App& app) {
    Words names;
    for (const CLI::Option* option : app.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            names.push_back("--" + name);
        }
    }
    return names;
}

/** The values that the option's check allows; CLI11 describes them as "TEXT:{table,csv}". */
Words AllowedValues(const CLI::Option& option) {
    const std::string type = option.get_type_name();
    const size_t begin = type.find('{');
    Words values;
    if (begin != std::string::npos) {
        SplitChar(type.substr(begin + 1, type.find('}') - begin - 1), ',', values);
    }
    return values;
}

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
    Completer(const CLI::App& app, const Words& words, const std::string& last) : app_(app), last_(last) {
        for (size_t i = 0; i < words.size(); ++i) {
            const CLI::Option* option = FindOption(app, words[i]);
            if (option != nullptr && option->get_items_expected_max() > 0) {
                option_ = i + 1 == words.size() ? option : nullptr;
                ++i;
            } else if (!words[i].starts_with('-')) {
                positions_.push_back(words[i]);
            }
        }
        object_ = positions_.empty() ? nullptr : FindNamed(ApiCatalogue().objects, positions_[0]);
        command_ =
            object_ == nullptr || positions_.size() < 2 ? nullptr : object_->FindCommand(positions_[1]);
    }

    Words Candidates() const {
        if (option_ != nullptr) {
            return OptionValues();
        }
        if (last_.starts_with('-')) {
            return OptionNames(app_);
        }
        if (positions_.empty()) {
            return NamesOf(ApiCatalogue().objects);
        }
        if (positions_.size() == 1) {
            return object_ == nullptr ? Words{} : NamesOf(object_->commands);
        }
        return command_ == nullptr ? Words{} : Arguments();
    }

  private:
    Words OptionValues() const {
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
        if (is("--columns") || is("--filter")) {
            return object_ == nullptr ? Words{} : is("--columns") ? Columns() : Conditions();
        }
        return AllowedValues(*option_);
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

    const CLI::App& app_;
    const std::string& last_;
    const CLI::Option* option_ = nullptr;  ///< whose value the last word is; null if there is none
    Words positions_;
    const CatalogueObject* object_ = nullptr;
    const CatalogueCommand* command_ = nullptr;
};

}  // namespace

std::vector<std::string> Completions(const CLI::App& app, const std::vector<std::string>& words,
                                     const std::string& last) {
    Words matching;
    for (const std::string& each : Completer(app, words, last).Candidates()) {
        if (CompareNoCase(each.substr(0, last.size()), last) == 0) {
            matching.push_back(each);
        }
    }
    return matching;
}

}  // namespace apiclient
