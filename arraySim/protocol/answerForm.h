#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "apiMgmt/apiStub/base/apiObjects/base/objectForm.h"
#include "arraySim/model/model.h"

namespace arraysim {

/** What the elements of objects are called. */
enum class Spelling {
    kApi,      ///< the kind, with a small letter in front: tsDisk
    kLibrary,  ///< the kind, as the object library spells it: TsDisk
    kClasses   ///< the library's class, so that its clients know each object
};

/** How objects are written; the second half is there for faults. */
struct ObjectStyle {
    Spelling spelling = Spelling::kApi;
    bool lite = false;

    std::vector<std::string> omitted;  ///< attributes that are left out
    std::vector<std::pair<std::string, std::string>>
        replaced;  ///< attributes with a value of the fault's own
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
    std::map<const Kind*, ATTRIBUTEList> thinned_;  ///< by kind, when something is left out
};

}  // namespace arraysim
