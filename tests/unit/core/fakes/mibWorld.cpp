#include "tests/unit/core/fakes/mibWorld.h"

#include <sstream>

namespace {

const std::string kRoot = "1.3.6.1.4.1.913.11000.2000.500.1.2";
const std::string kOld = "1.3.6.1.4.1.27405";

std::string replace_beginning(const std::string& text, const std::string& from, const std::string& to) {
    const bool fits = text.rfind(from, 0) == 0 && (text.size() == from.size() || text[from.size()] == '.');
    return fits ? to + text.substr(from.size()) : text;
}

}  // namespace

std::vector<oid> oid_of(const std::string& text) {
    std::istringstream arcs(replace_beginning(replace_beginning(text, "R", kRoot), "OLD", kOld));
    std::vector<oid> name;
    for (std::string arc; std::getline(arcs, arc, '.');)
        name.push_back(std::stoul(arc));
    return name;
}

std::string text_of(const oid* name, size_t length) {
    std::string text;
    for (size_t i = 0; i < length; ++i)
        text += (i == 0 ? "" : ".") + std::to_string(name[i]);
    return replace_beginning(replace_beginning(text, kRoot, "R"), kOld, "OLD");
}

std::string name_of(int32_t var_index) {
    if (var_index < 0)
        return "-";
    const column_record& column = cols[vars[var_index].col_id];
    oid name[MAX_handled_oidlen + 1];
    size_t length = column.oid_len;
    std::copy_n(column.oid_ptr, length, name);
    append_seq_nums(name, &length, var_index);
    return text_of(name, length);
}

int32_t index_of(const std::string& name) {
    for (int32_t i = 0; i < total_vars; ++i) {
        if (name_of(i) == name)
            return i;
    }
    ADD_FAILURE() << name << " is no variable";
    return 0;
}

int32_t var_at(int col_id, int32_t row, int32_t parent) {
    return cols[col_id].first_var + (parent - 1) * static_cast<int32_t>(cols[col_id].maxNumOfRows) + row - 1;
}

std::string value_of(int32_t var_index) {
    const variable_entry& entry = vars[var_index];
    if (!is_cached(var_index))
        return "-";
    switch (cols[entry.col_id].data_type) {
        case SMI_BASETYPE_OCTET_STRING:
            return "\"" + entry.str + "\"";
        case SMI_BASETYPE_UNSIGNED32:
            return std::to_string(entry.uint);
        default:
            return std::to_string(static_cast<int32_t>(entry.uint));
    }
}

MibWorld::MibWorld() {
    delete snmpSubagentComm;
    snmpSubagentComm = new SnmpSubagentComm;
    build_api_request_prefix("KEY");
    verbose = true;
    EXPECT_EQ(init_all_oids(), 0);
    transcript::take();
}

void MibWorld::put(const std::string& name, const std::string& text) {
    store_text(index_of(name), text);
}

void MibWorld::put(const std::string& name, uint32_t number) {
    store_number(index_of(name), number);
}
