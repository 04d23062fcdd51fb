#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

#include "apiMgmt/common/xmlwrap/xmlParser.h"

/**
 * The daemon's whole path to the array's data: builds one API document from a method class, sends it, and
 * takes the text of the answer. Objects are named as in answers, first letter in lower case ("tsDisk"),
 * "Tessera" as it stands.
 */

/** Every GetList and Get asks for reduced objects while this is set. Written by the main thread only. */
extern std::atomic<bool> liteObjEnabled;

/** As iApiIndex of AccessApi: the list of all objects of the kind. */
inline constexpr int kAllObjects = -1;

/**
 * One exchange. 0 with the text of the answer in `response`, otherwise 1. kAllObjects asks for a GetList;
 * another index with an empty attrName for a Get of that object; with an attrName for a Modify. The text is
 * not judged: see check_xml_resp. Main thread and GetList task.
 */
int AccessApi(const std::string& apiName, std::string& response, int iApiIndex, const std::string& attrName,
              const std::string& attrValue);

/** A response that was fetched and parsed but not judged: that is left to whoever reads it, on the main
 * thread. */
struct api_response {
    int result = 1; /**< of AccessApi */
    std::string text;
    parser::XMLParser document{nullptr};
};

/** One exchange with AccessApi, and the parse. Main thread and GetList task. */
api_response fetch_response(const std::string& apiName, int iApiIndex);

/** The object in the response to a Get; tests false, with the reason logged, if the exchange failed, the
   response is refused or holds no object. `iAttrName` is only for the log. */
parser::XMLElement object_in_response(const api_response& response, const std::string& apiName,
                                      const std::string& iAttrName);

/** Append one method to a document. 0, or 1 for an object that has no such method. */
int gen_xml_GetList_append_to_string(const std::string& apiName, std::string& xml);
int gen_xml_Get_append_to_string(const std::string& apiName, std::string& xml, int iApiIndex);
int gen_xml_Set_append_to_string(const std::string& apiName, std::string& xml, int iApiIndex,
                                 const std::string& attrName, const std::string& attrValue);

/** Judges a parsed answer by its document element, which may test false. 0 when the API reports success. */
int check_xml_resp(const std::string& apiName, const parser::XMLElement& element);

/**
 * Fetches one object and writes one of its attributes into a variable; `cached` is the caller's business.
 * With reuse_response set nothing is sent and the object of the call before is read. 0, otherwise non-zero.
 * Main thread only.
 */
int GetSingleInstance(const std::string& apiName, int iApiIndex, const std::string& iAttrName,
                      int32_t var_index, bool reuse_response);

/** The object elements of a kind below `parent`, in the order that decides their rows. Both spellings of
    the first letter are taken; for tsServer the four kinds of server follow one another. */
std::vector<parser::XMLElement> object_elements(const parser::XMLElement& parent, const std::string& apiName);
