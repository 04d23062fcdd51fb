#include "apiMgmt/apiStub/base/apiAttributes/objectApiAttributes.h"

#include "apiMgmt/apiStub/base/apiAttributes/attributeText.h"
#include "apiMgmt/common/utils/stringUtil.h"

// ---- OBJECTApiAttribute ----

std::string OBJECTApiAttribute::ToText(const APIObjectInstance* value) const {
    return value == nullptr ? std::string() : value->ToText();
}

std::unique_ptr<APIObjectInstance> OBJECTApiAttribute::FromText(const std::string& text) const {
    return APIObjectInstance::FromText(text);
}

// ---- OBJECTARRAYApiAttribute ----

std::string OBJECTARRAYApiAttribute::ToText(const std::vector<const APIObjectInstance*>& values) const {
    std::vector<std::string> references;
    for (const APIObjectInstance* value : values) {
        std::string reference = value == nullptr ? std::string() : MarkColons(value->ToText());
        if (!reference.empty())
            references.push_back(std::move(reference));
    }
    return JoinTexts(references, ":");
}

std::vector<std::unique_ptr<APIObjectInstance>> OBJECTARRAYApiAttribute::FromText(
    const std::string& text) const {
    std::vector<std::string> pieces;
    SplitChar(text, ':', pieces);
    std::vector<std::unique_ptr<APIObjectInstance>> values;
    for (std::string& piece : pieces) {
        Trim(piece);
        auto value = APIObjectInstance::FromText(UnmarkColons(std::move(piece)));
        if (value)
            values.push_back(std::move(value));
    }
    return values;
}

// ---- METHODOBJECTApiAttribute ----

std::string METHODOBJECTApiAttribute::ToText(const METHODArgument* value) const {
    return value == nullptr ? std::string() : value->ToXml(true);
}

// ---- GETLISTFILTERApiAttribute ----

std::string GETLISTFILTERApiAttribute::ToText(const FILTERList* value) const {
    return value == nullptr ? std::string() : value->ToText();
}

std::unique_ptr<FILTERList> GETLISTFILTERApiAttribute::FromText(const std::string& text) const {
    return FILTERList::FromText(text);
}
