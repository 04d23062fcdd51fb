#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

#include "apiMgmt/common/xmlwrap/xmlParser.h"

/**
 * The daemon's access to the array's data: builds an API document from a method class, sends it and returns
 * the response. Object names are those in responses, with the first letter in lower case ("tsDisk"), except
 * "Tessera".
 */

/** Whether GetList and Get request reduced objects. Written only by the main thread. */
extern std::atomic<bool> liteObjEnabled;

/** Value of AccessApi's iApiIndex for the list of all objects of the kind. */
inline constexpr int kAllObjects = -1;

/**
 * Performs one exchange: a GetList if iApiIndex is kAllObjects, else a Get of that object, or a Modify if
 * there is an attrName. Returns 0 with the response, which is not checked (see check_xml_resp), or 1 after
 * logging the error. Main thread and GetList task.
 */
int AccessApi(const std::string& apiName, std::string& response, int iApiIndex, const std::string& attrName,
              const std::string& attrValue);

/** A response that was fetched and parsed but not checked. The reader checks it, on the main thread. */
struct api_response {
    int result = 1; /**< of AccessApi */
    std::string text;
    parser::XMLParser document{nullptr};
};

/** Calls AccessApi and parses the response. Main thread and GetList task. */
api_response fetch_response(const std::string& apiName, int iApiIndex);

/**
 * Returns the object in the response to a Get. It tests false, after logging the reason, if the exchange
 * failed, the API reports an error or there is no object. `iAttrName` is only for the log.
 */
parser::XMLElement object_in_response(const api_response& response, const std::string& apiName,
                                      const std::string& iAttrName);

/** Append one method to a document. Return 0, or 1 if the object has no such method. */
int gen_xml_GetList_append_to_string(const std::string& apiName, std::string& xml);
int gen_xml_Get_append_to_string(const std::string& apiName, std::string& xml, int iApiIndex);
int gen_xml_Set_append_to_string(const std::string& apiName, std::string& xml, int iApiIndex,
                                 const std::string& attrName, const std::string& attrValue);

/**
 * Checks a parsed response, given its document element, which may test false. Returns 0 if the API reports
 * success, else 1.
 */
int check_xml_resp(const std::string& apiName, const parser::XMLElement& element);

/**
 * Fetches an object and writes one of its attributes into a variable, without marking that as cached. If
 * `reuse_response` is set, reads the object of the previous call instead. Returns 0, or non-zero on failure.
 * Main thread only.
 */
int GetSingleInstance(const std::string& apiName, int iApiIndex, const std::string& iAttrName,
                      int32_t var_index, bool reuse_response);

/**
 * Returns the elements of a kind of object below `parent`, in the order of their rows. Accepts both cases of
 * the first letter. For tsServer, concatenates the four kinds of server.
 */
std::vector<parser::XMLElement> object_elements(const parser::XMLElement& parent, const std::string& apiName);
