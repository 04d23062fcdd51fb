#pragma once

#include <chrono>
#include <concepts>
#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "apiMgmt/apiStub/base/apiObjects/base/apiChannel.h"
#include "apiMgmt/apiStub/base/apiObjects/base/baseApiAssociation.h"
#include "apiMgmt/apiStub/base/apiObjects/base/getListApiMethod.h"
#include "apiMgmt/apiStub/base/apiObjects/base/methodReturns.h"
#include "apiMgmt/apiStub/client/clientError.h"
#include "apiMgmt/apiStub/client/filter.h"
#include "apiMgmt/apiStub/client/preparedCall.h"

namespace tessera {

/** How a client reaches the array. */
struct ClientOptions {
    /** Local socket of the API manager; empty for the default. */
    std::string socketPath = {};
    /** Empty for this machine's key, which /etc/wirelink.key contains. */
    std::string sessionKey = {};
    /** Language of error messages, such as "en_US". The array's default unless it has five characters. */
    std::string locale = "en_US";
    /** Limit for a whole call, from connecting to the end of the response. */
    std::chrono::milliseconds timeout = std::chrono::seconds(60);
    /**
     * Sends the calls in place of the socket, or null. Must outlive the client. The timeout does not apply,
     * and Cancel does not interrupt an exchange.
     */
    APIChannel* channel = nullptr;
};

/** Objects of any class. */
using AnyObjects = std::vector<std::unique_ptr<BASEApiObject>>;

/** Converts the result of a call. Each throws MalformedAnswer unless the result is of its kind. */
template <class Value>
struct ResultReader;

/**
 * Executes calls. All arguments are checked and escaped; results belong to the caller. All functions can be
 * called by several threads at the same time; each call uses its own connection.
 *
 * The functions that send a call throw InvalidArgument before anything is sent, and Unreachable, TimedOut,
 * Cancelled, MalformedAnswer or Refused, all derived from ClientError.
 */
class Client {
  public:
    /** Throws InvalidArgument if there is no session key, Unreachable if there is no free descriptor. */
    explicit Client(ClientOptions options = {});
    ~Client();
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    /** Returns the objects of a class that the filter selects. */
    template <class Object>
    requires requires { typename Object::GetListMethod; }
    std::vector<Object> List(const Filter& filter = {}) const {
        typename Object::GetListMethod list;
        const FILTERList conditions = filter.ListFor(Object::Attributes(), Object::ObjectName());
        if (!conditions.items.empty())
            list.SetFilter(&conditions);
        return Call<std::vector<Object>>(list);
    }

    /** Returns the object with that instance ID. Throws Refused if there is none. */
    template <class Object>
    requires requires { typename Object::GetMethod; }
    Object Get(const std::string& instanceId) const {
        typename Object::GetMethod get;
        get.SetInstanceId(instanceId);
        return Call<Object>(get);
    }

    /**
     * Returns the related objects, whether the array sends one or a list. Throws MalformedAnswer if one of
     * them is of another class; Call<AnyObjects> returns objects of all classes.
     */
    template <class Object>
    std::vector<Object> Follow(const BASEApiAssociation& association) const {
        return Call<std::vector<Object>>(association);
    }

    /**
     * Executes a call and returns its result as one of: void, which ignores the result; bool; int32_t;
     * std::string, also for an identifier; an object or method object; a std::vector of objects of a class,
     * or of method objects; AnyObjects; a std::vector of ENUMMaskMethodReturn::Row.
     */
    template <class Value = void>
    Value Call(const BASEApiMethod& call) const {
        std::unique_ptr<BASEApiMethodReturn> response = Execute(call);
        ThrowUnlessSuccessful(call, response.get());
        if constexpr (!std::is_void_v<Value>)
            return ResultReader<Value>::Read(call, response.get());
    }

    /**
     * Executes a call and returns the response, which may be a rejection or report that the response is
     * malformed. Returns null if the call succeeded without a result. Throws MalformedAnswer only for a
     * document of another kind, and never Refused.
     */
    std::unique_ptr<BASEApiMethodReturn> Execute(const BASEApiMethod& call) const;

    /**
     * Makes all present and future calls of this client throw Cancelled. May be called by any thread and by a
     * signal handler.
     */
    void Cancel() noexcept;

  private:
    class Transport;

    static void ThrowUnlessSuccessful(const BASEApiMethod& call, const BASEApiMethodReturn* response);

    const ClientOptions options;
    const std::unique_ptr<Transport> transport;
};

// ---- results ----

/** Throws MalformedAnswer: the response to the call does not contain `expected`. */
[[noreturn]] void ThrowUnexpectedResult(const BASEApiMethod& call, const std::string& expected);

/** Throws MalformedAnswer if the library does not know the classes of all objects. */
void CheckAllRead(const BASEApiMethod& call, size_t skippedCount);

/** Returns the response as one of a kind. */
template <class Return>
Return& ReturnAs(const BASEApiMethod& call, BASEApiMethodReturn* response, const std::string& expected) {
    auto* result = dynamic_cast<Return*>(response);
    if (result == nullptr)
        ThrowUnexpectedResult(call, expected);
    return *result;
}

/** Moves objects of a class out of the pointers in a list. */
template <class Object, class Pointers>
std::vector<Object> TakeObjects(const BASEApiMethod& call, const Pointers& pointers) {
    std::vector<Object> objects;
    objects.reserve(pointers.size());
    for (const auto& pointer : pointers) {
        auto* object = dynamic_cast<Object*>(&*pointer);
        if (object == nullptr)
            ThrowUnexpectedResult(call, "only " + Object::ObjectName() + " objects");
        objects.push_back(std::move(*object));
    }
    return objects;
}

template <>
struct ResultReader<bool> {
    static bool Read(const BASEApiMethod& call, BASEApiMethodReturn* response) {
        return ReturnAs<BOOLMethodReturn>(call, response, "a Boolean").value;
    }
};

template <>
struct ResultReader<int32_t> {
    static int32_t Read(const BASEApiMethod& call, BASEApiMethodReturn* response) {
        return ReturnAs<INTMethodReturn>(call, response, "an integer").value;
    }
};

template <>
struct ResultReader<std::string> {
    static std::string Read(const BASEApiMethod& call, BASEApiMethodReturn* response) {
        if (const auto* identifier = dynamic_cast<const ENUMMethodReturn*>(response))
            return identifier->value;
        return ReturnAs<STRINGMethodReturn>(call, response, "a string").value;
    }
};

template <>
struct ResultReader<std::vector<ENUMMaskMethodReturn::Row>> {
    static std::vector<ENUMMaskMethodReturn::Row> Read(const BASEApiMethod& call,
                                                       BASEApiMethodReturn* response) {
        return ReturnAs<ENUMMaskMethodReturn>(call, response, "identifiers").GetRows();
    }
};

template <>
struct ResultReader<AnyObjects> {
    static AnyObjects Read(const BASEApiMethod& call, BASEApiMethodReturn* response);
};

template <std::derived_from<BASEApiObject> Object>
struct ResultReader<std::vector<Object>> {
    static std::vector<Object> Read(const BASEApiMethod& call, BASEApiMethodReturn* response) {
        auto& result = ReturnAs<COMPObjectMethodReturn>(call, response, "objects");
        CheckAllRead(call, result.skippedCount);
        return TakeObjects<Object>(call, result.GetObjects());
    }
};

template <std::derived_from<BASEApiMethodObject> MethodObject>
struct ResultReader<std::vector<MethodObject>> {
    static std::vector<MethodObject> Read(const BASEApiMethod& call, BASEApiMethodReturn* response) {
        auto& result = ReturnAs<METHODObjectMethodReturn>(call, response, "structured values");
        CheckAllRead(call, result.skippedCount);
        return TakeObjects<MethodObject>(call, result.objects);
    }
};

/** A single object or method object. */
template <class Object>
struct ResultReader {
    static Object Read(const BASEApiMethod& call, BASEApiMethodReturn* response) {
        std::vector<Object> objects = ResultReader<std::vector<Object>>::Read(call, response);
        if (objects.size() != 1)
            ThrowUnexpectedResult(call, "one " + Object::ObjectName());
        return std::move(objects.front());
    }
};

}  // namespace tessera
