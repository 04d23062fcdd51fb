// Sequences of PDUs at the handler: GET, GETNEXT and the phases of a SET, with names of 0 to 128
// sub-identifiers anywhere in and around the MIB, in both enterprise numbers. A GET gives what the store
// holds; a GETNEXT goes forward; a SET changes a column that may be written and no other.

#include <cstring>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/oidLookup.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/requestHandler.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/serviceWindow.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapQueue.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/netSnmpHeaders.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"
#include "fuzz/lib/fuzzCheck.h"
#include "fuzz/lib/fuzzInput.h"
#include "fuzz/lib/fuzzWorld.h"
#include "tests/unit/core/fakes/fakeClock.h"
#include "tests/unit/core/fakes/snmpPdu.h"
#include "tests/unit/core/fakes/transcript.h"

namespace {

constexpr int kModes[] = {
    MODE_GET,        MODE_GETNEXT,    MODE_GETBULK,  MODE_SET_RESERVE1, MODE_SET_RESERVE2,
    MODE_SET_ACTION, MODE_SET_COMMIT, MODE_SET_FREE, MODE_SET_UNDO,     77};

using name_type = std::vector<oid>;

int32_t any_variable(FuzzInput& input) {
    const column_record& column = cols[input.Below(NUMBER_OF_COLUMNS)];
    const size_t size = column.is_table() ? column.maxNumOfRows * std::max(column.maxNumOfParents, 1U) : 1;
    return column.first_var + static_cast<int32_t>(input.Below(std::min<size_t>(size, 20)));
}

oid any_arc(FuzzInput& input) {
    static const oid kEdges[] = {0, 127, 128, 2147483647, 2147483648, 4294967295};
    return input.OnceIn(3) ? kEdges[input.Below(std::size(kEdges))] : input.Below(64);
}

// `last` is the name that the latest answer had, with which a walk goes on.
std::string any_name(FuzzInput& input, const std::string& last) {
    std::string text = name_of(any_variable(input));
    switch (input.Below(8)) {
        case 0:
            return text;
        case 1: {  // the old number stands for the first 11 sub-identifiers
            const name_type full = oid_of(text);
            std::string old = "OLD";
            for (size_t i = 11; i < full.size(); ++i)
                old += "." + std::to_string(full[i]);
            return full.size() > 11 ? old : text;
        }
        case 2:
            text.resize(std::min(text.size(), text.rfind('.')));
            break;
        case 3:
            text = "1";
            break;
        case 4:
        case 5:
            return last;
        default:
            break;
    }
    for (size_t more = input.Below(input.OnceIn(8) ? 128 : 4); more > 0; --more)
        text += "." + std::to_string(any_arc(input));
    const name_type whole = oid_of(text);
    return whole.size() > MAX_OID_LEN ? "R.1.0" : text;
}

bool may_be_written(int32_t var_index) {
    return cols[vars[var_index].col_id].set_fn != nullptr;
}

void fill_store(FuzzInput& input) {
    clear_cached_range(0, total_vars);
    for (size_t count = input.Below(24); count > 0; --count) {
        const int32_t index = any_variable(input);
        if (cols[vars[index].col_id].data_type == SMI_BASETYPE_OCTET_STRING)
            store_text(index, std::string(input.Text(input.Below(8))));
        else
            store_number(index, static_cast<int64_t>(input.Below(65536)));
    }
}

// What a SET must leave alone: a sum over everything that cannot be written.
uint64_t read_only_sum() {
    uint64_t sum = 1469598103934665603U;
    for (int32_t i = first_cached_from(0); i >= 0; i = first_cached_from(int64_t{i} + 1)) {
        if (!may_be_written(i))
            sum = (sum ^ std::hash<std::string>()(value_of(i)) ^ static_cast<uint64_t>(i)) * 1099511628211U;
    }
    return sum;
}

std::string name_in(const std::string& answer) {
    return answer.substr(0, answer.find(" = "));
}

void check_get(const std::string& name, const std::string& answer) {
    const name_type asked = oid_of(name);
    const std::string value = answer.substr(answer.find(" = ") + 3);
    if (value[0] == '"' || value.rfind("gauge", 0) == 0 || value.rfind("integer", 0) == 0)
        if (oid_of(name_in(answer)) != asked)
            FuzzFail("a GET answered another name: " + answer);
}

void check_get_next(const std::string& name, const std::string& answer) {
    if (answer.find("endOfMibView") != std::string::npos || answer.find(" !") != std::string::npos ||
        answer.find(" = null") != std::string::npos)
        return;
    const name_type asked = oid_of(name);
    const name_type next = oid_of(name_in(answer));
    if (snmp_oid_compare(asked.data(), asked.size(), next.data(), next.size()) >= 0)
        FuzzFail("a walk does not go forward: " + name + " then " + answer);
}

void run_pdu(FuzzInput& input, std::string& last) {
    const int mode = kModes[input.Below(std::size(kModes))];
    const bool is_set = mode != MODE_GET && mode != MODE_GETNEXT && mode != MODE_GETBULK;
    snmp_pdu_of_test pdu(mode);
    std::vector<std::string> names;
    for (size_t count = 1 + input.Below(4); count > 0; --count) {
        names.push_back(any_name(input, last));
        if (!is_set)
            pdu.ask(names.back());
        else if (input.OnceIn(4))
            pdu.set_number(names.back(), static_cast<long>(input.Below(256)));
        else
            pdu.set(names.back(), std::string(input.Text(input.Below(input.OnceIn(8) ? 600 : 6))));
    }
    const uint64_t before = read_only_sum();
    pdu.serve();
    FuzzCheck(read_only_sum() == before, "a request changed what cannot be written");
    for (size_t i = 0; i < names.size(); ++i) {
        if (mode == MODE_GET)
            check_get(names[i], pdu.answer(i));
        else if (mode == MODE_GETNEXT)
            check_get_next(names[i], pdu.answer(i));
    }
    last = name_in(pdu.answer(names.size() - 1));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static FuzzMibWorld world;
    verbose = false;
    last_oid_len = 0;
    FuzzInput input(data, size);
    fill_store(input);
    std::string last = "1";
    begin_agent_tick();
    for (int count = 0; count < 32 && !input.IsEmpty(); ++count) {
        run_pdu(input, last);
        if (input.OnceIn(3)) {
            end_agent_tick();
            fake_clock::advance(10'000);
            begin_agent_tick();
        }
    }
    end_agent_tick();
    trapsToSend.clear();
    transcript::take();
    return 0;
}
