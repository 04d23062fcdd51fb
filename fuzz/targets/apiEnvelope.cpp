// Uses envelopes as responses of the API manager. An exchange may succeed only if the envelope is a valid
// response, and the state of the link must agree with the last result.

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/apiAccess.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"
#include "fuzz/lib/fuzzCheck.h"
#include "fuzz/lib/fuzzInput.h"
#include "fuzz/lib/fuzzWorld.h"
#include "tests/unit/core/fakes/fakeApiMgr.h"
#include "tests/unit/core/fakes/transcript.h"

namespace {

// Bit of the first byte: if set, the sequence number of the response is corrected.
constexpr uint8_t kCorrectNumber = 1;

bool is_response_to(const fake_api_mgr::envelope& request, const fake_api_mgr::envelope& response) {
    return response.sequencenum() == request.sequencenum() && response.msgtype() == protoIPCMsg::APIResp &&
           response.has_apirespmsg();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static FuzzMibWorld world;
    verbose = false;
    FuzzInput input(data, size);
    const uint8_t choice = input.Byte();
    const std::string bytes(input.Rest());
    bool is_good = false;
    fake_api_mgr::meddle([&](const fake_api_mgr::envelope& request, fake_api_mgr::envelope& response) {
        response.Clear();
        if (!response.ParsePartialFromString(bytes))
            response.Clear();
        if ((choice & kCorrectNumber) != 0)
            response.set_sequencenum(request.sequencenum());
        is_good = is_response_to(request, response);
    });

    const std::pair<const char*, int> results[] = {
        {"ping", snmpSubagentComm->SendPingToApiMgr()},
        {"access", snmpSubagentComm->TestAccessToApiMgr()},
    };
    for (const auto& [test, result] : results)
        if (result == 0 && !is_good)
            FuzzFail(std::string(test) + " accepted an invalid response");
    FuzzCheck(snmpSubagentComm->apimgr_ok() == (results[1].second == 0), "apimgr_ok() is wrong");
    std::string text;
    const int access = AccessApi("tsDisk", text, kAllObjects, "", "");
    FuzzCheck(access != 0 || is_good, "AccessApi accepted an invalid response");
    GetSingleInstance("tsDisk", 3, "Status", cols[COLID_tsDiskStatus].first_var, false);
    fake_api_mgr::meddle(nullptr);
    transcript::take();
    return 0;
}
