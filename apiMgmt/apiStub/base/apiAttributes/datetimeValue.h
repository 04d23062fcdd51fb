#pragma once

#include <cstdint>
#include <ctime>
#include <string>

/** A point in time, in seconds since the epoch; 0 means no date. Strings and fields are in local time. */
class DATETIMEValue {
  public:
    DATETIMEValue() = default;
    /** A negative time becomes 0. */
    explicit DATETIMEValue(int64_t seconds);

    uint64_t GetSeconds() const { return seconds_; }

    /** Returns a string such as "10/31/2016 01:02:03 PM"; empty for no date. */
    std::string ToText() const;

    /** Parses that format and "10/31/2016-13:02:03". Returns no date for any other string. */
    static DATETIMEValue FromText(const std::string& text);

    /** Formats with strftime. Returns "" on failure or for an empty format. */
    std::string Format(const std::string& format) const;

    /**
     * Parses with strptime, by default in the format of ToText. Returns no date for a string that does not
     * match.
     */
    static DATETIMEValue Parse(const std::string& text, const std::string& format = "");

    // Fields of the local time. All are 0 for no date and for a time beyond the calendar's range.
    int GetSecond() const;
    int GetMinute() const;
    int GetHour() const;
    int GetDayOfMonth() const;
    int GetMonth() const;  ///< 1 to 12
    int GetYear() const;
    int GetMinutesSinceMidnight() const;

  private:
    bool ToLocalTime(std::tm& parts) const;
    std::tm Parts() const;

    uint64_t seconds_ = 0;
};
