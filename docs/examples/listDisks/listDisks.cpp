// Lists the disks of the array that have a given status, each with its enclosure:
//
//     listDisks [STATUS [SOCKET KEY]]
//
// STATUS is Up, Down or Degraded; the default is Down. Without SOCKET and KEY, the program uses the default
// socket of the API manager and the session key of this machine. docs/apiLibrary.md explains it step by step.

#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTsDisk.h"
#include "apiMgmt/apiStub/base/apiAttributes/filterList.h"
#include "apiMgmt/apiStub/base/apiObjects/base/apiChannel.h"
#include "apiMgmt/apiStub/base/apiObjects/base/methodReturns.h"
#include "apiMgmt/common/utils/apiMethodError.h"
#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/common/wirelink/wireLink.h"
#include "apiMgmt/proto/apiMgrMsg.pb.h"  // only needed for the channel

namespace {

/** A connection to an API manager that does not listen at the default path. */
class SocketChannel : public APIChannel {
  public:
    explicit SocketChannel(const std::string& path)
        : endpoint_(WireLinkEndpoint::CreateLocalEndpoint(path, 60, 5242880)) {}
    void Exchange(const protoIPCMsg::GPBIPCMsg& request, protoIPCMsg::GPBIPCMsg& response) override {
        WireLinkClient(endpoint_).SendReceiveMessage(request, response);
    }

  private:
    WireLinkEndpoint endpoint_;
};

/** Settings that all calls share. */
struct Session {
    std::string key;
    std::unique_ptr<SocketChannel> channel;  ///< null for the default socket
};

/** Executes a call and returns its response, which contains objects; throws if it does not. */
std::unique_ptr<COMPObjectMethodReturn> AskForObjects(BASEApiMethod& call, const Session& session) {
    call.ValidateAttributes();
    call.SetChannel(session.channel.get());
    std::unique_ptr<BASEApiMethodReturn> response(call.ExecuteWithSession(session.key, nullptr, "en_US"));
    if (response != nullptr && !response->GetSuccessful())
        throw std::runtime_error(call.GetCommandName() + ": " + response->GetErrorCode() + ": " +
                                 response->GetError());
    if (dynamic_cast<COMPObjectMethodReturn*>(response.get()) == nullptr)
        throw std::runtime_error(call.GetCommandName() + ": the response contains no objects");
    return std::unique_ptr<COMPObjectMethodReturn>(static_cast<COMPObjectMethodReturn*>(response.release()));
}

/** Returns the disks with this status. */
std::unique_ptr<COMPObjectMethodReturn> ListDisks(const std::string& status, const Session& session) {
    FILTERList filter;
    filter.joinType = filter_join::kAnd;
    filter.Add("Status", filter_operator::kEqual, status);
    APITsDisk::APITsDiskGetListMethod list;
    list.SetFilter(&filter);
    // Values are sent verbatim, so the caller must escape free text, which a filter may contain.
    list.SetAttribute("Filter", EscapeXml(list.GetAttribute("Filter"), false));
    return AskForObjects(list, session);
}

/** Returns the name of the disk's enclosure, found with the association. */
std::string EnclosureName(const APITsDisk& disk, const Session& session) {
    APITsDisk::APITsDiskEnclosureAssociation association(disk.GetInstanceId());
    const std::unique_ptr<COMPObjectMethodReturn> response = AskForObjects(association, session);
    return response->GetObjects().empty() ? "no enclosure"
                                          : response->GetObjects().front()->GetInstanceName();
}

void PrintDisks(const std::string& status, const Session& session) {
    const std::unique_ptr<COMPObjectMethodReturn> response = ListDisks(status, session);
    for (const BASEApiObject* object : response->GetObjects()) {
        if (const auto* disk = dynamic_cast<const APITsDisk*>(object)) {
            std::cout << disk->GetName() << "  " << disk->GetSize().ToDisplayText() << "  "
                      << disk->GetStatusMessage() << "  " << EnclosureName(*disk, session) << '\n';
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    Session session;
    session.key = argc > 3 ? argv[3] : WireLinkEndpoint::GetAccessKey();
    if (argc > 2)
        session.channel = std::make_unique<SocketChannel>(argv[2]);
    try {
        PrintDisks(argc > 1 ? argv[1] : "Down", session);
        return 0;
    } catch (const GENERALError& error) {
        std::cerr << "listDisks: " << error
                  << '\n';  // an argument that the library rejects, or no session key
    } catch (const std::exception& error) {
        std::cerr << "listDisks: " << error.what() << '\n';  // no connection, or the array rejects the call
    }
    return 1;
}
