#include "apiMgmt/apiStub/base/apiAttributes/baseApiAttribute.h"

#include "apiMgmt/common/utils/apiMethodError.h"

namespace {

constexpr char kSourceFile[] = "apiMgmt/apiStub/base/apiAttributes/baseApiAttribute";
constexpr int kInvalidArguments = 30;
constexpr int kNullProperties = 10004;

}  // namespace

BASEApiAttribute::BASEAttributeProperties::BASEAttributeProperties(std::string name, uint32_t width,
                                                                   bool first, bool second, std::string text)
    : xmlName(std::move(name)),
      displayWidth(width),
      firstFlag(first),
      secondFlag(second),
      label(std::move(text)) {}

BASEApiAttribute::BASEApiAttribute(std::unique_ptr<BASEAttributeProperties> owned)
    : properties(std::move(owned)) {
    if (!properties)
        throw APIMethodError("Base API Attribute constructor: NULL pointer for properties", kInvalidArguments,
                             kSourceFile, __LINE__, kNullProperties, nullptr);
}

BASEApiAttribute::BASEApiAttribute(const std::string& xmlName, uint32_t displayWidth, bool firstFlag,
                                   const std::string& label)
    : BASEApiAttribute(
          std::make_unique<BASEAttributeProperties>(xmlName, displayWidth, firstFlag, false, label)) {}

BASEApiAttribute::~BASEApiAttribute() = default;

bool BASEApiAttribute::Validate(const std::string& /*text*/) const {
    return true;
}

ATTRIBUTEList JoinAttributeLists(ATTRIBUTEList own, const ATTRIBUTEList& ofBase) {
    own.insert(own.end(), ofBase.begin(), ofBase.end());
    return own;
}

const BASEApiAttribute* FindAttributeIn(const ATTRIBUTEList& list, std::string_view xmlName) {
    for (const BASEApiAttribute* attribute : list) {
        if (attribute->GetXmlName() == xmlName)
            return attribute;
    }
    return nullptr;
}
