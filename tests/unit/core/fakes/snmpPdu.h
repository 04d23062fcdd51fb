#pragma once

#include <deque>
#include <string>
#include <vector>

#include "apiMgmt/snmpSubagent/snmpSubagentUtil/netSnmpHeaders.h"

/** A PDU as the agent library passes it: all bindings in one chain, and requests for those of a registration.
 */
class snmp_pdu_of_test {
  public:
    explicit snmp_pdu_of_test(int mode);
    ~snmp_pdu_of_test();
    snmp_pdu_of_test(const snmp_pdu_of_test&) = delete;
    snmp_pdu_of_test& operator=(const snmp_pdu_of_test&) = delete;

    /** Adds a binding with its request. Names have the format of oid_of. */
    snmp_pdu_of_test& ask(const std::string& name, bool inclusive = false);
    snmp_pdu_of_test& set(const std::string& name, const std::string& text);
    snmp_pdu_of_test& set_number(const std::string& name, long number);

    /** Adds a binding parsed by the agent library, with its request. */
    snmp_pdu_of_test& add_parsed(const netsnmp_variable_list& parsed);

    /** Sets the root of the registration of these requests; by default, it is the vendor's subtree. */
    snmp_pdu_of_test& registered_at(const std::string& name);

    /** Adds a binding of another registration, which is in the chain but has no request. */
    snmp_pdu_of_test& foreign(const std::string& name);

    /** Renames a binding, as Net-SNMP does before it passes it to the next registration. */
    snmp_pdu_of_test& rename(size_t binding, const std::string& name);

    /** Calls the handler of the registration with all requests. The mode may change from phase to phase. */
    int serve(int mode);
    int serve() { return serve(info_.mode); }

    /** Calls central_oid_handler with the first request and the current chain. */
    int call_handler();

    /** Formats a binding: "NAME = VALUE", followed by " !STATUS" if the request has an error. */
    std::string answer(size_t binding) const;

    /** Formats all bindings, one per line. */
    std::string answers() const;

    /** Returns how many bindings of the received PDU, which an error repeats, still have their range. */
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

/** Return the response to a GET or GETNEXT of one name. */
std::string get(const std::string& name);
std::string get_next(const std::string& name);
