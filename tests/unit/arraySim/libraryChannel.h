#pragma once

#include "apiMgmt/apiStub/base/apiObjects/base/apiChannel.h"
#include "arraySim/control/simulator.h"

/** The library's way to a simulator that stands in the same process. */
class ChannelToSimulator : public APIChannel {
  public:
    explicit ChannelToSimulator(arraysim::Simulator& simulator) : simulator_(simulator) {}
    void Exchange(const protoIPCMsg::GPBIPCMsg& request, protoIPCMsg::GPBIPCMsg& response) override {
        response = simulator_.Handle(request).response;
    }

  private:
    arraysim::Simulator& simulator_;
};
