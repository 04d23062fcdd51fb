// Lists the disks of the array that have a given status, each with its enclosure:
//
//     listDisks [STATUS [SOCKET KEY]]
//
// STATUS is Up, Down or Degraded; the default is Down. Without SOCKET and KEY, the program uses the default
// socket of the API manager and the session key of this machine.

#include <iostream>
#include <string>
#include <vector>

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTsDisk.h"
#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTsEnclosure.h"
#include "apiMgmt/apiStub/client/client.h"

namespace {

/** Returns the name of the disk's enclosure, found with the association. */
std::string EnclosureName(const tessera::Client& client, const APITsDisk& disk) {
    const APITsDisk::APITsDiskEnclosureAssociation association(disk.GetInstanceId());
    const std::vector<APITsEnclosure> enclosures = client.Follow<APITsEnclosure>(association);
    return enclosures.empty() ? "no enclosure" : enclosures.front().GetInstanceName();
}

void PrintDisks(const tessera::Client& client, const std::string& status) {
    const tessera::Filter filter = tessera::Where(APITsDisk::StatusAttribute()) == status;
    for (const APITsDisk& disk : client.List<APITsDisk>(filter)) {
        std::cout << disk.GetName() << "  " << disk.GetSize().ToDisplayText() << "  "
                  << disk.GetStatusMessage() << "  " << EnclosureName(client, disk) << '\n';
    }
}

}  // namespace

int main(int argc, char** argv) {
    tessera::ClientOptions options;
    options.socketPath = argc > 2 ? argv[2] : "";
    options.sessionKey = argc > 3 ? argv[3] : "";
    try {
        PrintDisks(tessera::Client(options), argc > 1 ? argv[1] : "Down");
        return 0;
    } catch (const tessera::ClientError& error) {
        std::cerr << "listDisks: " << error.what() << '\n';
    }
    return 1;
}
