#include "apiMgmt/apiStub/base/apiObjects/base/tsBaseApiObject.h"

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiEnumsIDStrList.h"
#include "apiMgmt/apiStub/base/apiObjects/base/typedAccess.h"

namespace {

constexpr int kUp = 1;

}  // namespace

// ---- TSBaseApiObject ----

const ATTRIBUTEList& TSBaseApiObject::GetAttributeList() const {
    return Attributes();
}

const NAMEApiAttribute& TSBaseApiObject::TsNameAttribute() {
    static const auto& attribute = *new NAMEApiAttribute("TsName", 25, false, false, 1, -1, "Tessera");
    return attribute;
}

const INTApiAttribute& TSBaseApiObject::TsSerialNumberAttribute() {
    static const auto& attribute = *new INTApiAttribute("TsSerialNumber", 25, false, -1, -1, "Tessera SN");
    return attribute;
}

const ATTRIBUTEList& TSBaseApiObject::Attributes() {
    static const auto& list = *new ATTRIBUTEList(
        JoinAttributeLists({&TsNameAttribute(), &TsSerialNumberAttribute()}, BASEApiObject::Attributes()));
    return list;
}

void TSBaseApiObject::SetTsName(const std::string& name) {
    SetTyped(*this, TsNameAttribute(), name);
}

std::string TSBaseApiObject::GetTsName() const {
    return GetTyped(*this, TsNameAttribute());
}

void TSBaseApiObject::SetTsSerialNumber(int64_t number) {
    SetTyped(*this, TsSerialNumberAttribute(), number);
}

int64_t TSBaseApiObject::GetTsSerialNumber() const {
    return GetTyped(*this, TsSerialNumberAttribute());
}

// ---- TSStatusBaseApiObject ----

TSStatusBaseApiObject::TSStatusBaseApiObject(const std::string& objectName) : TSBaseApiObject(objectName) {
    SetStatus(kUp);
    SetChildStatus(kUp);
}

const ATTRIBUTEList& TSStatusBaseApiObject::GetAttributeList() const {
    return Attributes();
}

const ENUMApiAttribute& TSStatusBaseApiObject::StatusAttribute() {
    static const auto& attribute =
        *new ENUMApiAttribute("Status", 25, false, "Status", APIEnumsIDStrList::gStatusEnumIdStrList);
    return attribute;
}

const ENUMApiAttribute& TSStatusBaseApiObject::ChildStatusAttribute() {
    static const auto& attribute = *new ENUMApiAttribute("ChildStatus", 25, false, "Child Status",
                                                         APIEnumsIDStrList::gStatusEnumIdStrList);
    return attribute;
}

const STRINGApiAttribute& TSStatusBaseApiObject::StatusMessageAttribute() {
    static const auto& attribute =
        *new STRINGApiAttribute("StatusMessage", 32, false, -1, -1, "Status Message");
    return attribute;
}

const ATTRIBUTEList& TSStatusBaseApiObject::Attributes() {
    static const auto& list = *new ATTRIBUTEList(
        JoinAttributeLists({&StatusAttribute(), &ChildStatusAttribute(), &StatusMessageAttribute()},
                           TSBaseApiObject::Attributes()));
    return list;
}

void TSStatusBaseApiObject::SetStatus(int id) {
    SetEnumId(*this, StatusAttribute(), APIEnumsIDStrList::gStatusEnumIdStrList, id);
}

std::string TSStatusBaseApiObject::GetStatus() const {
    return GetTyped(*this, StatusAttribute());
}

void TSStatusBaseApiObject::SetChildStatus(int id) {
    SetEnumId(*this, ChildStatusAttribute(), APIEnumsIDStrList::gStatusEnumIdStrList, id);
}

std::string TSStatusBaseApiObject::GetChildStatus() const {
    return GetTyped(*this, ChildStatusAttribute());
}

void TSStatusBaseApiObject::SetStatusMessage(const std::string& message) {
    SetTyped(*this, StatusMessageAttribute(), message);
}

std::string TSStatusBaseApiObject::GetStatusMessage() const {
    return GetTyped(*this, StatusMessageAttribute());
}
