#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "apiMgmt/apiStub/base/apiAttributes/baseApiAttribute.h"

/** Attributes that contain numbers and Booleans. A negative bound means none. */

class BOOLEANApiAttribute : public BASEApiAttribute {
  public:
    using BASEApiAttribute::BASEApiAttribute;
    bool MatchesFilter(const FILTERItem& item, const std::string& text) const override;

    /** "True" or "False". */
    std::string ToText(bool value) const;
    /** Returns true for "1" and for "true" (case-insensitive). */
    bool FromText(const std::string& text) const;
};

class INTApiAttribute : public BASEApiAttribute {
  public:
    class INTAttributeProperties : public BASEAttributeProperties {
      public:
        INTAttributeProperties(const std::string& xmlName, uint32_t displayWidth, bool firstFlag,
                               int64_t minValue, int64_t maxValue, const std::string& label);
        int64_t minValue;
        int64_t maxValue;
    };

    INTApiAttribute(const std::string& xmlName, uint32_t displayWidth, bool firstFlag, int64_t minValue,
                    int64_t maxValue, const std::string& label);
    bool Validate(const std::string& text) const override;
    bool MatchesFilter(const FILTERItem& item, const std::string& text) const override;

    std::string ToText(int64_t value) const;
    /**
     * Returns the number that a stream reads: 0 if the string does not start with one, the nearest one if it
     * is out of range.
     */
    int64_t FromText(const std::string& text) const;
};

class DOUBLEApiAttribute : public BASEApiAttribute {
  public:
    /** The bounds are integers. */
    class DOUBLEAttributeProperties : public BASEAttributeProperties {
      public:
        DOUBLEAttributeProperties(const std::string& xmlName, uint32_t displayWidth, bool firstFlag,
                                  int64_t minValue, int64_t maxValue, const std::string& label);
        int64_t minValue;
        int64_t maxValue;
    };

    DOUBLEApiAttribute(const std::string& xmlName, uint32_t displayWidth, bool firstFlag, int64_t minValue,
                       int64_t maxValue, const std::string& label);
    bool Validate(const std::string& text) const override;
    bool MatchesFilter(const FILTERItem& item, const std::string& text) const override;

    std::string ToText(double value) const;
    double FromText(const std::string& text) const;
};

/** Numbers separated by spaces. The bounds apply to each number. */
class INTARRAYApiAttribute : public BASEApiAttribute {
  public:
    class INTARRAYAttributeProperties : public BASEAttributeProperties {
      public:
        INTARRAYAttributeProperties(const std::string& xmlName, uint32_t displayWidth, bool firstFlag,
                                    int64_t minValue, int64_t maxValue, const std::string& label);
        int64_t minValue;
        int64_t maxValue;
    };

    INTARRAYApiAttribute(const std::string& xmlName, uint32_t displayWidth, bool firstFlag, int64_t minValue,
                         int64_t maxValue, const std::string& label);
    bool Validate(const std::string& text) const override;
    bool MatchesFilter(const FILTERItem&, const std::string&) const override { return false; }

    std::string ToText(const std::vector<int64_t>& values) const;
    std::vector<int64_t> FromText(const std::string& text) const;
};
