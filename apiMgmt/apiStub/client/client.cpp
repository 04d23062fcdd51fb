#include "apiMgmt/apiStub/client/client.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>

#include "apiMgmt/common/utils/generalUtils.h"
#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/common/wirelink/wireLink.h"
#include "apiMgmt/common/xmlwrap/xmlParser.h"
#include "apiMgmt/proto/apiMgrMsg.pb.h"

namespace tessera {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

/** Longest timeout, so that deadlines can be computed. */
constexpr milliseconds kMaximumTimeout = std::chrono::hours(24 * 14);

/** How much of a foreign document an error shows, in bytes. */
constexpr size_t kShownBytes = 200;

std::string TitleOf(const BASEApiMethod& call) {
    return call.GetObjectName() + " " + call.GetCommandName();
}

ClientOptions Completed(ClientOptions options) {
    if (options.socketPath.empty())
        options.socketPath = GENERALUtils::GetEndpoint(ENDPOINT_APIMGR).path();
    if (options.sessionKey.empty())
        options.sessionKey = WireLinkEndpoint::GetAccessKey();
    if (options.sessionKey.empty())
        throw InvalidArgument(
            "no session key; give one, or run as the owner of /etc/wirelink.key, which nobody else may "
            "access",
            "sessionkey");
    options.timeout = std::clamp(options.timeout, milliseconds::zero(), kMaximumTimeout);
    return options;
}

void CheckDocument(const std::string& document) {
    parser::XMLParser parser;
    if (!parser.ParseXMLString(document) || parser.GetDocumentElement().GetTagName() != "lumapi")
        throw MalformedAnswer("the response is not a document of the array's API: " +
                              document.substr(0, kShownBytes));
}

}  // namespace

/** Exchanges messages until a deadline passes or the client is cancelled. */
class Client::Transport {
  public:
    explicit Transport(const ClientOptions& shared)
        : options(shared),
          // The deadline of the call ends each step, so the step's own limit is longer.
          endpoint(WireLinkEndpoint::CreateLocalEndpoint(
              options.socketPath, std::chrono::ceil<std::chrono::seconds>(options.timeout).count() + 1,
              GENERALUtils::GetEndpoint(ENDPOINT_APIMGR).size_bytes())) {
        if (pipe2(cancellation.data(), O_CLOEXEC | O_NONBLOCK) != 0)
            throw Unreachable("cannot create a pipe: " + std::system_category().message(errno));
    }
    ~Transport() {
        for (const int descriptor : cancellation)
            close(descriptor);
    }
    Transport(const Transport&) = delete;
    Transport& operator=(const Transport&) = delete;

    /** `title`: the call, for errors. */
    void Exchange(const std::string& title, const protoIPCMsg::GPBIPCMsg& request,
                  protoIPCMsg::GPBIPCMsg& response) const {
        const steady_clock::time_point deadline = steady_clock::now() + options.timeout;
        const auto wait = [&](int descriptor, short events, int timeout_ms) {
            return Wait(title, deadline, {.fd = descriptor, .events = events, .revents = 0}, timeout_ms);
        };
        try {
            wait(-1, 0, 0);  // a cancelled client does not even connect
            if (options.channel != nullptr)
                options.channel->Exchange(request, response);
            else
                WireLinkClient(endpoint, wait).SendReceiveMessage(request, response);
        } catch (const WireLinkError& error) {
            throw Unreachable(std::string("cannot reach the API manager: ") + error.what());
        }
    }

    /** The byte is never read, so it ends all waits to come. */
    void Cancel() const noexcept {
        const int error = errno;
        [[maybe_unused]] const ssize_t count = write(cancellation[1], "", 1);
        errno = error;
    }

  private:
    bool Wait(const std::string& title, steady_clock::time_point deadline, pollfd peer,
              int timeout_ms) const {
        const auto remaining = std::chrono::ceil<milliseconds>(deadline - steady_clock::now()).count();
        pollfd entries[] = {{.fd = cancellation[0], .events = POLLIN, .revents = 0}, peer};
        const int limit_ms = static_cast<int>(std::clamp<milliseconds::rep>(remaining, 0, timeout_ms));
        const int ready = poll(entries, std::size(entries), limit_ms);
        if (ready < 0 && errno != EINTR)
            throw Unreachable("poll: " + std::system_category().message(errno));
        if (ready > 0 && entries[0].revents != 0)
            throw Cancelled(title + ": cancelled");
        if (remaining <= 0)  // even if there is more, because a peer may send byte by byte
            throw TimedOut(title + ": no response from " + endpoint.path() + " within " +
                           std::to_string(options.timeout.count()) + " ms");
        return ready > 0;
    }

    const ClientOptions& options;
    const WireLinkEndpoint endpoint;
    std::array<int, 2> cancellation{};
};

Client::Client(ClientOptions given)
    : options(Completed(std::move(given))), transport(std::make_unique<Transport>(options)) {}

Client::~Client() = default;

void Client::Cancel() noexcept {
    transport->Cancel();
}

std::unique_ptr<BASEApiMethodReturn> Client::Execute(const BASEApiMethod& call) const {
    const std::unique_ptr<BASEApiMethod> prepared = PrepareCall(call);
    protoIPCMsg::GPBIPCMsg request;
    protoIPCMsg::GPBIPCMsg response;
    prepared->BuildRequest(request, nullptr, EscapeXml(options.sessionKey, false), nullptr, options.locale);
    transport->Exchange(TitleOf(call), request, response);
    std::unique_ptr<BASEApiMethodReturn> result(prepared->DecodeResponse(response));
    if (result == nullptr)  // no result, or a foreign document
        CheckDocument(response.apirespmsg().cmd().respdata());
    return result;
}

void Client::ThrowUnlessSuccessful(const BASEApiMethod& call, const BASEApiMethodReturn* response) {
    if (response == nullptr || response->GetSuccessful())
        return;
    std::string message;
    std::string last;
    for (const std::string& text :
         {response->GetError(), response->GetLocalizedError(), response->GetErrorDetail()}) {
        if (!text.empty() && text != last)
            message += (message.empty() ? "" : "; ") + text;
        last = text;
    }
    if (dynamic_cast<const INVALIDMethodReturn*>(response) != nullptr)
        throw MalformedAnswer(TitleOf(call) + ": " + message);
    const int state = response->GetErrorState();
    const std::string code = response->GetErrorCode();
    throw Refused(TitleOf(call) + " failed: " + (code.empty() ? "unknown error" : code) + " (" +
                      std::to_string(state) + ")" + (message.empty() ? "" : ": " + message),
                  state, code);
}

// ---- results ----

void ThrowUnexpectedResult(const BASEApiMethod& call, const std::string& expected) {
    throw MalformedAnswer(TitleOf(call) + ": the response does not contain " + expected);
}

void CheckAllRead(const BASEApiMethod& call, size_t skippedCount) {
    if (skippedCount > 0)
        throw MalformedAnswer(TitleOf(call) +
                              ": the response contains objects of classes that this program does not have: " +
                              std::to_string(skippedCount));
}

AnyObjects ResultReader<AnyObjects>::Read(const BASEApiMethod& call, BASEApiMethodReturn* response) {
    auto& result = ReturnAs<COMPObjectMethodReturn>(call, response, "objects");
    CheckAllRead(call, result.skippedCount);
    AnyObjects objects;
    objects.reserve(result.GetObjects().size());
    for (BASEApiObject* object : result.GetObjects())
        objects.emplace_back(object);
    result.ownsObjects = false;
    return objects;
}

}  // namespace tessera
