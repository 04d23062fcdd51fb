#include "apiMgmt/apiStub/base/apiObjects/base/baseApiObject.h"

#include "apiMgmt/apiStub/base/apiObjects/base/apiObjectFactory.h"
#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethod.h"
#include "apiMgmt/apiStub/base/apiObjects/base/elementText.h"
#include "apiMgmt/apiStub/base/apiObjects/base/typedAccess.h"
#include "apiMgmt/common/utils/stringUtil.h"

namespace {

/** The only object whose values are already markup. */
constexpr char kUnescapedObject[] = "AsyncTask";

}  // namespace

BASEApiObject::BASEApiObject(const std::string& objectName) {
    SetObjectType(objectName);
}

bool BASEApiObject::IsMethodChangingState(const std::string& object, const std::string& command) const {
    const auto method =
        APIObjectFactory<BASEApiMethod>::Instance().Create("API" + object + command + "Method");
    return method && method->ChangesState();
}

const ATTRIBUTEList& BASEApiObject::GetAttributeList() const {
    return Attributes();
}

void BASEApiObject::InitMetaData() const {
    GetAttributeList();
}

void BASEApiObject::SetAttribute(std::string_view name, std::string_view text, bool force) {
    if (!name.empty() && (force || !text.empty()))
        attributes.Set(name, text);
}

std::string BASEApiObject::GetAttribute(std::string_view name) const {
    return std::string(attributes.Find(name).value_or(std::string_view()));
}

bool BASEApiObject::GetAttribute(std::string_view name, std::string& text) const {
    const auto found = attributes.Find(name);
    if (found)
        text = *found;
    return found.has_value();
}

bool BASEApiObject::EscapesValues() const {
    return CompareNoCase(GetObjectName(), kUnescapedObject) != 0;
}

std::string BASEApiObject::ToXml() const {
    std::string xml;
    AppendXml(xml);
    return xml;
}

void BASEApiObject::AppendXml(std::string& xml) const {
    const bool escapes = EscapesValues();
    const std::string& object = GetObjectName();
    xml.append("<").append(object).append(">");
    for (const BASEApiAttribute* attribute : GetAttributeList()) {
        const auto text = attributes.Find(attribute->GetXmlName());
        if (text)
            AppendElement(xml, attribute->GetXmlName(), *text, escapes);
    }
    xml.append("</").append(object).append(">");
}

std::string BASEApiObject::GetInstanceText() const {
    return GetInstanceId() + " " + GetObjectType() + " " + GetInstanceName();
}

// ---- CSV ----

std::string BASEApiObject::DataText() const {
    ATTRIBUTENames names;
    for (const auto& [name, text] : attributes)
        names.emplace_hint(names.end(), name);
    return HeaderText(names) + "<Data>" + DataRow(names) + "</Data>";
}

std::string BASEApiObject::DataRow(const ATTRIBUTENames& names) const {
    std::string row;
    AppendDataRow(row, names);
    return row;
}

void BASEApiObject::AppendDataRow(std::string& csv, const ATTRIBUTENames& names) const {
    const bool escapes = EscapesValues();
    bool is_first = true;
    for (const std::string& name : names) {
        if (!is_first)
            csv += ',';
        is_first = false;
        const std::string text = GetAttribute(name);
        csv += EncodeCsvValue(escapes ? EscapeXml(text, false) : text);
    }
}

std::string BASEApiObject::HeaderText(const ATTRIBUTENames& names) {
    std::string header = "<Header>";
    bool is_first = true;
    for (const std::string& name : names) {
        if (!is_first)
            header += ',';
        is_first = false;
        header += name;
    }
    return header + "</Header>";
}

std::string BASEApiObject::EncodeCsvValue(const std::string& text) {
    std::string marked = text;
    ReplaceAll(marked, ",", "--cm--");
    ReplaceAll(marked, "\n", "--nl--");
    ReplaceAll(marked, ":", "--cl--");
    return marked;
}

ATTRIBUTENames BASEApiObject::MergeAttributeNames(const std::vector<BASEApiObject*>& objects) {
    ATTRIBUTENames names;
    for (const BASEApiObject* object : objects) {
        for (const auto& [name, text] : object->attributes) {
            if (!names.contains(name))
                names.emplace(name);
        }
    }
    return names;
}

// ---- Attributes ----

const INSTANCEIDApiAttribute& BASEApiObject::InstanceIdAttribute() {
    static const auto& attribute = *new INSTANCEIDApiAttribute("InstanceId", 30, false, "Instance ID");
    return attribute;
}

const NAMEApiAttribute& BASEApiObject::InstanceNameAttribute() {
    static const auto& attribute =
        *new NAMEApiAttribute("InstanceName", 50, false, false, 1, -1, "Instance Name");
    return attribute;
}

const STRINGApiAttribute& BASEApiObject::ObjectTypeAttribute() {
    static const auto& attribute = *new STRINGApiAttribute("ObjectType", 15, false, 1, -1, "");
    return attribute;
}

const ATTRIBUTEList& BASEApiObject::Attributes() {
    static const auto& list =
        *new ATTRIBUTEList{&InstanceIdAttribute(), &InstanceNameAttribute(), &ObjectTypeAttribute()};
    return list;
}

void BASEApiObject::SetInstanceId(const std::string& id) {
    SetTyped(*this, InstanceIdAttribute(), id);
}

std::string BASEApiObject::GetInstanceId() const {
    return GetTyped(*this, InstanceIdAttribute());
}

void BASEApiObject::SetInstanceName(const std::string& name) {
    SetTyped(*this, InstanceNameAttribute(), name);
}

std::string BASEApiObject::GetInstanceName() const {
    return GetTyped(*this, InstanceNameAttribute());
}

void BASEApiObject::SetObjectType(const std::string& type) {
    SetTyped(*this, ObjectTypeAttribute(), type);
}

std::string BASEApiObject::GetObjectType() const {
    return GetTyped(*this, ObjectTypeAttribute());
}
