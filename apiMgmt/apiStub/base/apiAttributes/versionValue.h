#pragma once

#include <cstdint>
#include <string>

/** A software version. A value outside its field's range becomes the nearest one inside. */
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

    /** As in "06.03.01.002". */
    std::string ToText() const;

    /** The same with the hotfix, as in "06.03.01.002.00". */
    std::string ToTextWithHotfix() const;

    /** Up to five fields with points between them; what stands before the first digit does not count. */
    static VERSIONValue FromText(const std::string& text);

    /** One number by which versions compare. A build above 999 and a revision above 99 reach into the field
     * before. */
    int64_t OrderNumber() const;

  private:
    int16_t major_ = 0;
    int16_t minor_ = 0;
    int16_t revision_ = 0;
    int16_t build_ = 0;
    int16_t hotfix_ = 0;
};
