#include "fuzz/lib/literalMerge.h"

#include <algorithm>
#include <cstdlib>

#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibDefinition.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"

namespace {

int64_t number(const std::string& text, int64_t least, int64_t greatest) {
    return std::clamp<int64_t>(strtoll(text.c_str(), nullptr, 10), least, greatest);
}

int32_t signed_number(const std::string& text) {
    return static_cast<int32_t>(number(text, INT32_MIN, INT32_MAX));
}

uint32_t unsigned_number(const std::string& text) {
    return static_cast<uint32_t>(number(text, 0, UINT32_MAX));
}

std::vector<parser::XMLElement> objects_of(const parser::XMLElement& list, const std::string& apiName) {
    std::vector<parser::XMLElement> found;
    std::vector<std::string> kinds = {apiName};
    if (apiName == "tsServer")
        kinds = {"tsPhysicalServer", "tsRemoteTessera", "tsServerCluster", "tsVirtualServer"};
    for (const std::string& kind : kinds) {
        for (parser::XMLElement child = list.GetFirstChild(); child; child = child.GetNextSibling()) {
            const std::string_view tag = child.GetTagName();
            if (tag == kind || (kind[0] == 't' && tag == "T" + kind.substr(1)))
                found.push_back(child);
        }
    }
    return found;
}

}  // namespace

literal_merge::literal_merge() : vars(static_cast<size_t>(total_vars)) {}

void literal_merge::mark(std::string& str, uint32_t& number, bool cached) {
    number = number * 31 + static_cast<uint32_t>(str.size()) * 2 + (cached ? 1 : 0);
    str += "+";
}

void literal_merge::mark_real_variable(int32_t var_index) {
    mark(::vars[var_index].str, ::vars[var_index].uint, is_cached(var_index));
}

int literal_merge::process_table_info(int col_id, const std::string& apiName,
                                      const std::vector<attribute_map_entry>& map, const std::string& xml) {
    parser::XMLParser document(nullptr);
    if (!document.ParseXMLString(xml))
        return 1;
    const parser::XMLElement root = document.GetDocumentElement();
    const parser::XMLElement status = root.GetFirstChildByTagName("ApiMethodReturn");
    if (root.GetTagName() != "lumapi" || status.GetFirstChildByTagName("Successful").GetText() != "True")
        return 1;
    elements list;
    const elements arrays = root.GetChildElemsByTagName("ReturnObjectArray");
    if (!arrays.empty())
        list = objects_of(arrays[0], apiName);
    if (apiName == "tsController" && !list.empty()) {
        const elements first = list[0].GetChildElemsByTagName("Index");
        if (first.empty())
            return 1;
        index_first = signed_number(std::string(first[0].GetText()));
        if (list.size() == 2) {
            const elements second = list[1].GetChildElemsByTagName("Index");
            if (second.empty())
                return 1;
            index_second = signed_number(std::string(second[0].GetText()));
        }
    }
    if (list.size() < cols[col_id].minNumOfRows)
        return 1;
    if (get_col_info(col_id, list, nullptr, false) != 0)
        return 1;
    for (const attribute_map_entry& entry : map) {
        if (get_col_info(static_cast<int>(entry.col_id), list, entry.attribute, entry.post_process) != 0)
            return 1;
    }
    return 0;
}

bool literal_merge::matches(const parser::XMLElement& element, int col_id, uint32_t parent,
                            bool* has_tag) const {
    const bool is_controller = (cols[col_id].col_flags & COL_FLAG_controller_parent) != 0;
    const elements tags =
        element.GetChildElemsByTagName(is_controller ? "ControllerIndex" : "EnclosureIndex");
    *has_tag = !tags.empty();
    if (tags.empty())
        return false;
    const std::string text(tags[0].GetText());
    if (is_controller)
        return signed_number(text) == (parent == 0 ? index_first : index_second);
    const variable& enclosure = vars[static_cast<size_t>(cols[COLID_tsEnclApiIndex].first_var) + parent];
    return enclosure.cached && enclosure.uint == unsigned_number(text);
}

void literal_merge::merge(variable& target, int col_id, const parser::XMLElement& element,
                          const char* attribute, int32_t child_index, bool has_post_process) {
    target.cached = false;
    if (attribute == nullptr) {
        target.uint = static_cast<uint32_t>(child_index + 1);
        target.cached = true;
        return;
    }
    const elements children = element.GetChildElemsByTagName(attribute);
    if (children.empty()) {
        target.str = "no api object";
        if (has_post_process)
            mark(target.str, target.uint, target.cached);
        else
            target.uint = 666;
        return;
    }
    const std::string text(children[0].GetText());
    if (text != target.str || text.empty()) {
        target.str = text;
        const uint32_t type = cols[col_id].data_type;
        if (type != SMI_BASETYPE_OCTET_STRING)
            target.uint = type == SMI_BASETYPE_UNSIGNED32 ? unsigned_number(text)
                                                          : static_cast<uint32_t>(signed_number(text));
    }
    target.cached = true;
    if (has_post_process)
        mark(target.str, target.uint, target.cached);
}

int literal_merge::get_col_info(int col_id, const elements& list, const char* attribute,
                                bool has_post_process) {
    const column_record& column = cols[col_id];
    const bool is_table = (column.col_flags & COL_FLAG_is_table) != 0;
    const bool has_parent = column.col_flags > COL_FLAG_is_table;
    const size_t rows = column.maxNumOfRows;
    const uint32_t parents = std::max(column.maxNumOfParents, 1U);
    if (is_table && list.size() > parents * rows)
        return 1;
    for (uint32_t p = 0; p < parents; ++p) {
        const size_t first = static_cast<size_t>(column.first_var) + p * rows;
        size_t child_index = 0;
        for (const parser::XMLElement& element : list) {
            bool has_tag = true;
            if (has_parent && !matches(element, col_id, p, &has_tag)) {
                if (!has_tag)
                    break;
                continue;
            }
            merge(vars[first + child_index], col_id, element, attribute, static_cast<int32_t>(child_index),
                  has_post_process);
            if (!is_table || ++child_index == rows)
                break;
        }
        for (size_t row = child_index; is_table && row < rows; ++row)
            vars[first + row].cached = false;
    }
    return 0;
}
