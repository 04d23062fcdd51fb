#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethodObject.h"

#include "apiMgmt/apiStub/base/apiObjects/base/elementText.h"
#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/common/xmlwrap/xmlParser.h"

const ATTRIBUTEList& BASEApiMethodObject::GetAttributeList() const {
    static const auto& none = *new ATTRIBUTEList;
    return none;
}

void BASEApiMethodObject::SetAttribute(std::string_view name, std::string_view text) {
    if (!name.empty())
        attributes.Set(name, text);
}

std::string BASEApiMethodObject::GetAttribute(std::string_view name) const {
    return std::string(attributes.Find(name).value_or(std::string_view()));
}

std::string BASEApiMethodObject::ToXml(bool escape) const {
    const std::string& object = GetObjectName();
    std::string xml = "<" + object + ">";
    for (const BASEApiAttribute* attribute : GetAttributeList()) {
        const auto text = attributes.Find(attribute->GetXmlName());
        if (text)
            AppendElement(xml, attribute->GetXmlName(), *text, escape);
    }
    return xml.append("</").append(object).append(">");
}

void BASEApiMethodObject::FromXml(const parser::XMLElement& element) {
    for (parser::XMLElement child = element.GetFirstChild(); child; child = child.GetNextSibling())
        SetAttribute(child.GetTagName(), UnescapeXml(child.GetElementContent(), false));
}

void BASEApiMethodObject::FromXmlText(const std::string& text) {
    parser::XMLParser parser;
    if (!parser.ParseXMLString(UnescapeXml(text, true)))
        return;
    const parser::XMLElement root = parser.GetDocumentElement();
    if (CompareNoCase(root.GetTagName(), GetObjectName()) == 0)
        FromXml(root);
}
