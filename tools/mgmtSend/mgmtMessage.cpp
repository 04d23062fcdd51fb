#include "tools/mgmtSend/mgmtMessage.h"

namespace mgmtsend {

namespace {

constexpr uint32_t kIgnored = 0;

}  // namespace

protoIPCMsg::GPBIPCMsg BuildMessage(mgmt_specific command, const std::string& text) {
    protoIPCMsg::GPBIPCMsg envelope;
    envelope.set_msgtype(protoIPCMsg::MGMT);
    protoIPCMsg::MGMTMsg& message = *envelope.mutable_mgmtmsg();
    message.set_serviceid(kIgnored);
    message.set_msgtype(kIgnored);
    message.set_cmdtype(MGMTCommand_SPECIFIC);
    message.set_cmdspecific(command);
    if (command == MGMT_SPECIFIC_SEND_TRAP) {
        message.set_addlarg(text);
    }
    return envelope;
}

}  // namespace mgmtsend
