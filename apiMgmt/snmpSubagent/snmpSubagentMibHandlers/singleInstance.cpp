#include <string>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/apiAccess.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/numericText.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

namespace {

// The answer to the last fetch, kept for the calls that read further attributes of the same object; parsed
// once. Main thread only.
struct kept_response {
    std::string text;
    parser::XMLParser document{nullptr};
};

kept_response& last_response() {
    static kept_response kept;
    return kept;
}

int fetch(const std::string& apiName, int iApiIndex, const std::string& iAttrName) {
    kept_response& kept = last_response();
    kept.text.clear();
    const int result = AccessApi(apiName, kept.text, iApiIndex, "", "");
    kept.document.ParseXMLString(kept.text);
    if (result != 0)
        SUBAGENT_LOG(4, "failed to get xml response for %s, attrName: %s\n", apiName.c_str(),
                     iAttrName.c_str());
    return result;
}

// The object in the kept answer; tests false when the answer holds none, with the reason logged.
parser::XMLElement object_of_last_response(const std::string& apiName) {
    const kept_response& kept = last_response();
    const parser::XMLElement root = kept.document.GetDocumentElement();
    if (!root) {
        SUBAGENT_LOG(4, "error found while trying to parse XmlString: %s\n", kept.text.c_str());
        return {};
    }
    if (check_xml_resp(apiName, root) != 0)
        return {};
    const parser::XMLElement return_object = root.GetFirstChildByTagName("ReturnObject");
    if (!return_object) {
        SUBAGENT_LOG(4, "response from ApiMgr does not contain 'ReturnObject': %s\n",
                     root.GetElementContent().c_str());
        return {};
    }
    const std::vector<parser::XMLElement> objects = object_elements(return_object, apiName);
    if (objects.empty()) {
        SUBAGENT_LOG(4, "response from ApiMgr for single instance does not contain %s\n", apiName.c_str());
        return {};
    }
    return objects.front();
}

}  // namespace

int GetSingleInstance(const std::string& apiName, int iApiIndex, const std::string& iAttrName,
                      int32_t var_index, bool reuse_response) {
    if (!reuse_response) {
        const int result = fetch(apiName, iApiIndex, iAttrName);
        if (result != 0)
            return result;
    }
    const parser::XMLElement object = object_of_last_response(apiName);
    if (!object)
        return 1;
    const parser::XMLElement attribute = object.GetFirstChildByTagName(iAttrName);
    if (!attribute) {
        SUBAGENT_LOG(7, "specified attr not found: iAttrName: %s\n", iAttrName.c_str());
        return 1;
    }
    variable_entry& entry = vars[var_index];
    const std::string text = attribute.GetElementContent();
    if (text != entry.str) {
        entry.str = text;
        entry.uint = number_from_text(text, cols[entry.col_id].data_type);
    }
    return 0;
}
