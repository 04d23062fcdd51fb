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
 * The link to the API manager: the one send-and-receive operation through which all traffic passes, two
 * tests of the link, and the record of how the links are doing. Used by the main thread and the GetList
 * task at the same time; each exchange has a connection of its own.
 */
class SnmpSubagentComm {
  public:
    /** 0 when somebody listens on the API manager's socket, else 1. Does not change the link's state. */
    int TryOpenSocketToApiMgr();

    /**
     * One exchange. Writes the sequence number into the request. 0 when the answer is an API response with
     * the same number; otherwise 1, and the link counts as bad. The payload is the caller's business. Blocks
     * for as long as the API manager takes, up to the channel's time limit; see set_exchange_wait.
     */
    int SendRequestToAPIManager(protoIPCMsg::GPBIPCMsg& request, protoIPCMsg::GPBIPCMsg& response);

    /** Test of the protocol. 0 or 1. */
    int SendPingToApiMgr();

    /** Test of the whole path: session key, API method, XML answer. 0 or 1. */
    int TestAccessToApiMgr();

    /** True also takes the time; false leaves it. */
    void set_apimgr_state(bool ok);
    void set_agentx_state(bool ok);

    bool apimgr_ok() const { return apimgr_ok_; }
    bool agentx_ok() const { return agentx_ok_; }

    /** Since the last good exchange, or sign of life; since the epoch when there was none. */
    void time_since_apimgr_ok(timeval* elapsed) const;
    void time_since_agentx_ok(timeval* elapsed) const;

  private:
    // The last exchange of any kind succeeded. Written by whichever thread made it; the last one wins.
    std::atomic<bool> apimgr_ok_{false};
    std::atomic<bool> agentx_ok_{false};
    std::atomic<int64_t> apimgr_ok_time_us_{0};
    std::atomic<int64_t> agentx_ok_time_us_{0};
};

/** The one instance. Created by main, lives until exit. */
extern SnmpSubagentComm* snmpSubagentComm;

/** Every API document is this prefix, request bodies, and the end. The prefix holds the session key. */
extern std::string apiRequestPrefix;
extern const char* const apiDocumentEnd;

/** How the calling thread waits in its exchanges from now on; PollDescriptor until then. */
void set_exchange_wait(WireLinkWait wait);

/** Builds apiRequestPrefix; once, before any request. */
void build_api_request_prefix(const std::string& session_key);

/** Whether somebody listens for the API manager: 0 or 1. */
int check_apimgr_socket();

/** The full test: socket, ping, access. 0 or 1. */
int test_apimgr();
