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

/** A connection that is forwarded on behalf of a client: what it proved itself with, and where it comes from.
 */
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
 * One call of the API manager: a class names the object and the command, an instance holds the arguments and
 * renders them. Construct, set attributes, perhaps ValidateAttributes; then either GenerateXml for a document
 * of one's own, or Execute or ExecuteWithSession, which send it and decode the answer. An instance belongs to
 * one thread.
 */
class BASEApiMethod {
  public:
    virtual ~BASEApiMethod() = default;
    BASEApiMethod(const BASEApiMethod&) = delete;
    BASEApiMethod& operator=(const BASEApiMethod&) = delete;

    virtual const std::string& GetCommandName() const = 0;
    virtual const std::string& GetObjectName() const = 0;

    /** Whether a call changes the array. */
    virtual bool ChangesState() const { return true; }

    /** The least UserPrivilege that the API manager asks for. */
    virtual int GetRequiredPrivilege() const { return USER_PRIVILEGE_REPORTER; }

    /** The descriptors of the arguments; they live until the process exits. */
    virtual const ATTRIBUTEList& GetAttributeList() const;

    /**
     * The call as an <ApiMethod> element, arguments in the byte order of their names. Values are written as
     * they stand: some are markup, so escaping is for those who set them. async: the manager is to answer
     * before the work is done. xmlObjects: objects of the answer come as XML, else as CSV.
     */
    virtual std::string GenerateXml(bool async, bool xmlObjects) const;

    /** Throws APIMethodError when a required argument is missing. */
    virtual void CheckRequiredAttributes() const {}

    /** Throws when the call makes no sense in the present state. */
    virtual void CheckState() const {}

    /** An empty name is ignored. */
    void SetAttribute(const std::string& name, const std::string& text);

    /** Empty when the attribute is absent. */
    std::string GetAttribute(std::string_view name) const;

    bool HasAttribute(std::string_view name) const;
    /** False for null. */
    bool HasAttribute(const BASEApiAttribute* attribute) const;

    /** The class's descriptor of that name, or null. */
    const BASEApiAttribute* FindAttribute(std::string_view name) const;

    /** Whether the name is that of a filter: filters may be absent even where they are required. */
    static bool IsFilterAttribute(std::string_view name);

    /** Asks for the objects in their lite form. */
    void SetLiteObj();
    bool IsLiteObj() const;

    /** Throws APIMethodError for a missing argument or a value that its descriptor refuses. Arguments without
       a descriptor are not examined. */
    void ValidateAttributes() const;

    /**
     * Fills the request for this call. connection: on whose behalf, or null; then sessionKey must not be
     * empty, else APIMethodError is thrown before the request is touched. blobs: data that travels beside the
     * document, by name, or null. locale: of the answer's texts, left out unless it has five characters
     * ("en_US").
     */
    void BuildRequest(protoIPCMsg::GPBIPCMsg& request, const ConnectionRecord* connection,
                      const std::string& sessionKey, const std::map<std::string, std::string>* blobs,
                      const std::string& locale) const;

    /** The way that Exchange and what stands on it take; null, as at first, for the library's own. Lent: it
       must outlive the calls. */
    void SetChannel(APIChannel* lent) { channel = lent; }

    /** Sends a request to the API manager, over a connection of its own unless there is a channel, and waits
       for the answer. What goes wrong there is thrown as WireLinkError. */
    void Exchange(const protoIPCMsg::GPBIPCMsg& request, protoIPCMsg::GPBIPCMsg& response) const;

    /**
     * What a response says, owned by the caller; null for an answer without a result, as a successful Modify
     * gives, and for a document of another kind. Throws nothing for a bad answer: that becomes a return that
     * is not successful.
     */
    BASEApiMethodReturn* DecodeResponse(const protoIPCMsg::GPBIPCMsg& response) const;

    /** BuildRequest, Exchange and DecodeResponse in one, under a session or on behalf of a client; throws
       what they throw. The result belongs to the caller and may be null. */
    BASEApiMethodReturn* ExecuteWithSession(const std::string& sessionKey,
                                            const std::map<std::string, std::string>* blobs,
                                            const std::string& locale) const;
    BASEApiMethodReturn* Execute(const ConnectionRecord* connection,
                                 const std::map<std::string, std::string>* blobs) const;

  protected:
    explicit BASEApiMethod(bool association);
    BASEApiMethod(bool association, const std::map<std::string, std::string>& initial);

    /** Throws APIMethodError, with that place, for the first of the names that has no value and is no filter.
     */
    void CheckRequired(std::span<const std::string> names, const char* sourceFile, uint32_t sourceLine) const;

  private:
    BASEApiMethodReturn* SendAndDecode(const ConnectionRecord* connection, const std::string& sessionKey,
                                       const std::map<std::string, std::string>* blobs,
                                       const std::string& locale) const;

    const bool isAssociation;
    /** By name; std::less on bytes is the order of the document. */
    std::map<std::string, std::string, std::less<>> attributes;
    APIChannel* channel = nullptr;
};
