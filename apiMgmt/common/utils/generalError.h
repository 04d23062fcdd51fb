#pragma once

#include <cstdarg>
#include <cstdint>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

/**
 * A failure with its place in the source, a code and texts. Thrown by value, caught by reference.
 * Whoever wants the message asks GetSummary(): what() is empty after the long constructor.
 */
class GENERALError : public std::runtime_error {
  public:
    /** Short form: code 0, no parameters. */
    GENERALError(const std::string& sourceFile, uint32_t sourceLine, const std::string& message);

    /** Two texts: what() gives message, GetSummary() gives summary. */
    GENERALError(const std::string& sourceFile, uint32_t sourceLine, const std::string& message,
                 const std::string& summary);

    /**
     * Long form. descriptor: printf format whose conversions are separated by "|", carried out with the
     * values behind it and cut at each "|" into the parameters; null or empty for none.
     */
    [[gnu::format(printf, 6, 7)]] GENERALError(const std::string& summary, const std::string& sourceFile,
                                               uint32_t sourceLine, int32_t errorCode, const char* descriptor,
                                               ...);

    ~GENERALError() override;
    const char* what() const noexcept override;
    /** One line for a log. */
    virtual std::string ToText() const;

    /** The summary when there is one, else the message. */
    const std::string& GetSummary() const;

    const std::string& GetMessageText() const { return messageText; }
    const std::string& GetSourceFile() const { return sourceFile; }
    uint32_t GetSourceLine() const { return sourceLine; }
    int32_t GetErrorCode() const { return errorCode; }
    const std::string& GetSummaryText() const { return summaryText; }
    const std::vector<std::string>& GetParameters() const { return parameters; }

  protected:
    /** For constructors of derived classes that take the descriptor's values themselves. */
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
