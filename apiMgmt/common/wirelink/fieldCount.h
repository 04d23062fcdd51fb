#pragma once

#include <google/protobuf/descriptor.h>
#include <google/protobuf/io/zero_copy_stream.h>

/** Result of CountFields. */
enum class FieldCount { few, many, malformed };

/**
 * Counts the fields of a serialised message, including nested ones, without parsing it, because a field of
 * two bytes takes about a hundred bytes when parsed, even if it is unknown. Returns `many` for more than
 * `maximum` fields. A group, which no message here contains, counts as malformed.
 */
FieldCount CountFields(google::protobuf::io::ZeroCopyInputStream& body,
                       const google::protobuf::Descriptor& type, int maximum);
