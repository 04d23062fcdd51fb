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
    kApi,      ///< the kind, with a small letter in front: tsDisk
    kLibrary,  ///< the kind, as the object library spells it: TsDisk
    kClasses   ///< the library's class, so that its clients know each object
};

/** How objects are written; the second half is there for faults. */
struct ObjectStyle {
    Spelling spelling = Spelling::kApi;
    bool lite = false;

    std::vector<std::string> omitted;                           ///< attributes that are left out
    std::vector<std::pair<std::string, std::string>> replaced;  ///< attributes with another value
};

/** How a fault alters a list of objects before it is written. */
struct ListAlteration {
    std::optional<size_t> beyond_capacity;  ///< so many objects more than the daemon's table takes
    bool no_objects = false;
    std::vector<std::pair<std::string, std::string>>
        replaced_in_first;  ///< attributes of the first object alone
};

/** The style as the library's writer asks for it. All objects must be of the model. */
class AnswerForm : public OBJECTForm {
  public:
    AnswerForm(const Catalogue& catalogue, const ObjectStyle& style);

    const std::string& ElementOf(const BASEApiObject& object) const override;
    const ATTRIBUTEList& AttributesOf(const BASEApiObject& object) const override;

  private:
    Spelling spelling_;
    bool lite_;
    std::map<const Kind*, ATTRIBUTEList> thinned_;  ///< by kind, if something is left out
};

/** The answer to a request. Its objects belong to the model, so it must be written before that changes. */
struct Answer {
    std::deque<Object> altered;  ///< copies that a fault has changed
    std::unique_ptr<AnswerForm> form;
    std::unique_ptr<BASEApiMethodReturn> result;  ///< never null
    size_t objects = 0;

    bool successful() const { return result->GetSuccessful(); }
};

/** Returns an answer that reports a failure. The code need not be one of the API's: faults make up their own.
 */
Answer FailureAnswer(const std::string& code, const std::string& text, const std::string& detail = {});

}  // namespace arraysim
