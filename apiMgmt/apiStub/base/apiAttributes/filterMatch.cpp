#include "apiMgmt/apiStub/base/apiAttributes/filterMatch.h"

#include "apiMgmt/common/utils/stringUtil.h"

bool IsContainedAs(int filterOperator, const std::string& text, const std::string& filter) {
    switch (filterOperator) {
        case filter_operator::kIqin:
            return ToLower(filter).find(ToLower(text)) != std::string::npos;
        case filter_operator::kIqs:
            return ToLower(text).find(ToLower(filter)) != std::string::npos;
        default:
            return false;
    }
}
