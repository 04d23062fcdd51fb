#pragma once

#include <functional>
#include <map>
#include <string>

#include "apiMgmt/proto/apiMgrMsg.pb.h"

/**
 * A fake of the API manager and of the message channel. Each exchange is a line
 * "api ..." of the transcript: "connect", "ping", or command, object and instance ("GetList TsDisk",
 * "Get TsDisk 7.3"). By default it responds to pings, and to commands with the document that is set for them,
 * or with an empty list. Any thread.
 */
namespace fake_api_mgr {

using envelope = protoIPCMsg::GPBIPCMsg;

/** Documents by command, object and instance, as in the transcript. Set before use. */
extern std::map<std::string, std::string> documents;

/** The document and the envelope of the last request. */
extern std::string last_document;
extern envelope last_request;

/** Result of GetAccessKey: "KEY" at the start of a test. */
extern std::string access_key;

/** The next connections fail. */
void refuse_connections(bool refuse);

/** Called with the request and the complete response, which it may change; may throw. Null: not called. */
void meddle(std::function<void(const envelope&, envelope&)> meddler);

/** Return a successful response with these objects, in a ReturnObjectArray or a ReturnObject. */
std::string list_answer(const std::string& objects);
std::string object_answer(const std::string& object);

/** Returns a response that reports a failure. */
std::string failure_answer(const std::string& error_code);

}  // namespace fake_api_mgr
