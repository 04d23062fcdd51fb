#pragma once

#include <sys/time.h>

#include <atomic>
#include <cstdint>
#include <string>

#include "apiMgmt/common/wirelink/wireLink.h"

namespace protoIPCMsg {
class GPBIPCMsg;
}

/**
 * The link to the API manager: the function through which all traffic passes, two tests of the link, and the
 * state of both links. Used concurrently by the main thread and the GetList task. Each exchange has its own
 * connection.
 */
class SnmpSubagentComm {
  public:
    /**
     * Returns 0 if the API manager's socket accepts a connection, else 1. Does not change the link's state.
     */
    int TryOpenSocketToApiMgr();

    /**
     * Performs one exchange, after writing the sequence number into the request. Returns 0 if the response is
     * an API response with the same number; otherwise 1, and the link counts as down. The caller must check
     * the payload. Blocks until the response arrives or the link's timeout expires; see set_exchange_wait.
     */
    int SendRequestToAPIManager(protoIPCMsg::GPBIPCMsg& request, protoIPCMsg::GPBIPCMsg& response);

    /** Tests the protocol. Returns 0 or 1. */
    int SendPingToApiMgr();

    /** Tests the whole path: session key, API method, XML response. Returns 0 or 1. */
    int TestAccessToApiMgr();

    /** If `ok`, also records the time. */
    void set_apimgr_state(bool ok);
    void set_agentx_state(bool ok);

    bool apimgr_ok() const { return apimgr_ok_; }
    bool agentx_ok() const { return agentx_ok_; }

    /** Time since the link was last good; since the epoch if it never was. */
    void time_since_apimgr_ok(timeval* elapsed) const;
    void time_since_agentx_ok(timeval* elapsed) const;

  private:
    // Whether the last exchange of any kind succeeded, whichever thread made it.
    std::atomic<bool> apimgr_ok_{false};
    std::atomic<bool> agentx_ok_{false};
    std::atomic<int64_t> apimgr_ok_time_us_{0};
    std::atomic<int64_t> agentx_ok_time_us_{0};
};

/** The only instance. Created at start-up, lives until exit. */
extern SnmpSubagentComm* snmpSubagentComm;

/** An API document consists of this prefix, which contains the session key, the request, and the end. */
extern std::string apiRequestPrefix;
extern const char* const apiDocumentEnd;

/** Sets how the calling thread waits during exchanges. The default is PollDescriptor. */
void set_exchange_wait(WireLinkWait wait);

/** Builds apiRequestPrefix. Call once, before the first request. */
void build_api_request_prefix(const std::string& session_key);

/** Runs TryOpenSocketToApiMgr. Returns 0 or 1. */
int check_apimgr_socket();

/** Tests socket, protocol and access. Returns 0 or 1. */
int test_apimgr();
