#pragma once

#include <cstddef>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "apiMgmt/apiStub/base/apiObjects/base/methodReturns.h"
#include "apiMgmt/apiStub/base/apiObjects/base/objectForm.h"
#include "arraySim/model/model.h"

namespace arraysim {

/** How the elements of objects are named. */
enum class Spelling {
    kApi,      ///< the kind with a lower-case first letter: tsDisk
    kLibrary,  ///< the kind, as the object library spells it: TsDisk
    kClasses   ///< the library's class, so that its clients recognise each object
};

/** How objects are written. The vectors are for faults. */
struct ObjectStyle {
    Spelling spelling = Spelling::kApi;
    bool lite = false;

    std::vector<std::string> omitted;                           ///< attributes to omit
    std::vector<std::pair<std::string, std::string>> replaced;  ///< attributes with another value
};

/** How a fault alters a list of objects before it is written. */
struct ListAlteration {
    std::optional<size_t> beyond_capacity;  ///< number of objects above the capacity of the daemon's table
    bool no_objects = false;
    std::vector<std::pair<std::string, std::string>>
        replaced_in_first;  ///< attributes of the first object only
};

/** An ObjectStyle for the library's writer. All objects must be of the model. */
class ResponseForm : public OBJECTForm {
  public:
    ResponseForm(const Catalogue& catalogue, const ObjectStyle& style);

    const std::string& ElementOf(const BASEApiObject& object) const override;
    const ATTRIBUTEList& AttributesOf(const BASEApiObject& object) const override;

  private:
    Spelling spelling_;
    bool lite_;
    std::map<const Kind*, ATTRIBUTEList> thinned_;  ///< by kind, if attributes are omitted
};

/** The response to a request. The model owns its objects, so it must be written before the model changes. */
struct Response {
    std::deque<Object> altered;  ///< copies of objects, changed by a fault
    std::unique_ptr<ResponseForm> form;
    std::unique_ptr<BASEApiMethodReturn> result;  ///< never null
    size_t objects = 0;

    bool successful() const { return result->GetSuccessful(); }
};

/** Returns a response that reports a failure. The code need not be one of the API: faults use others, too. */
Response FailureResponse(const std::string& code, const std::string& text, const std::string& detail = {});

}  // namespace arraysim
