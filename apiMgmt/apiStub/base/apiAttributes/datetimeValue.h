#pragma once

#include <cstdint>
#include <ctime>
#include <string>

/** A point in time in seconds since the epoch; 0 means no date. Texts and parts are in local time. */
class DATETIMEValue {
  public:
    DATETIMEValue() = default;
    /** A negative time gives 0. */
    explicit DATETIMEValue(int64_t seconds);

    uint64_t GetSeconds() const { return seconds_; }

    /** As in "10/31/2016 01:02:03 PM"; empty for no date. */
    std::string ToText() const;

    /** Reads that form, and "10/31/2016-13:02:03" as well; no date for any other text. */
    static DATETIMEValue FromText(const std::string& text);

    /** By a format of strftime; empty when that fails, or for an empty format. */
    std::string Format(const std::string& format) const;

    /** By a format of strptime, that of ToText when it is empty; no date for a text that does not fit. */
    static DATETIMEValue Parse(const std::string& text, const std::string& format = "");

    // Parts of the local time; each is 0 for no date, and for a time too far away to have any.
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
