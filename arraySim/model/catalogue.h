#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "apiMgmt/apiStub/base/apiAttributes/baseApiAttribute.h"

namespace arraysim {

/** How the value of an attribute is made. The words are those of data/objects.def, which explains them. */
struct Rule {
    enum class Verb {
        kIndex,
        kParent,
        kKind,
        kEmpty,
        kText,
        kNumber,
        kBool,
        kFirst,
        kPick,
        kSize,
        kTemperature,
        kRail,
        kDate,
        kSame,
        kCount
    };

    Verb verb = Verb::kEmpty;
    int64_t low = 0;
    int64_t high = 0;
    std::string text;                  ///< template, attribute of `same`, list of `count`
    std::vector<std::string> choices;  ///< of `pick`; attributes and values of `count`
};

/** An attribute as the API's catalogue describes it, and what the simulator adds. */
struct Attribute {
    const BASEApiAttribute* descriptor = nullptr;
    Rule rule;
    bool in_reduced = false;  ///< part of the reduced object that LiteObj asks for

    const std::string& name() const { return descriptor->GetXmlName(); }
};

/** One argument of a trap command: a number, or something of the object that the command is about. */
struct EventArgument {
    enum class What { kNumber, kIndex, kIndexBefore, kRow, kParentIndex, kParentRow };

    What what = What::kNumber;
    int32_t number = 0;
};

/** How the array reports that one of its objects has changed. data/objects.def explains the words. */
struct EventRule {
    int32_t trap = 0;
    int32_t id[3] = {};
    EventArgument arguments[3];  ///< A, B, C
    std::string attribute = "Status";
    std::string good = "Up";  ///< value of the attribute that ends what was reported
};

struct ObjectList;

/** One kind of object and its attributes, in the order of the answers. */
struct Kind {
    std::string name;
    std::string class_name;    ///< of the library's class that has its attributes
    std::string element_name;  ///< of the element in answers: the name with a small letter in front
    const ObjectList* list = nullptr;
    std::vector<Attribute> attributes;
    ATTRIBUTEList whole;    ///< their descriptors
    ATTRIBUTEList reduced;  ///< those of a reduced object
    /** What the array has beyond the catalogue: descriptors that belong to this kind. */
    std::vector<std::unique_ptr<BASEApiAttribute>> own;
    std::optional<size_t> key;     ///< attribute that holds the API index; none when only one object exists
    std::optional<size_t> parent;  ///< attribute with rule `parent`

    /** Whether requests may name it: the catalogue knows it. */
    bool HasClass() const { return class_name == name; }
    /** Position of an attribute, without regard to letter case. */
    std::optional<size_t> FindAttribute(std::string_view attribute) const;
    bool HasAttribute(std::string_view attribute) const { return FindAttribute(attribute).has_value(); }
    /** "TsController" or "TsEnclosure" for a kind with a parent. */
    std::string_view ParentKind() const;
};

enum class ParentKind { kNone, kController, kEnclosure };

/** Objects that one GetList answers together: all of one kind, or several kinds mixed. */
struct ObjectList {
    std::string name;
    size_t position = 0;  ///< place among the lists
    uint32_t rows = 0;    ///< capacity of the daemon's table, for each parent
    ParentKind per = ParentKind::kNone;
    bool mixed = false;
    std::optional<EventRule> event;  ///< none: changes are not reported

    /** Objects that the daemon's table takes altogether. */
    size_t Capacity() const;
};

/** What a name of an object stands for: a whole list, or one kind in it. */
struct Selection {
    const ObjectList* list = nullptr;
    const Kind* kind = nullptr;  ///< null: every kind of the list

    bool Matches(const Kind& candidate) const { return kind == nullptr || kind == &candidate; }
    const std::string& Name() const { return kind == nullptr ? list->name : kind->name; }
};

/** A mistake in a data file, with its line. */
class CatalogueError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/** All kinds and lists. Constant once it is made; kinds and lists keep their addresses. */
class Catalogue {
  public:
    /** Reads the text of an objects.def against the catalogue of the API; throws CatalogueError. */
    explicit Catalogue(std::string_view text);
    Catalogue(const Catalogue&) = delete;
    Catalogue& operator=(const Catalogue&) = delete;

    /** The catalogue that is part of the program. */
    static const Catalogue& Builtin();

    const std::deque<Kind>& kinds() const { return kinds_; }
    const std::deque<ObjectList>& lists() const { return lists_; }

    /** By the name of a list or kind, without regard to letter case, so that `tsDisk` is found too. */
    std::optional<Selection> Find(std::string_view name) const;
    /** A name that the program itself uses: it must exist. */
    const Kind& KindOf(std::string_view name) const;

    /** What a request may name as its Object; compares exactly. */
    std::optional<Selection> FindRequestable(std::string_view name) const;
    static bool IsRequestable(const Selection& selection);

  private:
    friend class CatalogueReader;
    std::deque<Kind> kinds_;
    std::deque<ObjectList> lists_;
};

}  // namespace arraysim
