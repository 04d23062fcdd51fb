#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/apiAccess.h"

#include <cstdio>
#include <map>
#include <memory>
#include <string_view>
#include <utility>

#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/proto/apiMgrMsg.pb.h"
#include "apiMgmt/snmpSubagent/snmpSubagentComm/snmpSubagentComm.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/settings/subagentConf.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/apiRequests.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

std::atomic<bool> liteObjEnabled{true};

namespace {

using attribute_map = std::map<std::string, std::string>;
using method_ptr = std::unique_ptr<BASEApiMethod>;

template <typename Method>
method_ptr make_list_method() {
    return std::make_unique<Method>();
}

template <typename Method>
method_ptr make_method(const attribute_map& attributes) {
    return std::make_unique<Method>(attributes);
}

#define GETLIST_METHOD(apiName, Object) {apiName, make_list_method<API##Object::API##Object##GetListMethod>},
#define GET_METHOD(apiName, Object) {apiName, make_method<API##Object::API##Object##GetMethod>},

const std::map<std::string, method_ptr (*)()> kGetListMethods = {API_LIST_REQUESTS(GETLIST_METHOD)};
const std::map<std::string, method_ptr (*)(const attribute_map&)> kGetMethods = {
    API_INSTANCE_REQUESTS(GET_METHOD)};

#undef GETLIST_METHOD
#undef GET_METHOD

int unrecognized(const std::string& apiName) {
    SUBAGENT_LOG(warning, "unrecognized apiName: %s\n", apiName.c_str());
    return 1;
}

// Escapes a value, because the method writes values verbatim and a manager's string must not become markup.
// Characters that are harmless within an element stay as they are: EscapeXml alone would turn a tab into a
// line feed.
std::string as_content(const std::string& text) {
    constexpr std::string_view kNoMarkup = "\t\n\"'";
    std::string content;
    for (const char each : text)
        content += kNoMarkup.find(each) == kNoMarkup.npos ? EscapeXml({each}, false) : std::string{each};
    return content;
}

void append_method(BASEApiMethod& method, std::string& xml) {
    if (liteObjEnabled)
        method.SetLiteObj();
    xml += method.GenerateXml(false, true);
}

// Appends the method that the arguments of AccessApi select.
int append_request(const std::string& apiName, std::string& xml, int iApiIndex, const std::string& attrName,
                   const std::string& attrValue) {
    if (iApiIndex == kAllObjects) {
        if (gen_xml_GetList_append_to_string(apiName, xml) == 0)
            return 0;
        SUBAGENT_LOG(warning, "could not generate GetList request for %s\n", apiName.c_str());
    } else if (attrName.empty()) {
        if (gen_xml_Get_append_to_string(apiName, xml, iApiIndex) == 0)
            return 0;
        SUBAGENT_LOG(warning, "could not generate Get request for %s, iApiIndex: %d\n", apiName.c_str(),
                     iApiIndex);
    } else {
        if (gen_xml_Set_append_to_string(apiName, xml, iApiIndex, attrName, attrValue) == 0)
            return 0;
        SUBAGENT_LOG(warning, "could not generate xml request for %s\n", apiName.c_str());
    }
    return 1;
}

}  // namespace

int AccessApi(const std::string& apiName, std::string& response, int iApiIndex, const std::string& attrName,
              const std::string& attrValue) {
    protoIPCMsg::GPBIPCMsg request;
    protoIPCMsg::GPBIPCMsg answer;
    request.set_msgtype(protoIPCMsg::APIRequest);
    request.mutable_apireqmsg()->set_cmdtype(protoIPCMsg::Command);
    std::string* document = request.mutable_apireqmsg()->mutable_cmd()->mutable_cmddata();
    *document = apiRequestPrefix;
    if (append_request(apiName, *document, iApiIndex, attrName, attrValue) != 0)
        return 1;
    *document += apiDocumentEnd;

    if (snmpSubagentComm->SendRequestToAPIManager(request, answer) != 0) {
        SUBAGENT_LOG(warning, "failed to SendRequestToAPIManager: %s\n", apiName.c_str());
        return 1;
    }
    if (!answer.apirespmsg().has_cmd()) {
        SUBAGENT_LOG(warning, "msgResponse did Not have cmd\n");
        snmpSubagentComm->set_apimgr_state(false);
        return 1;
    }
    // Moved, because the list of a full array takes many megabytes.
    response = std::move(*answer.mutable_apirespmsg()->mutable_cmd()->mutable_respdata());
    return 0;
}

api_response fetch_response(const std::string& apiName, int iApiIndex) {
    api_response response;
    response.result = AccessApi(apiName, response.text, iApiIndex, "", "");
    if (response.result == 0)
        response.document.ParseXMLString(response.text);
    return response;
}

int gen_xml_GetList_append_to_string(const std::string& apiName, std::string& xml) {
    const auto found = kGetListMethods.find(apiName);
    if (found == kGetListMethods.end())
        return unrecognized(apiName);
    append_method(*found->second(), xml);
    return 0;
}

int gen_xml_Get_append_to_string(const std::string& apiName, std::string& xml, int iApiIndex) {
    char instance_id[20];
    snprintf(instance_id, sizeof instance_id, "%d.%d", conf_controllerIdThis, iApiIndex);
    const auto found = kGetMethods.find(apiName);
    if (found == kGetMethods.end())
        return unrecognized(apiName);
    append_method(*found->second({{"InstanceId", instance_id}}), xml);
    return 0;
}

int gen_xml_Set_append_to_string(const std::string& apiName, std::string& xml, int /*iApiIndex*/,
                                 const std::string& attrName, const std::string& attrValue) {
    if (apiName != "Tessera")
        return unrecognized(apiName);
    const attribute_map attributes = {{"InstanceId", std::to_string(conf_controllerIdThis)},
                                      {attrName, as_content(attrValue)}};
    xml += APITessera::APITesseraModifyMethod(attributes).GenerateXml(false, true);
    return 0;
}

int check_xml_resp(const std::string& apiName, const parser::XMLElement& element) {
    const char* name = apiName.c_str();
    if (!element) {
        SUBAGENT_LOG(warning, "xml resp for %s does not parse\n", name);
        return 1;
    }
    if (element.GetTagName() != "lumapi") {
        SUBAGENT_LOG(warning, "xml resp for %s does not contain 'lumapi': %s\n", name,
                     element.GetElementContent().c_str());
        return 1;
    }
    const parser::XMLElement method_return = element.GetFirstChildByTagName("ApiMethodReturn");
    if (!method_return) {
        SUBAGENT_LOG(warning, "xml resp for %s does not contain 'ApiMethodReturn': %s\n", name,
                     element.GetElementContent().c_str());
        return 1;
    }
    const parser::XMLElement successful = method_return.GetFirstChildByTagName("Successful");
    if (!successful) {
        SUBAGENT_LOG(warning, "xml resp for %s does not contain 'Successful': %s\n", name,
                     method_return.GetElementContent().c_str());
        return 1;
    }
    if (successful.GetElementContent() == "True")
        return 0;

    // An array without a monitored UPS must not fill the log with each refresh.
    const bool is_ups = apiName == "tsUps";
    const parser::XMLElement error_code = method_return.GetFirstChildByTagName("ErrorCode");
    if (!error_code) {
        SUBAGENT_LOG(warning, "xml resp for %s does not contain 'ErrorCode': %s\n", name,
                     method_return.GetElementContent().c_str());
        return 1;
    }
    const std::string code = error_code.GetElementContent();
    if (!is_ups || code != "ObjectNotAvailable")
        SUBAGENT_LOG(warning, "xml resp for [%s] is Not successful: ErrorCode: [%s]\n", name, code.c_str());
    const parser::XMLElement error = method_return.GetFirstChildByTagName("Error");
    if (!error)
        SUBAGENT_LOG(warning, "xml resp for %s does not contain 'Error': %s\n", name,
                     method_return.GetElementContent().c_str());
    else if (!is_ups)
        SUBAGENT_LOG(warning, "xml resp for %s has Error: %s\n", name, error.GetElementContent().c_str());
    return 1;
}

namespace {

void append_both_spellings(std::vector<parser::XMLElement>& found, const parser::XMLElement& parent,
                           const std::string& name) {
    std::string capital = name;
    capital[0] = capital[0] == 't' ? 'T' : capital[0];
    for (parser::XMLElement child = parent.GetFirstChild(); child; child = child.GetNextSibling()) {
        const std::string_view tag = child.GetTagName();
        if (tag == name || tag == capital)
            found.push_back(child);
    }
}

}  // namespace

std::vector<parser::XMLElement> object_elements(const parser::XMLElement& parent,
                                                const std::string& apiName) {
    std::vector<parser::XMLElement> found;
    if (apiName == "tsServer") {
        for (const char* kind : {"tsPhysicalServer", "tsRemoteTessera", "tsServerCluster", "tsVirtualServer"})
            append_both_spellings(found, parent, kind);
    } else {
        append_both_spellings(found, parent, apiName);
    }
    return found;
}

parser::XMLElement object_in_response(const api_response& response, const std::string& apiName,
                                      const std::string& iAttrName) {
    if (response.result != 0) {
        SUBAGENT_LOG(warning, "failed to get xml response for %s, attrName: %s\n", apiName.c_str(),
                     iAttrName.c_str());
        return {};
    }
    const parser::XMLElement root = response.document.GetDocumentElement();
    if (!root) {
        SUBAGENT_LOG(warning, "error found while trying to parse XmlString: %s\n", response.text.c_str());
        return {};
    }
    if (check_xml_resp(apiName, root) != 0)
        return {};
    const parser::XMLElement return_object = root.GetFirstChildByTagName("ReturnObject");
    if (!return_object) {
        SUBAGENT_LOG(warning, "response from ApiMgr does not contain 'ReturnObject': %s\n",
                     root.GetElementContent().c_str());
        return {};
    }
    const std::vector<parser::XMLElement> objects = object_elements(return_object, apiName);
    if (objects.empty()) {
        SUBAGENT_LOG(warning, "response from ApiMgr for single instance does not contain %s\n",
                     apiName.c_str());
        return {};
    }
    return objects.front();
}

int GetSingleInstance(const std::string& apiName, int iApiIndex, const std::string& iAttrName,
                      int32_t var_index, bool reuse_response) {
    static api_response kept;  // for calls that read further attributes of the object
    if (!reuse_response)
        kept = fetch_response(apiName, iApiIndex);
    const parser::XMLElement object = object_in_response(kept, apiName, iAttrName);
    if (!object)
        return 1;
    const parser::XMLElement attribute = object.GetFirstChildByTagName(iAttrName);
    if (!attribute) {
        SUBAGENT_LOG(debug, "specified attr not found: iAttrName: %s\n", iAttrName.c_str());
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
