# Files installed on FreeBSD in addition to the programs. The prefix is /usr/local there. The daemon reads its settings
# from /etc: the port's packing list copies the samples there, or the administrator does.
install(PROGRAMS freebsd/snmpsubagent DESTINATION etc/rc.d COMPONENT daemon)
foreach(settings snmpSubagent.conf start.conf)
  install(FILES etc/${settings} DESTINATION etc/snmpsubagent RENAME ${settings}.sample COMPONENT daemon)
endforeach()
# It will contain passphrases.
install(FILES etc/snmpd.conf DESTINATION etc/snmpsubagent RENAME snmpd.conf.sample
        PERMISSIONS OWNER_READ OWNER_WRITE COMPONENT daemon)
