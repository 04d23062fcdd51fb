#include "tools/apiClient/jsonText.h"

#include <nlohmann/json.hpp>

#include "apiMgmt/apiStub/base/apiAttributes/apiAttributes.h"
#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/common/utils/wholeNumber.h"

namespace {

using Json = nlohmann::ordered_json;

// Text stays text when it is no number as a whole. "nan" and "inf" do too: JSON has no such numbers, and null
// would look like a value that is not there.

Json IntegerJson(const std::string& text) {
    const std::optional<int64_t> number = ParseWhole<int64_t>(text);
    return number ? Json(*number) : Json(text);
}

Json RealJson(const std::string& text) {
    const char* end = nullptr;
    const std::optional<double> number = ParseDecimal(text, &end);
    return number && end == text.c_str() + text.size() ? Json(*number) : Json(text);
}

Json ReferenceJson(const APIObjectInstance& object) {
    return {{"InstanceId", object.instanceId},
            {"ObjectType", object.objectType},
            {"InstanceName", object.instanceName}};
}

Json ReferencesJson(const OBJECTARRAYApiAttribute& attribute, const std::string& text) {
    Json list = Json::array();
    for (const std::unique_ptr<APIObjectInstance>& object : attribute.FromText(text)) {
        list.push_back(ReferenceJson(*object));
    }
    return list;
}

Json TruthJson(const std::string& text) {
    const bool is_true = text == "1" || CompareNoCase(text, "true") == 0;
    const bool is_false = text == "0" || CompareNoCase(text, "false") == 0;
    return is_true || is_false ? Json(is_true) : Json(text);
}

template <class Attribute>
const Attribute* As(const Column& column) {
    return dynamic_cast<const Attribute*>(column.descriptor);
}

Json CellJson(const Column& column, const std::string& text) {
    if (As<BOOLEANApiAttribute>(column)) {
        return TruthJson(text);
    }
    if (As<INTApiAttribute>(column) || As<SIZEApiAttribute>(column)) {
        return IntegerJson(text);
    }
    if (As<DOUBLEApiAttribute>(column)) {
        return RealJson(text);
    }
    if (const auto* numbers = As<INTARRAYApiAttribute>(column)) {
        return numbers->FromText(text);
    }
    if (const auto* words = As<ENUMMASKApiAttribute>(column)) {
        return words->FromText(text);
    }
    if (const auto* texts = As<STRINGARRAYApiAttribute>(column)) {
        return texts->FromText(text);
    }
    if (const auto* reference = As<OBJECTApiAttribute>(column)) {
        const std::unique_ptr<APIObjectInstance> object = reference->FromText(text);
        return object ? ReferenceJson(*object) : Json(text);
    }
    const auto* references = As<OBJECTARRAYApiAttribute>(column);
    return references ? ReferencesJson(*references, text) : Json(text);
}

Json RecordJson(const Record& record, const std::vector<Column>& columns) {
    Json object = Json::object();
    for (const Column& column : columns) {
        if (record.values->Contains(column.name)) {
            object[column.name] = CellJson(column, record.Value(column.name));
        }
    }
    return object;
}

Json ValueJson(const Result& result) {
    switch (result.valueKind) {
        case Result::kNumber:
            return IntegerJson(result.value);
        case Result::kTruth:
            return TruthJson(result.value);
        default:
            return result.value;
    }
}

Json ResultJson(const Result& result, const std::vector<std::string>& names) {
    if (result.kind == Result::kNothing) {
        return nullptr;
    }
    if (result.kind == Result::kValue) {
        return ValueJson(result);
    }
    const std::vector<Column> columns =
        names.empty() ? AllColumns(result.records) : NamedColumns(result.records, names);
    Json list = Json::array();
    for (const Record& record : result.records) {
        list.push_back(RecordJson(record, columns));
    }
    return result.kind == Result::kList ? list : list.empty() ? Json() : list.front();
}

}  // namespace

std::string JsonText(const Result& result, const std::vector<std::string>& columns) {
    return ResultJson(result, columns).dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}
