#include <net-snmp/net-snmp-config.h>
// The header below needs the one above.
#include <net-snmp/net-snmp-includes.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

// The cost of sending notifications without the daemon: builds COUNT notifications with the variables of a
// short one, passes each to snmp_send in one session, and prints the seconds that this took.
// scripts/lib/measureTraps.py runs it next to the daemon, with the same receiver.

namespace {

constexpr oid kSysUpTime[] = {1, 3, 6, 1, 2, 1, 1, 3, 0};
constexpr oid kSnmpTrapOid[] = {1, 3, 6, 1, 6, 3, 1, 1, 4, 1, 0};
constexpr const char* kNotification = ".1.3.6.1.4.1.913.11000.2000.500.1.251.0.201";

struct variable {
    oid name[15];
    size_t length;
    char type;
    const char* value;
};

constexpr variable kVariables[] = {
    {{1, 3, 6, 1, 4, 1, 913, 11000, 2000, 500, 1, 2, 10, 0}, 14, 'u', "64702"},
    {{1, 3, 6, 1, 4, 1, 913, 11000, 2000, 500, 1, 2, 12, 0}, 14, 's', "a text of the usual length"},
    {{1, 3, 6, 1, 4, 1, 913, 11000, 2000, 500, 1, 2, 43, 0}, 14, 'i', "2"},
    {{1, 3, 6, 1, 4, 1, 913, 11000, 2000, 500, 1, 2, 29, 1, 8}, 15, 's', "192.0.2.20"},
    {{1, 3, 6, 1, 4, 1, 913, 11000, 2000, 500, 1, 2, 29, 1, 11}, 15, 's', "2001:db8:40::20"},
    {{1, 3, 6, 1, 4, 1, 913, 11000, 2000, 500, 1, 2, 29, 1, 12}, 15, 'u', "64"},
};

netsnmp_session* open_session(char* peername) {
    netsnmp_session parameters;
    snmp_sess_init(&parameters);
    static u_char community[] = "watch.tower";
    parameters.version = SNMP_VERSION_2c;
    parameters.peername = peername;
    parameters.community = community;
    parameters.community_len = sizeof community - 1;
    return snmp_add(&parameters, netsnmp_transport_open_client("snmptrap", peername), nullptr, nullptr);
}

bool send_one(netsnmp_session* session) {
    netsnmp_pdu* pdu = snmp_pdu_create(SNMP_MSG_TRAP2);
    const std::string uptime = std::to_string(get_uptime());
    snmp_add_var(pdu, kSysUpTime, std::size(kSysUpTime), 't', uptime.c_str());
    snmp_add_var(pdu, kSnmpTrapOid, std::size(kSnmpTrapOid), 'o', kNotification);
    for (const variable& each : kVariables)
        snmp_add_var(pdu, each.name, each.length, each.type, each.value);
    if (snmp_send(session, pdu) != 0)
        return true;
    snmp_free_pdu(pdu);
    return false;
}

}  // namespace

int main(int argc, char** argv) {
    const long count = argc == 3 ? strtol(argv[2], nullptr, 10) : 0;
    if (count < 1) {
        fprintf(stderr, "usage: sendNotifications PEER COUNT, for example udp:127.0.0.1:1620 1000\n");
        return 2;
    }
    setenv("MIBS", "", 1);
    init_snmp("sendNotifications");
    netsnmp_session* session = open_session(argv[1]);
    if (session == nullptr) {
        fprintf(stderr, "sendNotifications: cannot open a session to %s\n", argv[1]);
        return 1;
    }
    const auto start = std::chrono::steady_clock::now();
    for (long i = 0; i < count; ++i) {
        if (!send_one(session)) {
            fprintf(stderr, "sendNotifications: cannot send notification %ld\n", i);
            return 1;
        }
    }
    printf("%.6f\n", std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    snmp_close(session);
    return 0;
}
