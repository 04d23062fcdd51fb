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

/** An attribute of the API catalogue, with the simulator's additions. */
struct Attribute {
    const BASEApiAttribute* descriptor = nullptr;
    ValueRule rule;
    bool in_reduced = false;  ///< whether a reduced object (LiteObj) has it

    const std::string& name() const { return descriptor->GetXmlName(); }
};

struct ObjectList;

/** One kind of object and its attributes, in the order of responses. */
struct Kind {
    std::string name;
    std::string class_name;    ///< the library's class with its attributes
    std::string element_name;  ///< in responses: the name with a lower-case first letter
    const ObjectList* list = nullptr;
    std::vector<Attribute> attributes;
    ATTRIBUTEList whole;    ///< descriptors of the attributes
    ATTRIBUTEList reduced;  ///< descriptors of a reduced object
    /** Descriptors of attributes that the array has and the catalogue lacks. */
    std::vector<std::unique_ptr<BASEApiAttribute>> own;
    std::optional<size_t> key;     ///< attribute that holds the API index; none if only one object exists
    std::optional<size_t> parent;  ///< attribute that holds the API index of the controller or enclosure

    /** Returns whether the catalogue contains it, so that requests may name it. */
    bool HasClass() const { return class_name == name; }
    /** Returns the position of an attribute; case-insensitive. */
    std::optional<size_t> FindAttribute(std::string_view attribute) const;
    bool HasAttribute(std::string_view attribute) const { return FindAttribute(attribute).has_value(); }
    /** Returns "TsController", "TsEnclosure" or, for a kind without a parent, an empty string. */
    std::string_view ParentKind() const;
};

/** The objects of one GetList: all of one kind, or a mixture of several kinds. */
struct ObjectList {
    std::string name;
    size_t position = 0;  ///< among the lists
    bool mixed = false;
    const DaemonTable* table = nullptr;  ///< which the daemon fills with it; never null
};

/** The meaning of an object's name: a whole list, or one kind in it. */
struct Selection {
    const ObjectList* list = nullptr;
    const Kind* kind = nullptr;  ///< null: every kind of the list

    bool Matches(const Kind& candidate) const { return kind == nullptr || kind == &candidate; }
    const std::string& Name() const { return kind == nullptr ? list->name : kind->name; }
};

/** An error in data/array/objects.def, with its line, or a name that the program uses but the catalogue
    lacks. */
class CatalogueError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/** All kinds and lists. Constant after construction; kinds and lists keep their addresses. */
class Catalogue {
  public:
    /** Parses the contents of objects.def and combines them with the API catalogue. Throws CatalogueError. */
    explicit Catalogue(std::string_view text);
    Catalogue(const Catalogue&) = delete;
    Catalogue& operator=(const Catalogue&) = delete;

    /** Returns the catalogue that is compiled into the program. */
    static const Catalogue& Builtin();

    const std::deque<Kind>& kinds() const { return kinds_; }
    const std::deque<ObjectList>& lists() const { return lists_; }

    /** Finds a list or kind by name; case-insensitive, so that `tsDisk` is found too. */
    std::optional<Selection> Find(std::string_view name) const;
    /** Returns the kind with a name that the program itself uses. Throws CatalogueError if there is none. */
    const Kind& KindOf(std::string_view name) const;

    /** Returns an attribute of any kind of the selection, or null; case-insensitive. */
    const Attribute* FindAttribute(const Selection& selection, std::string_view name) const;

    /** Finds the Object of a request; case-sensitive. */
    std::optional<Selection> FindRequestable(std::string_view name) const;
    static bool IsRequestable(const Selection& selection);

  private:
    friend class CatalogueReader;
    std::deque<Kind> kinds_;
    std::deque<ObjectList> lists_;
};

}  // namespace arraysim
