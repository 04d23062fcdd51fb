#include "apiMgmt/apiStub/base/apiObjects/base/baseApiAssociation.h"

#include "apiMgmt/apiStub/base/apiAttributes/textApiAttributes.h"
#include "apiMgmt/apiStub/base/apiObjects/base/typedAccess.h"
#include "apiMgmt/common/utils/apiMethodError.h"
#include "apiMgmt/common/utils/stringUtil.h"

namespace {

constexpr char kSourceFile[] = "apiMgmt/apiStub/base/apiObjects/base/baseApiAssociation";
constexpr int kInvalidValue = 25;
constexpr int kMissingArgument = 10009;

}  // namespace

BASEApiAssociation::BASEApiAssociation() : BASEApiMethod(true) {}

BASEApiAssociation::BASEApiAssociation(const std::map<std::string, std::string>& initial)
    : BASEApiMethod(true, initial) {}

BASEApiAssociation::BASEApiAssociation(const std::string& instanceId) : BASEApiMethod(true) {
    SetInstanceId(instanceId);
}

const ATTRIBUTEList& BASEApiAssociation::GetAttributeList() const {
    static const auto& list = *new ATTRIBUTEList{&InstanceIdAttribute()};
    return list;
}

std::span<const std::string> BASEApiAssociation::GetRequiredNames() const {
    return {&InstanceIdAttribute().GetXmlName(), 1};
}

void BASEApiAssociation::CheckRequiredAttributes() const {
    if (!HasAttribute(&InstanceIdAttribute()))
        throw APIMethodError(FormatString("InstanceID not specified for association [%s::%s]",
                                          GetObjectName().c_str(), GetCommandName().c_str()),
                             kInvalidValue, kSourceFile, __LINE__, kMissingArgument, nullptr);
}

const INSTANCEIDApiAttribute& BASEApiAssociation::InstanceIdAttribute() {
    static const auto& attribute = *new INSTANCEIDApiAttribute("InstanceId", 30, false, "");
    return attribute;
}

void BASEApiAssociation::SetInstanceId(const std::string& id) {
    SetTyped(*this, InstanceIdAttribute(), id);
}

std::string BASEApiAssociation::GetInstanceId() const {
    return GetTyped(*this, InstanceIdAttribute());
}
