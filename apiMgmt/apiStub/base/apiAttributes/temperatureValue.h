#pragma once

#include <cstdint>
#include <string>

/** A temperature in whole degrees. Conversions truncate towards zero. */
class TEMPERATUREValue {
  public:
    TEMPERATUREValue() = default;
    explicit TEMPERATUREValue(int32_t celsius) { SetCelsius(celsius); }

    int32_t GetCelsius() const { return celsius_; }
    int32_t GetFahrenheit() const { return fahrenheit_; }
    /** Sets both scales. */
    void SetCelsius(int32_t celsius);

    /** Returns a string such as "45 C/113 F". */
    std::string ToText() const;

    /**
     * Parses that format or one half of it. The unit must be separated by a space. Returns 0 if the halves
     * disagree or the string is invalid.
     */
    static TEMPERATUREValue FromText(const std::string& text);

  private:
    int32_t celsius_ = 0;
    int32_t fahrenheit_ = 0;
};
