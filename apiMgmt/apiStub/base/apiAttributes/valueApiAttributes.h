#pragma once

#include <cstdint>
#include <string>

#include "apiMgmt/apiStub/base/apiAttributes/baseApiAttribute.h"
#include "apiMgmt/apiStub/base/apiAttributes/datetimeValue.h"
#include "apiMgmt/apiStub/base/apiAttributes/sizeValue.h"
#include "apiMgmt/apiStub/base/apiAttributes/temperatureValue.h"
#include "apiMgmt/apiStub/base/apiAttributes/versionValue.h"

/** Attributes that contain one of the value types, which format and parse themselves. */

class DATETIMEApiAttribute : public BASEApiAttribute {
  public:
    using BASEApiAttribute::BASEApiAttribute;
    bool MatchesFilter(const FILTERItem& item, const std::string& text) const override;

    std::string ToText(const DATETIMEValue& value) const;
    DATETIMEValue FromText(const std::string& text) const;
};

class SIZEApiAttribute : public BASEApiAttribute {
  public:
    using BASEApiAttribute::BASEApiAttribute;
    bool MatchesFilter(const FILTERItem& item, const std::string& text) const override;

    std::string ToText(const SIZEValue& value) const;
    SIZEValue FromText(const std::string& text) const;
};

class TEMPERATUREApiAttribute : public BASEApiAttribute {
  public:
    using BASEApiAttribute::BASEApiAttribute;
    bool MatchesFilter(const FILTERItem& item, const std::string& text) const override;

    std::string ToText(const TEMPERATUREValue& value) const;
    TEMPERATUREValue FromText(const std::string& text) const;
};

class VERSIONApiAttribute : public BASEApiAttribute {
  public:
    using BASEApiAttribute::BASEApiAttribute;
    bool MatchesFilter(const FILTERItem& item, const std::string& text) const override;

    std::string ToText(const VERSIONValue& value) const;
    VERSIONValue FromText(const std::string& text) const;
};
