#pragma once

#include <locale>
#include <sstream>
#include <string>

/** The number at the start of a text as a stream reads it, in any locale of the process: 0 when there is
   none, the nearest one when it is out of range. */
template <class Number>
Number NumberOfText(const std::string& text) {
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    Number number = 0;
    stream >> number;
    return number;
}

/** A number as a stream writes it by default. */
template <class Number>
std::string TextOfNumber(Number number) {
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    stream << number;
    return stream.str();
}
