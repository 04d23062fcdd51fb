#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "apiMgmt/apiStub/base/apiAttributes/baseApiAttribute.h"
#include "apiMgmt/apiStub/base/apiAttributes/enumRow.h"

/** Attributes that contain strings, enumeration values and lists of them. Lengths are in bytes. */

class STRINGApiAttribute : public BASEApiAttribute {
  public:
    /** A negative length means no bound. If both lengths are 0, values are not checked at all. */
    class STRINGAttributeProperties : public BASEAttributeProperties {
      public:
        STRINGAttributeProperties(const std::string& xmlName, uint32_t displayWidth, bool firstFlag,
                                  bool secondFlag, int64_t minLength, int64_t maxLength,
                                  const std::string& invalidChars, const std::string& pattern,
                                  const std::string& label);
        int64_t minLength;
        int64_t maxLength;
        std::string invalidChars;
        /** For clients only. */
        std::string pattern;
    };

    STRINGApiAttribute(const std::string& xmlName, uint32_t displayWidth, bool firstFlag, int64_t minLength,
                       int64_t maxLength, const std::string& label);
    STRINGApiAttribute(const std::string& xmlName, uint32_t displayWidth, bool firstFlag, int64_t minLength,
                       int64_t maxLength, const std::string& invalidChars, const std::string& pattern,
                       const std::string& label);
    bool Validate(const std::string& text) const override;
    bool MatchesFilter(const FILTERItem& item, const std::string& text) const override;

    std::string ToText(const std::string& value) const { return value; }
    std::string FromText(const std::string& text) const { return text; }

  protected:
    explicit STRINGApiAttribute(std::unique_ptr<STRINGAttributeProperties> owned);
};

class NAMEApiAttribute : public STRINGApiAttribute {
  public:
    NAMEApiAttribute(const std::string& xmlName, uint32_t displayWidth, bool firstFlag, bool secondFlag,
                     int64_t minLength, int64_t maxLength, const std::string& label);
};

/** The instance ID of an object. Not checked. */
class INSTANCEIDApiAttribute : public STRINGApiAttribute {
  public:
    INSTANCEIDApiAttribute(const std::string& xmlName, uint32_t displayWidth, bool firstFlag,
                           const std::string& label);
    bool MatchesFilter(const FILTERItem& item, const std::string& text) const override;
};

/**
 * Base of the attributes of enumerations. The table contains their legal values, or no rows if any value is
 * legal. It is only informative: no value is rejected because of it.
 */
class ENUMTABLEApiAttribute : public BASEApiAttribute {
  public:
    class ENUMAttributeProperties : public BASEAttributeProperties {
      public:
        ENUMAttributeProperties(const std::string& xmlName, uint32_t displayWidth, bool firstFlag,
                                const std::string& label, ENUMTable rows);
        ENUMTable table;
    };

    ENUMTABLEApiAttribute(const std::string& xmlName, uint32_t displayWidth, bool firstFlag,
                          const std::string& label, ENUMTable rows = {});
    const ENUMTable& GetTable() const;
};

/** The `Description` of a row of an enumeration. */
class ENUMApiAttribute : public ENUMTABLEApiAttribute {
  public:
    using ENUMTABLEApiAttribute::ENUMTABLEApiAttribute;
    bool MatchesFilter(const FILTERItem& item, const std::string& text) const override;

    std::string ToText(const std::string& description) const { return description; }
    std::string FromText(const std::string& text) const;
};

/** Several descriptions of an enumeration, separated by spaces. */
class ENUMMASKApiAttribute : public ENUMTABLEApiAttribute {
  public:
    using ENUMTABLEApiAttribute::ENUMTABLEApiAttribute;
    bool MatchesFilter(const FILTERItem&, const std::string&) const override { return false; }

    std::string ToText(const std::vector<std::string>& descriptions) const;
    std::vector<std::string> FromText(const std::string& text) const;
};

/** Strings joined by ":". Each ":" within a string is written as "-co-". */
class STRINGARRAYApiAttribute : public BASEApiAttribute {
  public:
    using BASEApiAttribute::BASEApiAttribute;
    bool MatchesFilter(const FILTERItem&, const std::string&) const override { return false; }

    std::string ToText(const std::vector<std::string>& items) const;
    std::vector<std::string> FromText(const std::string& text) const;
};
