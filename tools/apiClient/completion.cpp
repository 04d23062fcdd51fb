#include "tools/apiClient/completion.h"

#include <CLI/CLI.hpp>

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiEnumsIDStrList.h"
#include "tools/apiClient/apiCatalogue.h"
#include "tools/apiClient/filterText.h"

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

/** The values that the option's check allows, which CLI11 describes as in "TEXT:{table,csv}". */
Words AllowedValues(const CLI::Option& option) {
    const std::string type = option.get_type_name();
    const size_t begin = type.find('{');
    Words values;
    if (begin != std::string::npos) {
        SplitChar(type.substr(begin + 1, type.find('}') - begin - 1), ',', values);
    }
    return values;
}

template <class Item>
Words NamesOf(const std::vector<Item>& items) {
    Words names;
    for (const Item& item : items) {
        names.push_back(item.name);
    }
    return names;
}

Words Prefixed(const std::string& prefix, const Words& words) {
    Words prefixed;
    for (const std::string& word : words) {
        prefixed.push_back(prefix + word);
    }
    return prefixed;
}

Words RowsOf(const ENUMTable& table) {
    Words words;
    for (const ENUMRow& row : table) {
        words.emplace_back(row.Description);
    }
    return words;
}

Words ValuesOf(const CatalogueAttribute& attribute) {
    return attribute.kind == "BOOLEAN" ? Words{"True", "False"} : RowsOf(attribute.Rows());
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
            return RowsOf(APIEnumsIDStrList::gLanguageLocaleEnumIdStrList);
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

    /** "Name", then "Name OPERATOR", then "Name OPERATOR VALUE". */
    Words Conditions() const {
        const ConditionParts parts = SplitCondition(last_);
        const bool has_name = !parts.filterOperator.empty() || last_.ends_with(' ');
        const CatalogueAttribute* attribute = FindNamed(object_->attributes, parts.name);
        if (!has_name) {
            return ConditionNames();
        }
        if (attribute == nullptr) {
            return {};
        }
        const Words operators = OperatorsOf(attribute->kind);
        const bool has_operator =
            !parts.value.empty() || (!parts.filterOperator.empty() && last_.ends_with(' '));
        if (!has_operator) {
            return Enclosed(attribute->name + " ", operators, " ");
        }
        return operators.empty()
                   ? Words{}
                   : Prefixed(attribute->name + " " + parts.filterOperator + " ", ValuesOf(*attribute));
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

    static Words Enclosed(const std::string& before, const Words& words, const std::string& behind) {
        Words whole = Prefixed(before, words);
        for (std::string& each : whole) {
            each += behind;
        }
        return whole;
    }

    /** "Name=", then values; of a structured one "Name." and its fields. */
    Words Arguments() const {
        const size_t equals = last_.find('=');
        const std::string path = last_.substr(0, equals);
        const size_t point = path.find('.');
        const CatalogueAttribute* argument = FindNamed(command_->arguments, path.substr(0, point));
        if (equals == std::string::npos && point == std::string::npos) {
            return ArgumentNames();
        }
        if (argument == nullptr) {
            return {};
        }
        if (point == std::string::npos) {
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
        const CatalogueObject* kind = FindNamed(ApiCatalogue().methodObjects, argument.object);
        if (kind == nullptr) {
            return {};
        }
        const std::string before = path.substr(0, path.rfind('.') + 1);
        if (!has_name) {
            return Enclosed(before, NamesOf(kind->attributes), "=");
        }
        const CatalogueAttribute* field = FindNamed(kind->attributes, path.substr(before.size()));
        return field == nullptr ? Words{} : Prefixed(before + field->name + "=", ValuesOf(*field));
    }

    const CLI::App& app_;
    const std::string& last_;
    const CLI::Option* option_ = nullptr;  ///< whose value is being written; null for none
    Words positions_;
    const CatalogueObject* object_ = nullptr;
    const CatalogueCommand* command_ = nullptr;
};

}  // namespace

std::vector<std::string> Completions(const CLI::App& app, const std::vector<std::string>& words,
                                     const std::string& last) {
    Words fitting;
    for (const std::string& each : Completer(app, words, last).Candidates()) {
        if (CompareNoCase(each.substr(0, last.size()), last) == 0) {
            fitting.push_back(each);
        }
    }
    return fitting;
}
