#include "apiMgmt/common/wirelink/fieldCount.h"

#include <google/protobuf/io/coded_stream.h>
#include <google/protobuf/wire_format_lite.h>

namespace {

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;
using google::protobuf::internal::WireFormatLite;

constexpr int kMaximumDepth = 100;  // limit of protobuf's parser

class Counter {
  public:
    Counter(google::protobuf::io::CodedInputStream& input, int maximum) : input_(input), left_(maximum) {}

    FieldCount CountMessage(const Descriptor& type, int depth) {
        if (depth > kMaximumDepth)
            return FieldCount::malformed;
        while (const uint32_t tag = input_.ReadTag()) {
            if (--left_ < 0)
                return FieldCount::many;
            if (const FieldCount count = CountInField(tag, type, depth); count != FieldCount::few)
                return count;
        }
        return input_.ConsumedEntireMessage() ? FieldCount::few : FieldCount::malformed;
    }

  private:
    FieldCount CountInField(uint32_t tag, const Descriptor& type, int depth) {
        const auto wire_type = WireFormatLite::GetTagWireType(tag);
        if (wire_type == WireFormatLite::WIRETYPE_START_GROUP ||
            wire_type == WireFormatLite::WIRETYPE_END_GROUP)
            return FieldCount::malformed;
        const FieldDescriptor* field = type.FindFieldByNumber(WireFormatLite::GetTagFieldNumber(tag));
        const bool is_message = field != nullptr && field->type() == FieldDescriptor::TYPE_MESSAGE &&
                                wire_type == WireFormatLite::WIRETYPE_LENGTH_DELIMITED;
        if (!is_message)
            return WireFormatLite::SkipField(&input_, tag) ? FieldCount::few : FieldCount::malformed;
        uint32_t length = 0;
        if (!input_.ReadVarint32(&length))
            return FieldCount::malformed;
        const auto limit = input_.PushLimit(static_cast<int>(length));
        const FieldCount count = CountMessage(*field->message_type(), depth + 1);
        const bool is_whole = input_.BytesUntilLimit() == 0;
        input_.PopLimit(limit);
        return count == FieldCount::few && !is_whole ? FieldCount::malformed : count;
    }

    google::protobuf::io::CodedInputStream& input_;
    int left_;
};

}  // namespace

FieldCount CountFields(google::protobuf::io::ZeroCopyInputStream& body, const Descriptor& type, int maximum) {
    google::protobuf::io::CodedInputStream input(&body);
    return Counter(input, maximum).CountMessage(type, 0);
}
