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
#include "arraySim/model/modelData.h"
#include "arraySim/model/valueRule.h"

namespace arraysim {

/** An attribute as the API's catalogue describes it, and what the simulator adds. */
struct Attribute {
    const BASEApiAttribute* descriptor = nullptr;
    ValueRule rule;
    bool in_reduced = false;  ///< part of the reduced object that LiteObj asks for

    const std::string& name() const { return descriptor->GetXmlName(); }
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
    std::optional<size_t> parent;  ///< attribute that holds the API index of the controller or enclosure

    /** Whether requests may name it: the catalogue knows it. */
    bool HasClass() const { return class_name == name; }
    /** Position of an attribute, without regard to letter case. */
    std::optional<size_t> FindAttribute(std::string_view attribute) const;
    bool HasAttribute(std::string_view attribute) const { return FindAttribute(attribute).has_value(); }
    /** "TsController" or "TsEnclosure" for a kind with a parent. */
    std::string_view ParentKind() const;
};

/** Objects that one GetList answers together: all of one kind, or several kinds mixed. */
struct ObjectList {
    std::string name;
    size_t position = 0;  ///< place among the lists
    bool mixed = false;
    const DaemonTable* table = nullptr;  ///< that the daemon fills with it; never null
};

/** What a name of an object stands for: a whole list, or one kind in it. */
struct Selection {
    const ObjectList* list = nullptr;
    const Kind* kind = nullptr;  ///< null: every kind of the list

    bool Matches(const Kind& candidate) const { return kind == nullptr || kind == &candidate; }
    const std::string& Name() const { return kind == nullptr ? list->name : kind->name; }
};

/** A mistake in data/array/objects.def, with its line, or a name that the program uses and the catalogue lacks. */
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

    /** An attribute of any kind of the selection, case-insensitively; null for none. */
    const Attribute* FindAttribute(const Selection& selection, std::string_view name) const;

    /** What a request may name as its Object; compares exactly. */
    std::optional<Selection> FindRequestable(std::string_view name) const;
    static bool IsRequestable(const Selection& selection);

  private:
    friend class CatalogueReader;
    std::deque<Kind> kinds_;
    std::deque<ObjectList> lists_;
};

}  // namespace arraysim
