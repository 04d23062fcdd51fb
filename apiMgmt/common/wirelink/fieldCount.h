#pragma once

#include <google/protobuf/descriptor.h>
#include <google/protobuf/io/zero_copy_stream.h>

/** What a look at the fields of a serialised message has found. */
enum class FieldCount { few, many, malformed };

/**
 * Counts the fields of a serialised message and of those in it, without building it: a field of two bytes
 * costs the parser some hundred bytes, and it keeps fields that it does not know. More than `greatest` are
 * many. A group, which no message here has, is malformed.
 */
FieldCount CountFields(google::protobuf::io::ZeroCopyInputStream& body,
                       const google::protobuf::Descriptor& type, int greatest);
