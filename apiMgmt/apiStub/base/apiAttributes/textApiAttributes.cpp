#include "apiMgmt/apiStub/base/apiAttributes/textApiAttributes.h"

#include "apiMgmt/apiStub/base/apiAttributes/attributeText.h"
#include "apiMgmt/apiStub/base/apiAttributes/filterItem.h"
#include "apiMgmt/common/utils/apiMethodError.h"
#include "apiMgmt/common/utils/stringUtil.h"

namespace {

constexpr char kSourceFile[] = "apiMgmt/apiStub/base/apiAttributes/textApiAttributes";
constexpr int kParsingError = 4;
constexpr int kBadCharacters = 10011;
constexpr int kTooShort = 10763;
constexpr int kTooLong = 10764;

void CheckLength(const std::string& name, const std::string& text, int64_t minLength, int64_t maxLength) {
    const auto length = static_cast<int64_t>(text.size());
    if (minLength > 0 && minLength > length)
        throw APIMethodError(
            FormatString(
                "Attribute \"%s\" was \"%s\" [%d characters long], but must be a string at least %lld "
                "characters",
                name.c_str(), text.c_str(), static_cast<int>(length), static_cast<long long>(minLength)),
            kParsingError, kSourceFile, __LINE__, kTooShort, "%s|%lld", name.c_str(),
            static_cast<long long>(minLength));
    if (maxLength >= 0 && maxLength < length)
        throw APIMethodError(
            FormatString(
                "Attribute \"%s\" was \"%s\" [%d characters long], but must be a string no more than "
                "%lld characters",
                name.c_str(), text.c_str(), static_cast<int>(length), static_cast<long long>(maxLength)),
            kParsingError, kSourceFile, __LINE__, kTooLong, "%s|%lld", name.c_str(),
            static_cast<long long>(maxLength));
}

void CheckCharacters(const std::string& name, const std::string& text, const std::string& invalidChars) {
    if (text.find_first_of(invalidChars) == std::string::npos)
        return;
    throw APIMethodError(FormatString("Attribute \"%s\" was \"%s\", but cannot contain these characters: %s",
                                      name.c_str(), text.c_str(), invalidChars.c_str()),
                         kParsingError, kSourceFile, __LINE__, kBadCharacters, "%s", name.c_str());
}

}  // namespace

// ---- STRINGApiAttribute ----

STRINGApiAttribute::STRINGAttributeProperties::STRINGAttributeProperties(
    const std::string& name, uint32_t width, bool first, bool second, int64_t least, int64_t greatest,
    const std::string& forbidden, const std::string& form, const std::string& text)
    : BASEAttributeProperties(name, width, first, second, text),
      minLength(least),
      maxLength(greatest),
      invalidChars(forbidden),
      pattern(form) {}

STRINGApiAttribute::STRINGApiAttribute(const std::string& xmlName, uint32_t displayWidth, bool firstFlag,
                                       int64_t minLength, int64_t maxLength, const std::string& label)
    : STRINGApiAttribute(xmlName, displayWidth, firstFlag, minLength, maxLength, "", "", label) {}

STRINGApiAttribute::STRINGApiAttribute(const std::string& xmlName, uint32_t displayWidth, bool firstFlag,
                                       int64_t minLength, int64_t maxLength, const std::string& invalidChars,
                                       const std::string& pattern, const std::string& label)
    : STRINGApiAttribute(std::make_unique<STRINGAttributeProperties>(
          xmlName, displayWidth, firstFlag, false, minLength, maxLength, invalidChars, pattern, label)) {}

STRINGApiAttribute::STRINGApiAttribute(std::unique_ptr<STRINGAttributeProperties> owned)
    : BASEApiAttribute(std::move(owned)) {}

bool STRINGApiAttribute::Validate(const std::string& text) const {
    const auto& bounds = static_cast<const STRINGAttributeProperties&>(GetProperties());
    if (bounds.minLength == 0 && bounds.maxLength == 0)
        return true;
    CheckLength(GetXmlName(), text, bounds.minLength, bounds.maxLength);
    CheckCharacters(GetXmlName(), text, bounds.invalidChars);
    return true;
}

bool STRINGApiAttribute::MatchesFilter(const FILTERItem& item, const std::string& text) const {
    if (!HasBothSides(item, text))
        return false;
    const std::string filter = item.PlainValue();
    return IsOrderedAs(item.filterOperator, CompareNoCase(text, filter), 0) ||
           IsContainedAs(item.filterOperator, text, filter);
}

NAMEApiAttribute::NAMEApiAttribute(const std::string& xmlName, uint32_t displayWidth, bool firstFlag,
                                   bool secondFlag, int64_t minLength, int64_t maxLength,
                                   const std::string& label)
    : STRINGApiAttribute(std::make_unique<STRINGAttributeProperties>(
          xmlName, displayWidth, firstFlag, secondFlag, minLength, maxLength, "", "", label)) {}

INSTANCEIDApiAttribute::INSTANCEIDApiAttribute(const std::string& xmlName, uint32_t displayWidth,
                                               bool firstFlag, const std::string& label)
    : STRINGApiAttribute(xmlName, displayWidth, firstFlag, 0, 0, label) {}

bool INSTANCEIDApiAttribute::MatchesFilter(const FILTERItem& item, const std::string& text) const {
    return HasBothSides(item, text) && item.filterOperator == filter_operator::kEqual &&
           CompareNoCase(text, item.PlainValue()) == 0;
}

// ---- ENUMApiAttribute, ENUMMASKApiAttribute ----

ENUMTABLEApiAttribute::ENUMAttributeProperties::ENUMAttributeProperties(const std::string& name,
                                                                        uint32_t width, bool first,
                                                                        const std::string& text,
                                                                        ENUMTable rows)
    : BASEAttributeProperties(name, width, first, false, text), table(rows) {}

ENUMTABLEApiAttribute::ENUMTABLEApiAttribute(const std::string& xmlName, uint32_t displayWidth,
                                             bool firstFlag, const std::string& label, ENUMTable rows)
    : BASEApiAttribute(
          std::make_unique<ENUMAttributeProperties>(xmlName, displayWidth, firstFlag, label, rows)) {}

const ENUMTable& ENUMTABLEApiAttribute::GetTable() const {
    return static_cast<const ENUMAttributeProperties&>(GetProperties()).table;
}

bool ENUMApiAttribute::MatchesFilter(const FILTERItem& item, const std::string& text) const {
    return HasBothSides(item, text) && item.filterOperator == filter_operator::kEqual &&
           CompareNoCase(FromText(text), FromText(item.PlainValue())) == 0;
}

std::string ENUMApiAttribute::FromText(const std::string& text) const {
    std::string description = text;
    Trim(description);
    return description;
}

std::string ENUMMASKApiAttribute::ToText(const std::vector<std::string>& descriptions) const {
    return JoinTexts(descriptions, " ");
}

std::vector<std::string> ENUMMASKApiAttribute::FromText(const std::string& text) const {
    return WordsOf(text);
}

// ---- STRINGARRAYApiAttribute ----

std::string STRINGARRAYApiAttribute::ToText(const std::vector<std::string>& items) const {
    std::vector<std::string> marked;
    marked.reserve(items.size());
    for (const std::string& item : items)
        marked.push_back(MarkColons(item));
    return JoinTexts(marked, ":");
}

std::vector<std::string> STRINGARRAYApiAttribute::FromText(const std::string& text) const {
    std::vector<std::string> items;
    Split(text, ":", items);
    for (std::string& item : items)
        item = UnmarkColons(std::move(item));
    return items;
}
