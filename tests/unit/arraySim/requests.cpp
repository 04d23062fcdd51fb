#include "tests/unit/arraySim/requests.h"

std::string RequestDocument(const std::string& object, const std::string& command,
                            const RequestAttributes& attributes, const std::string& key) {
    std::string document = "<lumapi><ApiConnection><SessionKey>" + key + "</SessionKey></ApiConnection>" +
                           "<ApiMethod><CommandType>Method</CommandType><Object>" + object +
                           "</Object><Command>" + command +
                           "</Command><Async>false</Async><ObjectEncodeType>xml</ObjectEncodeType>";
    document += attributes.empty() ? "" : "<Attributes>";
    for (const auto& [name, value] : attributes) {
        document += "<" + name + ">" + value + "</" + name + ">";
    }
    document += attributes.empty() ? "" : "</Attributes>";
    return document + "</ApiMethod></lumapi>";
}

protoIPCMsg::GPBIPCMsg CommandMessage(const std::string& document, unsigned sequence) {
    protoIPCMsg::GPBIPCMsg message;
    message.set_msgtype(protoIPCMsg::APIRequest);
    message.set_sequencenum(sequence);
    message.mutable_apireqmsg()->set_cmdtype(protoIPCMsg::Command);
    message.mutable_apireqmsg()->mutable_cmd()->set_cmddata(document);
    return message;
}

protoIPCMsg::GPBIPCMsg PingMessage(unsigned sequence) {
    protoIPCMsg::GPBIPCMsg message;
    message.set_msgtype(protoIPCMsg::APIRequest);
    message.set_sequencenum(sequence);
    message.mutable_apireqmsg()->set_cmdtype(protoIPCMsg::Ping);
    message.mutable_apireqmsg()->mutable_ping()->set_pingdata("ping from a test");
    return message;
}
