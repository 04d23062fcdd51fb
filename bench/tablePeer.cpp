// Each of these headers needs those above it.
// clang-format off
#include <net-snmp/net-snmp-config.h>
#include <net-snmp/net-snmp-includes.h>
#include <net-snmp/agent/net-snmp-agent-includes.h>
// clang-format on

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <string>

// The subagent with which the daemon is compared: one table in Net-SNMP's own table_container, served over
// AgentX by the library's usual loop. scripts/lib/measurePeer.py runs it next to the daemon, with its own
// master agent.

namespace {

constexpr oid kTable[] = {1, 3, 6, 1, 4, 1, 8072, 9999, 9999, 913};  // netSnmpPlaypen
constexpr unsigned kNumberColumn = 2;
constexpr unsigned kStateColumn = 3;
constexpr unsigned kNameColumn = 4;
constexpr long kMaximumRows = 100000;

// The container compares rows by their first member.
struct row {
    netsnmp_index index;
    oid number;
    std::string name;
};

volatile sig_atomic_t is_stopped = 0;

void store_value(netsnmp_variable_list* binding, unsigned column, const row& row) {
    const auto number = static_cast<u_long>(row.number);
    const long state = 1;
    if (column == kNumberColumn)
        snmp_set_var_typed_value(binding, ASN_UNSIGNED, &number, sizeof number);
    else if (column == kStateColumn)
        snmp_set_var_typed_value(binding, ASN_INTEGER, &state, sizeof state);
    else
        snmp_set_var_typed_value(binding, ASN_OCTET_STR, row.name.data(), row.name.size());
}

int serve(netsnmp_mib_handler*, netsnmp_handler_registration*, netsnmp_agent_request_info* info,
          netsnmp_request_info* requests) {
    for (; requests != nullptr; requests = requests->next) {
        const auto* found = static_cast<row*>(netsnmp_container_table_row_extract(requests));
        const netsnmp_table_request_info* table = netsnmp_extract_table_info(requests);
        if (found != nullptr && table != nullptr)
            store_value(requests->requestvb, table->colnum, *found);
        else if (info->mode == MODE_GET)
            netsnmp_set_request_error(info, requests, SNMP_NOSUCHINSTANCE);
    }
    return SNMP_ERR_NOERROR;
}

// The rows must not move while the table is registered.
bool register_table(std::deque<row>& rows, long count) {
    netsnmp_container* container = netsnmp_container_find("peer:table_container");
    for (long number = 1; number <= count; ++number) {
        row& added = rows.emplace_back();
        added.number = static_cast<oid>(number);
        added.name = "row number " + std::to_string(number);
        added.index = {1, &added.number};
        CONTAINER_INSERT(container, &added);
    }
    auto* columns = SNMP_MALLOC_TYPEDEF(netsnmp_table_registration_info);
    netsnmp_table_helper_add_indexes(columns, ASN_UNSIGNED, 0);
    columns->min_column = kNumberColumn;
    columns->max_column = kNameColumn;
    netsnmp_handler_registration* registration =
        netsnmp_create_handler_registration("peer", serve, kTable, std::size(kTable), HANDLER_CAN_RONLY);
    return netsnmp_container_table_register(registration, columns, container,
                                            TABLE_CONTAINER_KEY_NETSNMP_INDEX) == MIB_REGISTERED_OK;
}

}  // namespace

int main(int argc, char** argv) {
    const long count = argc == 3 ? strtol(argv[2], nullptr, 10) : 0;
    if (count < 1 || count > kMaximumRows) {
        fprintf(stderr, "usage: tablePeer AGENTX-SOCKET ROWS, for example unix:/tmp/peer/agentx 500\n");
        return 2;
    }
    setenv("MIBS", "", 1);
    signal(SIGTERM, [](int) { is_stopped = 1; });
    netsnmp_ds_set_boolean(NETSNMP_DS_APPLICATION_ID, NETSNMP_DS_AGENT_ROLE, 1);
    netsnmp_ds_set_string(NETSNMP_DS_APPLICATION_ID, NETSNMP_DS_AGENT_X_SOCKET, argv[1]);
    init_agent("tablePeer");
    std::deque<row> rows;
    if (!register_table(rows, count)) {
        fprintf(stderr, "tablePeer: cannot register the table\n");
        return 1;
    }
    init_snmp("tablePeer");
    while (is_stopped == 0)
        agent_check_and_process(1);
    snmp_shutdown("tablePeer");
    return 0;
}
