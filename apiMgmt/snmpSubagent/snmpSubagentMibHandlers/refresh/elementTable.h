#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "apiMgmt/common/xmlwrap/xmlParser.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibDefinition.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"

/**
 * API indexes of the first and second controller in the last controller refresh. These controllers are
 * parents 1 and 2 of the controller tables. Main thread only.
 */
extern int32_t ctlrIndexFirst;
extern int32_t ctlrIndexSecond;

/**
 * Sets ctlrIndexFirst and ctlrIndexSecond from the controllers of a response, of which there must be at least
 * one. If there is only one, the second index is unchanged. Returns 0, or 1 after logging that a controller
 * has no index.
 */
int note_controller_indexes(const std::vector<parser::XMLElement>& controllers, const char* apiName);

/**
 * The objects of one response, read once: for each object the value of each attribute of the map, and for
 * each parent the objects that are its rows. The merge then reads plain arrays, column by column, so its work
 * grows with objects and columns but not with parents.
 */
class element_table {
  public:
    /**
     * The strings belong to the document of `elements`, which must outlive the table. If there are more
     * objects than rows, only their number is kept.
     */
    element_table(const parser::XMLParser& document, const std::vector<parser::XMLElement>& elements,
                  int table_col_id, int map_size, const attribute_map_entry* map);

    int32_t element_count() const { return static_cast<int32_t>(element_count_); }

    /**
     * Returns the value of an attribute, given its position in the map. data() is null if the object lacks
     * it.
     */
    std::string_view value(int32_t element, int map_place) const {
        return values_[static_cast<size_t>(element) * slot_count_ +
                       slot_of_place_[static_cast<size_t>(map_place)]];
    }

    /**
     * Returns the objects that fill a parent's rows, beginning with row 1. A table without parents has one
     * such list.
     */
    const std::vector<int32_t>& rows_of_parent(uint32_t parent) const { return *rows_[parent]; }

  private:
    void read_values(const parser::XMLParser& document, const std::vector<parser::XMLElement>& elements,
                     int map_size, const attribute_map_entry* map, const char* parent_attribute);
    void assign_rows(const column_record& column);

    size_t element_count_;
    size_t slot_count_ = 0;
    std::vector<size_t> slot_of_place_;      // two positions of the map may read the same attribute
    std::vector<std::string_view> values_;   // element by element
    std::vector<std::string_view> parents_;  // the parent of each object, if the table has parents
    std::vector<std::vector<int32_t>> lists_;
    std::vector<const std::vector<int32_t>*> rows_;
};
