#include "apiMgmt/apiStub/base/apiAttributes/enumRow.h"

#include "apiMgmt/common/utils/stringUtil.h"

const ENUMRow* ENUMTable::FindValue(int32_t value) const {
    for (const ENUMRow& row : rows_) {
        if (row.Value == value) {
            return &row;
        }
    }
    return nullptr;
}

const ENUMRow* ENUMTable::FindDescription(std::string_view description) const {
    for (const ENUMRow& row : rows_) {
        if (CompareNoCase(row.Description, description) == 0) {
            return &row;
        }
    }
    return nullptr;
}

std::string_view ENUMTable::DescriptionOf(int32_t value) const {
    const ENUMRow* row = FindValue(value);
    return row == nullptr ? std::string_view() : row->Description;
}
