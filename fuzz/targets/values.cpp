// Parses strings as each value type. A parsed value must have one format, which parses to the same value. The
// attribute classes of all objects must check the string without throwing any exception but their own.

#include <cstdlib>
#include <ctime>

#include "apiMgmt/apiStub/base/apiAttributes/apiAttributes.h"
#include "apiMgmt/apiStub/base/apiAttributes/apiObjectInstance.h"
#include "apiMgmt/apiStub/base/apiAttributes/datetimeValue.h"
#include "apiMgmt/apiStub/base/apiAttributes/sizeValue.h"
#include "apiMgmt/apiStub/base/apiAttributes/temperatureValue.h"
#include "apiMgmt/apiStub/base/apiAttributes/versionValue.h"
#include "apiMgmt/apiStub/base/apiObjects/base/apiObjectFactory.h"
#include "apiMgmt/apiStub/base/apiObjects/base/baseApiObject.h"
#include "apiMgmt/common/utils/apiMethodError.h"
#include "fuzz/lib/fuzzCheck.h"

namespace {

template <class Value>
void CheckValue(const std::string& text, const char* what) {
    const std::string written = Value::FromText(text).ToText();
    if (Value::FromText(written).ToText() != written)
        FuzzFail(std::string(what) + " '" + written + "' is parsed as '" + Value::FromText(written).ToText() +
                 "'");
}

void CheckReference(const std::string& text) {
    const std::unique_ptr<APIObjectInstance> reference = APIObjectInstance::FromText(text);
    if (!reference)
        return;
    const std::unique_ptr<APIObjectInstance> again = APIObjectInstance::FromText(reference->ToText());
    if (!again || again->ToText() != reference->ToText())
        FuzzFail("reference '" + reference->ToText() + "' is parsed differently");
}

// Returns the descriptors of all objects.
const ATTRIBUTEList& AllAttributes() {
    static const ATTRIBUTEList all = [] {
        ATTRIBUTEList list;
        for (const auto& [name, create] : APIObjectFactory<BASEApiObject>::Instance().GetCreators()) {
            const std::unique_ptr<BASEApiObject> object(create());
            const ATTRIBUTEList& own = object->GetAttributeList();
            list.insert(list.end(), own.begin(), own.end());
        }
        return list;
    }();
    return all;
}

bool IsLegal(const BASEApiAttribute& attribute, const std::string& text) {
    try {
        return attribute.Validate(text);
    } catch (const APIMethodError&) {
        return false;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const bool utc = setenv("TZ", "UTC", 1) == 0;  // elsewhere, one hour per year is ambiguous
    FuzzCheck(utc, "cannot set the time zone");
    const std::string text(reinterpret_cast<const char*>(data), size);
    CheckValue<DATETIMEValue>(text, "date");
    CheckValue<SIZEValue>(text, "size");
    CheckValue<TEMPERATUREValue>(text, "temperature");
    CheckValue<VERSIONValue>(text, "version");
    CheckReference(text);
    FILTERItem item;
    item.value = text;
    for (const BASEApiAttribute* attribute : AllAttributes()) {
        for (item.filterOperator = 0; item.filterOperator <= filter_operator::kIqs; ++item.filterOperator)
            attribute->MatchesFilter(item, text);
        IsLegal(*attribute, text);
    }
    return 0;
}
