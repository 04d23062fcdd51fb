#include "tools/apiClient/completion.h"

#include <algorithm>

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiEnumsIDStrList.h"
#include "tools/apiClient/apiCatalogue.h"
#include "tools/apiClient/filterText.h"

namespace {

using Words = std::vector<std::string>;

constexpr std::string_view kOptionsWithValue[] = {"--filter",  "--columns",  "--format",
                                                  "--socket",  "--key-file", "--locale",
                                                  "--timeout", "--width",    "--enumeration"};
constexpr std::string_view kFlags[] = {"--list",     "--any",      "--association", "--lite",
                                       "--readable", "--no-check", "--print",       "--help"};

bool TakesValue(std::string_view word) {
    return std::ranges::find(kOptionsWithValue, word) != std::end(kOptionsWithValue);
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
    Completer(const Words& words, const std::string& last) : last_(last) {
        for (size_t i = 0; i < words.size(); ++i) {
            if (TakesValue(words[i])) {
                option_ = i + 1 == words.size() ? words[i] : "";
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
        if (!option_.empty()) {
            return OptionValues();
        }
        if (last_.starts_with('-')) {
            Words options(std::begin(kOptionsWithValue), std::end(kOptionsWithValue));
            options.insert(options.end(), std::begin(kFlags), std::end(kFlags));
            return options;
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
        if (option_ == "--format") {
            return {"table", "csv", "json", "xml"};
        }
        if (option_ == "--locale") {
            return RowsOf(APIEnumsIDStrList::gLanguageLocaleEnumIdStrList);
        }
        if (option_ == "--enumeration") {
            Words names;
            for (const ENUMNamedTable& each : APIEnumsIDStrList::gAllEnumTables) {
                names.emplace_back(each.name);
            }
            return names;
        }
        if (object_ == nullptr) {
            return {};
        }
        return option_ == "--columns" ? Columns() : option_ == "--filter" ? Conditions() : Words{};
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

    const std::string& last_;
    std::string option_;  ///< whose value is being written; empty for none
    Words positions_;
    const CatalogueObject* object_ = nullptr;
    const CatalogueCommand* command_ = nullptr;
};

}  // namespace

std::vector<std::string> Completions(const std::vector<std::string>& words, const std::string& last) {
    Words fitting;
    for (const std::string& each : Completer(words, last).Candidates()) {
        if (CompareNoCase(each.substr(0, last.size()), last) == 0) {
            fitting.push_back(each);
        }
    }
    return fitting;
}
