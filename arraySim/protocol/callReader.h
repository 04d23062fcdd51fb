#pragma once

#include <deque>
#include <string>
#include <string_view>

#include "arraySim/protocol/callTable.h"

namespace arraysim {

/** Reads data/calls.def, whose head describes the form, into a table. */
class CallReader {
  public:
    CallReader(const Catalogue& catalogue, CallTable& table) : catalogue_(catalogue), table_(table) {}

    /** Throws CatalogueError with the line of the first mistake. */
    void Read(std::string_view text);

  private:
    using Words = std::deque<std::string>;

    void ReadLine(Words words);
    void ReadEffect(const std::string& command, Words words);
    void ReadRelation(const std::string& relation, Words words);
    Clause TakeClause(Words& words) const;
    std::string Take(Words& words) const;
    Assignments TakeAssignments(Words& words) const;
    /** The first attribute that no kind of the selection has; empty for none. */
    std::string FirstUnknown(const Selection& selection, const Assignments& assignments) const;
    void CheckAttributes(const Selection& selection, const Assignments& assignments) const;
    /** Of the object or, for commands that name no instance, of the array. */
    void CheckSubject(const Clause& clause) const;
    [[noreturn]] void Fail(const std::string& why) const;

    const Catalogue& catalogue_;
    CallTable& table_;
    std::string object_;
    size_t line_number_ = 0;
};

}  // namespace arraysim
