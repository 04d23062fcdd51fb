#pragma once

#include <cstdint>
#include <string>

/** A software version. A value outside its field's range is replaced by the nearest one inside. */
class VERSIONValue {
  public:
    int16_t GetMajor() const { return major_; }
    int16_t GetMinor() const { return minor_; }
    int16_t GetRevision() const { return revision_; }
    int16_t GetBuild() const { return build_; }
    int16_t GetHotfix() const { return hotfix_; }

    void SetMajor(int64_t value);     ///< 0 to 99
    void SetMinor(int64_t value);     ///< 0 to 99
    void SetRevision(int64_t value);  ///< 0 to 999
    void SetBuild(int64_t value);     ///< 0 to 9999
    void SetHotfix(int64_t value);    ///< 0 to 99

    /** Returns a string such as "06.03.01.002". */
    std::string ToText() const;

    /** Returns a string with the hotfix, such as "06.03.01.002.00". */
    std::string ToTextWithHotfix() const;

    /** Parses up to five fields separated by dots. Everything before the first digit is ignored. */
    static VERSIONValue FromText(const std::string& text);

    /**
     * Returns a number that orders versions. A revision above 99 and a build above 999 overflow into the
     * field before.
     */
    int64_t OrderNumber() const;

  private:
    int16_t major_ = 0;
    int16_t minor_ = 0;
    int16_t revision_ = 0;
    int16_t build_ = 0;
    int16_t hotfix_ = 0;
};
