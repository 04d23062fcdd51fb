// Parses and formats filter strings, and applies the filters to an object. The first line is the filter, each
// other line "NAME VALUE" of a disk.

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTsDisk.h"
#include "apiMgmt/apiStub/base/apiAttributes/filterList.h"
#include "fuzz/lib/fuzzCheck.h"
#include "fuzz/lib/fuzzInput.h"

namespace {

bool AreEqual(const FILTERList& left, const FILTERList& right) {
    if (left.joinType != right.joinType || left.items.size() != right.items.size())
        return false;
    for (size_t i = 0; i < left.items.size(); ++i) {
        if (left.items[i].name != right.items[i].name || left.items[i].value != right.items[i].value ||
            left.items[i].filterOperator != right.items[i].filterOperator)
            return false;
    }
    return true;
}

// An item that was read holds no hyphen, and what is added in words comes back as it was.
void CheckItem(const FILTERItem& item, int joinType) {
    FuzzCheck(item.value.find('-') == std::string::npos, "a hyphen in an item's value");
    FILTERList single;
    single.joinType = joinType;
    single.Add(item.name, item.filterOperator, item.PlainValue());
    const std::unique_ptr<FILTERList> read = FILTERList::FromText(single.ToText());
    if (!read || !AreEqual(*read, single))
        FuzzFail("an item does not come back: " + single.ToText());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzInput input(data, size);
    const std::unique_ptr<FILTERList> filter = FILTERList::FromText(std::string(input.Line()));
    if (!filter)
        return 0;
    if (!filter->items.empty()) {
        const std::unique_ptr<FILTERList> again = FILTERList::FromText(filter->ToText());
        if (!again || !AreEqual(*again, *filter))
            FuzzFail("the filter does not come back: " + filter->ToText());
    }
    for (const FILTERItem& item : filter->items)
        CheckItem(item, filter->joinType);
    while (!input.IsEmpty()) {
        const std::string_view line = input.Line();
        const size_t blank = std::min(line.find(' '), line.size());
        const BASEApiAttribute* attribute =
            FindAttributeIn(APITsDisk().GetAttributeList(), line.substr(0, blank));
        for (const FILTERItem& item : filter->items) {
            if (attribute != nullptr)
                attribute->MatchesFilter(item, std::string(line.substr(std::min(blank + 1, line.size()))));
        }
    }
    return 0;
}
