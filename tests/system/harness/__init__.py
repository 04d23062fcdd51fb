"""Operations for tests that run the real daemon, the real snmpd and Net-SNMP's tools in the sandbox."""
