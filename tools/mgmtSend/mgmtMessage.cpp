#include "tools/mgmtSend/mgmtMessage.h"

namespace {

constexpr uint32_t kNotLookedAt = 0;

}  // namespace

protoIPCMsg::GPBIPCMsg MgmtEnvelope(mgmt_specific command, const std::string& text) {
    protoIPCMsg::GPBIPCMsg envelope;
    envelope.set_msgtype(protoIPCMsg::MGMT);
    protoIPCMsg::MGMTMsg& message = *envelope.mutable_mgmtmsg();
    message.set_serviceid(kNotLookedAt);
    message.set_msgtype(kNotLookedAt);
    message.set_cmdtype(MGMTCommand_SPECIFIC);
    message.set_cmdspecific(command);
    if (command == MGMT_SPECIFIC_SEND_TRAP) {
        message.set_addlarg(text);
    }
    return envelope;
}
