#include "apiMgmt/apiStub/base/apiObjects/base/methodReturns.h"

#include "apiMgmt/apiStub/base/apiAttributes/numberText.h"
#include "apiMgmt/apiStub/base/apiObjects/base/elementText.h"
#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/common/xmlwrap/xmlParser.h"

namespace {

std::string Element(std::string_view name, std::string_view text) {
    std::string xml;
    AppendElement(xml, name, text);
    return xml;
}

}  // namespace

BOOLMethodReturn::BOOLMethodReturn(bool result, BASEApiMethod* owned)
    : BASEApiMethodReturn(true, owned), value(result) {}

std::string BOOLMethodReturn::ReturnXml(int /*encoding*/) const {
    return Element("ReturnBool", value ? "True" : "False");
}

INTMethodReturn::INTMethodReturn(int32_t result, BASEApiMethod* owned)
    : BASEApiMethodReturn(true, owned), value(result) {}

std::string INTMethodReturn::ReturnXml(int /*encoding*/) const {
    return Element("ReturnInt", std::to_string(value));
}

STRINGMethodReturn::STRINGMethodReturn(const std::string& result, BASEApiMethod* owned)
    : BASEApiMethodReturn(true, owned), value(result) {}

std::string STRINGMethodReturn::ReturnXml(int /*encoding*/) const {
    return Element("ReturnString", EscapeXml(value, false));
}

ENUMMethodReturn::ENUMMethodReturn(const std::string& description, BASEApiMethod* owned)
    : BASEApiMethodReturn(true, owned), value(description) {}

std::string ENUMMethodReturn::ReturnXml(int /*encoding*/) const {
    return Element("ReturnEnum", value);
}

ENUMMaskMethodReturn::ENUMMaskMethodReturn(const std::string& content, BASEApiMethod* owned)
    : BASEApiMethodReturn(true, owned), value(content) {}

std::string ENUMMaskMethodReturn::ReturnXml(int /*encoding*/) const {
    return Element("ReturnEnumMask", value);
}

std::vector<ENUMMaskMethodReturn::Row> ENUMMaskMethodReturn::GetRows() const {
    std::vector<Row> rows;
    parser::XMLParser parser;
    if (!parser.ParseXMLString(ReturnXml(object_encoding::kXml)))
        return rows;
    parser::XMLElement child = parser.GetDocumentElement().GetFirstChild();
    for (; child; child = child.GetNextSibling()) {
        const std::string id = child.GetFirstChildByTagName("Value").GetElementContent();
        Row row = {.Value = NumberOfText<int32_t>(id),
                   .Description = child.GetFirstChildByTagName("Description").GetElementContent(),
                   .UiString = child.GetFirstChildByTagName("UiString").GetElementContent()};
        if (!id.empty() && !row.Description.empty())
            rows.push_back(std::move(row));
    }
    return rows;
}
