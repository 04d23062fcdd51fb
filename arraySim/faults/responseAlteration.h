#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "apiMgmt/proto/apiMgrMsg.pb.h"

namespace arraysim {

/** How faults alter the document of a response. */
struct DocumentAlteration {
    std::optional<std::pair<std::string, std::string>> error;  ///< code and message instead of the response
    bool truncated = false;
    bool empty = false;
    bool unbalanced = false;
    bool wrong_root = false;
    bool no_return = false;
    bool no_successful = false;
    bool lower_true = false;
    bool doctype = false;
    bool entities = false;
    bool external_entity = false;
    uint32_t nesting = 0;

    bool operator==(const DocumentAlteration&) const = default;
};

/** Alters a response document. Ignores `error`, which replaces the whole response. */
std::string AlterDocument(std::string document, const DocumentAlteration& alteration);

/** How faults alter the envelope of a response. */
struct EnvelopeAlteration {
    bool wrong_sequence = false;
    bool wrong_type = false;
    bool no_response = false;
    bool no_command = false;
    bool ping_false = false;
};

/** Alters an envelope. Ignores `ping_false`, which is the response to a ping. */
void AlterEnvelope(const EnvelopeAlteration& alteration, protoIPCMsg::GPBIPCMsg& response);

}  // namespace arraysim
