#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/elementTable.h"

#include <algorithm>
#include <string>
#include <unordered_map>

#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

using parser::XMLElement;
using parser::XMLTag;

int32_t ctlrIndexFirst = 0;
int32_t ctlrIndexSecond = 0;

namespace {

const std::vector<int32_t> kNoRows;

const char* parent_attribute_of(const column_record& column) {
    if ((column.col_flags & COL_FLAG_controller_parent) != 0)
        return "ControllerIndex";
    return (column.col_flags & COL_FLAG_enclosure_parent) != 0 ? "EnclosureIndex" : nullptr;
}

// Reads the API index of a parent (from 0) of a table. Returns false if there is no such parent.
bool index_of_parent(const column_record& column, uint32_t parent, uint32_t* api_index) {
    if ((column.col_flags & COL_FLAG_controller_parent) != 0) {
        *api_index = static_cast<uint32_t>(parent == 0 ? ctlrIndexFirst : ctlrIndexSecond);
        return true;
    }
    const auto row = static_cast<int32_t>(cols[COLID_tsEnclApiIndex].first_var + parent);
    *api_index = vars[row].uint;
    return is_cached(row);
}

// The slot that each tag of a document fills; most tags fill none.
class slots_by_tag {
  public:
    void add(XMLTag tag, size_t slot) {
        if (tag == parser::kNoTag)
            return;
        if (slots_.size() <= tag)
            slots_.resize(tag + 1, kNone);
        slots_[tag] = slot;
    }
    size_t of(XMLTag tag) const { return tag < slots_.size() ? slots_[tag] : kNone; }

    static constexpr size_t kNone = SIZE_MAX;

  private:
    std::vector<size_t> slots_;
};

}  // namespace

int note_controller_indexes(const std::vector<XMLElement>& controllers, const char* apiName) {
    const XMLElement first = controllers[0].GetFirstChildByTagName("Index");
    if (!first) {
        SUBAGENT_LOG(
            warning,
            "tsController does not contain 'Index' for 1st ctlr: in contents of temp_elem: %s, apiName: %s\n",
            controllers[0].GetElementContent().c_str(), apiName);
        return 1;
    }
    ctlrIndexFirst = ParseInt(first.GetText());
    if (controllers.size() != 2)
        return 0;
    const XMLElement second = controllers[1].GetFirstChildByTagName("Index");
    if (!second) {
        SUBAGENT_LOG(warning,
                     "tsController does not contain 'Index' for 2nd ctlr: in contents of temp_elem: %s\n",
                     controllers[1].GetElementContent().c_str());
        return 1;
    }
    ctlrIndexSecond = ParseInt(second.GetText());
    return 0;
}

element_table::element_table(const parser::XMLParser& document, const std::vector<XMLElement>& elements,
                             int table_col_id, int map_size, const attribute_map_entry* map)
    : element_count_(elements.size()) {
    const column_record& column = cols[table_col_id];
    // get_col_info will reject them, so no memory is spent on what may be millions of objects.
    if (column.is_table() && element_count() > column.capacity())
        return;
    read_values(document, elements, map_size, map, parent_attribute_of(column));
    assign_rows(column);
}

// Reads the children of each object once, however many columns the map has, because a full array's list has
// hundreds of thousands of children. Each distinct attribute of the map has a slot, which is found by the
// number of its tag in this document. Of several children with one tag, the first counts.
void element_table::read_values(const parser::XMLParser& document, const std::vector<XMLElement>& elements,
                                int map_size, const attribute_map_entry* map, const char* parent_attribute) {
    slots_by_tag slots;
    std::unordered_map<std::string_view, size_t> slot_of_attribute;
    for (int place = 0; place < map_size; ++place) {
        const auto [found, is_new] =
            slot_of_attribute.try_emplace(map[place].attribute, slot_of_attribute.size());
        slot_of_place_.push_back(found->second);
        if (is_new)
            slots.add(document.FindTag(map[place].attribute), found->second);
    }
    slot_count_ = slot_of_attribute.size();
    values_.resize(element_count_ * slot_count_);
    const XMLTag parent_tag =
        parent_attribute != nullptr ? document.FindTag(parent_attribute) : parser::kNoTag;
    parents_.resize(parent_attribute != nullptr ? element_count_ : 0);

    for (size_t i = 0; i < element_count_; ++i) {
        std::string_view* values = values_.data() + i * slot_count_;
        for (XMLElement child = elements[i].GetFirstChild(); child; child = child.GetNextSibling()) {
            const XMLTag tag = child.GetTag();
            if (tag == parent_tag && parent_tag != parser::kNoTag && parents_[i].data() == nullptr)
                parents_[i] = child.GetText();
            const size_t slot = slots.of(tag);
            if (slot != slots_by_tag::kNone && values[slot].data() == nullptr)
                values[slot] = child.GetText();
        }
    }
}

// Groups the objects by parent index, in the order of the response and with at most as many as a parent has
// rows, then assigns each parent its group. The parents' indexes are those of the latest refresh of
// controllers or enclosures; a parent that no longer exists has no rows.
void element_table::assign_rows(const column_record& column) {
    const size_t rows = column.maxNumOfRows;
    if (parents_.empty() && !column.has_parent()) {
        lists_.emplace_back();
        for (size_t i = 0; i < std::min(element_count_, rows); ++i)
            lists_[0].push_back(static_cast<int32_t>(i));
        rows_.push_back(&lists_[0]);
        return;
    }
    // The string must be converted in the same way as the index that it is compared with.
    const bool is_enclosure = (column.col_flags & COL_FLAG_enclosure_parent) != 0;
    const uint32_t index_type = is_enclosure ? cols[COLID_tsEnclApiIndex].data_type : SMI_BASETYPE_INTEGER32;
    std::unordered_map<uint32_t, size_t> list_of_index;
    for (size_t i = 0; i < element_count_; ++i) {
        if (parents_[i].data() == nullptr)  // an object without a parent ends the list for all parents
            break;
        const uint32_t api_index = number_from_text(parents_[i], index_type);
        const auto [found, is_new] = list_of_index.try_emplace(api_index, lists_.size());
        if (is_new)
            lists_.emplace_back();
        std::vector<int32_t>& list = lists_[found->second];
        if (list.size() < rows)
            list.push_back(static_cast<int32_t>(i));
    }
    for (uint32_t parent = 0; parent < column.maxNumOfParents; ++parent) {
        uint32_t api_index = 0;
        const auto found =
            index_of_parent(column, parent, &api_index) ? list_of_index.find(api_index) : list_of_index.end();
        rows_.push_back(found != list_of_index.end() ? &lists_[found->second] : &kNoRows);
    }
}
