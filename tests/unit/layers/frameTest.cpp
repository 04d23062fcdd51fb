#include <gmock/gmock.h>
#include <google/protobuf/io/zero_copy_stream_impl_lite.h>

#include <thread>

#include "apiMgmt/common/wirelink/fieldCount.h"
#include "tests/unit/layers/rawPeer.h"

namespace {

using namespace std::string_literals;
using testing::HasSubstr;

// Serialised envelopes.
const std::string kPing =
    "\x08\x02"        // msgType APIRequest
    "\x12\x08"        // apiReqMsg
    "\x08\x02"        //   cmdtype Ping
    "\x2a\x04"        //   ping
    "\x0a\x02hi"      //     pingData
    "\x38\xac\x02"s;  // sequenceNum 300

TEST(Frame, IsALengthAndTheSerialisedMessage) {
    Conversation c;
    c.message.set_msgtype(protoIPCMsg::APIRequest);
    c.message.mutable_apireqmsg()->set_cmdtype(protoIPCMsg::Ping);
    c.message.mutable_apireqmsg()->mutable_ping()->set_pingdata("hi");
    c.message.set_sequencenum(300);
    c.connection.SendGPBMsg(c.message);
    EXPECT_EQ(c.peer.Read(4 + kPing.size()), "\0\0\0\x0f"s + kPing);
}

TEST(Frame, ABodyThatDoesNotParseThrows) {
    const std::string bodies[] = {
        "",                                  // msgType is required
        "\x38\x01",                          // still without it
        "\x08\x02\x12\x00"s,                 // apiReqMsg without its cmdtype
        "\x08\x63",                          // not in the enumeration, so that msgType is missing
        kPing + "\x07",                      // unknown wire type 7
        kPing + "\x12",                      // a field without a value
        kPing.substr(0, 8),                  // truncated within a field
        "\x08\x02\x12\xff\xff\xff\x7f\x08",  // a length far larger than the body
        std::string(100, '\xff'),
        kPing + "\xa3\x06\xa4\x06",  // a group
    };
    for (const std::string& body : bodies) {
        Conversation c;
        ASSERT_TRUE(c.peer.Write(Frame(body)));
        EXPECT_THAT(c.ReceiveError(), HasSubstr("/here: the body does not parse"))
            << testing::PrintToString(body);
    }
}

TEST(Frame, CountsTheFieldsOfAnyBody) {
    const std::pair<std::string, FieldCount> rows[] = {
        {kPing, FieldCount::many},  // 6 fields, in three messages
        {"\x08\x02\x12\x06\x08\x02\xa2\x06\x01x", FieldCount::few},
        {"\x08\x02\xa2\x06\x02\xa2\x06\xa0\x06\x01\xa0\x06\x01",
         FieldCount::few},  // the first is an unknown field
        {"\xa0\x06\x01\xa0\x06\x01\xa0\x06\x01\xa0\x06\x01\xa0\x06\x01", FieldCount::many},
        {"\x08\x02\x12\x03\x08\x02", FieldCount::malformed},
        {"\xa3\x06\xa4\x06", FieldCount::malformed},  // a group
    };
    for (const auto& [body, count] : rows) {
        google::protobuf::io::ArrayInputStream input(body.data(), static_cast<int>(body.size()));
        EXPECT_EQ(CountFields(input, *protoIPCMsg::GPBIPCMsg::descriptor(), 4), count)
            << testing::PrintToString(body);
    }
}

TEST(Frame, ABodyThatIsTooLongIsRejectedUnread) {
    for (const std::string& length :
         {"\x00\x01\x00\x01"s, "\x01\x00\x00\x00"s, "\x80\x00\x00\x00"s, "\xff\xff\xff\xff"s}) {
        Conversation c;  // 16 * 4096 is 0x10000
        ASSERT_TRUE(c.peer.Write(length + "body"));
        EXPECT_THAT(c.ReceiveError(), HasSubstr("too long; the maximum is 65536"));
        char rest[8];
        EXPECT_EQ(recv(c.connection.descriptor(), rest, sizeof rest, MSG_DONTWAIT), 4);
    }
}

TEST(Frame, ABodyOfMaximumSizeIsSentButNotOneByteMore) {
    Conversation c;
    std::thread echo([&c] { c.peer.Write(c.peer.Read(4 + 65'536)); });
    c.connection.SendGPBMsg(MessageOfSize(65'536));
    EXPECT_EQ(c.connection.RecvGPBMsg(c.message), 4u + 65'536u);
    EXPECT_EQ(c.message.SerializeAsString(), MessageOfSize(65'536).SerializeAsString());
    echo.join();

    EXPECT_THROW(c.connection.SendGPBMsg(MessageOfSize(65'537)), WireLinkError);
    EXPECT_THROW(c.connection.SendGPBMsg(protoIPCMsg::GPBIPCMsg()), WireLinkError) << "without msgType";
    char byte;
    EXPECT_EQ(recv(c.peer.descriptor(), &byte, 1, MSG_DONTWAIT), -1) << "part of a rejected frame was sent";
}

}  // namespace
