#include "apiMgmt/apiStub/base/apiObjects/base/apiMethodReturn.h"

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiEnumsIDStrList.h"
#include "apiMgmt/apiStub/base/apiObjects/base/typedAccess.h"

namespace {

constexpr int kNoError = 1;

const std::string& ObjectName() {
    static const auto& name = *new std::string("ApiMethodReturn");
    return name;
}

}  // namespace

APIApiMethodReturn::APIApiMethodReturn() : BASEApiObject(ObjectName()) {}

const std::string& APIApiMethodReturn::GetObjectName() const {
    return ObjectName();
}

const ATTRIBUTEList& APIApiMethodReturn::GetAttributeList() const {
    return Attributes();
}

const STRINGApiAttribute& APIApiMethodReturn::ErrorAttribute() {
    static const auto& attribute = *new STRINGApiAttribute("Error", 25, false, 0, -1, "Error");
    return attribute;
}

const ENUMApiAttribute& APIApiMethodReturn::ErrorCodeAttribute() {
    static const auto& attribute = *new ENUMApiAttribute("ErrorCode", 25, false, "Error Code",
                                                         APIEnumsIDStrList::gErrorStateEnumIdStrList);
    return attribute;
}

const STRINGApiAttribute& APIApiMethodReturn::ErrorDetailAttribute() {
    static const auto& attribute = *new STRINGApiAttribute("ErrorDetail", 25, false, 0, -1, "Error Detail");
    return attribute;
}

const ENUMApiAttribute& APIApiMethodReturn::LocaleAttribute() {
    static const auto& attribute =
        *new ENUMApiAttribute("Locale", 25, false, "Locale", APIEnumsIDStrList::gLanguageLocaleEnumIdStrList);
    return attribute;
}

const STRINGApiAttribute& APIApiMethodReturn::LocalizedErrorAttribute() {
    static const auto& attribute =
        *new STRINGApiAttribute("LocalizedError", 25, false, 0, -1, "Localized Error");
    return attribute;
}

const ENUMApiAttribute& APIApiMethodReturn::ReturnObjectEncodeAttribute() {
    static const auto& attribute =
        *new ENUMApiAttribute("ReturnObjectEncode", 25, false, "Return Object Encode",
                              APIEnumsIDStrList::gObjectReturnEncodeEnumIdStrList);
    return attribute;
}

const BOOLEANApiAttribute& APIApiMethodReturn::SuccessfulAttribute() {
    static const auto& attribute = *new BOOLEANApiAttribute("Successful", 25, false, "Successful");
    return attribute;
}

const STRINGARRAYApiAttribute& APIApiMethodReturn::WarningListAttribute() {
    static const auto& attribute = *new STRINGARRAYApiAttribute("WarningList", 25, false, "Warning List");
    return attribute;
}

const ATTRIBUTEList& APIApiMethodReturn::Attributes() {
    static const auto& list = *new ATTRIBUTEList(
        JoinAttributeLists({&ErrorAttribute(), &ErrorCodeAttribute(), &ErrorDetailAttribute(),
                            &LocaleAttribute(), &LocalizedErrorAttribute(), &ReturnObjectEncodeAttribute(),
                            &SuccessfulAttribute(), &WarningListAttribute()},
                           BASEApiObject::Attributes()));
    return list;
}

void APIApiMethodReturn::SetError(const std::string& error) {
    SetTyped(*this, ErrorAttribute(), error);
}

std::string APIApiMethodReturn::GetError() const {
    return GetTyped(*this, ErrorAttribute());
}

void APIApiMethodReturn::SetErrorCode(int errorState) {
    SetEnumId(*this, ErrorCodeAttribute(), APIEnumsIDStrList::gErrorStateEnumIdStrList, errorState);
}

std::string APIApiMethodReturn::GetErrorCode() const {
    return GetTyped(*this, ErrorCodeAttribute());
}

int APIApiMethodReturn::GetErrorState() const {
    if (!HasAttribute(ErrorCodeAttribute().GetXmlName()))
        return kNoError;
    const ENUMRow* row =
        ENUMTable(APIEnumsIDStrList::gErrorStateEnumIdStrList).FindDescription(GetErrorCode());
    return row == nullptr ? kUnknownErrorState : row->Value;
}

void APIApiMethodReturn::SetErrorDetail(const std::string& detail) {
    SetTyped(*this, ErrorDetailAttribute(), detail);
}

std::string APIApiMethodReturn::GetErrorDetail() const {
    return GetTyped(*this, ErrorDetailAttribute());
}

void APIApiMethodReturn::SetLocale(int id) {
    SetEnumId(*this, LocaleAttribute(), APIEnumsIDStrList::gLanguageLocaleEnumIdStrList, id);
}

std::string APIApiMethodReturn::GetLocale() const {
    return GetTyped(*this, LocaleAttribute());
}

void APIApiMethodReturn::SetLocalizedError(const std::string& error) {
    SetTyped(*this, LocalizedErrorAttribute(), error);
}

std::string APIApiMethodReturn::GetLocalizedError() const {
    return GetTyped(*this, LocalizedErrorAttribute());
}

void APIApiMethodReturn::SetReturnObjectEncode(int encoding) {
    SetEnumId(*this, ReturnObjectEncodeAttribute(), APIEnumsIDStrList::gObjectReturnEncodeEnumIdStrList,
              encoding);
}

std::string APIApiMethodReturn::GetReturnObjectEncode() const {
    return GetTyped(*this, ReturnObjectEncodeAttribute());
}

void APIApiMethodReturn::SetSuccessful(bool successful) {
    SetTyped(*this, SuccessfulAttribute(), successful);
}

bool APIApiMethodReturn::GetSuccessful() const {
    return GetTyped(*this, SuccessfulAttribute());
}

void APIApiMethodReturn::SetWarningList(const std::vector<std::string>& warnings) {
    SetTyped(*this, WarningListAttribute(), warnings);
}

std::vector<std::string> APIApiMethodReturn::GetWarningList() const {
    return GetTyped(*this, WarningListAttribute());
}
