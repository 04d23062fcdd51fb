#include <cstdlib>
#include <string>

#include "arraySim/control/simulator.h"
#include "arraySim/model/presets.h"
#include "bench/ratio.h"

// The cost of a Get of one disk in a simulated array with 2000 disks, relative to one with a dozen.

namespace {

using namespace arraysim;

constexpr double kWanted = 1.25;
constexpr int kRequests = 2000;
constexpr char kKey[] = "key";
constexpr uint32_t kSerial = 64702;

/** A simulated array and a Get of its last disk. */
class RepeatedGet {
  public:
    explicit RepeatedGet(const char* preset)
        : model_(BuildPreset(Catalogue::Builtin(), *FindPreset(preset), 1, kSerial)),
          simulator_(model_, {kKey}, Spelling::kApi) {
        const uint32_t index = model_.Objects(*Catalogue::Builtin().KindOf("TsDisk").list).back().index;
        request_.set_msgtype(protoIPCMsg::APIRequest);
        request_.set_sequencenum(1);
        protoIPCMsg::APIReqMsg& message = *request_.mutable_apireqmsg();
        message.set_cmdtype(protoIPCMsg::Command);
        message.mutable_cmd()->set_cmddata(
            "<lumapi><ApiConnection><SessionKey>" + std::string(kKey) +
            "</SessionKey></ApiConnection><ApiMethod><CommandType>Method</CommandType><Object>TsDisk</Object>"
            "<Command>Get</Command><Async>false</Async><ObjectEncodeType>xml</ObjectEncodeType><Attributes>"
            "<InstanceId>" +
            std::to_string(kSerial) + "." + std::to_string(index) +
            "</InstanceId><LiteObj>1</LiteObj></Attributes></ApiMethod></lumapi>");
    }

    void Run() {
        for (int i = 0; i < kRequests; ++i) {
            if (simulator_.Handle(request_).record.objects != 1) {
                abort();
            }
        }
    }

  private:
    Model model_;
    Simulator simulator_;
    protoIPCMsg::GPBIPCMsg request_;
};

void BM_get_one_disk_of_2000_against_one_of_a_dozen(benchmark::State& state) {
    RepeatedGet full("full");
    RepeatedGet small("small");
    measure_ratio(
        state, kWanted, [&] { full.Run(); }, [&] { small.Run(); });
    state.counters["requests"] = kRequests;
}

}  // namespace

BENCHMARK(BM_get_one_disk_of_2000_against_one_of_a_dozen)->UseManualTime()->Unit(benchmark::kMillisecond);
