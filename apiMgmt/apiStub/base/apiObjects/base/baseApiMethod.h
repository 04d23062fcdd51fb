#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>

#include "apiMgmt/apiStub/base/apiAttributes/baseApiAttribute.h"

class APIChannel;
class BASEApiMethodReturn;

namespace protoIPCMsg {
class GPBIPCMsg;
}

/** A connection that is forwarded for a client: its credentials and its address. */
struct ConnectionRecord {
    std::string version;
    std::string userPass;
    std::string authToken;
    std::string hccid;
    std::string sourceAddress;
};

/** Who may call a method. */
enum UserPrivilege : int {
    USER_PRIVILEGE_ADMIN = 1,
    USER_PRIVILEGE_VOLUME_MANAGER = 2,
    USER_PRIVILEGE_REPORTER = 3,
};

/**
 * A call of the API manager: a class names the object and the command, an instance contains the arguments and
 * renders them. Construct it, set attributes, and optionally call ValidateAttributes. Then either use
 * GenerateXml in your own document, or Execute or ExecuteWithSession, which send the call and decode the
 * response. Not thread-safe.
 */
class BASEApiMethod {
  public:
    virtual ~BASEApiMethod() = default;
    BASEApiMethod(const BASEApiMethod&) = delete;
    BASEApiMethod& operator=(const BASEApiMethod&) = delete;

    virtual const std::string& GetCommandName() const = 0;
    virtual const std::string& GetObjectName() const = 0;

    /** Returns whether the call changes the array. */
    virtual bool ChangesState() const { return true; }

    /** Returns the minimum UserPrivilege that the API manager requires. */
    virtual int GetRequiredPrivilege() const { return USER_PRIVILEGE_REPORTER; }

    /** Returns the descriptors of the arguments, which live until the process exits. */
    virtual const ATTRIBUTEList& GetAttributeList() const;

    /**
     * Returns the call as an <ApiMethod> element, with the arguments in the byte order of their names. Values
     * are written verbatim: some are markup, so the caller must escape the others. If `async` is set, the API
     * manager responds before the work is done. If `xmlObjects` is set, objects in the response are XML, else
     * CSV.
     */
    virtual std::string GenerateXml(bool async, bool xmlObjects) const;

    /** Returns the names of the required arguments, in the order of the checks. Some may be filters. */
    virtual std::span<const std::string> GetRequiredNames() const { return {}; }

    /** Throws APIMethodError if a required argument is missing. */
    virtual void CheckRequiredAttributes() const {}

    /** Throws if the call makes no sense in the present state. */
    virtual void CheckState() const {}

    /** Ignores an empty name. */
    void SetAttribute(const std::string& name, const std::string& text);

    /** Returns "" if the attribute is absent. */
    std::string GetAttribute(std::string_view name) const;

    /** Returns all arguments by name. */
    const std::map<std::string, std::string, std::less<>>& GetAttributes() const { return attributes; }

    bool IsAssociation() const { return isAssociation; }

    bool HasAttribute(std::string_view name) const;
    /** Returns false for null. */
    bool HasAttribute(const BASEApiAttribute* attribute) const;

    /** Returns the class's descriptor of that name, or null. */
    const BASEApiAttribute* FindAttribute(std::string_view name) const;

    /** Returns whether the name is that of a filter. Filters may be absent even if they are required. */
    static bool IsFilterAttribute(std::string_view name);

    /** Requests reduced objects. */
    void SetLiteObj();
    bool IsLiteObj() const;

    /**
     * Throws APIMethodError for a missing argument or a value that its descriptor rejects. Arguments without
     * a descriptor are not checked.
     */
    void ValidateAttributes() const;

    /**
     * Fills the request for this call. `connection` is that of the client, or null; then sessionKey must not
     * be empty, or APIMethodError is thrown before the request is changed. `blobs` contains additional data
     * by name, or is null. `locale`, such as "en_US", selects the language of the response; it is omitted
     * unless it has five characters.
     */
    void BuildRequest(protoIPCMsg::GPBIPCMsg& request, const ConnectionRecord* connection,
                      const std::string& sessionKey, const std::map<std::string, std::string>* blobs,
                      const std::string& locale) const;

    /**
     * Sets the channel that Exchange uses; null, the default, means the library's own. The channel must
     * outlive the calls.
     */
    void SetChannel(APIChannel* lent) { channel = lent; }

    /**
     * Sends a request to the API manager, over its own connection unless a channel is set, and waits for the
     * response. Throws WireLinkError on failure.
     */
    void Exchange(const protoIPCMsg::GPBIPCMsg& request, protoIPCMsg::GPBIPCMsg& response) const;

    /**
     * Decodes a response into a return, owned by the caller. Returns null for a response without a result,
     * such as that of a successful Modify, and for a document of another kind. Does not throw for an invalid
     * response, but returns one that is not successful.
     */
    BASEApiMethodReturn* DecodeResponse(const protoIPCMsg::GPBIPCMsg& response) const;

    /**
     * Call BuildRequest, Exchange and DecodeResponse, with a session or for a client, and throw what these
     * throw. The result belongs to the caller and may be null.
     */
    BASEApiMethodReturn* ExecuteWithSession(const std::string& sessionKey,
                                            const std::map<std::string, std::string>* blobs,
                                            const std::string& locale) const;
    BASEApiMethodReturn* Execute(const ConnectionRecord* connection,
                                 const std::map<std::string, std::string>* blobs) const;

  protected:
    explicit BASEApiMethod(bool association);
    BASEApiMethod(bool association, const std::map<std::string, std::string>& initial);

    /**
     * Throws APIMethodError, with that place in the source, for the first of the names that has no value and
     * is not a filter.
     */
    void CheckRequired(std::span<const std::string> names, const char* sourceFile, uint32_t sourceLine) const;

  private:
    BASEApiMethodReturn* SendAndDecode(const ConnectionRecord* connection, const std::string& sessionKey,
                                       const std::map<std::string, std::string>* blobs,
                                       const std::string& locale) const;

    const bool isAssociation;
    /** By name; std::less yields the byte order of the document. */
    std::map<std::string, std::string, std::less<>> attributes;
    APIChannel* channel = nullptr;
};
