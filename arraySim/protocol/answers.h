#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "apiMgmt/apiStub/base/apiObjects/base/methodReturns.h"
#include "arraySim/model/model.h"
#include "arraySim/protocol/answerForm.h"
#include "arraySim/protocol/apiRequest.h"

namespace arraysim {

/** How a list of objects is bent before it is written. */
struct ListBend {
    std::optional<size_t> beyond_capacity;  ///< so many objects more than the daemon's table takes
    bool no_objects = false;
    /** Attributes of the first object alone that get a value of the fault's own. */
    std::vector<std::pair<std::string, std::string>> replaced_in_first;
};

/** A session: the key that opens it, and what it may do. */
struct Session {
    std::string key;
    int privilege = USER_PRIVILEGE_ADMIN;
};

/** What a request is answered with. Its objects are those of the model: it is written before that changes. */
struct Answer {
    std::deque<Object> altered;  ///< copies that a fault has changed
    std::unique_ptr<AnswerForm> form;
    std::unique_ptr<BASEApiMethodReturn> result;  ///< never null
    size_t objects = 0;

    bool successful() const { return result->GetSuccessful(); }
};

/** The answer that tells of a failure. The code need not be one of the API's: faults make up their own. */
Answer FailureAnswer(const std::string& code, const std::string& text, const std::string& detail = {});

/** Carries out a request; what goes wrong becomes the answer. */
Answer CarryOut(Model& model, const ApiRequest& request, const Session& session, const ObjectStyle& style,
                const ListBend& bend);

}  // namespace arraysim
