#include "tools/apiClient/valueParser.h"

#include "apiMgmt/apiStub/base/apiAttributes/attributeText.h"
#include "apiMgmt/apiStub/client/attributeValue.h"
#include "tools/apiClient/catalogueDescription.h"
#include "tools/commandLine/usageError.h"

namespace apiclient {

using commandline::UsageError;

namespace {

/** Returns the separator between the values of a kind; null for a kind with a single value. */
const char* SeparatorOf(const std::string& kind) {
    if (kind == "INTARRAY" || kind == "ENUMMASK") {
        return " ";
    }
    return kind == "STRINGARRAY" || kind == "OBJECTARRAY" ? ":" : nullptr;
}

std::string ParseOne(const CatalogueAttribute& attribute, const std::string& value, bool has_marks) {
    const std::optional<std::string> text =
        tessera::ReadValue(*attribute.descriptor, has_marks ? MarkColons(value) : value);
    if (!text) {
        throw UsageError("invalid value '" + value + "' for " + DescribeAttribute(attribute) + "; expected " +
                         DescribeLegalValues(attribute));
    }
    if (!tessera::IsWritable(*text)) {
        throw UsageError(DescribeAttribute(attribute) +
                         " contains a control character, which a document cannot contain");
    }
    return *text;
}

}  // namespace

std::string ParseValue(const CatalogueAttribute& attribute, const std::vector<std::string>& values) {
    const char* separator = SeparatorOf(attribute.kind);
    if (values.size() > 1 && separator == nullptr) {
        throw UsageError(DescribeAttribute(attribute) + " is given " + std::to_string(values.size()) +
                         " times; it holds only one value");
    }
    std::vector<std::string> texts;
    for (const std::string& value : values) {
        // An empty value of any kind removes the previous value.
        texts.push_back(
            value.empty() ? "" : ParseOne(attribute, value, separator != nullptr && *separator == ':'));
    }
    return JoinTexts(texts, separator == nullptr ? "" : separator);
}

}  // namespace apiclient
