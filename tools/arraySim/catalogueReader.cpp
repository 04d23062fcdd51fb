#include "tools/arraySim/catalogueReader.h"

#include <algorithm>
#include <iterator>
#include <sstream>

#include "apiMgmt/common/utils/stringUtil.h"
#include "tools/arraySim/eventRule.h"
#include "tools/arraySim/ruleParser.h"

namespace arraysim {

namespace {

/** Attributes that name an object or its parent are never left out of a reduced object. */
bool IsKey(const std::string& attribute) {
    return attribute == "Index" || attribute == "ControllerIndex" || attribute == "EnclosureIndex" ||
           attribute == "DiskIndex";
}

std::vector<std::string> WordsOf(const std::string& line) {
    std::istringstream stream(line);
    return {std::istream_iterator<std::string>(stream), std::istream_iterator<std::string>()};
}

/** What stands behind the first `count` words. */
std::string RestOf(const std::string& line, size_t count) {
    size_t at = line.find_first_not_of(' ');
    for (size_t i = 0; i < count && at != std::string::npos; ++i) {
        at = line.find(' ', at);
        at = at == std::string::npos ? at : line.find_first_not_of(' ', at);
    }
    return at == std::string::npos ? std::string() : line.substr(at);
}

}  // namespace

void CatalogueReader::Fail(const std::string& why) const {
    throw CatalogueError("objects.def:" + std::to_string(line_number_) + ": " + why);
}

void CatalogueReader::Read(std::string_view text) {
    std::istringstream stream{std::string(text)};
    for (std::string line; std::getline(stream, line);) {
        ++line_number_;
        TrimRight(line);
        if (!line.empty() && line[0] != '#') {
            ReadLine(line);
        }
    }
    for (Kind& kind : catalogue_.kinds_) {
        FinishKind(kind);
        CheckEvent(kind);
    }
}

void CatalogueReader::ReadLine(const std::string& line) {
    const Words words = WordsOf(line);
    if (words.size() < 2) {
        Fail("a line has at least two words");
    }
    if (words[0] == "object") {
        StartObject(words);
    } else if (words[0] == "list") {
        StartList(words);
    } else if (words[0] == "attributes") {
        StartRun(words);
    } else if (words[0] == "use") {
        UseRun(words);
    } else if (words[0] == "event") {
        ReadEvent(words);
    } else if (words[0] == "read" || words[0] == "also") {
        ReadAttribute(words, RestOf(line, 2));
    } else {
        Fail("unknown word '" + words[0] + "'");
    }
}

ObjectList& CatalogueReader::AddList(const std::string& name) {
    if (catalogue_.Find(name)) {
        Fail("'" + name + "' stands already");
    }
    ObjectList& list = catalogue_.lists_.emplace_back();
    list.name = name;
    list.position = catalogue_.lists_.size() - 1;
    return list;
}

void CatalogueReader::StartObject(const Words& words) {
    Kind kind;
    kind.name = words[1];
    ObjectList* own_list = nullptr;
    for (size_t i = 2; i < words.size(); ++i) {
        const std::string argument = i + 1 < words.size() ? words[i + 1] : "";
        if (words[i] == "alone") {
            kind.alone = true;
        } else if (words[i] == "unlisted" && own_list != nullptr) {
            own_list->unlisted = true;
        } else if (words[i] == "rows" && own_list == nullptr) {
            own_list = &AddList(kind.name);
            own_list->rows = static_cast<uint32_t>(ParseInt(argument));
            kind.list = own_list;
            ++i;
        } else if (words[i] == "per" && own_list != nullptr &&
                   (argument == "controller" || argument == "enclosure")) {
            own_list->per = argument == "controller" ? ParentKind::kController : ParentKind::kEnclosure;
            ++i;
        } else if (words[i] == "keyed" && !argument.empty()) {
            keys_[kind.name] = argument;
            ++i;
        } else if (words[i] == "in" && own_list == nullptr) {
            const std::optional<Selection> found = catalogue_.Find(argument);
            if (!found || found->kind != nullptr) {
                Fail("no list '" + argument + "' stands above");
            }
            kind.list = found->list;
            ++i;
        } else {
            Fail("'" + words[i] + "' does not fit here");
        }
    }
    if (kind.list == nullptr || kind.list->rows == 0) {
        Fail("'" + kind.name + "' needs `rows N` or `in LIST`");
    }
    target_ = &catalogue_.kinds_.emplace_back(std::move(kind)).attributes;
    open_list_ = own_list;
}

void CatalogueReader::StartList(const Words& words) {
    if (words.size() != 4 || words[2] != "rows" || ParseInt(words[3]) <= 0) {
        Fail("a list reads: list NAME rows N");
    }
    ObjectList& list = AddList(words[1]);
    list.rows = static_cast<uint32_t>(ParseInt(words[3]));
    list.mixed = true;
    target_ = nullptr;
    open_list_ = &list;
}

void CatalogueReader::StartRun(const Words& words) {
    target_ = &runs_[words[1]];
    open_list_ = nullptr;
    if (!target_->empty()) {
        Fail("'" + words[1] + "' stands already");
    }
}

std::vector<Attribute>& CatalogueReader::Target() {
    if (target_ == nullptr) {
        Fail("no object or run of attributes is open");
    }
    return *target_;
}

void CatalogueReader::UseRun(const Words& words) {
    const auto run = runs_.find(words[1]);
    if (run == runs_.end() || &run->second == target_) {
        Fail("no run '" + words[1] + "' stands above");
    }
    for (const Attribute& attribute : run->second) {
        Put(attribute);
    }
}

void CatalogueReader::ReadEvent(const Words& words) {
    if (open_list_ == nullptr || open_list_->event) {
        Fail("an event stands once below a list, or an object that is no part of one");
    }
    try {
        open_list_->event = ParseEventRule(words);
    } catch (const CatalogueError& error) {
        Fail(error.what());
    }
}

void CatalogueReader::ReadAttribute(const Words& words, const std::string& rule) {
    std::vector<Attribute>& attributes = Target();
    const auto known = std::find_if(attributes.begin(), attributes.end(),
                                    [&](const Attribute& each) { return each.name == words[1]; });
    if (known == attributes.end()) {
        Put({words[1], RuleOf(rule), words[0] == "read" || IsKey(words[1])});
        return;
    }
    known->in_reduced |= words[0] == "read";
    if (!rule.empty()) {
        known->rule = RuleOf(rule);
    }
}

void CatalogueReader::Put(const Attribute& attribute) {
    for (const Attribute& each : Target()) {
        if (each.name == attribute.name) {
            Fail("attribute '" + attribute.name + "' stands already");
        }
    }
    Target().push_back(attribute);
}

Rule CatalogueReader::RuleOf(const std::string& text) const {
    try {
        return ParseRule(text);
    } catch (const CatalogueError& error) {
        Fail(error.what());
    }
}

void CatalogueReader::CheckEvent(const Kind& kind) const {
    const std::optional<EventRule>& event = kind.list->event;
    if (!event) {
        return;
    }
    if (!kind.HasAttribute(event->attribute)) {
        Fail(kind.name + ": its event watches '" + event->attribute + "', which it has not");
    }
    for (const EventArgument& argument : event->arguments) {
        const bool of_parent = argument.what == EventArgument::What::kParentIndex ||
                               argument.what == EventArgument::What::kParentRow;
        if (of_parent && !kind.parent) {
            Fail(kind.name + ": its event speaks of a parent, which it has not");
        }
    }
}

void CatalogueReader::FinishKind(Kind& kind) {
    const std::string key = keys_.count(kind.name) > 0 ? keys_[kind.name] : "Index";
    if (key != "nothing") {
        kind.key = kind.FindAttribute(key);
        if (!kind.key) {
            Fail(kind.name + " has no attribute '" + key + "' to be keyed by");
        }
    }
    for (size_t i = 0; i < kind.attributes.size(); ++i) {
        const Rule& rule = kind.attributes[i].rule;
        if (rule.verb == Rule::Verb::kParent) {
            kind.parent = i;
        }
        const std::optional<size_t> source = kind.FindAttribute(rule.text);
        if (rule.verb == Rule::Verb::kSame && (!source || *source >= i)) {
            Fail(kind.name + ": '" + rule.text + "' does not stand above " + kind.attributes[i].name);
        }
        if (rule.verb == Rule::Verb::kCount && !catalogue_.Find(rule.text)) {
            Fail(kind.name + ": nothing to count is named '" + rule.text + "'");
        }
    }
}

}  // namespace arraysim
