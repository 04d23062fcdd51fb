#include "fuzz/lib/requestModel.h"

#include <algorithm>
#include <map>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/elementTable.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/agentLibrary.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/requestHandler.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/serviceWindow.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapQueue.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibValues.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/trapCatalogue.h"
#include "fuzz/lib/fuzzCheck.h"
#include "fuzz/lib/trapWords.h"
#include "tests/unit/core/fakes/mibWorld.h"

extern "C" int agentx_realloc_build(netsnmp_session* session, netsnmp_pdu* pdu, u_char** buffer,
                                    size_t* space, size_t* length);

namespace {

using name_type = std::vector<oid>;
using instances = std::map<name_type, int32_t>;

constexpr size_t kMinimumName = 6;
constexpr size_t kOldNumberAt = 6;
constexpr oid kOldNumber = 27405;
constexpr size_t kMaximumOldName = 15;

// ---- inputs ----

int32_t any_variable(FuzzInput& input) {
    const column_record& column = cols[input.Below(NUMBER_OF_COLUMNS)];
    const auto size = static_cast<size_t>(column.is_table() ? column.capacity() : 1);
    return column.first_var + static_cast<int32_t>(input.Below(std::min<size_t>(size, 20)));
}

oid any_arc(FuzzInput& input) {
    static const oid kEdges[] = {0, 127, 128, 2147483647, 2147483648, 4294967295};
    return input.OnceIn(3) ? kEdges[input.Below(std::size(kEdges))] : input.Below(64);
}

std::string old_form(const std::string& text) {
    const name_type full = oid_of(text);
    std::string old = "OLD";
    for (size_t i = 11; i < full.size(); ++i)
        old += "." + std::to_string(full[i]);
    return full.size() > 11 ? old : text;
}

void fill_variable(FuzzInput& input, int32_t index) {
    if (cols[vars[index].col_id].data_type != SMI_BASETYPE_OCTET_STRING)
        store_number(index, static_cast<int64_t>(input.Below(65536)) * 65537);
    else if (input.OnceIn(8))  // some are truncated, and twenty of them exceed the size of a response
        store_text(index, std::string(2048 + input.Below(1280), 'x') + "\xc3\xa4");
    else
        store_text(index, std::string(input.Text(input.Below(8))));
}

int32_t in_same_row(int32_t var_index, int col_id) {
    return cols[col_id].first_var + var_index - cols[vars[var_index].col_id].first_var;
}

const force_definition* force_of(int32_t var_index) {
    const auto found =
        std::ranges::find(forced_notifications, vars[var_index].col_id, &force_definition::column);
    return found == forced_notifications.end() ? nullptr : &*found;
}

std::vector<int> writable_columns() {
    std::vector<int> columns;
    for (int col_id = 0; col_id < NUMBER_OF_COLUMNS; ++col_id) {
        if (cols[col_id].set_fn != nullptr)
            columns.push_back(col_id);
    }
    return columns;
}

// ---- model ----

struct binding {
    name_type name;
    name_type full;  // with the current enterprise number
    bool is_inclusive;
    std::string bytes;

    bool is_old() const { return name != full; }
    bool has_bad_length() const {
        return name.size() < kMinimumName || (is_old() && name.size() > kMaximumOldName);
    }
};

struct expectation {
    int result = SNMP_ERR_NOERROR;
    size_t failed_binding = 0;
    std::map<int32_t, std::string> texts;
    size_t commands = 0;
};

name_type full_form(name_type name) {
    static const oid kCurrent[] = {913, 11000, 2000, 500, 1};
    if (name.size() > kOldNumberAt && name[kOldNumberAt] == kOldNumber) {
        const auto place = name.erase(name.begin() + kOldNumberAt);
        name.insert(place, std::begin(kCurrent), std::end(kCurrent));
    }
    return name;
}

name_type name_of_binding(const netsnmp_variable_list& variable) {
    return {variable.name, variable.name + variable.name_length};
}

std::vector<binding> bindings_of(const snmp_pdu_of_test& pdu) {
    std::vector<binding> bindings;
    for (const netsnmp_request_info& request : pdu.requests()) {
        const netsnmp_variable_list& variable = *request.requestvb;
        const auto* bytes = reinterpret_cast<const char*>(variable.val.string);
        bindings.push_back({name_of_binding(variable), full_form(name_of_binding(variable)),
                            request.inclusive != 0, std::string(bytes, bytes + variable.val_len)});
    }
    return bindings;
}

instances cached_instances() {
    instances cached;
    for (int32_t i = first_cached_from(0); i >= 0; i = first_cached_from(int64_t{i} + 1)) {
        const column_record& column = cols[vars[i].col_id];
        name_type name(column.oid_ptr, column.oid_ptr + column.oid_len);
        size_t length = name.size();
        name.resize(length + 2);
        append_seq_nums(name.data(), &length, i);
        name.resize(length);
        cached.emplace(name, i);
    }
    return cached;
}

// Omits trapAlertState, which each accepted ForceTrap changes.
std::map<int32_t, std::string> values_of_store() {
    std::map<int32_t, std::string> values;
    for (int32_t i = first_cached_from(0); i >= 0; i = first_cached_from(int64_t{i} + 1)) {
        if (vars[i].col_id != COLID_trapAlertState)
            values.emplace(i, value_of(i));
    }
    return values;
}

int error_of_set(const binding& written, const instances& cached) {
    const auto found = cached.find(written.full);
    if (found == cached.end())
        return SNMP_ERR_NOSUCHNAME;
    const column_record& column = cols[vars[found->second].col_id];
    if (column.set_fn == nullptr)
        return SNMP_ERR_NOTWRITABLE;
    return column.is_table() && written.bytes != "ForceTrap" ? SNMP_ERR_BADVALUE : SNMP_ERR_NOERROR;
}

// Returns whether the row has an object. Only objects with an API index may be missing.
bool has_object(const force_definition& force, int32_t var_index) {
    return force.rule != force_rule::index ||
           (get_row_seq(var_index) < static_cast<int32_t>(cols[force.column].maxNumOfRows) &&
            is_cached(in_same_row(var_index, force.index_column)));
}

int commit(const binding& written, const instances& cached, expectation& expected) {
    if (const int error = error_of_set(written, cached); error != SNMP_ERR_NOERROR)
        return error;
    const int32_t var_index = cached.at(written.full);
    expected.texts[var_index] = written.bytes;
    const force_definition* force = force_of(var_index);
    const bool is_command = vars[var_index].col_id == COLID_forceTrapCommand;
    if (force != nullptr ? !has_object(*force, var_index)
                         : is_command && !is_trap_command(written.bytes.c_str()))
        return SNMP_ERR_GENERR;
    expected.commands += force != nullptr || is_command ? 1 : 0;
    return SNMP_ERR_NOERROR;
}

int error_of_binding(int mode, const binding& each, const instances& cached, expectation& expected) {
    if (each.has_bad_length())
        return SNMP_ERR_GENERR;
    switch (mode) {
        case MODE_SET_RESERVE1:
            return error_of_set(each, cached);
        case MODE_SET_COMMIT:
            return commit(each, cached, expected);
        case MODE_GET:
        case MODE_GETNEXT:
        case MODE_SET_RESERVE2:
        case MODE_SET_ACTION:
        case MODE_SET_FREE:
        case MODE_SET_UNDO:
            return SNMP_ERR_NOERROR;
        default:
            return SNMP_ERR_GENERR;
    }
}

expectation expect(int mode, const std::vector<binding>& bindings, const instances& cached) {
    expectation expected;
    for (; expected.failed_binding < bindings.size(); ++expected.failed_binding) {
        expected.result = error_of_binding(mode, bindings[expected.failed_binding], cached, expected);
        if (expected.result != SNMP_ERR_NOERROR)
            break;
    }
    return expected;
}

// Returns the size of a response as the agent library encodes it.
size_t encoded_size(const netsnmp_variable_list* bindings) {
    constexpr int kResponse = 18;
    netsnmp_session session{};
    netsnmp_pdu response{};
    response.version = 0xC1;  // AgentX
    response.command = kResponse;
    response.variables = const_cast<netsnmp_variable_list*>(bindings);
    u_char* buffer = nullptr;
    size_t space = 0;
    size_t length = 0;
    FuzzCheck(agentx_realloc_build(&session, &response, &buffer, &space, &length) == 0,
              "cannot encode the response");
    free(buffer);
    return length;
}

// ---- comparison ----

bool is_value(const netsnmp_variable_list& response) {
    return response.type == ASN_INTEGER || response.type == ASN_UNSIGNED || response.type == ASN_OCTET_STR;
}

bool is_served_form_of(std::string_view served, const std::string& text) {
    if (text.size() <= kLongestServedText)
        return served == text;
    return served.size() <= kLongestServedText && served.size() + 4 > kLongestServedText &&
           text.starts_with(served);
}

void check_value(const netsnmp_variable_list& value, int32_t index) {
    const variable_entry& entry = vars[index];
    bool is_equal = false;
    switch (cols[entry.col_id].data_type) {
        case SMI_BASETYPE_OCTET_STRING: {
            const std::string_view text(reinterpret_cast<const char*>(value.val.string), value.val_len);
            is_equal = value.type == ASN_OCTET_STR && is_served_form_of(text, entry.str);
            break;
        }
        case SMI_BASETYPE_UNSIGNED32:
            is_equal = value.type == ASN_UNSIGNED && static_cast<u_long>(*value.val.integer) == entry.uint;
            break;
        default:
            is_equal = value.type == ASN_INTEGER && *value.val.integer == static_cast<int32_t>(entry.uint);
    }
    if (!is_equal)
        FuzzFail("value differs from the store: " + name_of(index));
}

void check_get(const binding& requested, const netsnmp_variable_list& response, const instances& cached) {
    const auto found = cached.find(requested.full);
    FuzzCheck(name_of_binding(response) == requested.name, "a GET returned another name");
    if (found == cached.end())
        FuzzCheck(response.type == SNMP_NOSUCHINSTANCE, "a GET returned a missing instance");
    else
        check_value(response, found->second);
}

// For a name that is not an instance, checks only for progress. A walk in the old form ends only once.
void check_get_next(const binding& requested, const netsnmp_variable_list& response,
                    const instances& cached) {
    const auto next = cached.upper_bound(requested.full);
    const bool is_instance = cached.contains(requested.full) && !requested.is_inclusive;
    if (!is_value(response)) {
        FuzzCheck(response.type == SNMP_ENDOFMIBVIEW, "neither a value nor the end of the view");
        FuzzCheck(!is_instance || requested.is_old() || next == cached.end(), "a walk ended early");
        return;
    }
    const auto found = cached.find(full_form(name_of_binding(response)));
    FuzzCheck(found != cached.end(), "a GETNEXT returned a missing instance");
    check_value(response, found->second);
    FuzzCheck(requested.full < found->first || (requested.is_inclusive && requested.full == found->first),
              "a walk does not go forward");
    FuzzCheck(!is_instance || found == next, "a walk skips an instance");
}

void check_reads(const snmp_pdu_of_test& pdu, int mode, int result, const std::vector<binding>& requested,
                 const instances& cached) {
    const bool is_too_big = encoded_size(pdu.bindings()) > kMaximumResponse;
    FuzzCheck(result == (is_too_big ? SNMP_ERR_TOOBIG : SNMP_ERR_NOERROR), "the size limit of a response");
    for (size_t i = 0; i < requested.size(); ++i) {
        const netsnmp_variable_list& response = *pdu.requests()[i].requestvb;
        if (mode == MODE_GET)
            check_get(requested[i], response, cached);
        else
            check_get_next(requested[i], response, cached);
    }
}

}  // namespace

void fill_store(FuzzInput& input) {
    clear_cached_range(0, total_vars);
    store_number(cols[COLID_trapAlertState].first_var, 0);
    for (size_t count = input.Below(24); count > 0; --count)
        fill_variable(input, any_variable(input));
}

std::string any_name(FuzzInput& input, const std::string& last) {
    const int32_t cached = first_cached_from(static_cast<int64_t>(input.Below(65536)) * 4);
    std::string text = name_of(cached >= 0 && input.OnceIn(2) ? cached : any_variable(input));
    if (input.OnceIn(8))
        text = old_form(text);
    switch (input.Below(8)) {
        case 0:
        case 1:
        case 2:
            return text;
        case 3:
            text.resize(std::min(text.size(), text.rfind('.')));
            break;
        case 4:
            text = "1";
            break;
        case 5:
            return last;
        default:
            break;
    }
    for (size_t more = input.Below(input.OnceIn(8) ? 128 : 4); more > 0; --more)
        text += "." + std::to_string(any_arc(input));
    return oid_of(text).size() > MAX_OID_LEN ? "R.1.0" : text;
}

std::string any_writable(FuzzInput& input) {
    static const std::vector<int> columns = writable_columns();
    const column_record& column = cols[columns[input.Below(columns.size())]];
    const auto size = static_cast<size_t>(column.is_table() ? column.capacity() : 1);
    const size_t place = input.OnceIn(4) ? size - 1 : input.Below(std::min<size_t>(size, 20));
    const int32_t index = column.first_var + static_cast<int32_t>(place);
    if (!input.OnceIn(8))
        store_text(index, "before");
    const force_definition* force = force_of(index);
    if (force != nullptr && force->index_column >= 0 && !input.OnceIn(4))
        store_number(in_same_row(index, force->index_column), static_cast<int64_t>(input.Below(65536)));
    return input.OnceIn(8) ? old_form(name_of(index)) : name_of(index);
}

std::string any_text(FuzzInput& input) {
    static constexpr const char* kWords[] = {"ForceTrap",           "ForceTrap",        "ForceTrap",
                                             "forcetrap",           "ForceTraps",       "ForceTra",
                                             "1 2 3 202 4 5 6 7 x", "1 2 3 202 4 5 6 7"};
    if (!input.OnceIn(4))
        return kWords[input.Below(std::size(kWords))];
    return std::string(input.Text(input.Below(input.OnceIn(8) ? 600 : 10)));
}

int serve_and_check(snmp_pdu_of_test& pdu, int mode) {
    const bool is_admitted = permission_to_process_pdu > 0;
    const std::vector<binding> bindings = bindings_of(pdu);
    const instances cached = cached_instances();
    const expectation expected = is_admitted ? expect(mode, bindings, cached) : expectation();
    std::map<int32_t, std::string> values = values_of_store();
    for (const auto& [index, text] : expected.texts)
        values[index] = "\"" + text + "\"";
    const size_t known = trapsToSend.size();

    const int result = pdu.serve(mode);
    FuzzCheck(values_of_store() == values, "the store differs from the model");
    FuzzCheck(trapsToSend.size() == known + expected.commands, "wrong number of trap commands");
    if (!is_admitted)
        return result;
    if (expected.result == SNMP_ERR_NOERROR && (mode == MODE_GET || mode == MODE_GETNEXT)) {
        check_reads(pdu, mode, result, bindings, cached);
        return result;
    }
    if (result != expected.result)
        FuzzFail("result " + std::to_string(result) + ", expected " + std::to_string(expected.result) +
                 ":\n" + pdu.answers());
    if (result != SNMP_ERR_NOERROR)
        FuzzCheck(pdu.requests()[expected.failed_binding].status == result, "error at another binding");
    return result;
}

void set_and_check(snmp_pdu_of_test& pdu) {
    for (const int mode : {MODE_SET_RESERVE1, MODE_SET_RESERVE2, MODE_SET_ACTION, MODE_SET_COMMIT}) {
        if (serve_and_check(pdu, mode) != SNMP_ERR_NOERROR) {
            serve_and_check(pdu, mode == MODE_SET_COMMIT ? MODE_SET_UNDO : MODE_SET_FREE);
            return;
        }
    }
}
