#include "apiMgmt/apiStub/base/apiAttributes/filterList.h"

#include "apiMgmt/common/utils/stringUtil.h"

namespace {

// A string without a join keyword that begins with "-", the end of an item, means "and".
int CutJoin(std::string& text) {
    if (text.starts_with('-')) {
        return filter_join::kAnd;
    }
    std::vector<std::string> pieces;
    Split(text, " ", pieces, 2);
    if (pieces.size() < 2) {
        return filter_join::kUndecided;
    }
    text = pieces[1];
    if (CompareNoCase(pieces[0], "And") == 0) {
        return filter_join::kAnd;
    }
    return CompareNoCase(pieces[0], "Or") == 0 ? filter_join::kOr : filter_join::kUndecided;
}

void AddItem(FILTERList& list, std::string text) {
    Trim(text);
    std::vector<std::string> parts;
    Split(text, " ", parts, 3);  // the value may contain spaces
    if (parts.size() < 3) {
        return;
    }
    const FILTERItem item{parts[0], parts[2], FILTERItem::OperatorOf(parts[1])};
    if (item.filterOperator != filter_operator::kNone) {
        list.Add(item.name, item.filterOperator, item.PlainValue());
    }
}

}  // namespace

void FILTERList::Add(const std::string& name, int filterOperator, const std::string& value) {
    FILTERItem item{name, value, filterOperator};
    ReplaceAll(item.value, "-", "&hy&");
    items.push_back(std::move(item));
}

std::unique_ptr<FILTERList> FILTERList::FromText(const std::string& text) {
    std::string rest = text;
    Trim(rest);
    const int join = CutJoin(rest);
    if (join == filter_join::kUndecided) {
        return nullptr;
    }
    auto list = std::make_unique<FILTERList>();
    list->joinType = join;
    std::vector<std::string> pieces;
    Split(rest, "-", pieces);
    for (const std::string& piece : pieces) {
        AddItem(*list, piece);
    }
    return list;
}

std::string FILTERList::ToText() const {
    if (items.empty() || joinType == filter_join::kUndecided) {
        return {};
    }
    std::string text = joinType == filter_join::kAnd ? "and " : "or ";
    for (const FILTERItem& item : items) {
        text += item.ToText();
    }
    return text;
}
