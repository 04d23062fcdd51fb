#pragma once

#include <cstdint>
#include <string>

/** A temperature in whole degrees; conversions truncate towards zero. */
class TEMPERATUREValue {
  public:
    TEMPERATUREValue() = default;
    explicit TEMPERATUREValue(int32_t celsius) { SetCelsius(celsius); }

    int32_t GetCelsius() const { return celsius_; }
    int32_t GetFahrenheit() const { return fahrenheit_; }
    /** Sets both. */
    void SetCelsius(int32_t celsius);

    /** As in "45 C/113 F". */
    std::string ToText() const;

    /**
     * Reads that form, or one half of it. The unit stands apart from the number ("45C" cannot be read). Two
     * halves that disagree, or a text that cannot be read, give 0.
     */
    static TEMPERATUREValue FromText(const std::string& text);

  private:
    int32_t celsius_ = 0;
    int32_t fahrenheit_ = 0;
};
