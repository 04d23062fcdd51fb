// Lists the disks of the array that are in a given state, each with its enclosure:
//
//     listDisks [STATUS [SOCKET KEY]]
//
// STATUS is Up, Down or Degraded. Without SOCKET and KEY the library's own way to the API manager is taken,
// under the session key of this machine. docs/apiLibrary.md goes through it step by step.

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
#include "apiMgmt/proto/apiMgrMsg.pb.h"  // for the channel alone

namespace {

/** An API manager that listens elsewhere than at the library's own path. */
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

/** What all calls of this program share. */
struct Session {
    std::string key;
    std::unique_ptr<SocketChannel> channel;  ///< null: the library's own
};

/** Makes a call and insists on objects as its answer; what went wrong is thrown. */
std::unique_ptr<COMPObjectMethodReturn> AskForObjects(BASEApiMethod& call, const Session& session) {
    call.ValidateAttributes();
    call.SetChannel(session.channel.get());
    std::unique_ptr<BASEApiMethodReturn> answer(call.ExecuteWithSession(session.key, nullptr, "en_US"));
    if (answer != nullptr && !answer->GetSuccessful())
        throw std::runtime_error(call.GetCommandName() + ": " + answer->GetErrorCode() + ": " +
                                 answer->GetError());
    if (dynamic_cast<COMPObjectMethodReturn*>(answer.get()) == nullptr)
        throw std::runtime_error(call.GetCommandName() + ": the answer holds no objects");
    return std::unique_ptr<COMPObjectMethodReturn>(static_cast<COMPObjectMethodReturn*>(answer.release()));
}

/** The disks with that status. */
std::unique_ptr<COMPObjectMethodReturn> ListDisks(const std::string& status, const Session& session) {
    FILTERList filter;
    filter.joinType = filter_join::kAnd;
    filter.Add("Status", filter_operator::kEqual, status);
    APITsDisk::APITsDiskGetListMethod list;
    list.SetFilter(&filter);
    // Values travel as they stand: what is free text, as a filter may hold, is escaped by the caller.
    list.SetAttribute("Filter", EscapeXml(list.GetAttribute("Filter"), false));
    return AskForObjects(list, session);
}

/** The name of the enclosure that holds the disk, by way of the association. */
std::string EnclosureName(const APITsDisk& disk, const Session& session) {
    APITsDisk::APITsDiskEnclosureAssociation association(disk.GetInstanceId());
    const std::unique_ptr<COMPObjectMethodReturn> answer = AskForObjects(association, session);
    return answer->GetObjects().empty() ? "no enclosure" : answer->GetObjects().front()->GetInstanceName();
}

void PrintDisks(const std::string& status, const Session& session) {
    const std::unique_ptr<COMPObjectMethodReturn> answer = ListDisks(status, session);
    for (const BASEApiObject* object : answer->GetObjects()) {
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
                  << '\n';  // an argument that the library refuses, or no session key
    } catch (const std::exception& error) {
        std::cerr << "listDisks: " << error.what() << '\n';  // the API manager is not there, or it refuses
    }
    return 1;
}
