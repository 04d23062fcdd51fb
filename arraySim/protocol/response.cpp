#include "arraySim/protocol/response.h"

#include <algorithm>

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiEnumsIDStrList.h"
#include "apiMgmt/common/utils/stringUtil.h"

namespace arraysim {

namespace {

constexpr int kNoState = 1;

const Kind& KindOf(const BASEApiObject& object) {
    return *static_cast<const Object&>(object).kind;
}

ATTRIBUTEList Without(ATTRIBUTEList list, const std::vector<std::string>& omitted) {
    std::erase_if(list, [&](const BASEApiAttribute* attribute) {
        return std::any_of(omitted.begin(), omitted.end(), [&](const std::string& name) {
            return CompareNoCase(name, attribute->GetXmlName()) == 0;
        });
    });
    return list;
}

}  // namespace

ResponseForm::ResponseForm(const Catalogue& catalogue, const ObjectStyle& style)
    : spelling_(style.spelling), lite_(style.lite) {
    if (style.omitted.empty()) {
        return;
    }
    for (const Kind& kind : catalogue.kinds()) {
        thinned_[&kind] = Without(lite_ ? kind.reduced : kind.whole, style.omitted);
    }
}

const std::string& ResponseForm::ElementOf(const BASEApiObject& object) const {
    const Kind& kind = KindOf(object);
    switch (spelling_) {
        case Spelling::kLibrary:
            return kind.name;
        case Spelling::kClasses:
            return kind.class_name;
        case Spelling::kApi:
            break;
    }
    return kind.element_name;
}

const ATTRIBUTEList& ResponseForm::AttributesOf(const BASEApiObject& object) const {
    const Kind& kind = KindOf(object);
    if (!thinned_.empty()) {
        return thinned_.at(&kind);
    }
    return lite_ ? kind.reduced : kind.whole;
}

Response FailureResponse(const std::string& code, const std::string& text, const std::string& detail) {
    const ENUMRow* row = ENUMTable(APIEnumsIDStrList::gErrorStateEnumIdStrList).FindDescription(code);
    Response response;
    response.result = std::make_unique<BASEApiMethodReturn>(false, row == nullptr ? kNoState : row->Value,
                                                            text, text, detail, nullptr);
    if (row == nullptr) {
        response.result->SetAttribute(APIApiMethodReturn::ErrorCodeAttribute().GetXmlName(), code);
    }
    return response;
}

}  // namespace arraysim
