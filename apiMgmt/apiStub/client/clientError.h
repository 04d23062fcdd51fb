#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace tessera {

/** Base of all errors of a client. what() is the message to show: one line without a final full stop. */
class ClientError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/** An argument or a condition is missing, unknown or illegal. Nothing has been sent. */
class InvalidArgument : public ClientError {
  public:
    /** `legal` describes the legal values; empty if the name itself is the problem. */
    InvalidArgument(const std::string& message, std::string name, std::string legal = "")
        : ClientError(message), attribute(std::move(name)), expected(std::move(legal)) {}

    /** Returns the name of the attribute; that of a structured argument's field is "Advanced.PreferredLun".
     */
    const std::string& GetAttribute() const { return attribute; }
    /** Returns, for example, "an integer, 0 to 128". */
    const std::string& GetExpected() const { return expected; }

  private:
    std::string attribute;
    std::string expected;
};

/**
 * The API manager does not listen, is not trusted, closes the connection, or sends an invalid frame. The
 * array may have executed the call unless the connection was refused.
 */
class Unreachable : public ClientError {
  public:
    using ClientError::ClientError;
};

/** The call was not finished in time. The array may still execute it. */
class TimedOut : public ClientError {
  public:
    using ClientError::ClientError;
};

/** Client::Cancel has been called. The array may still execute the call. */
class Cancelled : public ClientError {
  public:
    using ClientError::ClientError;
};

/** The response is not a document of the API, or its result is not of the kind that the caller expects. */
class MalformedAnswer : public ClientError {
  public:
    using ClientError::ClientError;
};

/** The array has rejected the call, or has failed to execute it. */
class Refused : public ClientError {
  public:
    Refused(const std::string& message, int id, std::string identifier)
        : ClientError(message), state(id), code(std::move(identifier)) {}

    /** Returns an ID of gErrorStateEnumIdStrList; 999 if the library does not know the array's code. */
    int GetState() const { return state; }
    /** Returns the identifier of the state, such as "ObjectNotAvailable"; empty if it is unknown. */
    const std::string& GetCode() const { return code; }

  private:
    int state;
    std::string code;
};

}  // namespace tessera
