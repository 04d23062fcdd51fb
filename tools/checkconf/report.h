#pragma once

#include <iosfwd>
#include <string>

namespace checkconf {

/** What was found, printed as it comes: a heading for each file, below it facts, warnings and errors. */
class Report {
  public:
    /** `is_quiet`: facts, headings without a finding and the closing line are left out. */
    Report(std::ostream& out, bool is_quiet) : out_(out), is_quiet_(is_quiet) {}

    /** What follows is about this file or matter. */
    void Begin(const std::string& heading);

    void Fact(const std::string& text);
    /** Not as it looks, or not as it should be; the daemon starts all the same. */
    void Warn(const std::string& text);
    /** The daemon would not start, or could not be reached. */
    void Error(const std::string& text);

    /** The closing line, which counts. */
    void Close();

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
