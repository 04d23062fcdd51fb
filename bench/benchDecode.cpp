#include <expat.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTsDisk.h"
#include "apiMgmt/apiStub/base/apiObjects/base/methodReturns.h"
#include "apiMgmt/proto/apiMgrMsg.pb.h"
#include "bench/ratio.h"

// The cost of decoding a response with 2000 disks, relative to expat building a minimal tree of it.

namespace {

constexpr double kWanted = 3.0;
constexpr size_t kDisks = 2000;

/** Returns a disk with a valid value for every attribute of its class. */
std::string DiskXml(size_t i) {
    const std::string number = std::to_string(i + 1);
    const std::string reference = "64702." + number + " TsDiskFolder Assigned " + number;
    APITsDisk disk;
    for (const BASEApiAttribute* attribute : disk.GetAttributeList())
        disk.SetAttribute(attribute->GetXmlName(), number);
    disk.SetControlType(1);
    disk.SetDiskFolder(APIObjectInstance::FromText(reference).get());
    disk.SetHealthMask({"Healthy"});
    disk.SetHealthy(true);
    disk.SetIoPortType(8);
    disk.SetName("01-" + number);
    disk.SetStatus(1);
    disk.SetChildStatus(1);
    disk.SetStatusMessage("");
    disk.SetTsName("Array 64702");
    disk.SetTsSerialNumber(64702);
    disk.SetInstanceId("64702." + number);
    disk.SetInstanceName("01-" + number);
    disk.SetObjectType("TsDisk");
    return disk.ToXml();
}

std::string Document() {
    std::string document =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<lumapi><ApiMethodReturn><Successful>True</Successful>"
        "</ApiMethodReturn><ReturnObjectArray>";
    for (size_t i = 0; i < kDisks; ++i)
        document += DiskXml(i);
    return document + "</ReturnObjectArray></lumapi>";
}

/** A minimal tree: tag, parent and text of each element, with all strings in one block. */
struct BareTree {
    struct Node {
        size_t tag;
        size_t text;
        size_t end;
        size_t parent;
    };
    std::vector<Node> nodes;
    std::string block;
    size_t open = 0;
};

void XMLCALL Open(void* data, const XML_Char* tag, const XML_Char** /*attributes*/) {
    auto& tree = *static_cast<BareTree*>(data);
    const size_t start = tree.block.size();
    tree.block += tag;
    tree.nodes.push_back({start, tree.block.size(), tree.block.size(), tree.open});
    tree.open = tree.nodes.size() - 1;
}

void XMLCALL Close(void* data, const XML_Char* /*tag*/) {
    auto& tree = *static_cast<BareTree*>(data);
    tree.open = tree.nodes[tree.open].parent;
}

void XMLCALL Text(void* data, const XML_Char* text, int length) {
    auto& tree = *static_cast<BareTree*>(data);
    tree.block.append(text, static_cast<size_t>(length));
    tree.nodes[tree.open].end = tree.block.size();
}

void BuildBareTree(const std::string& document) {
    BareTree tree;
    XML_Parser parser = XML_ParserCreate(nullptr);
    XML_SetUserData(parser, &tree);
    XML_SetElementHandler(parser, Open, Close);
    XML_SetCharacterDataHandler(parser, Text);
    if (XML_Parse(parser, document.data(), static_cast<int>(document.size()), 1) != XML_STATUS_OK)
        abort();
    XML_ParserFree(parser);
    benchmark::DoNotOptimize(tree.nodes.data());
}

void Decode(const protoIPCMsg::GPBIPCMsg& response) {
    const std::unique_ptr<BASEApiMethodReturn> result(
        APITsDisk::APITsDiskGetListMethod().DecodeResponse(response));
    const auto* list = dynamic_cast<const COMPObjectMethodReturn*>(result.get());
    if (list == nullptr || list->GetObjects().size() != kDisks)
        abort();
}

void BM_decode_2000_disks_against_a_bare_tree(benchmark::State& state) {
    const std::string document = Document();
    protoIPCMsg::GPBIPCMsg response;
    response.set_msgtype(protoIPCMsg::APIResp);
    response.mutable_apirespmsg()->set_cmdtype(protoIPCMsg::Command);
    response.mutable_apirespmsg()->mutable_cmd()->set_respdata(document);
    measure_ratio(
        state, kWanted, [&] { Decode(response); }, [&] { BuildBareTree(document); });
    state.counters["bytes"] = static_cast<double>(document.size());
}

}  // namespace

BENCHMARK(BM_decode_2000_disks_against_a_bare_tree)->UseManualTime()->Unit(benchmark::kMillisecond);
