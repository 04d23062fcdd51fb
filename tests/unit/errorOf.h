#pragma once

#include <exception>
#include <string>

/** Returns the message of the exception that an action throws; an empty string if it throws none. */
template <class Action>
std::string ErrorOf(Action&& action) {
    try {
        action();
    } catch (const std::exception& error) {
        return error.what();
    }
    return "";
}
