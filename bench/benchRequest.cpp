#include <cstdio>
#include <map>
#include <string>

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTsDisk.h"
#include "bench/ratio.h"

// The cost of rendering a call, relative to one snprintf of the same text.

namespace {

constexpr double kWanted = 4.0;
constexpr int kRequests = 10000;

const std::map<std::string, std::string> kAttributes = {{"InstanceId", "64702.17"}};

void print_requests() {
    for (int i = 0; i < kRequests; ++i) {
        char text[512];
        benchmark::DoNotOptimize(snprintf(
            text, sizeof text,
            "<ApiMethod><CommandType>%s</CommandType><Object>%s</Object><Command>%s</Command><Async>%s"
            "</Async><ObjectEncodeType>%s</ObjectEncodeType><Attributes><InstanceId>%s</InstanceId>"
            "<LiteObj>%s</LiteObj></Attributes></ApiMethod>",
            "Method", "TsDisk", "Get", "false", "xml", "64702.17", "1"));
        benchmark::DoNotOptimize(text);
    }
}

void BM_render_get_against_snprintf(benchmark::State& state) {
    APITsDisk::APITsDiskGetMethod method(kAttributes);
    method.SetLiteObj();
    measure_ratio(
        state, kWanted,
        [&] {
            for (int i = 0; i < kRequests; ++i)
                benchmark::DoNotOptimize(method.GenerateXml(false, true));
        },
        print_requests);
}

}  // namespace

BENCHMARK(BM_render_get_against_snprintf)->UseManualTime()->Unit(benchmark::kMillisecond);
