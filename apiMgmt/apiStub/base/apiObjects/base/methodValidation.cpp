#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethod.h"
#include "apiMgmt/common/utils/apiMethodError.h"
#include "apiMgmt/common/utils/stringUtil.h"

// What examines the arguments of a call. Apart from the rest, so that a program that only renders calls does
// not link it.

namespace {

constexpr int kInvalidValue = 25;
constexpr int kMissingArgument = 10009;

}  // namespace

bool BASEApiMethod::HasAttribute(const BASEApiAttribute* attribute) const {
    return attribute != nullptr && HasAttribute(attribute->GetXmlName());
}

const BASEApiAttribute* BASEApiMethod::FindAttribute(std::string_view name) const {
    return FindAttributeIn(GetAttributeList(), name);
}

bool BASEApiMethod::IsFilterAttribute(std::string_view name) {
    return ToLower(name).find("filter") != std::string::npos;
}

void BASEApiMethod::CheckRequired(std::span<const std::string> names, const char* sourceFile,
                                  uint32_t sourceLine) const {
    for (const std::string& name : names) {
        if (!HasAttribute(name) && !IsFilterAttribute(name))
            throw APIMethodError("Required attribute " + name + " not set", kInvalidValue, sourceFile,
                                 sourceLine, kMissingArgument, nullptr);
    }
}

void BASEApiMethod::ValidateAttributes() const {
    CheckRequiredAttributes();
    CheckState();
    for (const auto& [name, text] : attributes) {
        const BASEApiAttribute* attribute = FindAttribute(name);
        if (attribute != nullptr)
            attribute->Validate(text);
    }
}
