#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

/** The daemon's settings, read once at start-up. A change takes effect at the next start. */

/** Communities for the self-test only. The master agent decides who may read or write. */
extern std::string conf_rwcommunity;
extern std::string conf_rocommunity;

/**
 * Notifications: whether they are sent, their receiver, and their version (1: version 1 trap, 2: version 2c
 * trap, 3: inform).
 */
extern bool conf_trapsEnabled;
extern std::string conf_trapDest;
extern int conf_trapPort;
extern std::string conf_trapCommun;
extern int conf_trapVer;

/** Stored but not used. */
extern int conf_controllerIdLeader;

/** The array's number in InstanceId values. */
extern int conf_controllerIdThis;

/** Row of this controller in the controller table, 1 or 2; 0 if unknown. */
extern int conf_controllerIndexThis;

/** Requests one test notification as soon as the API manager responds; cleared when it is sent. */
extern bool sendTestTrap;

/** Type of a value. The community "**none**" means none. A controller is 1 or 2. */
enum class conf_type { text, community, flag, number, controller };

/**
 * A setting of the file. `store` sets the variable to the given value, or to the default if there is none
 * because the key is missing or its line has no newline. A secret value must not be shown.
 */
struct conf_setting {
    std::string_view key;
    conf_type type;
    bool is_secret;
    void (*store)(const std::optional<std::string>& value);
};

/** All settings, in the order in which they are read; generated from data/daemon/settings.def. */
extern const std::span<const conf_setting> conf_settings;

/** Offsets of a setting in the file: its key, its value, and the newline after it. */
struct conf_place {
    size_t key;
    size_t value;
    size_t end;

    /** A setting without a newline after it is ignored. */
    bool has_end() const { return end != std::string_view::npos; }
};

/**
 * Finds the first occurrence of a key, even inside a longer word or a comment. The value begins after spaces
 * and tabs and extends to the end of the line, trailing spaces included.
 */
std::optional<conf_place> find_conf_place(std::string_view text, std::string_view key);

/**
 * Returns the part of a file that is used: at most 499 bytes, up to the first zero byte. Returns nothing,
 * after logging the error, if the file is missing, unreadable or empty.
 */
std::optional<std::string> read_conf_text(const char* path);

/** Reads all settings from a file. Returns 0, or 1 with all settings unchanged if read_conf_text fails. */
int read_conf_file(const char* path);

/** Reads /etc/snmpSubagent.conf. */
int read_snmpSubagent_conf();

/** Returns the self-test community: rocommunity, else rwcommunity, else "public". */
const std::string& self_test_community();
