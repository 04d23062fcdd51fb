#pragma once

/** The fixed paths of the daemon: files, sockets and programs. */

inline constexpr const char kDaemonFolder[] = "/mnt/root";
inline constexpr const char kPidFileFolder[] = "/var/run";

inline constexpr const char kStartConfigFile[] = "/tmp/apps/snmpsubagent.conf";
inline constexpr const char kSnmpSubagentConfigFile[] = "/etc/snmpSubagent.conf";
inline constexpr const char kSnmpdConfigFile[] = "/etc/snmpd.conf";

// Does not exist, so snmpd reads only /etc/snmpd.conf.
inline constexpr const char kNoConfigurationFiles[] = "/var/empty/snmpSubagent";
inline constexpr const char kSnmpdStateFolder[] = "/var/run/snmpsubagent";

inline constexpr const char kApiMgrSocket[] = "/tmp/apimgr.sock";
inline constexpr const char kMcShimSocket[] = "/tmp/mcshim.sock";
inline constexpr const char kSnmpSubagentSocket[] = "/tmp/snmpsubagent.sock";

inline constexpr const char kStatusFile[] = "/var/run/snmpSubagent.prom";

inline constexpr const char kSnmpdPidFile[] = "/var/run/snmpd.pid";
inline constexpr const char kSubagentLogFile[] = "/var/log/snmpSubagent.log";
inline constexpr const char kDebugLogFile[] = "/mnt/cores/logs/apimgrDebuglog.txt";
inline constexpr const char kOldDebugLogFile[] = "/mnt/cores/logs/apimgrDebuglog_old.txt";

inline constexpr const char kSnmpdProgram[] = "/usr/local/sbin/snmpd";
inline constexpr const char kSnmpgetProgram[] = "/usr/local/bin/snmpget";
inline constexpr const char kKillallProgram[] = "/usr/bin/killall";
inline constexpr const char kPsProgram[] = "/bin/ps";
