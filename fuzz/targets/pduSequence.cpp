// Passes sequences of PDUs to the handler: GET, GETNEXT and SET (all phases in order, or a single phase),
// with names of 0 to 128 sub-identifiers in and around the MIB and in both enterprise numbers. Results,
// values, the store and the number of queued trap commands must equal those of a simple model.

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/oidLookup.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/serviceWindow.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/setRequest.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapQueue.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"
#include "fuzz/lib/fuzzWorld.h"
#include "fuzz/lib/requestModel.h"
#include "tests/unit/core/fakes/fakeClock.h"
#include "tests/unit/core/fakes/transcript.h"

namespace {

constexpr int kSingleModes[] = {MODE_GETBULK,    MODE_SET_RESERVE1, MODE_SET_RESERVE2, MODE_SET_ACTION,
                                MODE_SET_COMMIT, MODE_SET_FREE,     MODE_SET_UNDO,     77};

void begin_fresh_tick() {
    end_agent_tick();
    fake_clock::advance(10'000);
    begin_agent_tick();
}

void read(FuzzInput& input, std::string& last) {
    const int mode = input.OnceIn(2) ? MODE_GET : MODE_GETNEXT;
    const size_t repetitions = input.OnceIn(8) ? 20 + input.Below(8) : 1;
    snmp_pdu_of_test pdu(mode);
    for (size_t count = 1 + input.Below(4); count > 0; --count) {
        const std::string name = any_name(input, last);
        for (size_t i = 0; i < repetitions; ++i)
            pdu.ask(name);
    }
    serve_and_check(pdu, mode);
    const std::string answer = pdu.answer(0);
    last = answer.substr(0, answer.find(" = "));
}

void write(FuzzInput& input, const std::string& last) {
    snmp_pdu_of_test pdu(MODE_SET_RESERVE1);
    for (size_t count = 1 + input.Below(3); count > 0; --count) {
        const std::string name = input.OnceIn(8) ? any_name(input, last) : any_writable(input);
        if (input.OnceIn(16))
            pdu.set_number(name, static_cast<long>(input.Below(256)));
        else
            pdu.set(name, any_text(input));
    }
    begin_fresh_tick();
    if (input.OnceIn(4))
        serve_and_check(pdu, kSingleModes[input.Below(std::size(kSingleModes))]);
    else
        set_and_check(pdu);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static FuzzMibWorld world;
    verbose = false;
    last_oid_len = 0;
    FuzzInput input(data, size);
    fill_store(input);
    std::string last = "1";
    begin_agent_tick();
    for (int count = 0; count < 32 && !input.IsEmpty(); ++count) {
        if (input.OnceIn(3))
            write(input, last);
        else
            read(input, last);
        if (input.OnceIn(3))
            begin_fresh_tick();
    }
    end_agent_tick();
    for (int variable = 0; variable < 3; ++variable)
        perform_queued_set();
    trapsToSend.clear();
    transcript::take();
    return 0;
}
