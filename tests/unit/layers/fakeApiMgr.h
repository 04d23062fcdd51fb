#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

#include "apiMgmt/common/wirelink/wireLink.h"
#include "apiMgmt/proto/apiMgrMsg.pb.h"

/** Serves connections one after the other, each with one exchange, as the API manager does. */
class FakeApiMgr {
  public:
    /** Fills in the response. Returns false to close the connection without one. */
    using Answer =
        std::function<bool(const protoIPCMsg::GPBIPCMsg& request, protoIPCMsg::GPBIPCMsg& response)>;

    FakeApiMgr(const WireLinkEndpoint& endpoint, int connections, Answer answer)
        : endpoint_(endpoint),
          connections_(connections),
          server_(endpoint),
          thread_([this, answer = std::move(answer)] {
              for (int i = 0; i < connections_; ++i)
                  Serve(answer);
          }) {}
    ~FakeApiMgr() {
        for (int missing = connections_ - accepted_; missing > 0; --missing) {
            ADD_FAILURE() << "missing request to the API manager";
            WireLinkClient{endpoint_};  // so that the thread stops waiting
        }
        thread_.join();
    }

    /** The request of each connection. Read it only when all have been served. */
    std::vector<protoIPCMsg::GPBIPCMsg> requests;

  private:
    void Serve(const Answer& answer) {
        WireLinkServerConnection connection(endpoint_, server_.Accept(nullptr, nullptr, 0));
        ++accepted_;
        protoIPCMsg::GPBIPCMsg& request = requests.emplace_back();
        protoIPCMsg::GPBIPCMsg response;
        if (connection.RecvGPBMsg(request) != 0 && answer(request, response)) {
            connection.SendGPBMsg(response);
            protoIPCMsg::GPBIPCMsg more;
            EXPECT_EQ(connection.RecvGPBMsg(more), 0u);  // 0: the client has closed
        }
    }

    const WireLinkEndpoint endpoint_;
    const int connections_;
    std::atomic<int> accepted_ = 0;
    WireLinkServer server_;
    std::thread thread_;
};

/** Makes `response` a response of the API manager with this document. */
inline void SetDocument(protoIPCMsg::GPBIPCMsg& response, const std::string& document) {
    response.set_msgtype(protoIPCMsg::APIResp);
    response.mutable_apirespmsg()->set_cmdtype(protoIPCMsg::Command);
    response.mutable_apirespmsg()->mutable_cmd()->set_respdata(document);
}
