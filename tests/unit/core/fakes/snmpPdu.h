#pragma once

#include <deque>
#include <string>
#include <vector>

#include "apiMgmt/snmpSubagent/snmpSubagentUtil/netSnmpHeaders.h"

/** One PDU as the agent library hands it over: bindings in one chain, requests for those of a registration.
 */
class snmp_pdu_of_test {
  public:
    explicit snmp_pdu_of_test(int mode);
    ~snmp_pdu_of_test();
    snmp_pdu_of_test(const snmp_pdu_of_test&) = delete;
    snmp_pdu_of_test& operator=(const snmp_pdu_of_test&) = delete;

    /** Adds a binding with its request. Names as oid_of takes them. */
    snmp_pdu_of_test& ask(const std::string& name, bool inclusive = false);
    snmp_pdu_of_test& set(const std::string& name, const std::string& text);
    snmp_pdu_of_test& set_number(const std::string& name, long number);

    /** Adds a binding as the agent library has parsed it, with its request. */
    snmp_pdu_of_test& add_parsed(const netsnmp_variable_list& parsed);

    /** Where the registration begins whose requests these are; the vendor's subtree when not given. */
    snmp_pdu_of_test& registered_at(const std::string& name);

    /** Adds a binding of another registration: it stands in the chain and has no request. */
    snmp_pdu_of_test& foreign(const std::string& name);

    /** Gives a binding another name, as Net-SNMP does that asks the next registration for it. */
    snmp_pdu_of_test& rename(size_t binding, const std::string& name);

    /** What Net-SNMP calls, with all requests. The mode may change from phase to phase. */
    int serve(int mode);
    int serve() { return serve(info_.mode); }

    /** The handler behind it, with the first request and the chain as it stands. */
    int call_handler();

    /** A binding: "NAME = VALUE", and " !STATUS" when the request has an error. */
    std::string answer(size_t binding) const;

    /** All bindings, a line each. */
    std::string answers() const;

    /** How many bindings of the PDU as it came, which an error goes back with, still have their range. */
    size_t ranges() const;

    const netsnmp_variable_list* bindings() const { return bindings_; }
    const std::deque<netsnmp_request_info>& requests() const { return requests_; }

  private:
    void add(const std::string& name, int type, const void* value, size_t size);
    void add_request(bool inclusive);

    netsnmp_agent_session session_{};
    netsnmp_pdu pdu_{};
    netsnmp_pdu asked_{};
    netsnmp_handler_registration registration_{};
    std::vector<oid> root_;
    netsnmp_agent_request_info info_{};
    netsnmp_variable_list* bindings_ = nullptr;
    std::deque<netsnmp_request_info> requests_;
};

/** A value with its type: "integer 5", "gauge 5", "time 5", "oid R.1", a string in quotes, "null", or the
 * exception. */
std::string text_of_value(const netsnmp_variable_list& variable);

/** The answer to a single GET, GETNEXT of one name. */
std::string get(const std::string& name);
std::string get_next(const std::string& name);
