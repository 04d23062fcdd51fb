#include "apiMgmt/apiStub/client/filter.h"

#include "apiMgmt/apiStub/client/clientError.h"
#include "apiMgmt/common/utils/stringUtil.h"

namespace tessera {

namespace {

/** The mark for a hyphen, which ends a condition. */
constexpr char kHyphenMark[] = "&hy&";

/** Returns why the array would misread the value; null if it would not. */
const char* ProblemOf(const std::string& value) {
    std::string trimmed = value;
    TrimRight(trimmed);
    if (trimmed.empty())
        return "is blank, so the array would ignore the condition";
    if (trimmed != value)
        return "ends in whitespace, which the array would ignore";
    if (value.find(kHyphenMark) != std::string::npos)
        return "contains '&hy&', which the array would read as a hyphen";
    return IsWritable(value) ? nullptr : "contains a control character, which a document cannot contain";
}

}  // namespace

Condition::Condition(const BASEApiAttribute& described, int code, std::string text)
    : attribute(&described), filterOperator(code), value(std::move(text)) {
    if (const char* problem = ProblemOf(value))
        throw InvalidArgument("the value for " + described.GetXmlName() + " in a filter " + problem,
                              described.GetXmlName(), LegalValues(described));
}

AllOf operator&&(AllOf left, const AllOf& right) {
    left.conditions.insert(left.conditions.end(), right.conditions.begin(), right.conditions.end());
    return left;
}

AnyOf operator||(AnyOf left, const AnyOf& right) {
    left.conditions.insert(left.conditions.end(), right.conditions.begin(), right.conditions.end());
    return left;
}

Filter::Filter(AnyOf any) : join(filter_join::kOr), conditions(std::move(any.conditions)) {
    if (conditions.empty())
        throw InvalidArgument("a filter with 'or' needs at least one condition", "Filter");
}

FILTERList Filter::ListFor(const ATTRIBUTEList& attributes, const std::string& object) const {
    FILTERList list;
    list.joinType = join;
    for (const Condition& condition : conditions) {
        const BASEApiAttribute& known = DescriptorIn(attributes, condition.GetAttribute(), object);
        list.Add(known.GetXmlName(), condition.GetOperator(), condition.GetValue());
    }
    return list;
}

}  // namespace tessera
