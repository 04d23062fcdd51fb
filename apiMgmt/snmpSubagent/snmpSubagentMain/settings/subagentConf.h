#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

/** Settings of the daemon, read once at start. A change takes effect with the next start. */

/** Communities of the self-test; who may read or write is the master agent's business. */
extern std::string conf_rwcommunity;
extern std::string conf_rocommunity;

/** Notifications: whether any leaves, where to, and their version (1 trap, 2 version 2c trap, 3 inform). */
extern bool conf_trapsEnabled;
extern std::string conf_trapDest;
extern int conf_trapPort;
extern std::string conf_trapCommun;
extern int conf_trapVer;

/** Stored and used by nothing. */
extern int conf_controllerIdLeader;

/** The array's identity in InstanceId values. */
extern int conf_controllerIdThis;

/** Which row of the controller table this controller is: 1 or 2; 0 when it is not known. */
extern int conf_controllerIndexThis;

/** One test notification once the API manager answers; clears itself. */
extern bool sendTestTrap;

/** What a value is. A community may be "**none**"; a controller is 1 or 2. */
enum class conf_type { text, community, flag, number, controller };

/**
 * One setting of the file. `store` takes its value, or none if the key is missing or its line has no end, and
 * sets the variable to it or to the default. A secret value must not be shown.
 */
struct conf_setting {
    std::string_view key;
    conf_type type;
    bool is_secret;
    void (*store)(const std::optional<std::string>& value);
};

/** All settings, in the order in which they are read; generated from data/daemon/settings.def. */
extern const std::span<const conf_setting> conf_settings;

/** Where a setting stands in the text: its key, its value, and the newline that ends it. */
struct conf_place {
    size_t key;
    size_t value;
    size_t end;

    /** Without a newline behind it a setting does not count. */
    bool has_end() const { return end != std::string_view::npos; }
};

/**
 * The first place where a key stands, be it in a longer word or in a comment; nothing when there is none. The
 * value begins behind blanks and tabs and goes to the end of the line, trailing blanks included.
 */
std::optional<conf_place> find_conf_place(std::string_view text, std::string_view key);

/**
 * A file as far as it counts: 499 bytes at most, up to the first zero byte. Nothing, and a log line, when it
 * is missing, unreadable or empty.
 */
std::optional<std::string> read_conf_text(const char* path);

/** Reads all settings from a file. 0; or 1, everything left as it was, when read_conf_text gives nothing. */
int read_conf_file(const char* path);

/** The same for /etc/snmpSubagent.conf. */
int read_snmpSubagent_conf();

/** With which the self-test asks snmpd: rocommunity, else rwcommunity, else "public". */
const std::string& self_test_community();
