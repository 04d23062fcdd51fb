#include "arraySim/protocol/callTable.h"

#include "arraySim/model/dataFiles.h"
#include "arraySim/protocol/callReader.h"

namespace arraysim {

CallTable::CallTable(const Catalogue& catalogue, std::string_view text) {
    CallReader(catalogue, *this).Read(text);
}

const CallTable& CallTable::Builtin() {
    static const CallTable table(Catalogue::Builtin(), kCallsDef);
    return table;
}

const std::vector<Clause>* CallTable::FindEffect(const std::string& object,
                                                 const std::string& command) const {
    const auto found = effects_.find({object, command});
    return found == effects_.end() ? nullptr : &found->second;
}

const Relation* CallTable::FindRelation(const std::string& object, const std::string& relation) const {
    const auto found = relations_.find({object, relation});
    return found == relations_.end() ? nullptr : &found->second;
}

}  // namespace arraysim
