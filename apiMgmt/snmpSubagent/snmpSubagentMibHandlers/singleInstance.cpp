#include <string>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/apiAccess.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/numericText.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

parser::XMLElement object_in_response(const api_response& response, const std::string& apiName,
                                      const std::string& iAttrName) {
    if (response.result != 0) {
        SUBAGENT_LOG(4, "failed to get xml response for %s, attrName: %s\n", apiName.c_str(),
                     iAttrName.c_str());
        return {};
    }
    const parser::XMLElement root = response.document.GetDocumentElement();
    if (!root) {
        SUBAGENT_LOG(4, "error found while trying to parse XmlString: %s\n", response.text.c_str());
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

int GetSingleInstance(const std::string& apiName, int iApiIndex, const std::string& iAttrName,
                      int32_t var_index, bool reuse_response) {
    static api_response kept;  // for the calls that read further attributes of the same object
    if (!reuse_response)
        kept = fetch_response(apiName, iApiIndex);
    const parser::XMLElement object = object_in_response(kept, apiName, iAttrName);
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
