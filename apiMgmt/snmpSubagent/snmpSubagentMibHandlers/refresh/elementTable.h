#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "apiMgmt/common/xmlwrap/xmlParser.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibDefinition.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"

/** API `Index` of the first and second controller of the last controller refresh: which controller the
    parents 1 and 2 of the controller tables are. Main thread only. */
extern int32_t ctlrIndexFirst;
extern int32_t ctlrIndexSecond;

/** Takes them from the controllers of an answer, of which there is at least one. With one controller the
   second index keeps its value. 0, or 1 for one without index, which is logged. */
int note_controller_indexes(const std::vector<parser::XMLElement>& controllers, const char* apiName);

/**
 * The objects of one answer, read once: for each object the first child for each attribute of the map, and
 * for each parent the objects that are its rows. The merge then goes column by column over plain arrays,
 * with work that grows with the objects and the columns, not with the parents.
 */
class element_table {
  public:
    /** The texts belong to the document of `elements`, which has to outlive the table. Of more objects than
        the column has rows only the count is kept. */
    element_table(const parser::XMLParser& document, const std::vector<parser::XMLElement>& elements,
                  int table_col_id, int map_size, const attribute_map_entry* map);

    int32_t element_count() const { return static_cast<int32_t>(element_count_); }

    /** The text of an attribute by its place in the map; data() is null when the object lacks it. */
    std::string_view value(int32_t element, int map_place) const {
        return values_[static_cast<size_t>(element) * slot_count_ +
                       slot_of_place_[static_cast<size_t>(map_place)]];
    }

    /** The objects that fill a parent's rows, from row 1 on, at most as many as it has rows. A table
        without parent has one such list. */
    const std::vector<int32_t>& rows_of_parent(uint32_t parent) const { return *rows_[parent]; }

  private:
    void read_values(const parser::XMLParser& document, const std::vector<parser::XMLElement>& elements,
                     int map_size, const attribute_map_entry* map, const char* parent_attribute);
    void assign_rows(const column_record& column);

    size_t element_count_;
    size_t slot_count_ = 0;
    std::vector<size_t> slot_of_place_;      // two places of the map may read the same attribute
    std::vector<std::string_view> values_;   // element after element
    std::vector<std::string_view> parents_;  // each object's parent attribute; empty for a table without
    std::vector<std::vector<int32_t>> lists_;
    std::vector<const std::vector<int32_t>*> rows_;
};
