#pragma once

#include <functional>
#include <map>
#include <string>

#include "apiMgmt/proto/apiMgrMsg.pb.h"

/**
 * The API manager at the other end of a message channel that is not there. Each exchange is a line
 * "api ..." of the transcript: "connect", "ping", or command, object and instance ("GetList TsDisk",
 * "Get TsDisk 7.3"). By default it answers pings, and commands with the document that is set for them, or
 * with an empty list. Any thread.
 */
namespace fake_api_mgr {

using envelope = protoIPCMsg::GPBIPCMsg;

/** Documents by command, object and instance, as they stand in the transcript. Set before use. */
extern std::map<std::string, std::string> documents;

/** The last request's document and envelope. */
extern std::string last_document;
extern envelope last_request;

/** What GetAccessKey finds: "KEY" when a test begins. */
extern std::string access_key;

/** The next connections fail. */
void refuse_connections(bool refuse);

/** Called with request and finished answer, which it may change; may throw. Null: nothing. */
void meddle(std::function<void(const envelope&, envelope&)> meddler);

/** An answer that reports success and holds these objects, in a ReturnObjectArray or a ReturnObject. */
std::string list_answer(const std::string& objects);
std::string object_answer(const std::string& object);

/** An answer that reports failure. */
std::string failure_answer(const std::string& error_code);

}  // namespace fake_api_mgr
