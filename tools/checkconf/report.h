#pragma once

#include <iosfwd>
#include <string>

namespace checkconf {

/** Prints findings immediately: one heading per file, below it facts, warnings and errors. */
class Report {
  public:
    /** is_quiet: omit facts, headings without a finding and the summary. */
    Report(std::ostream& out, bool is_quiet) : out_(out), is_quiet_(is_quiet) {}

    /** Starts a file or topic. */
    void Begin(const std::string& heading);

    void Fact(const std::string& text);

    /** Something has an unexpected effect, but the daemon starts. */
    void Warn(const std::string& text);

    /** The daemon would not start, or managers could not reach the array through it. */
    void Error(const std::string& text);

    /** Prints the numbers of errors and warnings. */
    void Summarise();

    int warnings() const { return warnings_; }
    int errors() const { return errors_; }

  private:
    void Print(const char* mark, const std::string& text);

    std::ostream& out_;
    bool is_quiet_;
    std::string pending_heading_;
    int warnings_ = 0;
    int errors_ = 0;
};

}  // namespace checkconf
