#include "arraySim/model/catalogue.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <sstream>

#include "apiMgmt/apiStub/base/apiAttributes/textApiAttributes.h"
#include "apiMgmt/apiStub/base/apiObjects/base/apiObjectFactory.h"
#include "apiMgmt/apiStub/base/apiObjects/base/baseApiObject.h"
#include "apiMgmt/common/utils/stringUtil.h"
#include "arraySim/model/numbers.h"

namespace arraysim {

namespace {

using Words = std::vector<std::string>;

Words WordsOf(const std::string& line) {
    std::istringstream stream(line);
    return {std::istream_iterator<std::string>(stream), std::istream_iterator<std::string>()};
}

/** Returns the line after its first word. */
std::string RestOf(const std::string& line) {
    const size_t word = line.find_first_not_of(' ');
    const size_t end = line.find(' ', word);
    const size_t rest = line.find_first_not_of(' ', end);
    return rest == std::string::npos ? std::string() : line.substr(rest);
}

/** Returns null if the API has no such object. */
std::unique_ptr<BASEApiObject> NewApiObject(const std::string& name) {
    return APIObjectFactory<BASEApiObject>::Instance().Create(name);
}

const DaemonTable* FindDaemonTable(const std::string& object) {
    const auto found = std::find_if(kDaemonTables.begin(), kDaemonTables.end(),
                                    [&](const DaemonTable& each) { return each.object == object; });
    return found == kDaemonTables.end() ? nullptr : &*found;
}

bool IsParentIndex(const ObjectList& list, const std::string& attribute) {
    return (attribute == "ControllerIndex" && list.table->parent == TableParent::kController) ||
           (attribute == "EnclosureIndex" && list.table->parent == TableParent::kEnclosure);
}

/** Returns whether every reduced object has the attribute: its index, its parent's, or the status. */
bool IsAlwaysReduced(const std::string& attribute) {
    return attribute == "Index" || attribute == "ControllerIndex" || attribute == "EnclosureIndex" ||
           attribute == "DiskIndex" || attribute == "Status";
}

}  // namespace

/** Reads data/array/objects.def, whose first lines describe its syntax, into a catalogue. */
class CatalogueReader {
  public:
    explicit CatalogueReader(Catalogue& catalogue) : catalogue_(catalogue) {}

    /** Throws CatalogueError with the line of the first error. */
    void Read(std::string_view text);

  private:
    /** A line with the rule of an attribute. */
    struct RuleLine {
        size_t number;
        std::string attribute;
        std::string rule;
    };

    void ReadLine(const std::string& line);
    void StartObject(const Words& words);
    void StartList(const Words& words);
    void ReadOwn(const Words& words);
    void ReadRule(const RuleLine& line);

    ObjectList& AddList(const std::string& name);
    void TakeAttributes(Kind& kind) const;
    void Put(Kind& kind, const RuleLine& line);
    void FinishKind(Kind& kind);
    void CheckRules(const Kind& kind) const;
    void CheckReadAttributes(const Kind& kind) const;
    [[noreturn]] void Fail(const std::string& why) const;

    Catalogue& catalogue_;
    std::map<const ObjectList*, std::vector<RuleLine>> list_rules_;  ///< of all kinds of a list
    Kind* open_kind_ = nullptr;
    ObjectList* open_list_ = nullptr;
    std::set<std::string> put_;  ///< attributes of the open kind that have a line
    size_t line_number_ = 0;
};

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
    }
}

void CatalogueReader::ReadLine(const std::string& line) {
    const Words words = WordsOf(line);
    if (words.size() < 2) {
        Fail("expected at least two words");
    }
    if (line[0] == ' ' && words[0] == "own") {
        ReadOwn(words);
    } else if (line[0] == ' ') {
        ReadRule({line_number_, words[0], RestOf(line)});
    } else if (words[0] == "object") {
        StartObject(words);
    } else if (words[0] == "list" && words.size() == 2) {
        StartList(words);
    } else {
        Fail("unexpected '" + words[0] + "'; expected object or list");
    }
}

ObjectList& CatalogueReader::AddList(const std::string& name) {
    if (catalogue_.Find(name)) {
        Fail("duplicate '" + name + "'");
    }
    ObjectList& list = catalogue_.lists_.emplace_back();
    list.name = name;
    list.position = catalogue_.lists_.size() - 1;
    list.table = FindDaemonTable(name);
    if (list.table == nullptr) {
        Fail("the daemon has no table of '" + name + "'");
    }
    return list;
}

void CatalogueReader::StartObject(const Words& words) {
    Kind kind;
    kind.name = words[1];
    if (words.size() == 2) {
        kind.list = &AddList(kind.name);
    } else if (words.size() == 4 && words[2] == "in") {
        const std::optional<Selection> found = catalogue_.Find(words[3]);
        if (!found || found->kind != nullptr) {
            Fail("no list '" + words[3] + "' above");
        }
        kind.list = found->list;
    } else {
        Fail("expected: object NAME [in LIST]");
    }
    TakeAttributes(kind);
    for (const RuleLine& line : list_rules_[kind.list]) {
        Put(kind, line);
    }
    open_kind_ = &catalogue_.kinds_.emplace_back(std::move(kind));
    open_list_ = nullptr;
    put_.clear();
}

void CatalogueReader::StartList(const Words& words) {
    open_list_ = &AddList(words[1]);
    open_list_->mixed = true;
    open_kind_ = nullptr;
}

/** Adds the attributes of the API object; for a kind that the API lacks, those of its list. */
void CatalogueReader::TakeAttributes(Kind& kind) const {
    std::unique_ptr<BASEApiObject> object = NewApiObject(kind.name);
    if (!object) {
        object = NewApiObject(kind.list->name);
    }
    if (!object) {
        Fail("the API has no object '" + kind.name + "'");
    }
    kind.class_name = object->GetObjectName();
    kind.element_name = kind.name;
    if (kind.name.starts_with("Ts")) {
        kind.element_name[0] = 't';
    }
    for (const BASEApiAttribute* descriptor : object->GetAttributeList()) {
        kind.attributes.push_back({descriptor, DefaultRule(*descriptor), false});
    }
    for (Attribute& attribute : kind.attributes) {
        if (attribute.name() == "InstanceName" && kind.HasAttribute("Name")) {
            attribute.rule = ParseRule("=Name", *attribute.descriptor);
        } else if (IsParentIndex(*kind.list, attribute.name())) {
            attribute.rule = ParseRule("{parent}", *attribute.descriptor);
        }
    }
}

void CatalogueReader::ReadOwn(const Words& words) {
    if (open_kind_ == nullptr) {
        Fail("'own' must follow an object");
    }
    const std::optional<uint32_t> longest = words.size() == 3 ? ParseUint32(words[2]) : std::nullopt;
    if (!longest || open_kind_->HasAttribute(words[1])) {
        Fail("expected: own ATTR LONGEST, with a new attribute and its maximum length");
    }
    open_kind_->own.push_back(
        std::make_unique<STRINGApiAttribute>(words[1], 20, false, -1, int64_t{*longest}, words[1]));
    open_kind_->attributes.insert(open_kind_->attributes.begin(), {open_kind_->own.back().get(), {}, false});
}

void CatalogueReader::ReadRule(const RuleLine& line) {
    if (open_list_ != nullptr) {
        list_rules_[open_list_].push_back(line);
    } else if (open_kind_ == nullptr) {
        Fail("an attribute must follow an object or list");
    } else if (!put_.insert(line.attribute).second) {
        Fail("duplicate attribute '" + line.attribute + "'");
    } else {
        Put(*open_kind_, line);
    }
}

/** Reports an error for the line of the rule, which can be above that of the kind. */
void CatalogueReader::Put(Kind& kind, const RuleLine& line) {
    const size_t asking_line = std::exchange(line_number_, line.number);
    const auto attribute = std::find_if(kind.attributes.begin(), kind.attributes.end(),
                                        [&](const Attribute& each) { return each.name() == line.attribute; });
    if (attribute == kind.attributes.end()) {
        Fail(kind.name + " has no attribute '" + line.attribute + "'");
    }
    try {
        attribute->rule = ParseRule(line.rule, *attribute->descriptor);
    } catch (const RuleError& error) {
        Fail(error.what());
    }
    line_number_ = asking_line;
}

void CatalogueReader::FinishKind(Kind& kind) {
    kind.key = kind.FindAttribute("Index");
    if (!kind.key) {
        kind.key = kind.FindAttribute("DiskIndex");
    }
    const std::span<const std::string_view> read = kind.list->table->attributes;
    for (size_t i = 0; i < kind.attributes.size(); ++i) {
        Attribute& attribute = kind.attributes[i];
        attribute.in_reduced = IsAlwaysReduced(attribute.name()) ||
                               std::find(read.begin(), read.end(), attribute.name()) != read.end();
        kind.whole.push_back(attribute.descriptor);
        if (attribute.in_reduced) {
            kind.reduced.push_back(attribute.descriptor);
        }
        if (attribute.rule.IsParentIndex()) {
            kind.parent = i;
        }
    }
    CheckRules(kind);
    CheckReadAttributes(kind);
}

void CatalogueReader::CheckRules(const Kind& kind) const {
    for (size_t i = 0; i < kind.attributes.size(); ++i) {
        const ValueRule& rule = kind.attributes[i].rule;
        const std::optional<size_t> source = kind.FindAttribute(rule.text);
        if (rule.verb == ValueRule::Verb::kSame && (!source || *source >= i)) {
            Fail(kind.name + ": '" + rule.text + "' is not above " + kind.attributes[i].name());
        }
        if (rule.verb == ValueRule::Verb::kCount && !catalogue_.Find(rule.text)) {
            Fail(kind.name + ": unknown list '" + rule.text + "' after count");
        }
    }
}

void CatalogueReader::CheckReadAttributes(const Kind& kind) const {
    for (const std::string_view attribute : kind.list->table->attributes) {
        if (!kind.HasAttribute(attribute)) {
            Fail(kind.name + " has no attribute '" + std::string(attribute) + "', which the daemon reads");
        }
    }
}

std::optional<size_t> Kind::FindAttribute(std::string_view attribute) const {
    for (size_t i = 0; i < attributes.size(); ++i) {
        if (CompareNoCase(attributes[i].name(), attribute) == 0) {
            return i;
        }
    }
    return std::nullopt;
}

std::string_view Kind::ParentKind() const {
    if (!parent) {
        return {};
    }
    return attributes[*parent].name() == "ControllerIndex" ? "TsController" : "TsEnclosure";
}

Catalogue::Catalogue(std::string_view text) {
    CatalogueReader(*this).Read(text);
}

const Catalogue& Catalogue::Builtin() {
    static const Catalogue catalogue(kObjectsDef);
    return catalogue;
}

std::optional<Selection> Catalogue::Find(std::string_view name) const {
    for (const Kind& kind : kinds_) {
        if (CompareNoCase(kind.name, name) == 0) {
            return Selection{kind.list, &kind};
        }
    }
    for (const ObjectList& list : lists_) {
        if (CompareNoCase(list.name, name) == 0) {
            return Selection{&list, nullptr};
        }
    }
    return std::nullopt;
}

const Kind& Catalogue::KindOf(std::string_view name) const {
    const std::optional<Selection> selection = Find(name);
    if (!selection || selection->kind == nullptr) {
        throw CatalogueError("unknown kind '" + std::string(name) + "'");
    }
    return *selection->kind;
}

const Attribute* Catalogue::FindAttribute(const Selection& selection, std::string_view name) const {
    for (const Kind& kind : kinds_) {
        if (kind.list == selection.list && selection.Matches(kind)) {
            if (const std::optional<size_t> position = kind.FindAttribute(name)) {
                return &kind.attributes[*position];
            }
        }
    }
    return nullptr;
}

bool Catalogue::IsRequestable(const Selection& selection) {
    return selection.kind == nullptr || selection.kind->HasClass();
}

std::optional<Selection> Catalogue::FindRequestable(std::string_view name) const {
    std::optional<Selection> selection = Find(name);
    if (!selection || selection->Name() != name || !IsRequestable(*selection)) {
        return std::nullopt;
    }
    return selection;
}

}  // namespace arraysim
