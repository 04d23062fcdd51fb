#pragma once

#include <cstdarg>
#include <cstdint>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

/**
 * A failure with its place in the source, a code and strings. Use GetSummary() for the message: what() is
 * empty after the long constructor.
 */
class GENERALError : public std::runtime_error {
  public:
    /** Short form: code 0, no parameters. */
    GENERALError(const std::string& sourceFile, uint32_t sourceLine, const std::string& message);

    /** With two strings: what() returns message, GetSummary() returns summary. */
    GENERALError(const std::string& sourceFile, uint32_t sourceLine, const std::string& message,
                 const std::string& summary);

    /**
     * Long form. `descriptor` is a printf format whose conversions are separated by "|". It is formatted with
     * the values after it and split at each "|" into parameters. Null or empty means no parameters.
     */
    [[gnu::format(printf, 6, 7)]] GENERALError(const std::string& summary, const std::string& sourceFile,
                                               uint32_t sourceLine, int32_t errorCode, const char* descriptor,
                                               ...);

    ~GENERALError() override;
    const char* what() const noexcept override;
    /** Returns one line for a log. */
    virtual std::string ToText() const;

    /** Returns the summary if there is one, else the message. */
    const std::string& GetSummary() const;

    const std::string& GetMessageText() const { return messageText; }
    const std::string& GetSourceFile() const { return sourceFile; }
    uint32_t GetSourceLine() const { return sourceLine; }
    int32_t GetErrorCode() const { return errorCode; }
    const std::string& GetSummaryText() const { return summaryText; }
    const std::vector<std::string>& GetParameters() const { return parameters; }

  protected:
    /** For constructors of derived classes with a descriptor. */
    [[gnu::format(printf, 3, 0)]] void SetCode(int32_t code, const char* descriptor, va_list values);

  private:
    std::string messageText;
    std::string sourceFile;
    uint32_t sourceLine;
    int32_t errorCode = 0;
    std::string summaryText;
    std::vector<std::string> parameters;
};

/** Writes ToText(). */
std::ostream& operator<<(std::ostream& stream, const GENERALError& error);
