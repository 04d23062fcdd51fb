#pragma once

#include <optional>
#include <string>

#include "apiMgmt/proto/apiMgrMsg.pb.h"
#include "arraySim/model/catalogue.h"
#include "arraySim/protocol/apiRequest.h"

namespace arraysim {

/** A message as far as it can be understood without the model. */
struct Question {
    enum class Sort { kPing, kCommand, kOther };

    Sort sort = Sort::kOther;
    std::string command = "other";
    std::string object = "-";  ///< "?" for an unknown one
    ApiRequest request;
    std::optional<ApiFailure> failure;  ///< when the document is none

    /** How the objects of the answer are written, as the library knows it. */
    int Encoding() const;
};

Question Interpret(const Catalogue& catalogue, const protoIPCMsg::GPBIPCMsg& message);

}  // namespace arraysim
