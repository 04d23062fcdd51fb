#pragma once

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "arraySim/model/catalogue.h"

namespace arraysim {

/** Attributes and what they are compared with or set to. */
using Assignments = std::vector<std::pair<std::string, std::string>>;

/** One step of what a command does. data/calls.def explains the words. */
struct Clause {
    enum class What {
        kUnless,
        kSet,
        kMore,
        kLess,
        kUp,
        kDown,
        kRemove,
        kCreate,
        kSays,
        kHistory,
        kRefuse,
        kNothing,
        kItself
    };

    What what = What::kNothing;
    std::string word;  ///< attribute, kind, error state or value
    std::string text;  ///< why a command is refused
    Assignments assignments;
};

/** Where an association leads: objects whose attributes have these values. */
struct Relation {
    Selection target;
    Assignments conditions;
};

/** What the commands and associations of the API do, beyond Get, GetList and Modify. Constant once made. */
class CallTable {
  public:
    /** Reads the text of a calls.def against the API's catalogue; throws CatalogueError. */
    CallTable(const Catalogue& catalogue, std::string_view text);

    /** The table that is part of the program. */
    static const CallTable& Builtin();

    /** Null for a command that no line speaks of. */
    const std::vector<Clause>* FindEffect(const std::string& object, const std::string& command) const;
    /** Null for a relation that leads to nothing that the array has. */
    const Relation* FindRelation(const std::string& object, const std::string& relation) const;

  private:
    friend class CallReader;
    using Name = std::pair<std::string, std::string>;

    std::map<Name, std::vector<Clause>> effects_;
    std::map<Name, Relation> relations_;
};

}  // namespace arraysim
