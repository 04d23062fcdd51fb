#include "arraySim/model/catalogueReader.h"

#include <algorithm>
#include <iterator>
#include <sstream>
#include <utility>

#include "apiMgmt/apiStub/base/apiAttributes/textApiAttributes.h"
#include "apiMgmt/common/utils/stringUtil.h"
#include "arraySim/model/eventRule.h"
#include "arraySim/model/numbers.h"
#include "arraySim/model/ruleParser.h"

namespace arraysim {

namespace {

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
    } else if (words[0] == "values") {
        StartRun(words);
    } else if (words[0] == "use") {
        UseRun(words);
    } else if (words[0] == "own") {
        ReadOwn(words);
    } else if (words[0] == "event") {
        ReadEvent(words);
    } else if (words[0] == "read" || words[0] == "also") {
        ReadValue(words, RestOf(line, 2));
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
    for (size_t i = 2; i < words.size(); i += 2) {
        const std::string argument = i + 1 < words.size() ? words[i + 1] : "";
        if (words[i] == "rows" && own_list == nullptr) {
            own_list = &AddList(kind.name);
            own_list->rows = static_cast<uint32_t>(ParseInt(argument));
            kind.list = own_list;
        } else if (words[i] == "per" && own_list != nullptr &&
                   (argument == "controller" || argument == "enclosure")) {
            own_list->per = argument == "controller" ? ParentKind::kController : ParentKind::kEnclosure;
        } else if (words[i] == "keyed" && !argument.empty()) {
            keys_[kind.name] = argument;
        } else if (words[i] == "in" && own_list == nullptr) {
            const std::optional<Selection> found = catalogue_.Find(argument);
            if (!found || found->kind != nullptr) {
                Fail("no list '" + argument + "' stands above");
            }
            kind.list = found->list;
        } else {
            Fail("'" + words[i] + "' does not fit here");
        }
    }
    if (kind.list == nullptr || kind.list->rows == 0) {
        Fail("'" + kind.name + "' needs `rows N` or `in LIST`");
    }
    TakeAttributes(kind);
    open_kind_ = &catalogue_.kinds_.emplace_back(std::move(kind));
    open_run_ = nullptr;
    open_list_ = own_list;
    put_.clear();
}

void CatalogueReader::StartList(const Words& words) {
    if (words.size() != 4 || words[2] != "rows" || ParseInt(words[3]) <= 0) {
        Fail("a list reads: list NAME rows N");
    }
    ObjectList& list = AddList(words[1]);
    list.rows = static_cast<uint32_t>(ParseInt(words[3]));
    list.mixed = true;
    open_kind_ = nullptr;
    open_run_ = nullptr;
    open_list_ = &list;
}

void CatalogueReader::StartRun(const Words& words) {
    open_run_ = &runs_[words[1]];
    open_kind_ = nullptr;
    open_list_ = nullptr;
    if (!open_run_->empty()) {
        Fail("'" + words[1] + "' stands already");
    }
}

Kind& CatalogueReader::OpenKind() {
    if (open_kind_ == nullptr) {
        Fail("no object is open");
    }
    return *open_kind_;
}

void CatalogueReader::UseRun(const Words& words) {
    const auto run = runs_.find(words[1]);
    if (run == runs_.end()) {
        Fail("no run '" + words[1] + "' stands above");
    }
    for (const ValueLine& line : run->second) {
        Put(line);
    }
}

void CatalogueReader::ReadOwn(const Words& words) {
    Kind& kind = OpenKind();
    const std::optional<uint32_t> longest = words.size() == 3 ? ReadUint32(words[2]) : std::nullopt;
    if (!longest || kind.HasAttribute(words[1])) {
        Fail("an attribute of the array's own reads: own ATTR LONGEST, and has a new name");
    }
    kind.own.push_back(
        std::make_unique<STRINGApiAttribute>(words[1], 20, false, -1, int64_t{*longest}, words[1]));
    kind.attributes.insert(kind.attributes.begin(), {kind.own.back().get(), {}, false});
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

void CatalogueReader::ReadValue(const Words& words, const std::string& rule) {
    const ValueLine line{line_number_, words[0] == "read", words[1], rule};
    if (open_run_ != nullptr) {
        open_run_->push_back(line);
    } else if (!put_.insert(line.attribute).second) {
        Fail("attribute '" + line.attribute + "' stands already");
    } else {
        Put(line);
    }
}

/** A mistake in a run is one of the line there. */
void CatalogueReader::Put(const ValueLine& line) {
    const size_t asking_line = std::exchange(line_number_, line.number);
    Kind& kind = OpenKind();
    const auto attribute = std::find_if(kind.attributes.begin(), kind.attributes.end(),
                                        [&](const Attribute& each) { return each.name() == line.attribute; });
    if (attribute == kind.attributes.end()) {
        Fail(kind.name + " has no attribute '" + line.attribute + "'");
    }
    attribute->in_reduced |= line.is_read;
    try {
        if (!line.rule.empty()) {
            attribute->rule = ParseRule(line.rule, *attribute->descriptor);
        }
    } catch (const CatalogueError& error) {
        Fail(error.what());
    }
    line_number_ = asking_line;
}

}  // namespace arraysim
